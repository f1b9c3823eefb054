// KZ_SJIS2UNICODE and KZ_UNICODE2SJIS on arbitrary bytes and arbitrary
// 16-bit units, with arbitrary destination sizes. Each destination is a heap
// block of exactly its size, so the sanitizer sees any write past it. The
// results are checked against the tests' plain model of the code page
// (tests/cp932_model.h), and decoding then encoding must give what the
// model encodes the decoded units to.
//
// Input: two size selectors, then the narrow text and the wide text, each
// half of the rest (both stop at their first terminator).
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "cp932_model.h"
#include "fuzz_support.h"
#include "kz_basis.h"

namespace {

using kz::fuzz::check;

using kz::test::Modelled;
using wchar = KZ_WCHAR;

// A destination size from a selector: small sizes, or sizes around needed.
int32_t size_from(std::uint8_t selector, int32_t needed) {
  if (selector < 128) return selector % 48;
  const int32_t size = needed - 2 + selector % 5;
  return size < 0 ? 0 : size;
}

// Converts a terminated text into an exact block of a selected size: the
// result counts the terminator and one more, a failure gives 1, an empty
// text -1, and the block is zero-filled behind what the model says it holds.
// Gives the block when the whole text fitted.
template <class From, class To, class Ch>
std::unique_ptr<To[]> converts(int32_t (*convert)(const From*, To*, int32_t),
                               const std::basic_string<From>& text, const Modelled<Ch>& model,
                               std::uint8_t selector) {
  const auto needed = static_cast<int32_t>(model.text.size()) + 1;
  auto src = std::make_unique<From[]>(text.size() + 1);  // exact, so a read past it shows
  std::copy(text.c_str(), text.c_str() + text.size() + 1, src.get());
  check(convert(src.get(), nullptr, 0) == (text.empty() ? -1 : needed + 1));
  const int32_t size = size_from(selector, needed);
  auto dst = std::make_unique<To[]>(size > 0 ? size : 1);
  for (int32_t i = 0; i < size; ++i) dst[i] = 0x7B;
  const int32_t result = convert(src.get(), size > 0 ? dst.get() : nullptr, size);
  const auto count = static_cast<std::size_t>(size);
  if (text.empty()) {
    check(result == -1 && kz::test::leaves(dst.get(), count, 0, model, To{0}));
    return nullptr;
  }
  check(result == (size >= needed || size == 0 ? needed + 1 : 1));
  check(kz::test::leaves(dst.get(), count, count, model, To{0}));
  return size >= needed ? std::move(dst) : nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::uint8_t decode_selector = data[0], encode_selector = data[1];
  data += 2;
  size -= 2;
  const std::size_t half = size / 2;
  std::string bytes;
  for (std::size_t i = 0; i < half && data[i] != 0; ++i)
    bytes.push_back(static_cast<char>(data[i]));
  std::basic_string<wchar> units;
  for (std::size_t i = half; i + 1 < size && (data[i] | data[i + 1]) != 0; i += 2)
    units.push_back(static_cast<wchar>(data[i] | data[i + 1] << 8));

  const auto decoded = kz::test::model_decode(bytes);
  if (const auto wide = converts(KZ_SJIS2UNICODE, bytes, decoded, decode_selector)) {
    // Back again: the bytes of each decoded unit.
    const auto again = kz::test::model_encode(decoded.text);
    converts(KZ_UNICODE2SJIS, std::basic_string<wchar>(wide.get()), again, 130);  // the size needed
  }
  converts(KZ_UNICODE2SJIS, units,
           kz::test::model_encode(std::u16string(units.begin(), units.end())), encode_selector);
  return 0;
}
