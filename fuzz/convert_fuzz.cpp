// KZ_SJIS2UNICODE and KZ_UNICODE2SJIS on arbitrary bytes and arbitrary
// 16-bit units, with arbitrary destination sizes. Each destination is a heap
// block of exactly its size, so the sanitizer sees any write past it. The
// results are checked against the tests' plain model of the code page
// (tests/cp932_model.h), and decoding then encoding must give what the
// model encodes the decoded units to.
//
// Input: two size selectors, then the narrow text and the wide text, each
// half of the rest (both stop at their first terminator).
#include <memory>

#include "cp932_model.h"
#include "fuzz_support.h"

// Converts a terminated text into an exact block of a selected size (small
// sizes, or sizes around the one needed): the result counts the terminator
// and one more, a failure gives 1, an empty text -1, and the block is
// zero-filled behind what the model says it holds. Gives the block when the
// whole text fitted.
template <class From, class To, class Ch>
std::unique_ptr<To[]> converts(int32_t (*convert)(const From*, To*, int32_t),
                               const std::basic_string<From>& text,
                               const kz::test::Modelled<Ch>& model, std::uint8_t selector) {
  const auto needed = static_cast<int32_t>(model.text.size()) + 1;
  const std::vector<From> src = exact(text);  // so a read past it shows
  check(convert(src.data(), nullptr, 0) == (text.empty() ? -1 : needed + 1));
  const int32_t size = selector < 128 ? selector % 48 : std::max(0, needed - 2 + selector % 5);
  auto dst = std::make_unique<To[]>(size > 0 ? size : 1);
  std::fill(dst.get(), dst.get() + size, To(0x7B));
  const int32_t result = convert(src.data(), size > 0 ? dst.get() : nullptr, size);
  const auto count = static_cast<std::size_t>(size);
  if (text.empty()) {
    check(result == -1 && kz::test::leaves(dst.get(), count, 0, model, To{0}));
    return nullptr;
  }
  check(result == (size >= needed || size == 0 ? needed + 1 : 1));
  check(kz::test::leaves(dst.get(), count, count, model, To{0}));
  return size >= needed ? std::move(dst) : nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string rest(reinterpret_cast<const char*>(data) + 2, size - 2);
  const std::string bytes(rest.substr(0, rest.size() / 2).c_str());
  const auto units = wide_units(rest.substr(rest.size() / 2));
  const auto decoded = kz::test::model_decode(bytes);
  if (const auto wide = converts(KZ_SJIS2UNICODE, bytes, decoded, data[0])) {
    // Back again, with the size needed: the bytes of each decoded unit.
    converts(KZ_UNICODE2SJIS, std::basic_string<wchar>(wide.get()),
             kz::test::model_encode(decoded.text), 130);
  }
  converts(KZ_UNICODE2SJIS, units,
           kz::test::model_encode(std::u16string(units.begin(), units.end())), data[1]);
  return 0;
}
