// Fuzz target of the date and time readers and the text range checks, both
// twins, on arbitrary text with arbitrary delimiters. Layout of an input:
// byte 0 the date delimiter, byte 1 the separator, then up to three texts
// separated by newlines (start, end, target). Every text lies in a heap
// block of exactly its size, so a read past its terminator shows.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "kz_basis.h"

namespace {

using wchar = KZ_WCHAR;

template <class Ch>
std::unique_ptr<Ch[]> exact_copy(const std::basic_string<Ch>& text) {
  std::unique_ptr<Ch[]> block(new Ch[text.size() + 1]);
  std::memcpy(block.get(), text.data(), text.size() * sizeof(Ch));
  block[text.size()] = 0;
  return block;
}

void check(bool condition) {
  if (!condition) std::abort();
}

// A moment read from text is written back and read again: the same moment.
void read_one(const char* narrow, const wchar* wide, char delimiter, wchar wide_delimiter,
              char separator, wchar wide_separator) {
  DateRecord date;
  TimeRecord time;
  DateTimeRecord date_time;
  FILETIME moment;
  KZ_StringDateA(narrow, &date, delimiter);
  KZ_StringDateW(wide, &date, wide_delimiter);
  KZ_StringTimeA(narrow, &time);
  KZ_StringTimeW(wide, &time);
  KZ_StringDateTimeA(narrow, &date_time, delimiter, separator);
  KZ_StringDateTimeW(wide, &date_time, wide_delimiter, wide_separator);
  KZ_StringFileTimeA(narrow, &moment, delimiter, separator);
  if (KZ_StringFileTimeW(wide, &moment, wide_delimiter, wide_separator) != 0) {
    wchar written[42];
    check(KZ_FileTimeStringW(&moment, written, 1, '-', 'T') != 0);
    FILETIME again;
    check(KZ_StringFileTimeW(written, &again, '-', 'T') != 0);
    check(again.dwLowDateTime == moment.dwLowDateTime &&
          again.dwHighDateTime == moment.dwHighDateTime);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const char delimiter = static_cast<char>(data[0]);
  const char separator = static_cast<char>(data[1]);
  std::vector<std::string> texts(3);
  std::size_t which = 0;
  for (std::size_t i = 2; i < size; ++i) {
    if (data[i] == '\n' && which < 2) {
      ++which;
      continue;
    }
    texts[which].push_back(static_cast<char>(data[i]));
  }

  // Wide texts two ways: each byte widened (dates in ASCII stay dates) and
  // pairs of bytes as 16-bit units.
  std::vector<std::basic_string<wchar>> widened(3), paired(3);
  for (std::size_t k = 0; k < 3; ++k) {
    for (unsigned char byte : texts[k]) widened[k].push_back(byte);
    for (std::size_t i = 0; i + 1 < texts[k].size(); i += 2)
      paired[k].push_back(static_cast<wchar>(static_cast<unsigned char>(texts[k][i]) |
                                             static_cast<unsigned char>(texts[k][i + 1]) << 8));
  }
  const wchar wide_delimiter = static_cast<unsigned char>(delimiter);
  const wchar wide_separator = static_cast<unsigned char>(separator);

  std::unique_ptr<char[]> narrow[3];
  std::unique_ptr<wchar[]> wide[3], units[3];
  for (std::size_t k = 0; k < 3; ++k) {
    narrow[k] = exact_copy(texts[k]);
    wide[k] = exact_copy(widened[k]);
    units[k] = exact_copy(paired[k]);
    read_one(narrow[k].get(), wide[k].get(), delimiter, wide_delimiter, separator, wide_separator);
    read_one(narrow[k].get(), units[k].get(), delimiter, wide_delimiter, separator, wide_separator);
  }

  const int32_t inclusive = data[0] & 1;
  KZ_CheckStringDateA(narrow[0].get(), narrow[1].get(), narrow[2].get(), inclusive);
  KZ_CheckStringDateW(wide[0].get(), wide[1].get(), wide[2].get(), inclusive);
  KZ_CheckStringDateW(units[0].get(), units[1].get(), units[2].get(), inclusive);
  KZ_CheckStringCurrentDateA(narrow[0].get(), narrow[1].get(), inclusive);
  KZ_CheckStringCurrentDateW(wide[0].get(), wide[1].get(), inclusive);
  KZ_CheckStringDateTimeA(narrow[0].get(), narrow[1].get(), narrow[2].get(), inclusive);
  KZ_CheckStringDateTimeW(wide[0].get(), wide[1].get(), wide[2].get(), inclusive);
  KZ_CheckStringDateTimeW(units[0].get(), units[1].get(), units[2].get(), inclusive);
  KZ_CheckStringCurrentDateTimeA(narrow[0].get(), narrow[1].get(), inclusive);
  KZ_CheckStringCurrentDateTimeW(wide[0].get(), wide[1].get(), inclusive);
  return 0;
}
