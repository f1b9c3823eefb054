// Status files in one process: the file holds exactly the last value, the
// getters' size bound, where a record's file lies, its limits, and the end
// that leaves the file to the last holder.
#include <filesystem>

#include "platform/platform.h"
#include "status/status_test_support.h"

namespace {

using namespace kz::test;

template <class Ch>
class StatusTransfer : public ::testing::Test {};
TYPED_TEST_SUITE(StatusTransfer, ElementTypes);

const std::string kNihongo = "\x93\xFA\x96\x7B\x8C\xEA";  // three double-byte characters

TYPED_TEST(StatusTransfer, TheFileHoldsExactlyTheLastValueInNarrowBytes) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "value"));
  ASSERT_NE(status.get(), nullptr);
  EXPECT_EQ(read_bytes(dir.path("value")), "");  // a new file holds the empty value
  // Each value is shorter than the one before, so a remnant would show.
  for (const std::string& value :
       {kNihongo + "abcd", std::string("abc"), std::string("ab"), std::string(""), kNihongo}) {
    EXPECT_NE(Twin<Ch>::StatusSetString(status.get(), in_width<Ch>(value).c_str()), 0);
    EXPECT_EQ(read_bytes(dir.path("value")), value);
    auto out = sentinel_buffer<Ch>(64);
    EXPECT_NE(Twin<Ch>::StatusGetString(status.get(), out.data(), 64), 0);
    EXPECT_EQ(str(out), in_width<Ch>(value));
  }
}

TYPED_TEST(StatusTransfer, GettersDeliverAtMostSizeMinusOneBytes) {
  using Ch = TypeParam;
  struct Row {
    std::string file;
    int32_t size;
  };
  // The last element read is forced to 0, whether the file goes on or not;
  // the wide twin reads size bytes and converts them into size units.
  const Row rows[] = {{"abc", 5}, {"abc", 4}, {"abc", 3}, {"abc", 1}, {"", 2}, {kNihongo, 3}};
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "bound"));
  ASSERT_NE(status.get(), nullptr);
  for (const Row& row : rows) {
    write_bytes(dir.path("bound"), row.file);
    auto out = sentinel_buffer<Ch>(static_cast<std::size_t>(row.size) + 2);
    EXPECT_NE(Twin<Ch>::StatusGetString(status.get(), out.data(), row.size), 0) << row.size;
    const std::size_t kept = std::min(row.file.size(), static_cast<std::size_t>(row.size - 1));
    EXPECT_EQ(str(out), in_width<Ch>(row.file.substr(0, kept))) << row.file << " " << row.size;
    EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(row.size)));
  }
}

TYPED_TEST(StatusTransfer, NullHandleNullBufferAndEmptySizeReadNothing) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "nothing"));
  ASSERT_NE(status.get(), nullptr);
  write_bytes(dir.path("nothing"), "abc");
  auto out = sentinel_buffer<Ch>(8);
  EXPECT_EQ(Twin<Ch>::StatusGetString(nullptr, out.data(), 8), 0);
  EXPECT_EQ(Twin<Ch>::StatusGetString(status.get(), nullptr, 8), 0);
  EXPECT_EQ(Twin<Ch>::StatusGetString(status.get(), out.data(), 0), 0);
  EXPECT_EQ(Twin<Ch>::StatusGetString(status.get(), out.data(), -1), 0);
  EXPECT_TRUE(untouched_from(out, 0));
  EXPECT_EQ(Twin<Ch>::StatusSetString(nullptr, in_width<Ch>("x").c_str()), 0);
  EXPECT_EQ(Twin<Ch>::StatusCreateFile(nullptr, dir.at<Ch>().c_str()), nullptr);
  EXPECT_EQ(KZ_StatusEndFile(nullptr, 1), 0);
}

TYPED_TEST(StatusTransfer, ANullDirectoryMeansTheTempVariable) {
  using Ch = TypeParam;
  char temp[260] = {};
  ASSERT_GT(kz::os::GetEnvironmentVariableA("Temp", temp, sizeof temp), 0u);
  const std::string name =
      "kz-status-temp-" + std::to_string(sizeof(Ch)) + "-" + std::to_string(std::rand() % 100000);
  const std::string path = std::string(temp) + "\\" + name;
  HeldStatus first(Twin<Ch>::StatusCreateFile(in_width<Ch>(name).c_str(), nullptr));
  ASSERT_NE(first.get(), nullptr);
  ASSERT_NE(Twin<Ch>::StatusSetString(first.get(), in_width<Ch>("shared").c_str()), 0);
  EXPECT_EQ(read_bytes(path), "shared");
  // A second record for the same arguments finds the file with its value.
  HeldStatus second(Twin<Ch>::StatusCreateFile(in_width<Ch>(name).c_str(), nullptr));
  ASSERT_NE(second.get(), nullptr);
  auto out = sentinel_buffer<Ch>(16);
  EXPECT_NE(Twin<Ch>::StatusGetString(second.get(), out.data(), 16), 0);
  EXPECT_EQ(str(out), in_width<Ch>("shared"));
}

TYPED_TEST(StatusTransfer, PathsOverTheLimitGiveNull) {
  using Ch = TypeParam;
  TempDir dir;
  const auto create = [&](const std::basic_string<Ch>& name, const std::basic_string<Ch>& folder) {
    StatusFileHandle* status = Twin<Ch>::StatusCreateFile(name.c_str(), folder.c_str());
    const bool opened = status != nullptr;
    KZ_StatusEndFile(status, 0);
    return opened;
  };
  const auto folder = dir.at<Ch>();
  // Directory, backslash and name: 259 elements fit, 260 do not.
  const std::size_t room = 259 - dir.path().size() - 1;
  EXPECT_TRUE(create(std::basic_string<Ch>(room, Ch('n')), folder));
  EXPECT_FALSE(create(std::basic_string<Ch>(room + 1, Ch('n')), folder));
  // A directory of 260 elements does not fit its own buffer.
  EXPECT_FALSE(create(in_width<Ch>("x"), std::basic_string<Ch>(260, Ch('d'))));
  if constexpr (sizeof(Ch) == 2) {
    // 130 units are 260 narrow bytes: the wide name is short, its narrow
    // form is not.
    std::string double_bytes;
    for (int i = 0; i < 130; ++i) double_bytes += "\x93\xFA";
    EXPECT_FALSE(create(widen(double_bytes), folder));
    EXPECT_FALSE(create(in_width<Ch>("x"), widen(double_bytes)));
  }
}

TYPED_TEST(StatusTransfer, FailedAllocationsGiveTheFailureResults) {
  using Ch = TypeParam;
  TempDir dir;
  const auto value = in_width<Ch>(kNihongo);
  for_each_allocation_failure([&] {
    StatusFileHandle* status = open_status<Ch>(dir, "scarce");
    if (status == nullptr) return;
    const int32_t set = Twin<Ch>::StatusSetString(status, value.c_str());
    auto out = sentinel_buffer<Ch>(16);
    const int32_t got = Twin<Ch>::StatusGetString(status, out.data(), 16);
    if (set != 0 && got != 0) {
      EXPECT_EQ(str(out), value);
    }
    const int32_t waited = Twin<Ch>::StatusIsStringWait(status, value.c_str(), 0);
    EXPECT_TRUE(waited == 2 || (set != 0 && waited == 0) || (set == 0 && waited == 1)) << waited;
    EXPECT_NE(KZ_StatusEndFile(status, 0), 0);
  });
}

TEST(StatusData, ReadsAndWritesRawBytes) {
  TempDir dir;
  HeldStatus status(open_status<char>(dir, "data"));
  ASSERT_NE(status.get(), nullptr);
  const std::string with_zero("ab\0cd", 5);
  ASSERT_NE(KZ_StatusSetData(status.get(), with_zero.data(), 5), 0);
  EXPECT_EQ(read_bytes(dir.path("data")), with_zero);
  // Text ends at the zero byte; data takes all of it.
  char text[8] = {};
  EXPECT_NE(KZ_StatusGetStringA(status.get(), text, 8), 0);
  EXPECT_STREQ(text, "ab");
  // A read longer than the file writes only what is there.
  auto bytes = sentinel_buffer<char>(8);
  EXPECT_NE(KZ_StatusGetData(status.get(), bytes.data(), 8), 0);
  EXPECT_EQ(std::string(bytes.data(), 5), with_zero);
  EXPECT_TRUE(untouched_from(bytes, 5));
  EXPECT_EQ(KZ_StatusGetData(nullptr, bytes.data(), 8), 0);
  ASSERT_NE(KZ_StatusSetData(status.get(), nullptr, 0), 0);
  EXPECT_EQ(read_bytes(dir.path("data")), "");
}

TEST(StatusEnd, TheLastRecordToEndRemovesTheFile) {
  TempDir dir;
  StatusFileHandle* first = open_status<char>(dir, "end");
  StatusFileHandle* second = open_status<wchar>(dir, "end");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  ASSERT_NE(KZ_StatusSetStringA(first, "kept"), 0);
  EXPECT_NE(KZ_StatusEndFile(first, 0), 0);
  EXPECT_EQ(read_bytes(dir.path("end")), "kept");  // still held by the second
  EXPECT_NE(KZ_StatusEndFile(second, 1), 0);
  EXPECT_FALSE(std::filesystem::exists(native(dir.path("end"))));
}

}  // namespace
