// KZ_SJIS2UNICODE and KZ_UNICODE2SJIS on arbitrary bytes and arbitrary
// 16-bit units, with arbitrary destination sizes. Each destination is a heap
// block of exactly its size, so the sanitizer sees any write past it. The
// results are checked against a plain walk over the code page tables, and
// decoding then encoding must give back every character that the tables
// say round-trips.
//
// Input: two size selectors, then the narrow text and the wide text, each
// half of the rest (both stop at their first terminator).
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "kz_basis.h"
#include "platform/cp932.h"

namespace {

namespace cp = kz::cp932;
using wchar = KZ_WCHAR;

void check(bool condition) {
  if (!condition) std::abort();
}

// A destination size from a selector: small sizes, or sizes around needed.
int32_t size_from(std::uint8_t selector, int32_t needed) {
  if (selector < 128) return selector % 48;
  const int32_t size = needed - 2 + selector % 5;
  return size < 0 ? 0 : size;
}

// A character of narrow text: where it starts, how many bytes, its unit.
struct Character {
  std::size_t at, bytes;
  char16_t unit;
};

std::vector<Character> characters(const std::vector<char>& text) {
  std::vector<Character> out;
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (cp::kLeadIndex[byte] != 0 && i + 1 < text.size()) {
      out.push_back({i, 2, cp::decode_pair(byte, static_cast<unsigned char>(text[i + 1]))});
      i += 2;
    } else {
      out.push_back({i, 1, cp::decode_single(byte)});
      i += 1;
    }
  }
  return out;
}

std::vector<char> encoded(const std::vector<wchar>& units) {
  std::vector<char> out;
  for (wchar unit : units) {
    const unsigned bytes = cp::encode_unit(static_cast<char16_t>(unit));
    if (bytes > 0xFF) out.push_back(static_cast<char>(bytes >> 8));
    out.push_back(static_cast<char>(bytes & 0xFF));
  }
  return out;
}

// After a call: the result tells success or failure, what was written is
// the expected text (as much as fits, no half character on failure) and
// the rest of the buffer is zero.
template <class Ch>
void check_written(int32_t result, const Ch* dst, int32_t size, const std::vector<Ch>& expected,
                   const std::vector<std::size_t>& boundaries) {
  const auto needed = static_cast<int32_t>(expected.size()) + 1;  // with the terminator
  if (size >= needed) {
    check(result == needed + 1);
    for (int32_t i = 0; i + 1 < needed; ++i) check(dst[i] == expected[i]);
    for (int32_t i = needed - 1; i < size; ++i) check(dst[i] == 0);
    return;
  }
  check(result == (size == 0 ? needed + 1 : 1));
  // The whole characters that fit; zeros from the fill behind them.
  std::size_t fits = 0;
  for (std::size_t end : boundaries)
    if (end <= static_cast<std::size_t>(size)) fits = end;
  for (std::size_t i = 0; i < fits; ++i) check(dst[i] == expected[i]);
  for (auto i = static_cast<int32_t>(fits); i < size; ++i) check(dst[i] == 0);
}

void fuzz_decode(const std::vector<char>& text, std::uint8_t selector) {
  auto src = std::make_unique<char[]>(text.size() + 1);
  std::copy(text.begin(), text.end(), src.get());
  src[text.size()] = 0;
  const auto chars = characters(text);
  std::vector<wchar> expected;
  std::vector<std::size_t> boundaries;
  for (const auto& c : chars) {
    expected.push_back(static_cast<wchar>(c.unit));
    boundaries.push_back(expected.size());
  }
  const int32_t needed_result = KZ_SJIS2UNICODE(src.get(), nullptr, 0);
  if (text.empty()) {
    check(needed_result == -1);
  } else {
    check(needed_result == static_cast<int32_t>(expected.size()) + 2);
  }
  const int32_t size = size_from(selector, static_cast<int32_t>(expected.size()) + 1);
  auto dst = std::make_unique<wchar[]>(size > 0 ? size : 1);
  for (int32_t i = 0; i < size; ++i) dst[i] = 0x7B;
  const int32_t result = KZ_SJIS2UNICODE(src.get(), size > 0 ? dst.get() : nullptr, size);
  if (text.empty()) {
    check(result == -1);
    for (int32_t i = 0; i < size; ++i) check(dst[i] == 0);
    return;
  }
  check_written(result, dst.get(), size, expected, boundaries);
  if (size < static_cast<int32_t>(expected.size()) + 1) return;  // no whole text to go back from

  // Back again: a character whose bytes round-trip by the tables comes
  // back as its own bytes; any other as the bytes of its unit.
  const int32_t bytes_needed = KZ_UNICODE2SJIS(dst.get(), nullptr, 0);
  check(bytes_needed >= 3);
  auto back = std::make_unique<char[]>(bytes_needed - 1);
  check(KZ_UNICODE2SJIS(dst.get(), back.get(), bytes_needed - 1) == bytes_needed);
  std::size_t at = 0;
  for (const auto& c : chars) {
    const std::vector<char> original(text.begin() + c.at, text.begin() + c.at + c.bytes);
    const auto again = encoded({static_cast<wchar>(c.unit)});
    const auto& comes_back = again == original ? original : again;
    for (char byte : comes_back) {
      check(at < static_cast<std::size_t>(bytes_needed - 2) && back[at] == byte);
      ++at;
    }
  }
  check(at == static_cast<std::size_t>(bytes_needed - 2) && back[at] == 0);
}

void fuzz_encode(const std::vector<wchar>& units, std::uint8_t selector) {
  auto src = std::make_unique<wchar[]>(units.size() + 1);
  std::copy(units.begin(), units.end(), src.get());
  src[units.size()] = 0;
  const auto expected = encoded(units);
  std::vector<std::size_t> boundaries;
  std::size_t end = 0;
  for (wchar unit : units) {
    end += cp::encode_unit(static_cast<char16_t>(unit)) > 0xFF ? 2 : 1;
    boundaries.push_back(end);
  }
  const int32_t needed_result = KZ_UNICODE2SJIS(src.get(), nullptr, 0);
  check(needed_result == (units.empty() ? -1 : static_cast<int32_t>(expected.size()) + 2));
  const int32_t size = size_from(selector, static_cast<int32_t>(expected.size()) + 1);
  auto dst = std::make_unique<char[]>(size > 0 ? size : 1);
  for (int32_t i = 0; i < size; ++i) dst[i] = 0x7B;
  const int32_t result = KZ_UNICODE2SJIS(src.get(), size > 0 ? dst.get() : nullptr, size);
  if (units.empty()) {
    check(result == -1);
    for (int32_t i = 0; i < size; ++i) check(dst[i] == 0);
    return;
  }
  check_written(result, dst.get(), size, expected, boundaries);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::uint8_t decode_selector = data[0], encode_selector = data[1];
  data += 2;
  size -= 2;
  const std::size_t half = size / 2;
  std::vector<char> text;
  for (std::size_t i = 0; i < half && data[i] != 0; ++i) text.push_back(static_cast<char>(data[i]));
  std::vector<wchar> units;
  for (std::size_t i = half; i + 1 < size; i += 2) {
    const auto unit = static_cast<wchar>(data[i] | data[i + 1] << 8);
    if (unit == 0) break;
    units.push_back(unit);
  }
  fuzz_decode(text, decode_selector);
  fuzz_encode(units, encode_selector);
  return 0;
}
