// Fuzz target of the date and time readers and the text range checks, both
// twins, on arbitrary text with arbitrary delimiters. Layout of an input:
// byte 0 the date delimiter, byte 1 the separator, then up to three texts
// separated by newlines (start, end, target). Every text lies in a heap
// block of exactly its size, so a read past its terminator shows.
#include "fuzz_support.h"

// Reads each text every way; a moment read from text is written back (that
// it reads back the same is tests/datetime's). Then the range checks over
// the three texts.
template <class Ch>
void drive(const std::basic_string<Ch>* texts, Ch delimiter, Ch separator, int32_t inclusive) {
  using Api = Twin<Ch>;
  std::vector<Ch> blocks[3];
  for (int k = 0; k < 3; ++k) {
    blocks[k] = exact(texts[k]);
    const Ch* text = blocks[k].data();
    DateRecord date;
    TimeRecord time;
    DateTimeRecord date_time;
    FILETIME moment;
    Api::StringDate(text, &date, delimiter);
    Api::StringTime(text, &time);
    Api::StringDateTime(text, &date_time, delimiter, separator);
    Ch written[42];  // the longest text
    if (Api::StringFileTime(text, &moment, delimiter, separator) != 0)
      check(Api::FileTimeString(&moment, written, 1, Ch('-'), Ch('T')) != 0);
  }
  const Ch *start = blocks[0].data(), *end = blocks[1].data(), *target = blocks[2].data();
  check(Api::CheckStringDate(start, end, target, inclusive) >= -1);
  check(Api::CheckStringCurrentDate(start, end, inclusive) >= -1);
  check(Api::CheckStringDateTime(start, end, target, inclusive) >= -1);
  check(Api::CheckStringCurrentDateTime(start, end, inclusive) >= -1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::string texts[3];
  for (std::size_t i = 2, which = 0; i < size; ++i) {
    if (data[i] == '\n' && which < 2)
      ++which;
    else
      texts[which].push_back(static_cast<char>(data[i]));
  }
  // Wide texts two ways: each byte widened (dates in ASCII stay dates) and
  // pairs of bytes as 16-bit units.
  std::basic_string<wchar> widened[3], paired[3];
  for (std::size_t k = 0; k < 3; ++k) {
    for (unsigned char byte : texts[k]) widened[k].push_back(byte);
    paired[k] = wide_units(texts[k]);
  }
  const int32_t inclusive = data[0] & 1;
  drive(texts, static_cast<char>(data[0]), static_cast<char>(data[1]), inclusive);
  for (const auto* wide : {widened, paired})
    drive(wide, static_cast<wchar>(data[0]), static_cast<wchar>(data[1]), inclusive);
  return 0;
}
