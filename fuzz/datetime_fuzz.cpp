// Fuzz target of the date and time readers and the text range checks, both
// twins, on arbitrary text with arbitrary delimiters. Layout of an input:
// byte 0 the date delimiter, byte 1 the separator, then up to three texts
// separated by newlines (start, end, target). Every text lies in a heap
// block of exactly its size, so a read past its terminator shows.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "fuzz_support.h"
#include "kz_basis.h"
#include "twins.h"

namespace {

using kz::fuzz::check;

using kz::test::Twin;

// Reads each text every way; a moment read from text is written back and
// read again: the same moment. Then the range checks over the three texts.
template <class Ch>
void drive(const std::basic_string<Ch>* texts, Ch delimiter, Ch separator, int32_t inclusive) {
  std::unique_ptr<Ch[]> blocks[3];
  for (int k = 0; k < 3; ++k) {
    blocks[k].reset(new Ch[texts[k].size() + 1]);
    std::copy(texts[k].c_str(), texts[k].c_str() + texts[k].size() + 1, blocks[k].get());
    const Ch* text = blocks[k].get();
    DateRecord date;
    TimeRecord time;
    DateTimeRecord date_time;
    FILETIME moment, again;
    Twin<Ch>::StringDate(text, &date, delimiter);
    Twin<Ch>::StringTime(text, &time);
    Twin<Ch>::StringDateTime(text, &date_time, delimiter, separator);
    if (Twin<Ch>::StringFileTime(text, &moment, delimiter, separator) != 0) {
      Ch written[42];
      check(Twin<Ch>::FileTimeString(&moment, written, 1, Ch('-'), Ch('T')) != 0);
      check(Twin<Ch>::StringFileTime(written, &again, Ch('-'), Ch('T')) != 0);
      check(again.dwLowDateTime == moment.dwLowDateTime &&
            again.dwHighDateTime == moment.dwHighDateTime);
    }
  }
  const Ch *start = blocks[0].get(), *end = blocks[1].get(), *target = blocks[2].get();
  check(Twin<Ch>::CheckStringDate(start, end, target, inclusive) >= -1);
  check(Twin<Ch>::CheckStringCurrentDate(start, end, inclusive) >= -1);
  check(Twin<Ch>::CheckStringDateTime(start, end, target, inclusive) >= -1);
  check(Twin<Ch>::CheckStringCurrentDateTime(start, end, inclusive) >= -1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::string texts[3];
  std::size_t which = 0;
  for (std::size_t i = 2; i < size; ++i) {
    if (data[i] == '\n' && which < 2)
      ++which;
    else
      texts[which].push_back(static_cast<char>(data[i]));
  }
  // Wide texts two ways: each byte widened (dates in ASCII stay dates) and
  // pairs of bytes as 16-bit units.
  std::basic_string<KZ_WCHAR> widened[3], paired[3];
  for (std::size_t k = 0; k < 3; ++k) {
    for (unsigned char byte : texts[k]) widened[k].push_back(byte);
    for (std::size_t i = 0; i + 1 < texts[k].size(); i += 2)
      paired[k].push_back(static_cast<KZ_WCHAR>(static_cast<unsigned char>(texts[k][i]) |
                                                static_cast<unsigned char>(texts[k][i + 1]) << 8));
  }
  const int32_t inclusive = data[0] & 1;
  drive(texts, static_cast<char>(data[0]), static_cast<char>(data[1]), inclusive);
  for (const auto* wide : {widened, paired})
    drive(wide, static_cast<KZ_WCHAR>(data[0]), static_cast<KZ_WCHAR>(data[1]), inclusive);
  return 0;
}
