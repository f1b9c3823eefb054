// Status files in one process: the file holds exactly the last value, the
// getters' size bound, where a record's file lies, and the end
// that leaves the file to the last holder.
#include "status/status_test_support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(StatusTransfer);

const std::string kNihongo = "\x93\xFA\x96\x7B\x8C\xEA";  // three double-byte characters

// Each value is shorter than the one before, so a remnant would show in the
// file or in what a second record of the name reads. Text ends at a zero
// byte; data takes all of it, and a read longer than the file writes only
// what is there. The first record finds its directory in TEMP; the first to
// end leaves the file, the last removes it.
TYPED_TEST(StatusTransfer, TheFileHoldsExactlyTheLastValueInNarrowBytes) {
  using Ch = TypeParam;
  TempDir dir;
  const ScopedVariable temp("TEMP", dir.path().c_str());
  StatusFileHandle* first = Twin<Ch>::StatusCreateFile(in<Ch>("value").c_str(), nullptr);
  StatusFileHandle* second =
      Twin<Ch>::StatusCreateFile(in<Ch>("value").c_str(), dir.at<Ch>().c_str());
  ASSERT_TRUE(first && second);
  EXPECT_EQ(read_bytes(dir.path("value")), "");  // a new file holds the empty value
  const std::string with_zero("ab\0cd", 5);
  ASSERT_NE(KZ_StatusSetData(first, with_zero.data(), 5), 0);
  EXPECT_EQ(read_bytes(dir.path("value")), with_zero);
  auto text = sentinel_buffer<Ch>(8);
  EXPECT_NE(Twin<Ch>::StatusGetString(second, text.data(), 8), 0);
  EXPECT_EQ(str(text), in<Ch>("ab"));
  auto bytes = sentinel_buffer<char>(8);
  EXPECT_NE(KZ_StatusGetData(second, bytes.data(), 8), 0);
  EXPECT_EQ(std::string(bytes.data(), 5), with_zero);
  EXPECT_TRUE(untouched_from(bytes, 5));
  EXPECT_EQ(KZ_StatusGetData(nullptr, bytes.data(), 8), 0);
  ASSERT_NE(KZ_StatusSetData(first, nullptr, 0), 0);
  EXPECT_EQ(read_bytes(dir.path("value")), "");
  for (const std::string& value :
       {kNihongo + "abcd", std::string("ab"), std::string(""), kNihongo}) {
    EXPECT_NE(Twin<Ch>::StatusSetString(first, in<Ch>(value).c_str()), 0);
    EXPECT_EQ(read_bytes(dir.path("value")), value);
    auto out = sentinel_buffer<Ch>(64);
    EXPECT_NE(Twin<Ch>::StatusGetString(second, out.data(), 64), 0);
    EXPECT_EQ(str(out), in<Ch>(value));
  }
  EXPECT_NE(KZ_StatusEndFile(first, 0), 0);
  EXPECT_EQ(read_bytes(dir.path("value")), kNihongo);
  EXPECT_NE(KZ_StatusEndFile(second, 1), 0);
  EXPECT_FALSE(std::filesystem::exists(native(dir.path("value"))));
}

// The last element read is forced to 0, whether the file goes on or not;
// the wide twin reads size bytes and converts them into size units. Null
// arguments and sizes below 1 give 0 and touch nothing.
TYPED_TEST(StatusTransfer, GettersDeliverAtMostSizeMinusOneBytes) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  TempDir dir;
  HeldStatus status(Twin<Ch>::StatusCreateFile(in<Ch>("bound").c_str(), dir.at<Ch>().c_str()));
  ASSERT_NE(status, nullptr);
  const std::pair<std::string, int32_t> rows[] = {{"abc", 5}, {"abc", 3}, {kNihongo, 3}};
  for (const auto& [file, size] : rows) {
    write_bytes(dir.path("bound"), file);
    auto out = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 2);
    EXPECT_NE(T::StatusGetString(status.get(), out.data(), size), 0) << size;
    EXPECT_EQ(str(out), in<Ch>(file.substr(0, static_cast<std::size_t>(size - 1)))) << size;
    EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(size)));
  }
  auto out = sentinel_buffer<Ch>(8);
  EXPECT_EQ(joined(T::StatusGetString(status.get(), out.data(), 0),
                   T::StatusGetString(status.get(), out.data(), -1),
                   T::StatusGetString(nullptr, out.data(), 8),
                   T::StatusGetString(status.get(), nullptr, 8),
                   T::StatusSetString(nullptr, in<Ch>("x").c_str()),
                   T::StatusCreateFile(nullptr, dir.at<Ch>().c_str()) != nullptr,
                   KZ_StatusEndFile(nullptr, 1)),
            joined(0, 0, 0, 0, 0, 0, 0));
  EXPECT_TRUE(untouched_from(out, 0));
}

}  // namespace
