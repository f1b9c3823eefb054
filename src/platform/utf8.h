// UTF-8 and 16-bit text, for the POSIX layer's native strings (paths, the
// environment, the command line), the kzb tool and the tests; the library's
// own text is never UTF-8. Header-only, so that programs which link only the
// shared library, whose exports are the KZ_ functions alone, can use it too.
//
// Reading: invalid input becomes U+FFFD once per maximal subpart (the
// longest prefix of a well-formed sequence), so a bad byte never swallows a
// valid byte after it; overlong forms, surrogates and code points above
// U+10FFFF are invalid. Writing: a surrogate half without its partner becomes
// U+FFFD, so the output is always well-formed UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kz::utf8 {

inline constexpr char32_t kReplacement = 0xFFFD;

// The bounds of the first continuation byte after a lead byte, and the
// number of continuation bytes it takes; {0, 0, 0} for a byte that starts
// no sequence (a continuation byte, C0, C1, F5 to FF).
struct LeadRule {
  unsigned char low, high, count;
};

constexpr LeadRule lead_rule(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {0x80, 0xBF, 1};
  if (lead == 0xE0) return {0xA0, 0xBF, 2};  // below A0 is overlong
  if (lead == 0xED) return {0x80, 0x9F, 2};  // A0 and up are surrogates
  if (lead >= 0xE1 && lead <= 0xEF) return {0x80, 0xBF, 2};
  if (lead == 0xF0) return {0x90, 0xBF, 3};  // below 90 is overlong
  if (lead == 0xF4) return {0x80, 0x8F, 3};  // 90 and up is past U+10FFFF
  if (lead >= 0xF1 && lead <= 0xF3) return {0x80, 0xBF, 3};
  return {0, 0, 0};
}

// What one call of `decode` did.
struct Decoded {
  std::size_t read = 0;      // bytes consumed; less than the input when a cut sequence waits
  std::size_t written = 0;   // 16-bit units written
  std::size_t replaced = 0;  // U+FFFD written for invalid input
  std::size_t first_bad = SIZE_MAX;  // offset of the first invalid sequence
  std::size_t bad_length = 0;        // and its length in bytes
};

// Decodes src[0, size) into dst, which must hold `size` units (no byte gives
// more than one unit). Unless `final`, a sequence cut at the end of src that
// could still become valid is left unread for the caller to carry over to
// its next call; with `final` it becomes U+FFFD.
template <class Unit>
Decoded decode(const char* src, std::size_t size, Unit* dst, bool final) {
  const auto* in = reinterpret_cast<const unsigned char*>(src);
  Decoded result;
  std::size_t i = 0, out = 0;
  const auto replace = [&](std::size_t at, std::size_t length) {
    if (result.first_bad == SIZE_MAX) result.first_bad = at, result.bad_length = length;
    ++result.replaced;
    dst[out++] = static_cast<Unit>(kReplacement);
  };
  while (i < size) {
    const unsigned char lead = in[i];
    if (lead < 0x80) {
      // A run of ASCII, eight bytes at a time.
      for (std::uint64_t word; i + 8 <= size; i += 8, out += 8) {
        std::memcpy(&word, in + i, 8);
        if (word & 0x8080808080808080u) break;
        for (int k = 0; k < 8; ++k) dst[out + k] = static_cast<Unit>(in[i + k]);
      }
      while (i < size && in[i] < 0x80) dst[out++] = static_cast<Unit>(in[i++]);
      continue;
    }
    // Well-formed two- and three-byte sequences, most of Japanese text,
    // without the general rule: E0 and ED have narrower second bytes.
    if (i + 3 <= size && lead >= 0xE1 && lead <= 0xEF && lead != 0xED &&
        (in[i + 1] & 0xC0) == 0x80 && (in[i + 2] & 0xC0) == 0x80) {
      // and the ones that follow it, without going round the loop.
      do {
        dst[out++] = static_cast<Unit>(((in[i] & 0x0F) << 12) | ((in[i + 1] & 0x3F) << 6) |
                                       (in[i + 2] & 0x3F));
        i += 3;
      } while (i + 3 <= size && in[i] >= 0xE1 && in[i] <= 0xEF && in[i] != 0xED &&
               (in[i + 1] & 0xC0) == 0x80 && (in[i + 2] & 0xC0) == 0x80);
      continue;
    }
    if (i + 2 <= size && lead >= 0xC2 && lead <= 0xDF && (in[i + 1] & 0xC0) == 0x80) {
      dst[out++] = static_cast<Unit>(((lead & 0x1F) << 6) | (in[i + 1] & 0x3F));
      i += 2;
      continue;
    }
    const LeadRule rule = lead_rule(lead);
    if (rule.count == 0) {
      replace(i, 1);
      ++i;
      continue;
    }
    char32_t code = lead & (0x3F >> rule.count);
    std::size_t taken = 1;  // lead and the continuation bytes that fit so far
    while (taken <= rule.count && i + taken < size) {
      const unsigned char next = in[i + taken];
      const bool fits =
          taken == 1 ? next >= rule.low && next <= rule.high : next >= 0x80 && next <= 0xBF;
      if (!fits) break;
      code = (code << 6) | (next & 0x3F);
      ++taken;
    }
    if (taken <= rule.count) {
      // A prefix of a valid sequence: cut by the end, or broken by the next byte.
      if (i + taken == size && !final) break;
      replace(i, taken);
      i += taken;
      continue;
    }
    if (code >= 0x10000) {
      code -= 0x10000;
      dst[out++] = static_cast<Unit>(0xD800 + (code >> 10));
      dst[out++] = static_cast<Unit>(0xDC00 + (code & 0x3FF));
    } else {
      dst[out++] = static_cast<Unit>(code);
    }
    i += taken;
  }
  result.read = i;
  result.written = out;
  return result;
}

// What one call of `encode` did.
struct Encoded {
  std::size_t read = 0;      // units consumed; less than the input when a high surrogate waits
  std::size_t written = 0;   // bytes written
  std::size_t replaced = 0;  // lone surrogates written as U+FFFD
};

// Encodes src[0, size) into dst, which must hold 3 * size bytes. Unless
// `final`, a high surrogate at the end of src is left unread for the caller
// to carry over, since its partner may come in the next call.
template <class Unit>
Encoded encode(const Unit* src, std::size_t size, char* dst, bool final) {
  Encoded result;
  std::size_t i = 0, out = 0;
  const auto put = [&](unsigned value) { dst[out++] = static_cast<char>(value); };
  while (i < size) {
    // Runs of ASCII, four units at a time.
    while (i + 4 <= size &&
           ((static_cast<char16_t>(src[i]) | static_cast<char16_t>(src[i + 1]) |
             static_cast<char16_t>(src[i + 2]) | static_cast<char16_t>(src[i + 3])) &
            0xFF80) == 0) {
      for (int k = 0; k < 4; ++k) dst[out + k] = static_cast<char>(src[i + k]);
      i += 4, out += 4;
    }
    if (i == size) break;
    char32_t code = static_cast<char16_t>(src[i]);
    if (code < 0x80) {
      put(code);
      ++i;
      continue;
    }
    std::size_t taken = 1;
    if (code >= 0xD800 && code <= 0xDFFF) {
      const bool high = code <= 0xDBFF;
      if (high && i + 1 == size && !final) break;
      const char32_t next = i + 1 < size ? static_cast<char16_t>(src[i + 1]) : 0;
      if (high && next >= 0xDC00 && next <= 0xDFFF) {
        code = 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00);
        taken = 2;
      } else {
        code = kReplacement;
        ++result.replaced;
      }
    }
    if (code < 0x800) {
      put(0xC0 | (code >> 6));
    } else if (code < 0x10000) {
      put(0xE0 | (code >> 12));
      put(0x80 | ((code >> 6) & 0x3F));
    } else {
      put(0xF0 | (code >> 18));
      put(0x80 | ((code >> 12) & 0x3F));
      put(0x80 | ((code >> 6) & 0x3F));
    }
    put(0x80 | (code & 0x3F));
    i += taken;
  }
  result.read = i;
  result.written = out;
  return result;
}

// Whole texts at once.
template <class Unit>
std::basic_string<Unit> to_utf16(std::string_view text) {
  std::basic_string<Unit> out(text.size(), Unit{});
  out.resize(decode(text.data(), text.size(), out.data(), true).written);
  return out;
}

template <class Unit>
std::string from_utf16(std::basic_string_view<Unit> text) {
  std::string out(3 * text.size(), '\0');
  out.resize(encode(text.data(), text.size(), out.data(), true).written);
  return out;
}

}  // namespace kz::utf8
