// Code page 932 against the tables generated from the platform's own answers
// (tools/gen-cp932). The same test runs in both builds: on Linux it checks
// the conversion layer that works from the tables; under Wine it checks the
// tables against the real MultiByteToWideChar, WideCharToMultiByte and
// _ismbclegal, which proves that the checked-in data matches its source.
#include <random>
#include <type_traits>
#include <vector>

#include "cp932_model.h"
#include "platform/platform.h"
#include "support.h"

namespace {

namespace cp = kz::cp932;
namespace os = kz::os;
using namespace kz::test;
using os::WCHAR;

#include "platform/posix/cp932_vectors.inc"

// The platform's conversions of a terminated text into `size` elements.
int convert(const std::string& bytes, WCHAR* out, int size) {
  return os::MultiByteToWideChar(os::kAnsiCodePage, 0, bytes.c_str(), -1, out, size);
}
int convert(const std::u16string& units, char* out, int size) {
  const std::basic_string<WCHAR> text(units.begin(), units.end());
  return os::WideCharToMultiByte(os::kAnsiCodePage, 0, text.c_str(), -1, out, size, nullptr,
                                 nullptr);
}

// Converts a text into destinations of the needed size and the sizes around
// it, each one element short of a sentinel buffer, and holds the results
// against the model: the size needed, 0 for too small a destination, and
// what each leaves.
template <class From>
::testing::AssertionResult converts_as_modelled(const From& text, std::vector<int> around) {
  constexpr bool decoding = std::is_same_v<From, std::string>;
  using Out = std::conditional_t<decoding, WCHAR, char>;
  const auto model = [&] {
    if constexpr (decoding)
      return model_decode(text);
    else
      return model_encode(text);
  }();
  const int needed = static_cast<int>(model.text.size()) + 1;
  if (convert(text, static_cast<Out*>(nullptr), 0) != needed)
    return ::testing::AssertionFailure() << "another size needed than " << needed;
  for (int step : around) {
    const int size = needed + step;
    if (size <= 0) continue;
    std::vector<Out> out(size + 1, kSentinel<Out>);
    if (convert(text, out.data(), size) != (step >= 0 ? needed : 0) ||
        !leaves(out.data(), out.size(), size, model, kSentinel<Out>))
      return ::testing::AssertionFailure() << "destination of " << size << " elements";
  }
  return ::testing::AssertionSuccess();
}

// Every byte alone, every lead byte with every byte behind it, every unit.
TEST(CodePage932, EveryCharacterConvertsAsTheTablesSay) {
  int leads = 0;
  for (unsigned first = 1; first < 256; ++first) {
    ASSERT_TRUE(converts_as_modelled(std::string(1, static_cast<char>(first)), {0, 1})) << first;
    if (cp::kLeadIndex[first] == 0) continue;
    ++leads;
    for (unsigned second = 1; second < 256; ++second)
      ASSERT_TRUE(converts_as_modelled(
          std::string{static_cast<char>(first), static_cast<char>(second)}, {0, 1}))
          << std::hex << first << " " << second;
  }
  EXPECT_EQ(leads, 60);
  for (unsigned unit = 1; unit < 0x10000; ++unit)
    ASSERT_TRUE(converts_as_modelled(std::u16string(1, static_cast<char16_t>(unit)), {0, 1}))
        << std::hex << unit;
}

// The documented lead and trail ranges, and the runtime's pair test.
TEST(CodePage932, PairTestOfTheRuntimeMatchesTheDocumentedRanges) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    const bool lead = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    const bool trail = (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFC);
    EXPECT_EQ(cp::kLegalLead[byte] != 0, lead) << std::hex << byte;
    EXPECT_EQ(cp::kLeadIndex[byte] != 0, lead) << std::hex << byte;
    EXPECT_EQ(cp::kLegalTrail[byte] != 0, trail) << std::hex << byte;
  }
  int differences = 0;
  for (unsigned value = 0; value < 0x10000; ++value) {
    const bool expected = cp::kLegalLead[value >> 8] != 0 && cp::kLegalTrail[value & 0xFF] != 0;
    if ((os::_ismbclegal(value) != 0) != expected && ++differences < 20)
      ADD_FAILURE() << std::hex << value;
  }
}

// Replays records of random texts with what the platform answered for them,
// sizes around the needed one included: how a lead byte swallows an invalid
// trail inside a longer text, what a too-small destination holds, and what
// stays untouched.
template <class In, class Out, std::size_t N>
int replay(const std::uint16_t (&vectors)[N]) {
  int records = 0;
  for (std::size_t at = 0; at < N; ++records) {
    std::basic_string<In> text;
    for (std::size_t length = vectors[at++]; length > 0; --length)
      text.push_back(static_cast<In>(vectors[at++]));
    const int size = vectors[at++], expected = vectors[at++];
    std::vector<Out> out(size + 1, kSentinel<Out>);
    EXPECT_EQ(convert(text, size ? out.data() : nullptr, size), expected) << "record " << records;
    for (int i = 0; i < size; ++i)
      EXPECT_EQ(static_cast<std::make_unsigned_t<Out>>(out[i]), vectors[at++])
          << "record " << records << " at " << i;
    EXPECT_EQ(out[size], kSentinel<Out>) << "record " << records;
  }
  return records;
}

TEST(CodePage932, RandomTextsConvertAsThePlatformDidWhenTheyWereRecorded) {
  EXPECT_EQ((replay<char, WCHAR>(kDecodeVectors)), 1500);
  EXPECT_EQ((replay<char16_t, char>(kEncodeVectors)), 1500);
}

// Long texts of runs (ASCII, lead bytes, double-byte text, anything) with
// destinations of the needed size, one less and one more: the block-wise
// paths against the model, and under Wine the model against the platform.
TEST(CodePage932, LongMixedTextsMatchThePlainModel) {
  std::mt19937 random(1932);
  auto pick = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  for (int round = 0; round < 600; ++round) {
    std::string bytes;
    const unsigned length = pick(400);
    while (bytes.size() < length) {
      const unsigned kind = pick(4);
      for (unsigned k = 1 + pick(80); k > 0; --k) {
        const unsigned byte = kind == 0   ? 1 + pick(0x7F)
                              : kind == 1 ? 0x81 + pick(0x1F)  // lead bytes only
                              : kind == 2 ? (k % 2 == 0 ? 0x88 + pick(0x10) : 0x40 + pick(0xBD))
                                          : 1 + pick(255);
        bytes.push_back(static_cast<char>(byte));
      }
    }
    ASSERT_TRUE(converts_as_modelled(bytes, {-1, 0, 1})) << round;
    std::u16string units;
    while (units.size() < length) {
      const unsigned kind = pick(3);
      for (unsigned k = 1 + pick(80); k > 0; --k)
        units.push_back(static_cast<char16_t>(kind == 0   ? 1 + pick(0x7F)
                                              : kind == 1 ? 0x3000 + pick(0x7000)
                                                          : 1 + pick(0xFFFF)));
    }
    ASSERT_TRUE(converts_as_modelled(units, {-2, -1, 0, 1})) << round;
  }
}

}  // namespace
