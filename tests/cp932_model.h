// A plain model of code page 932 that the fast conversions are held
// against, by the unit tests and the conversion fuzz target alike: it walks
// the generated tables one character at a time. A lead byte takes the byte
// behind it unless the text ends there; each unit is encoded on its own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/cp932.h"

namespace kz::test {

// A converted text without its terminator, and where each character ends.
template <class Ch>
struct Modelled {
  std::basic_string<Ch> text;
  std::vector<std::size_t> ends;
};

inline Modelled<char16_t> model_decode(const std::string& bytes) {
  Modelled<char16_t> out;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    const bool pair = cp932::kLeadIndex[byte] != 0 && i + 1 < bytes.size();
    out.text += pair ? cp932::decode_pair(byte, static_cast<unsigned char>(bytes[++i]))
                     : cp932::decode_single(byte);
    out.ends.push_back(out.text.size());
  }
  return out;
}

inline Modelled<char> model_encode(const std::u16string& units) {
  Modelled<char> out;
  for (char16_t unit : units) {
    const unsigned bytes = cp932::encode_unit(unit);
    if (bytes > 0xFF) out.text += static_cast<char>(bytes >> 8);
    out.text += static_cast<char>(bytes & 0xFF);
    out.ends.push_back(out.text.size());
  }
  return out;
}

// Whether the `count` elements of out hold what a conversion into a
// destination of `size` elements leaves: the text and its terminator when
// they fit, else the whole characters that fit; `rest` everywhere behind.
template <class Out, class Ch>
bool leaves(const Out* out, std::size_t count, std::size_t size, const Modelled<Ch>& model,
            Out rest) {
  std::size_t kept = model.text.size() + 1;
  if (size < kept) {
    kept = 0;
    for (std::size_t end : model.ends)
      if (end <= size) kept = end;
  }
  for (std::size_t i = 0; i < count; ++i) {
    const Out expected = i >= kept               ? rest
                         : i < model.text.size() ? static_cast<Out>(model.text[i])
                                                 : Out{0};
    if (out[i] != expected) return false;
  }
  return true;
}

}  // namespace kz::test
