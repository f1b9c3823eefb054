// Drives the string toolkit's scanners, split, trims, quote handling and
// password text through both twins with arbitrary text, delimiter and
// sizes. Every buffer is a heap block of exactly the size the library is
// told, so AddressSanitizer catches any access behind it.
//
// Input: delimiter, a size byte, a flag byte, two key bytes, then the text
// (narrow: the bytes up to the first NUL; wide: the bytes in pairs).
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kz_basis.h"
#include "twins.h"

namespace {

using wchar = KZ_WCHAR;

using kz::test::Twin;

void check(bool condition) {
  if (!condition) std::abort();
}

template <class Ch>
std::size_t length(const Ch* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

// An exact-size heap copy of a text with its terminator.
template <class Ch>
std::vector<Ch> terminated(const std::basic_string<Ch>& text) {
  return std::vector<Ch>(text.c_str(), text.c_str() + text.size() + 1);
}

struct Params {
  unsigned char delimiter;
  int32_t size;  // -2 to 253
  bool quotes, mask;
  uint16_t key;
};

template <class Ch>
void drive(const std::basic_string<Ch>& text, const Params& p) {
  using Api = Twin<Ch>;
  const auto src = terminated(text);
  const auto n = static_cast<int32_t>(text.size());
  const Ch delimiter = static_cast<Ch>(p.delimiter);
  const int32_t quotes = p.quotes ? 1 : 0;

  const int32_t count = Api::GetCodeCount(src.data(), delimiter);
  const int32_t span = Api::GetCodeLength(src.data(), delimiter);
  check(count >= 0 && count <= n && span >= 0 && span <= n);

  // The copy writes at most limit elements, and never more than the text.
  for (int32_t limit : {p.size, n, span + 1}) {
    const int32_t room = (limit < 0 ? 0 : (limit < n ? limit : n)) + 1;
    std::vector<Ch> dst(static_cast<std::size_t>(room));
    const int32_t copied = Api::StringCopyEx(dst.data(), src.data(), delimiter, limit, quotes);
    check(copied >= 0 && copied < room && length(dst.data()) == static_cast<std::size_t>(copied));
    if (limit >= 1) {
      std::vector<Ch> after(static_cast<std::size_t>(limit));
      const int32_t rest =
          Api::StringCopyExAfter(after.data(), src.data(), delimiter, limit, quotes);
      check(rest >= 0 && rest < limit && length(after.data()) == static_cast<std::size_t>(rest));
    }
  }

  StrList list{0, nullptr};
  if (Api::StringSplit(src.data(), delimiter, &list, quotes) == 1) {
    check(list.count == count + 1);
    for (int32_t i = 0; i < list.count; ++i) {
      check(list.strings[i] != nullptr);
      check(length(static_cast<const Ch*>(list.strings[i])) <= static_cast<std::size_t>(n));
    }
    Api::DeleteStrList(&list);
  } else {
    check(n == 0 && list.count == 0 && list.strings == nullptr);
  }

  // Trims never grow a text: with room for all of it, and with the
  // arbitrary size.
  for (int32_t size : {n + 1, p.size}) {
    if (size <= 0) continue;
    std::vector<Ch> dst(static_cast<std::size_t>(size));
    const int32_t kept[] = {Api::StringTrimLeft(dst.data(), src.data(), size, delimiter),
                            Api::StringTrimRight(dst.data(), src.data(), size, delimiter),
                            Api::StringTrim(dst.data(), src.data(), size, delimiter)};
    for (int32_t elements : kept) check(elements >= 0 && elements <= n && elements < size);

    check(Api::StringZeroSuppress(dst.data(), src.data(), size) <= n);
    // In place, as the right trim allows.
    std::vector<Ch> same(src);
    same.resize(static_cast<std::size_t>(size > n ? size : n + 1));
    check(Api::StringTrimRight(same.data(), same.data(), size, delimiter) <= n);

    // The wide length copy reads count elements whatever they are, so count
    // stays within the text and its terminator.
    const int32_t take = p.size % (n + 2) - 1;
    const int32_t got = Api::StringLengthCopy(src.data(), dst.data(), take, size);
    check(got == 0 || got == take);

    const Ch open[] = {delimiter, 0};
    const Ch close[] = {static_cast<Ch>(p.key & 0x7F), 0};
    check(Api::StringGetQuoted(src.data(), dst.data(), size, open, close) < size);

    Api::SetDoublequote(src.data(), dst.data(), size);
    check(length(dst.data()) < static_cast<std::size_t>(size));
    Api::DelDoublequote(src.data(), dst.data(), size);
    check(length(dst.data()) < static_cast<std::size_t>(size));
  }

  // Password text: the input masked or read as a masked text, then a round
  // trip.
  if (p.size > 0) {
    std::vector<Ch> dst(static_cast<std::size_t>(p.size));
    const int32_t result =
        Api::StringPassword(p.key, src.data(), dst.data(), p.size, p.mask ? 1 : 0);
    check(result >= -1 && result < p.size);
  }
  if constexpr (sizeof(Ch) == 2) {
    const int32_t masked_size = 4 * n + 1;
    std::vector<Ch> masked(static_cast<std::size_t>(masked_size));
    check(Api::StringPassword(p.key, src.data(), masked.data(), masked_size, 1) == 4 * n);
    std::vector<Ch> back(static_cast<std::size_t>(n + 1));
    check(Api::StringPassword(p.key, masked.data(), back.data(), n + 1, 0) == n);
    check(std::memcmp(back.data(), src.data(), src.size() * sizeof(Ch)) == 0);
    check(Api::StringPassword(p.key, src.data(), masked.data(), 4 * n, 1) == -1 || n == 0);
  } else {
    // The narrow twin masks the wide form: compare against a plain round
    // trip through the conversions.
    const int32_t size = 4 * n + 1;
    std::vector<char> masked(static_cast<std::size_t>(size));
    const int32_t units = Api::StringPassword(p.key, src.data(), masked.data(), size, 1);
    check(units >= 0 && units % 4 == 0 && units <= 4 * n);
    std::vector<char> back(static_cast<std::size_t>(size));
    check(Api::StringPassword(p.key, masked.data(), back.data(), size, 0) == units / 4);
    std::vector<wchar> wide(static_cast<std::size_t>(n + 1));
    std::vector<char> expected(static_cast<std::size_t>(size));
    KZ_SJIS2UNICODE(src.data(), wide.data(), n + 1);
    KZ_UNICODE2SJIS(wide.data(), expected.data(), size);
    check(std::strcmp(back.data(), expected.data()) == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 5) return 0;
  Params p;
  p.delimiter = data[0];
  p.size = static_cast<int32_t>(data[1]) - 2;
  p.quotes = (data[2] & 1) != 0;
  p.mask = (data[2] & 2) != 0;
  p.key = static_cast<uint16_t>(data[3] | (data[4] << 8));
  const std::string bytes(reinterpret_cast<const char*>(data) + 5, size - 5);

  drive(std::string(bytes.c_str()), p);

  std::basic_string<wchar> wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<wchar>(static_cast<unsigned char>(bytes[i]) |
                                         (static_cast<unsigned char>(bytes[i + 1]) << 8));
    if (unit == 0) break;
    wide.push_back(unit);
  }
  drive(wide, p);
  return 0;
}
