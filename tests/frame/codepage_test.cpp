// Code page 932 against the plain model over the tables generated from the
// platform's own answers (tools/gen-cp932), through every way the conversion
// layer converts: the plain one and one per vector instruction set this
// processor runs. Under Wine the one way is the real MultiByteToWideChar,
// WideCharToMultiByte and _ismbclegal, which proves that the checked-in
// data matches its source and that the model's rules (what a lead byte
// before a byte that is no trail gives inside a longer text, what a
// destination too small holds) are the platform's.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "cp932_model.h"
#include "platform/platform.h"
#include "reliability/guard.h"
#include "support.h"

namespace {

namespace cp = kz::cp932;
namespace os = kz::os;
using namespace kz::test;
using os::WCHAR;

constexpr int kBlock = 64;  // the widest block any way reads at once

int convert(const char* text, WCHAR* out, int size) {
  return os::MultiByteToWideChar(os::kAnsiCodePage, 0, text, -1, out, size);
}
int convert(const WCHAR* text, char* out, int size) {
  return os::WideCharToMultiByte(os::kAnsiCodePage, 0, text, -1, out, size, nullptr, nullptr);
}
Modelled<char16_t> model(const std::string& text) { return model_decode(text); }
Modelled<char> model(const std::u16string& text) { return model_encode(text); }

// Converts `text`, placed at `at` with its terminator, into destinations of
// the needed size, one less, one more and what the length promises, each
// short of a sentinel element: a size too small gives 0 and the whole
// characters that fit, and nothing behind is touched.
template <class Ch, class Text>
::testing::AssertionResult converts_as_model(const Text& text, Ch* at) {
  using Out = std::conditional_t<sizeof(Ch) == 1, WCHAR, char>;
  std::copy(text.begin(), text.end(), at);
  at[text.size()] = 0;
  const auto expected = model(text);
  const int needed = static_cast<int>(expected.text.size()) + 1;
  if (convert(at, static_cast<Out*>(nullptr), 0) != needed)
    return ::testing::AssertionFailure() << "needed size";
  const int ample = static_cast<int>(text.size() * (sizeof(Ch) == 1 ? 1 : 2)) + 1;
  for (int size : {needed - 1, needed, needed + 1, ample}) {
    if (size <= 0) continue;
    std::vector<Out> out(static_cast<std::size_t>(size) + 1, kSentinel<Out>);
    const int result = convert(at, out.data(), size);
    if (result != (size >= needed ? needed : 0) ||
        !leaves(out.data(), out.size(), static_cast<std::size_t>(size), expected, kSentinel<Out>))
      return ::testing::AssertionFailure() << "size " << size << " gave " << result;
  }
  return ::testing::AssertionSuccess();
}

// Runs body once on each way of converting, then returns to the widest.
template <class Body>
void for_each_path(Body body) {
  const int count = os::code_page_path_count();
  ASSERT_GE(count, 1);
  for (int path = 0; path < count && !::testing::Test::HasFatalFailure(); ++path) {
    const char* name = os::use_code_page_path(path);
    ASSERT_NE(name, nullptr);
    body(std::string(name));
  }
  os::use_code_page_path(count - 1);
}

// Random text in runs of one kind, weighted by `mix` (0: mostly ASCII,
// 1: mostly pairs, 2: anything), never a zero element. The kinds: ASCII,
// pairs (a lead byte now and then before a byte that is no trail), single
// bytes (narrow) or units of no form (wide), lone lead bytes or single-byte
// katakana, anything.
struct TextMaker {
  std::mt19937 random{932};
  unsigned pick(unsigned bound) { return static_cast<unsigned>(random() % bound); }
  unsigned from(unsigned low, unsigned count) { return low + pick(count); }

  template <class Ch>
  std::basic_string<Ch> make(int length, int mix) {
    constexpr bool narrow = sizeof(Ch) == 1;
    std::basic_string<Ch> out;
    while (out.size() < static_cast<std::size_t>(length)) {
      const unsigned k = mix == 0              ? (pick(8) == 0 ? 1 + pick(4) : 0)
                         : mix == 1 && pick(4) ? 1
                                               : pick(5);
      for (unsigned n = 1 + pick(k == 0 && mix == 0 ? 90 : 5); n > 0; --n) {
        const unsigned lead = pick(2) ? from(0x81, 0x1F) : from(0xE0, 0x1D);
        const unsigned kinds[5][2] = {{from(1, 0x7F), from(1, 0x7F)},
                                      {lead, pick(2) ? from(0x4E00, 0x5200) : from(0x3041, 0x5E)},
                                      {lead, pick(2) ? from(0xD800, 0x800) : from(0x100, 0x200)},
                                      {pick(2) ? from(0xA1, 0x3F) : lead, from(0xFF61, 0x3F)},
                                      {from(1, 255), from(1, 0xFFFF)}};
        out += static_cast<Ch>(kinds[k][narrow ? 0 : 1]);
        if (narrow && k == 1) out += static_cast<Ch>(pick(4) ? from(0x40, 0xBD) : from(1, 0x3F));
      }
    }
    out.resize(static_cast<std::size_t>(length));
    return out;
  }
};

// Every byte alone, every lead byte with every byte behind it, every unit;
// the runtime's pair test agrees with the tables (under Wine: the tables
// agree with the platform).
TEST(CodePage932, EveryCharacterConvertsAsTheTablesSay) {
  for (unsigned value = 0; value < 0x10000; ++value)
    ASSERT_EQ(os::_ismbclegal(value) != 0,
              cp::kLegalLead[value >> 8] != 0 && cp::kLegalTrail[value & 0xFF] != 0)
        << std::hex << value;
  char bytes[3];
  WCHAR unit[2];
  for_each_path([&](const std::string& path) {
    for (unsigned first = 1; first < 256; ++first)
      for (unsigned second = 0; second < (cp::kLeadIndex[first] ? 256u : 1u); ++second)
        ASSERT_TRUE(converts_as_model(
            second ? std::string{char(first), char(second)} : std::string(1, char(first)), bytes))
            << path << std::hex << " " << first << " " << second;
    for (unsigned code = 1; code < 0x10000; ++code)
      ASSERT_TRUE(converts_as_model(std::u16string(1, char16_t(code)), unit)) << path << code;
  });
}

// Texts whose terminator lies before or at the end of a page behind which
// no access is allowed (which the scans that read ahead must not step over)
// or past the end of the page before it, so at every alignment, and every
// length up to four of the widest blocks; the texts of pairs put lead bytes
// and their trails on both sides of every block edge. Texts longer than the
// piece a converter takes at once: a piece ends behind a byte that cannot
// lead a pair, found by going back over those that can, and a text of
// nothing but lead bytes goes whole.
TEST(CodePage932, EveryPathConvertsEveryLengthAtEveryAlignmentAsTheModel) {
  constexpr int page = 4096;
  const GuardedPages narrow_pages = map_guarded(2 * page), wide_pages = map_guarded(2 * page);
  for_each_path([&](const std::string& path) {
    TextMaker maker;
    for (int length = 0; length <= 4 * kBlock; ++length)
      for (int before = -kBlock / 4; before < kBlock; ++before)
        for (int mix = 0; mix < 3; ++mix) {
          const int edge = before < 0 ? page : 0;  // bytes before the protected page
          ASSERT_TRUE(converts_as_model(maker.make<char>(length, mix),
                                        narrow_pages.guard - edge - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
          if (before >= kBlock / 2) continue;
          ASSERT_TRUE(converts_as_model(
              maker.make<char16_t>(length, mix),
              reinterpret_cast<WCHAR*>(wide_pages.guard - edge) - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
        }
    std::vector<char> long_bytes(40000);
    std::vector<WCHAR> long_units(40000);
    for (int mix = 0; mix < 4; ++mix) {
      const std::string narrow =
          mix < 3 ? maker.make<char>(30001 + mix, mix) : std::string(30004, '\x88');
      ASSERT_TRUE(converts_as_model(narrow, long_bytes.data())) << path << " mix " << mix;
      ASSERT_TRUE(mix == 3 ||
                  converts_as_model(maker.make<char16_t>(30001 + mix, mix), long_units.data()))
          << path << " mix " << mix;
    }
  });
  unmap_guarded(narrow_pages);
  unmap_guarded(wide_pages);
}

}  // namespace
