// Drives the string toolkit's scanners, split, trims, quote handling and
// password text through both twins with arbitrary text, delimiter and
// sizes. Every buffer is a heap block of exactly the size the library is
// told, so AddressSanitizer catches any access behind it.
//
// Input: delimiter, a size byte, a flag byte, two key bytes, then the text
// (narrow: the bytes up to the first NUL; wide: the bytes in pairs).
#include <algorithm>

#include "fuzz_support.h"

// Whether an exact block holds a terminated text of `result` elements,
// fewer than `limit`.
template <class Ch>
bool terminated_below(const std::vector<Ch>& block, int32_t result, int32_t limit) {
  const auto end = std::find(block.begin(), block.end(), Ch{0});
  return end != block.end() && end - block.begin() == result && result < limit;
}

template <class Ch>
void drive(const std::basic_string<Ch>& text, Ch delimiter, int32_t size, bool quotes, bool mask,
           uint16_t key) {
  using Api = Twin<Ch>;
  const std::vector<Ch> src = exact(text);
  const auto n = static_cast<int32_t>(text.size());
  const int32_t count = Api::GetCodeCount(src.data(), delimiter);
  const int32_t span = Api::GetCodeLength(src.data(), delimiter);
  check(count >= 0 && count <= n && span >= 0 && span <= n);

  // The copy writes at most limit elements and never more than the text;
  // the copy after takes limit as its capacity.
  for (int32_t limit : {size, n, span + 1}) {
    std::vector<Ch> dst(static_cast<std::size_t>(std::max(0, std::min(limit, n))) + 1);
    const int32_t copied = Api::StringCopyEx(dst.data(), src.data(), delimiter, limit, quotes);
    check(terminated_below(dst, copied, static_cast<int32_t>(dst.size())));
    if (limit < 1) continue;
    std::vector<Ch> after(static_cast<std::size_t>(limit));
    const int32_t rest = Api::StringCopyExAfter(after.data(), src.data(), delimiter, limit, quotes);
    check(terminated_below(after, rest, limit));
  }

  StrList list{0, nullptr};
  if (Api::StringSplit(src.data(), delimiter, &list, quotes) == 1) {
    check(list.count == count + 1);
    for (int32_t i = 0; i < list.count; ++i)
      check(length(static_cast<const Ch*>(list.strings[i])) <= text.size());
    Api::DeleteStrList(&list);
  } else {
    check(n == 0 && list.count == 0 && list.strings == nullptr);
  }

  // Whatever each call gives, its text and terminator stay inside the block:
  // with room for all of the text, and with the arbitrary size.
  for (int32_t room : {n + 1, size}) {
    if (room <= 0) continue;
    std::vector<Ch> dst(static_cast<std::size_t>(room));
    const auto within = [&](int32_t result) { check(terminated_below(dst, result, room)); };
    const auto terminated = [&] { return std::find(dst.begin(), dst.end(), Ch{0}) != dst.end(); };
    within(Api::StringTrimLeft(dst.data(), src.data(), room, delimiter));
    within(Api::StringTrimRight(dst.data(), src.data(), room, delimiter));
    within(Api::StringTrim(dst.data(), src.data(), room, delimiter));
    within(Api::StringZeroSuppress(dst.data(), src.data(), room));
    const int32_t take = size % (n + 2) - 1;  // within the text and its terminator
    const int32_t got = Api::StringLengthCopy(src.data(), dst.data(), take, room);
    check(got == 0 || got == take);
    const Ch open[] = {delimiter, 0}, close[] = {static_cast<Ch>(key & 0x7F), 0};
    check(Api::StringGetQuoted(src.data(), dst.data(), room, open, close) < room);
    Api::SetDoublequote(src.data(), dst.data(), room);
    check(terminated());
    Api::DelDoublequote(src.data(), dst.data(), room);
    check(terminated());
    const int32_t password = Api::StringPassword(key, src.data(), dst.data(), room, mask);
    check(password >= -1 && password < room);
  }

  // Masking gives four elements a unit, and unmasking a unit for every four
  // (the text that comes back is tests/strings').
  const int32_t masked_size = 4 * n + 1;
  std::vector<Ch> masked(static_cast<std::size_t>(masked_size)), back(masked.size());
  const int32_t units = Api::StringPassword(key, src.data(), masked.data(), masked_size, 1);
  check(units >= 0 && units % 4 == 0 && units <= 4 * n && (sizeof(Ch) == 1 || units == 4 * n));
  check(Api::StringPassword(key, masked.data(), back.data(), masked_size, 0) == units / 4);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 5) return 0;
  const int32_t room = static_cast<int32_t>(data[1]) - 2;
  const auto key = static_cast<uint16_t>(data[3] | (data[4] << 8));
  both_twins(data, size, 5, [&](const auto& text) {
    using Ch = typename std::decay_t<decltype(text)>::value_type;
    drive(text, static_cast<Ch>(data[0]), room, (data[2] & 1) != 0, (data[2] & 2) != 0, key);
  });
  return 0;
}
