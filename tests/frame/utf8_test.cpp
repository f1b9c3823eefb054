#include "frame/utf8.h"

#include <random>

#include "support.h"

namespace kz::test {
namespace {

using std::u16string;

// A plain model of reading UTF-8: at each position, the longest prefix of
// the bytes ahead that some well-formed sequence begins with is either a
// whole sequence (its code point) or a maximal subpart (one U+FFFD). Whether
// a prefix can still be completed is decided from the range of values its
// completions cover, not from a table of bytes.
u16string model_decode(const std::string& bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const auto length_of = [](unsigned char lead) {
    return lead < 0x80             ? 1
           : (lead & 0xE0) == 0xC0 ? 2
           : (lead & 0xF0) == 0xE0 ? 3
           : (lead & 0xF8) == 0xF0 ? 4
                                   : 0;
  };
  const char32_t lowest[5] = {0, 0, 0x80, 0x800, 0x10000};
  u16string out;
  for (std::size_t i = 0; i < bytes.size();) {
    const int length = length_of(at(i));
    std::size_t good = 0;  // bytes of the longest completable prefix
    char32_t code = 0;
    for (int k = 1; length > 0 && k <= length && i + k <= bytes.size(); ++k) {
      if (k > 1 && (at(i + k - 1) & 0xC0) != 0x80) break;
      char32_t prefix = length == 1 ? at(i) : at(i) & (0x7F >> length);
      for (int m = 1; m < k; ++m) prefix = (prefix << 6) | (at(i + m) & 0x3F);
      const int open_bits = 6 * (length - k);
      const char32_t low = prefix << open_bits, high = low | ((1u << open_bits) - 1);
      const char32_t valid_low = std::max(low, lowest[length]);
      const char32_t valid_high = std::min<char32_t>(high, 0x10FFFF);
      const bool all_surrogates = valid_low >= 0xD800 && valid_high <= 0xDFFF;
      if (valid_low > valid_high || all_surrogates) break;
      good = k;
      code = prefix;
    }
    if (length > 0 && good == static_cast<std::size_t>(length)) {
      if (code >= 0x10000) {
        out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
        out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
      } else {
        out += static_cast<char16_t>(code);
      }
    } else {
      out += u'\uFFFD';
    }
    i += good == 0 ? 1 : good;
  }
  return out;
}

u16string decode(const std::string& bytes) { return utf8::to_utf16<char16_t>(bytes); }

// Decodes in two calls cut at `cut`, carrying what the first leaves unread.
u16string decode_in_two(const std::string& bytes, std::size_t cut) {
  u16string out(bytes.size(), 0);
  const auto first = utf8::decode(bytes.data(), cut, out.data(), false);
  const std::string rest = bytes.substr(first.read);
  const auto second = utf8::decode(rest.data(), rest.size(), out.data() + first.written, true);
  out.resize(first.written + second.written);
  return out;
}

struct InvalidCase {
  const char* name;
  std::string bytes;
  u16string units;
};

// One row per class of invalid input: each would be read differently by a
// reader that got that class wrong.
const InvalidCase kInvalid[] = {
    {"bad lead keeps the next byte", "ab\xC3(cd", u"ab\uFFFD(cd"},
    {"lone continuation byte", "\x80", u"\uFFFD"},
    {"overlong NUL", std::string("\xC0\x80", 2), u"\uFFFD\uFFFD"},
    {"overlong three-byte", "\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
    {"overlong four-byte", "\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"encoded surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
    {"past U+10FFFF", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"five-byte lead", "\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"truncated four-byte then ASCII", "\xF0\x9F\x98x", u"\uFFFDx"},
    {"truncated at the end", "a\xE3\x81", u"a\uFFFD"},
    {"the standard's example",
     "a\xF1\x80\x80\xE1\x80\xC2"
     "b\x80"
     "c\x80\xBF"
     "d",
     u"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
    {"highest scalars", "\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF", u"\uD7FF\uE000\U0010FFFF"},
};

TEST(Utf8, EachInvalidClassBecomesOneReplacementPerMaximalSubpart) {
  for (const auto& row : kInvalid) {
    EXPECT_EQ(decode(row.bytes), row.units) << row.name;
    EXPECT_EQ(model_decode(row.bytes), row.units) << row.name << " (model)";
  }
}

// Every sequence of up to four bytes over values at and around each bound
// of the lead and continuation ranges reads as the model reads it.
TEST(Utf8, ShortSequencesReadAsTheModelReadsThem) {
  const unsigned char values[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF,
                                  0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE,
                                  0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  std::string bytes;
  std::size_t mismatches = 0;
  const auto visit = [&](auto& self, int depth) -> void {
    if (!bytes.empty() && decode(bytes) != model_decode(bytes) && ++mismatches < 5)
      ADD_FAILURE() << "bytes " << ::testing::PrintToString(bytes);
    if (depth == 4) return;
    for (unsigned char value : values) {
      bytes.push_back(static_cast<char>(value));
      self(self, depth + 1);
      bytes.pop_back();
    }
  };
  visit(visit, 0);
  EXPECT_EQ(mismatches, 0u);
}

// Long random input, mostly ASCII so that the eight-byte runs are taken and
// left at every offset, read whole and cut at every position.
TEST(Utf8, RandomTextReadsAsTheModelReadsItWholeAndCut) {
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    std::string bytes;
    for (int i = 0; i < 96; ++i) {
      const unsigned r = random() % 16;
      bytes += static_cast<char>(r < 10 ? 'a' + r : 0x80 + random() % 0x80);
    }
    const u16string expected = model_decode(bytes);
    ASSERT_EQ(decode(bytes), expected) << ::testing::PrintToString(bytes);
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
      ASSERT_EQ(decode_in_two(bytes, cut), expected) << "cut at " << cut;
  }
}

TEST(Utf8, FourByteSequenceCutAnywhereIsCarriedWhole) {
  const std::string bytes = "x\xF0\x9F\x98\x80y";
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
    EXPECT_EQ(decode_in_two(bytes, cut), u"x\U0001F600y") << "cut at " << cut;
}

TEST(Utf8, WritingGivesWellFormedTextForEveryUnit) {
  // Every scalar value survives the way there and back.
  for (char32_t code = 1; code <= 0x10FFFF; code += code < 0x20000 ? 1 : 97) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    u16string units;
    if (code >= 0x10000) {
      units += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      units += static_cast<char16_t>(code);
    }
    const std::string bytes = utf8::from_utf16<char16_t>(units);
    ASSERT_EQ(model_decode(bytes), units) << std::hex << static_cast<unsigned long>(code);
  }
  // A surrogate half without its partner is written as U+FFFD.
  const struct {
    u16string units;
    std::string bytes;
  } halves[] = {
      {u"\xD800", "\xEF\xBF\xBD"},
      {u"\xDC00"
       "a",
       "\xEF\xBF\xBD"
       "a"},
      {u"\xDBFF\xDBFF\xDC00", "\xEF\xBF\xBD\xF4\x8F\xB0\x80"},
      {u"\xDFFF\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& row : halves)
    EXPECT_EQ(utf8::from_utf16<char16_t>(row.units), row.bytes)
        << ::testing::PrintToString(row.bytes);
}

TEST(Utf8, HighSurrogateAtTheEndWaitsForItsPartner) {
  const u16string units = u"a\U0001F600";
  char bytes[16];
  const auto first = utf8::encode(units.data(), 2, bytes, false);
  EXPECT_EQ(first.read, 1u);
  const auto second = utf8::encode(units.data() + 1, 2, bytes + first.written, true);
  EXPECT_EQ(std::string(bytes, first.written + second.written), "a\xF0\x9F\x98\x80");
  EXPECT_EQ(second.replaced, 0u);
}

}  // namespace
}  // namespace kz::test
