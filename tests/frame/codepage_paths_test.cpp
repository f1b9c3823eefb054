// Every way the conversion layer can convert code page 932 (the plain one and
// one per vector instruction set this processor runs; under Wine the
// platform's own) against the plain model: random mixes of ASCII, pairs,
// invalid sequences and lone lead bytes at every alignment and every length
// up to four of the widest blocks, ending at a page's edge, into destinations
// of the needed size, one less, one more and of what the length promises.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "cp932_model.h"
#include "platform/platform.h"
#include "support.h"

namespace {

namespace cp = kz::cp932;
using kz::os::WCHAR;
using kz::test::leaves;

constexpr int kBlock = 64;  // the widest block any way reads at once
constexpr int kLongest = 4 * kBlock;

// Random text in runs of one kind, weighted by `mix` (0: mostly ASCII,
// 1: mostly pairs, 2: anything), never a zero element.
struct TextMaker {
  std::mt19937 random{932};
  unsigned pick(unsigned bound) { return static_cast<unsigned>(random() % bound); }
  unsigned kind(int mix, unsigned kinds) {
    return mix == 0   ? (pick(8) == 0 ? 1 + pick(kinds - 1) : 0)
           : mix == 1 ? (pick(4) == 0 ? pick(kinds) : 1)
                      : pick(kinds);
  }
  unsigned run(unsigned kind, int mix) { return 1 + pick(kind == 0 && mix == 0 ? 90 : 5); }
  unsigned lead() { return pick(2) ? 0x81 + pick(0x1F) : 0xE0 + pick(0x1D); }

  std::string narrow(int length, int mix) {
    std::string out;
    while (out.size() < static_cast<std::size_t>(length)) {
      const unsigned k = kind(mix, 5);
      for (unsigned n = run(k, mix); n > 0; --n) {
        const unsigned first = k == 0              ? 1 + pick(0x7F)     // ASCII
                               : k == 4            ? 1 + pick(255)      // anything
                               : k == 3 && pick(2) ? 0xA1 + pick(0x3F)  // single byte
                                                   : lead();            // lead byte
        out += static_cast<char>(first);
        if (k == 1)  // a pair, or a lead byte before a byte that is no trail
          out += static_cast<char>(pick(4) ? 0x40 + pick(0xBD) : 1 + pick(0x3F));
      }
    }
    out.resize(static_cast<std::size_t>(length));
    return out;
  }

  std::u16string wide(int length, int mix) {
    std::u16string out;
    while (out.size() < static_cast<std::size_t>(length)) {
      const unsigned k = kind(mix, 5);
      for (unsigned n = run(k, mix); n > 0; --n)
        out += static_cast<char16_t>(
            k == 0   ? 1 + pick(0x7F)                                           // ASCII
            : k == 1 ? (pick(2) ? 0x4E00 + pick(0x5200) : 0x3041 + pick(0x5E))  // pairs
            : k == 2 ? 0xFF61 + pick(0x3F)                                      // single bytes
            : k == 3 ? (pick(2) ? 0xD800 + pick(0x800) : 0x100 + pick(0x200))   // no form
                     : 1 + pick(0xFFFF));
    }
    out.resize(static_cast<std::size_t>(length));
    return out;
  }
};

int convert(const char* text, WCHAR* out, int size) {
  return kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, text, -1, out, size);
}
int convert(const WCHAR* text, char* out, int size) {
  return kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, text, -1, out, size, nullptr,
                                     nullptr);
}
kz::test::Modelled<char16_t> model(const std::string& text) { return kz::test::model_decode(text); }
kz::test::Modelled<char> model(const std::u16string& text) { return kz::test::model_encode(text); }

// Converts `text` placed at `at` (its terminator included) into destinations
// around the needed size, each prefilled with a sentinel: a size too small
// gives 0 and the whole characters that fit, nothing behind is touched.
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
    std::vector<Out> out(static_cast<std::size_t>(size) + 1, static_cast<Out>(0x7B7B));
    const int result = convert(at, out.data(), size);
    if (result != (size >= needed ? needed : 0) ||
        !leaves(out.data(), out.size(), static_cast<std::size_t>(size), expected,
                static_cast<Out>(0x7B7B)))
      return ::testing::AssertionFailure() << "size " << size << " gave " << result;
  }
  return ::testing::AssertionSuccess();
}

// Runs body once on each way of converting, then returns to the widest.
template <class Body>
void for_each_path(Body body) {
  const int count = kz::os::code_page_path_count();
  ASSERT_GE(count, 1);
  for (int path = 0; path < count && !::testing::Test::HasFatalFailure(); ++path) {
    const char* name = kz::os::use_code_page_path(path);
    ASSERT_NE(name, nullptr);
    body(std::string(name));
  }
  kz::os::use_code_page_path(count - 1);
}

// Texts whose terminator lies before, at or past a page's end (which the
// scans that read ahead must not step over), so at every alignment.
TEST(CodePagePaths, EveryPathConvertsEveryLengthAtEveryAlignmentAsTheModel) {
  constexpr std::size_t page = 4096;
  std::vector<char> bytes(3 * page);
  std::vector<WCHAR> units(3 * page / sizeof(WCHAR));
  const auto edge_of = [&](auto* buffer) {
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    return reinterpret_cast<decltype(buffer)>((address + 2 * page - 1) / page * page);
  };
  for_each_path([&](const std::string& path) {
    TextMaker maker;
    for (int length = 0; length <= kLongest; ++length)
      for (int before = -kBlock / 4; before < kBlock; ++before)
        for (int mix = 0; mix < 3; ++mix) {
          ASSERT_TRUE(converts_as_model(maker.narrow(length, mix),
                                        edge_of(bytes.data()) - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
          if (before >= kBlock / 2) continue;
          ASSERT_TRUE(converts_as_model(maker.wide(length, mix),
                                        edge_of(units.data()) - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
        }
  });
}

// Where a block ends mid-pair: each lead byte with every byte after it, and
// every other byte, at the last byte of a block and the first of the next.
TEST(CodePagePaths, EveryPairAndByteAcrossABlockEdgeDecodesAsTheModel) {
  for_each_path([](const std::string& path) {
    TextMaker maker;
    std::vector<char> buffer(4 * kBlock);
    std::string bytes = maker.narrow(3 * kBlock, 2);
    for (int edge : {kBlock - 1, kBlock, 2 * kBlock - 1, 2 * kBlock}) {
      for (int at = 0; at < edge; ++at) bytes[at] = at + 1 == edge || at % 2 ? 'a' : '\x88';
      for (unsigned first = 1; first < 256; ++first)
        for (unsigned second = 1; second < 256; ++second) {
          if (cp::kLeadIndex[first] == 0 && second != 1) continue;
          bytes[edge] = static_cast<char>(first);
          bytes[edge + 1] = static_cast<char>(second);
          ASSERT_TRUE(converts_as_model(bytes, buffer.data()))
              << path << " bytes " << first << " " << second << " at " << edge;
        }
    }
  });
}

// Texts longer than the piece a converter takes at once: a piece ends behind
// a byte that cannot lead a pair, found by going back over those that can,
// and a text of nothing but lead bytes goes whole.
TEST(CodePagePaths, TextsLongerThanAPieceConvertAsTheModel) {
  for_each_path([](const std::string& path) {
    TextMaker maker;
    std::vector<char> bytes(40000);
    std::vector<WCHAR> units(40000);
    for (int mix = 0; mix < 4; ++mix) {
      const int length = 30001 + mix;
      const std::string narrow = mix < 3 ? maker.narrow(length, mix) : std::string(length, '\x88');
      ASSERT_TRUE(converts_as_model(narrow, bytes.data())) << path << " mix " << mix;
      if (mix == 3) continue;
      ASSERT_TRUE(converts_as_model(maker.wide(length, mix), units.data()))
          << path << " mix " << mix;
    }
  });
}

}  // namespace
