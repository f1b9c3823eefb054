// Status files in one process: the file holds exactly the last value, the
// getters' size bound, where a record's file lies, its limits, and the end
// that leaves the file to the last holder.
#include <filesystem>

#include "platform/platform.h"
#include "status/status_test_support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(StatusTransfer);

const std::string kNihongo = "\x93\xFA\x96\x7B\x8C\xEA";  // three double-byte characters

// Set then get: each value is shorter than the one before, so a remnant
// would show in the file or in what the getter gives.
TYPED_TEST(StatusTransfer, TheFileHoldsExactlyTheLastValueInNarrowBytes) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "value"));
  ASSERT_NE(status.get(), nullptr);
  EXPECT_EQ(read_bytes(dir.path("value")), "");  // a new file holds the empty value
  for (const std::string& value :
       {kNihongo + "abcd", std::string("ab"), std::string(""), kNihongo}) {
    EXPECT_NE(Twin<Ch>::StatusSetString(status.get(), in_width<Ch>(value).c_str()), 0);
    EXPECT_EQ(read_bytes(dir.path("value")), value);
    auto out = sentinel_buffer<Ch>(64);
    EXPECT_NE(Twin<Ch>::StatusGetString(status.get(), out.data(), 64), 0);
    EXPECT_EQ(str(out), in_width<Ch>(value));
  }
}

// The last element read is forced to 0, whether the file goes on or not;
// the wide twin reads size bytes and converts them into size units.
TYPED_TEST(StatusTransfer, GettersDeliverAtMostSizeMinusOneBytes) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "bound"));
  ASSERT_NE(status.get(), nullptr);
  const std::pair<std::string, int32_t> rows[] = {
      {"abc", 5}, {"abc", 4}, {"abc", 3}, {"abc", 1}, {kNihongo, 3}};
  for (const auto& [file, size] : rows) {
    write_bytes(dir.path("bound"), file);
    auto out = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 2);
    EXPECT_NE(Twin<Ch>::StatusGetString(status.get(), out.data(), size), 0) << size;
    const std::size_t kept = std::min(file.size(), static_cast<std::size_t>(size - 1));
    EXPECT_EQ(str(out), in_width<Ch>(file.substr(0, kept))) << file << " " << size;
    EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(size)));
  }
  auto out = sentinel_buffer<Ch>(8);
  for (int32_t size : {0, -1})
    EXPECT_EQ(Twin<Ch>::StatusGetString(status.get(), out.data(), size), 0);
  EXPECT_EQ(Twin<Ch>::StatusGetString(nullptr, out.data(), 8), 0);
  EXPECT_EQ(Twin<Ch>::StatusGetString(status.get(), nullptr, 8), 0);
  EXPECT_TRUE(untouched_from(out, 0));
  EXPECT_EQ(Twin<Ch>::StatusSetString(nullptr, in_width<Ch>("x").c_str()), 0);
  EXPECT_EQ(Twin<Ch>::StatusCreateFile(nullptr, dir.at<Ch>().c_str()), nullptr);
  EXPECT_EQ(KZ_StatusEndFile(nullptr, 1), 0);
}

// A second record for the same name finds the file with its value; the
// first to end leaves the file to it, the last removes it.
TYPED_TEST(StatusTransfer, ANullDirectoryMeansTheTempVariable) {
  using Ch = TypeParam;
  char temp[260] = {};
  ASSERT_GT(kz::os::GetEnvironmentVariableA("Temp", temp, sizeof temp), 0u);
  const std::string name =
      "kz-status-temp-" + std::to_string(sizeof(Ch)) + "-" + std::to_string(std::rand() % 100000);
  const std::string path = std::string(temp) + "\\" + name;
  StatusFileHandle* first = Twin<Ch>::StatusCreateFile(in_width<Ch>(name).c_str(), nullptr);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(Twin<Ch>::StatusSetString(first, in_width<Ch>("shared").c_str()), 0);
  StatusFileHandle* second = Twin<Ch>::StatusCreateFile(in_width<Ch>(name).c_str(), nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(KZ_StatusEndFile(first, 0), 0);
  EXPECT_EQ(read_bytes(path), "shared");
  auto out = sentinel_buffer<Ch>(16);
  EXPECT_NE(Twin<Ch>::StatusGetString(second, out.data(), 16), 0);
  EXPECT_EQ(str(out), in_width<Ch>("shared"));
  EXPECT_NE(KZ_StatusEndFile(second, 1), 0);
  EXPECT_FALSE(std::filesystem::exists(native(path)));
}

TYPED_TEST(StatusTransfer, PathsOverTheLimitGiveNull) {
  using Ch = TypeParam;
  TempDir dir;
  const auto opens = [&](const std::basic_string<Ch>& name, const std::basic_string<Ch>& folder) {
    StatusFileHandle* status = Twin<Ch>::StatusCreateFile(name.c_str(), folder.c_str());
    KZ_StatusEndFile(status, 0);
    return status != nullptr;
  };
  const auto folder = dir.at<Ch>();
  // Directory, backslash and name: 259 elements fit, 260 do not.
  const std::size_t room = 259 - dir.path().size() - 1;
  EXPECT_TRUE(opens(std::basic_string<Ch>(room, Ch('n')), folder));
  EXPECT_FALSE(opens(std::basic_string<Ch>(room + 1, Ch('n')), folder));
  // A directory of 260 elements does not fit its own buffer.
  EXPECT_FALSE(opens(in_width<Ch>("x"), std::basic_string<Ch>(260, Ch('d'))));
  if constexpr (sizeof(Ch) == 2) {
    // 130 units are 260 narrow bytes: the wide name is short, its narrow
    // form is not.
    std::string double_bytes;
    for (int i = 0; i < 130; ++i) double_bytes += "\x93\xFA";
    EXPECT_FALSE(opens(widen(double_bytes), folder));
    EXPECT_FALSE(opens(in_width<Ch>("x"), widen(double_bytes)));
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
    if (set != 0 && Twin<Ch>::StatusGetString(status, out.data(), 16) != 0) {
      EXPECT_EQ(str(out), value);
    }
    const int32_t waited = Twin<Ch>::StatusIsStringWait(status, value.c_str(), 0);
    EXPECT_TRUE(waited == 2 || (set != 0 && waited == 0) || (set == 0 && waited == 1)) << waited;
    EXPECT_NE(KZ_StatusEndFile(status, 0), 0);
  });
}

// Text ends at a zero byte; data takes all of it, and a read longer than
// the file writes only what is there.
TEST(StatusData, ReadsAndWritesRawBytes) {
  TempDir dir;
  HeldStatus status(open_status<char>(dir, "data"));
  ASSERT_NE(status.get(), nullptr);
  const std::string with_zero("ab\0cd", 5);
  ASSERT_NE(KZ_StatusSetData(status.get(), with_zero.data(), 5), 0);
  EXPECT_EQ(read_bytes(dir.path("data")), with_zero);
  char text[8] = {};
  EXPECT_NE(KZ_StatusGetStringA(status.get(), text, 8), 0);
  EXPECT_STREQ(text, "ab");
  auto bytes = sentinel_buffer<char>(8);
  EXPECT_NE(KZ_StatusGetData(status.get(), bytes.data(), 8), 0);
  EXPECT_EQ(std::string(bytes.data(), 5), with_zero);
  EXPECT_TRUE(untouched_from(bytes, 5));
  EXPECT_EQ(KZ_StatusGetData(nullptr, bytes.data(), 8), 0);
  ASSERT_NE(KZ_StatusSetData(status.get(), nullptr, 0), 0);
  EXPECT_EQ(read_bytes(dir.path("data")), "");
}

}  // namespace
