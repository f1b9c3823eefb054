// Every way the conversion layer can convert code page 932 (the plain one and
// one per vector instruction set this processor runs; under Wine the
// platform's own) against a plain model of the tables: random mixes of ASCII,
// pairs, invalid sequences and lone lead bytes at every alignment and every
// length up to three of the widest blocks behind the start that short calls
// convert on their own, destinations of the needed size, one less, one more
// and of what the text's length promises, and texts that end at a page's edge.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "platform/cp932.h"
#include "platform/platform.h"
#include "support.h"

namespace {

namespace cp = kz::cp932;
using kz::os::WCHAR;

constexpr int kBlock = 64;  // the widest block any way reads at once
constexpr int kLongest = 4 * kBlock;

// The model: a lead byte takes the next byte unless that is the terminator;
// each unit is encoded on its own. Both give the terminator as well.
std::vector<WCHAR> model_decode(const std::string& bytes) {
  std::vector<WCHAR> out;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (cp::kLeadIndex[byte] != 0 && i + 1 < bytes.size())
      out.push_back(cp::decode_pair(byte, static_cast<unsigned char>(bytes[++i])));
    else
      out.push_back(cp::decode_single(byte));
  }
  out.push_back(0);
  return out;
}

// The bytes of the units and their terminator; `ends` gets where each
// character's bytes end.
std::string model_encode(const std::vector<WCHAR>& units, std::vector<std::size_t>& ends) {
  std::string out;
  ends.clear();
  for (WCHAR unit : units) {
    const unsigned bytes = cp::encode_unit(static_cast<char16_t>(unit));
    if (bytes > 0xFF) out.push_back(static_cast<char>(bytes >> 8));
    out.push_back(static_cast<char>(bytes & 0xFF));
    ends.push_back(out.size());
  }
  out.push_back('\0');
  ends.push_back(out.size());
  return out;
}

// Random text in runs of one kind, weighted by `mix` (0: mostly ASCII with
// single characters, 1: mostly pairs, 2: anything), never a zero byte.
struct TextMaker {
  std::mt19937 random{932};
  unsigned pick(unsigned bound) { return static_cast<unsigned>(random() % bound); }
  unsigned lead() { return pick(2) ? 0x81 + pick(0x1F) : 0xE0 + pick(0x1D); }

  std::string narrow(std::size_t length, int mix) {
    std::string out;
    while (out.size() < length) {
      const unsigned kind = mix == 0   ? (pick(8) == 0 ? 1 + pick(5) : 0)
                            : mix == 1 ? (pick(4) == 0 ? pick(6) : 1)
                                       : pick(6);
      const unsigned run = kind == 0 ? 1 + pick(mix == 0 ? 90 : 6) : 1 + pick(4);
      for (unsigned k = 0; k < run; ++k) switch (kind) {
          case 0:  // ASCII
            out.push_back(static_cast<char>(1 + pick(0x7F)));
            break;
          case 1:  // a pair
            out.push_back(static_cast<char>(lead()));
            out.push_back(static_cast<char>(pick(2) ? 0x40 + pick(0x3F) : 0x80 + pick(0x7D)));
            break;
          case 2:  // a lead byte before a byte that is no trail
            out.push_back(static_cast<char>(lead()));
            out.push_back(static_cast<char>(pick(2) ? 1 + pick(0x3F) : 0x7F + pick(2) * 0x7E));
            break;
          case 3:  // lead bytes alone, in runs
            out.push_back(static_cast<char>(lead()));
            break;
          case 4:  // single bytes outside ASCII
            out.push_back(static_cast<char>(pick(3) ? 0xA1 + pick(0x3F) : 0x80 + pick(2) * 0x20));
            break;
          default:  // anything
            out.push_back(static_cast<char>(1 + pick(255)));
            break;
        }
    }
    out.resize(length);
    return out;
  }

  std::vector<WCHAR> wide(std::size_t length, int mix) {
    std::vector<WCHAR> out;
    while (out.size() < length) {
      const unsigned kind = mix == 0   ? (pick(8) == 0 ? 1 + pick(4) : 0)
                            : mix == 1 ? (pick(4) == 0 ? pick(5) : 1)
                                       : pick(5);
      const unsigned run = kind == 0 ? 1 + pick(mix == 0 ? 90 : 6) : 1 + pick(4);
      for (unsigned k = 0; k < run; ++k)
        out.push_back(static_cast<WCHAR>(
            kind == 0   ? 1 + pick(0x7F)                                           // ASCII
            : kind == 1 ? (pick(2) ? 0x4E00 + pick(0x5200) : 0x3041 + pick(0x5E))  // pairs
            : kind == 2 ? 0xFF61 + pick(0x3F)                                      // single bytes
            : kind == 3 ? (pick(2) ? 0xD800 + pick(0x800) : 0x100 + pick(0x200))   // no form
                        : 1 + pick(0xFFFF)));
    }
    out.resize(length);
    return out;
  }
};

// Decodes `bytes` from `at` (its terminator included) with destinations
// around the needed size, each prefilled with a sentinel: what fits is the
// model's, nothing behind it is touched, and a size too small gives 0.
::testing::AssertionResult decodes_as_model(const std::string& bytes, char* at,
                                            bool around_needed = true) {
  std::copy(bytes.begin(), bytes.end(), at);
  at[bytes.size()] = 0;
  const auto expected = model_decode(bytes);
  const int needed = static_cast<int>(expected.size());
  if (kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, at, -1, nullptr, 0) != needed)
    return ::testing::AssertionFailure() << "needed size";
  std::vector<WCHAR> out, want;
  // The needed size, around it, and what the text's length promises.
  const int ample = static_cast<int>(bytes.size()) + 1;
  for (int size : {needed - 1, needed, needed + 1, ample}) {
    if (size <= 0 || (!around_needed && size != needed && size != ample)) continue;
    out.assign(static_cast<std::size_t>(size) + 1, WCHAR{0x7B7B});
    want = out;
    std::copy_n(expected.begin(), std::min(size, needed), want.begin());
    const int result =
        kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, at, -1, out.data(), size);
    if (result != (size >= needed ? needed : 0) || out != want)
      return ::testing::AssertionFailure() << "size " << size << " gave " << result;
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult encodes_as_model(const std::vector<WCHAR>& units, WCHAR* at) {
  std::copy(units.begin(), units.end(), at);
  at[units.size()] = 0;
  std::vector<std::size_t> ends;
  const std::string all = model_encode(units, ends);
  const int needed = static_cast<int>(all.size());
  if (kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, at, -1, nullptr, 0, nullptr, nullptr) !=
      needed)
    return ::testing::AssertionFailure() << "needed size";
  std::vector<char> out, want;
  const int ample = 2 * static_cast<int>(units.size()) + 1;
  for (int size : {needed - 2, needed - 1, needed, needed + 1, ample}) {
    if (size <= 0) continue;
    out.assign(static_cast<std::size_t>(size) + 1, char{0x7B});
    want = out;
    // A destination too small holds the whole characters that fit.
    std::size_t fits = 0;
    for (std::size_t end : ends) {
      if (end > static_cast<std::size_t>(size)) break;
      fits = end;
    }
    std::copy_n(all.begin(), fits, want.begin());
    const int result = kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, at, -1, out.data(),
                                                   size, nullptr, nullptr);
    if (result != (size >= needed ? needed : 0) || out != want)
      return ::testing::AssertionFailure() << "size " << size << " gave " << result;
  }
  return ::testing::AssertionSuccess();
}

// Runs body once on each way of converting, then returns to the widest.
template <class Body>
void for_each_path(Body body) {
  const int count = kz::os::code_page_path_count();
  ASSERT_GE(count, 1);
  for (int path = 0; path < count; ++path) {
    const char* name = kz::os::use_code_page_path(path);
    ASSERT_NE(name, nullptr);
    body(std::string(name));
    if (::testing::Test::HasFatalFailure()) break;
  }
  kz::os::use_code_page_path(count - 1);
}

TEST(CodePagePaths, EveryPathDecodesEveryLengthAtEveryAlignmentAsTheModel) {
  for_each_path([](const std::string& path) {
    TextMaker maker;
    std::vector<char> buffer(kLongest + kBlock + 1);
    for (int length = 0; length <= kLongest; ++length)
      for (int align = 0; align < kBlock; ++align)
        for (int mix = 0; mix < 3; ++mix)
          ASSERT_TRUE(decodes_as_model(maker.narrow(static_cast<std::size_t>(length), mix),
                                       buffer.data() + align))
              << path << " length " << length << " at " << align << " mix " << mix;
  });
}

TEST(CodePagePaths, EveryPathEncodesEveryLengthAtEveryAlignmentAsTheModel) {
  for_each_path([](const std::string& path) {
    TextMaker maker;
    std::vector<WCHAR> buffer(kLongest + kBlock + 1);
    for (int length = 0; length <= kLongest; ++length)
      for (int align = 0; align < kBlock / 2; ++align)
        for (int mix = 0; mix < 3; ++mix)
          ASSERT_TRUE(encodes_as_model(maker.wide(static_cast<std::size_t>(length), mix),
                                       buffer.data() + align))
              << path << " length " << length << " at " << align << " mix " << mix;
  });
}

// Where a block ends mid-pair: each lead byte with every byte after it, and
// every other byte, starting at the last byte of a block and at the first of
// the next, after ASCII and after pairs.
TEST(CodePagePaths, EveryPairAndByteAcrossABlockEdgeDecodesAsTheModel) {
  for_each_path([](const std::string& path) {
    TextMaker maker;
    std::vector<char> buffer(4 * kBlock);
    for (int mix = 0; mix < 2; ++mix) {
      const std::string text = maker.narrow(3 * kBlock, mix);
      for (int edge : {kBlock - 1, kBlock, 2 * kBlock - 1, 2 * kBlock}) {
        // Whole characters before the edge, so that the pair starts there.
        std::string bytes = text;
        for (int at = 0; at < edge; ++at)
          bytes[at] = mix == 0 || at + 1 == edge ? 'a' : at % 2 == 0 ? '\x88' : '\x9F';
        for (unsigned first = 1; first < 256; ++first)
          for (unsigned second = 1; second < 256; ++second) {
            if (cp::kLeadIndex[first] == 0 && second != 1) continue;
            bytes[edge] = static_cast<char>(first);
            bytes[edge + 1] = static_cast<char>(second);
            ASSERT_TRUE(decodes_as_model(bytes, buffer.data(), false))
                << path << " bytes " << first << " " << second << " at " << edge;
          }
      }
    }
  });
}

// Short texts whose terminator lies at or just before a page's end, which
// the scans that read ahead must not step over, and texts that start there.
TEST(CodePagePaths, TextsAtThePageEdgeConvertAsTheModel) {
  constexpr std::size_t page = 4096;
  std::vector<char> bytes_buffer(3 * page);
  std::vector<WCHAR> units_buffer(3 * page / sizeof(WCHAR));
  const auto edge_of = [&](auto* buffer) {
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    return reinterpret_cast<decltype(buffer)>((address + 2 * page - 1) / page * page);
  };
  char* narrow_edge = edge_of(bytes_buffer.data());
  WCHAR* wide_edge = edge_of(units_buffer.data());
  for_each_path([&](const std::string& path) {
    TextMaker maker;
    for (int length = 0; length <= 40; ++length)
      for (int before = -20; before <= 40; ++before)
        for (int mix = 0; mix < 3; ++mix) {
          ASSERT_TRUE(decodes_as_model(maker.narrow(static_cast<std::size_t>(length), mix),
                                       narrow_edge - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
          ASSERT_TRUE(encodes_as_model(maker.wide(static_cast<std::size_t>(length), mix),
                                       wide_edge - before - length - 1))
              << path << " length " << length << " ending " << before << " before the edge";
        }
  });
}

}  // namespace
