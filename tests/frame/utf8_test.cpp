// The one UTF-8 converter against a plain model: every short sequence around
// the bounds, random text whole and cut, and every scalar there and back.
#include "platform/utf8.h"

#include <bit>
#include <random>

#include "support.h"

namespace kz::test {
namespace {

using std::u16string;

u16string units_of(char32_t code) {
  if (code < 0x10000) return u16string(1, static_cast<char16_t>(code));
  return {static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)),
          static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF))};
}

// A plain model of reading UTF-8: at each position, the longest prefix of
// the bytes ahead that some well-formed sequence begins with is either a
// whole sequence (its code point) or a maximal subpart (one U+FFFD). Whether
// a prefix can still be completed is decided from the range of values its
// completions cover, not from a table of bytes.
u16string model_decode(const std::string& bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const char32_t lowest[5] = {0, 0, 0x80, 0x800, 0x10000};
  u16string out;
  for (std::size_t i = 0; i < bytes.size();) {
    const int ones = std::countl_one(at(i));
    const int length = ones == 0 ? 1 : ones == 1 || ones > 4 ? 0 : ones;
    int good = 0;  // bytes of the longest completable prefix
    char32_t code = 0;
    for (int k = 1; k <= length && i + k <= bytes.size(); ++k) {
      if (k > 1 && (at(i + k - 1) & 0xC0) != 0x80) break;
      char32_t prefix = length == 1 ? at(i) : at(i) & (0x7F >> length);
      for (int m = 1; m < k; ++m) prefix = (prefix << 6) | (at(i + m) & 0x3F);
      const int open_bits = 6 * (length - k);
      const char32_t low = std::max<char32_t>(prefix << open_bits, lowest[length]);
      const char32_t high =
          std::min<char32_t>((prefix << open_bits) | ((1u << open_bits) - 1), 0x10FFFF);
      if (low > high || (low >= 0xD800 && high <= 0xDFFF)) break;
      good = k;
      code = prefix;
    }
    out += length > 0 && good == length ? units_of(code) : u"\uFFFD";
    i += good == 0 ? 1 : good;
  }
  return out;
}

// The units with each surrogate half that has no partner made U+FFFD.
u16string well_formed(u16string units) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    if ((units[i] & 0xFC00) == 0xD800 && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00)
      ++i;
    else if ((units[i] & 0xF800) == 0xD800)
      units[i] = 0xFFFD;
  }
  return units;
}

u16string decode(const std::string& bytes) { return utf8::to_utf16<char16_t>(bytes); }

// Converts in two calls cut at `cut`, carrying what the first leaves unread.
template <class Out, class In, class Step>
Out convert_in_two(const In& in, std::size_t cut, Step step) {
  Out out(3 * in.size(), 0);
  const auto first = step(in.data(), cut, out.data(), false);
  const auto second =
      step(in.data() + first.read, in.size() - first.read, out.data() + first.written, true);
  out.resize(first.written + second.written);
  return out;
}

// Every sequence of up to four bytes over values at and around each bound
// of the lead and continuation ranges reads as the model reads it; the model
// itself gives the maximal subparts of truncated, overlong, surrogate and
// too-high sequences and the highest scalars of each length.
TEST(Utf8, ShortSequencesReadAsTheModelReadsThem) {
  const std::string invalid(
      "a\xF1\x80\x80\xE1\x80\xC2\x80\xC0\x80\xE0\x80\xAF\xED\xA0\x80\xF4\x90"
      "\x80\x80\xF8\x88\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF\xF0\x9F\x98"
      "x");
  EXPECT_EQ(model_decode(invalid),
            u"a\uFFFD\uFFFD\u0080" + u16string(14, u'\uFFFD') + u"\uD7FF\uE000\U0010FFFF\uFFFDx");
  const unsigned char values[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF,
                                  0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE,
                                  0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  // Each n from 1 names one text of up to four values, as its digits in
  // bijective base b.
  const std::size_t b = std::size(values);
  for (std::size_t n = 1; n <= b * (1 + b * (1 + b * (1 + b))); ++n) {
    std::string bytes;
    for (std::size_t k = n; k > 0; k = (k - 1) / b) bytes += static_cast<char>(values[(k - 1) % b]);
    ASSERT_EQ(decode(bytes), model_decode(bytes)) << ::testing::PrintToString(bytes);
  }
}

// Random bytes, mostly ASCII so that the eight-byte runs are taken and left
// at every offset, with whole sequences among them, read whole and cut at
// every position; random units, lone halves among them, written and read back
// whole and cut at every position; every scalar written and read back.
TEST(Utf8, RandomTextReadsAndWritesAsTheModelWholeAndCut) {
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    std::string bytes;
    u16string units;
    for (int i = 0; i < 96; ++i) {
      const unsigned r = random() % 16;
      bytes += r == 0 ? std::string("\xF0\x9F\x98\x80")
                      : std::string(1, r < 10 ? 'a' + r : 0x80 + random() % 0x80);
      units += static_cast<char16_t>(r < 8    ? 'a' + r
                                     : r < 12 ? 0xD800 + random() % 0x800
                                              : random());
    }
    const u16string expected = model_decode(bytes);
    const std::string written = utf8::from_utf16<char16_t>(units);
    ASSERT_EQ(decode(bytes), expected) << ::testing::PrintToString(bytes);
    ASSERT_EQ(model_decode(written), well_formed(units));
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
      ASSERT_EQ(convert_in_two<u16string>(bytes, cut, utf8::decode<char16_t>), expected) << cut;
    for (std::size_t cut = 0; cut <= units.size(); ++cut)
      ASSERT_EQ(convert_in_two<std::string>(units, cut, utf8::encode<char16_t>), written) << cut;
  }
  for (char32_t code = 1; code <= 0x10FFFF; code += code < 0x20000 ? 1 : 97) {
    const u16string units = units_of(code < 0xD800 || code > 0xDFFF ? code : 0xFFFD);
    ASSERT_EQ(model_decode(utf8::from_utf16<char16_t>(units)), units) << unsigned(code);
  }
}

}  // namespace
}  // namespace kz::test
