// kzb decode / encode, and the encoding family's part of the tour.
//
// Both stream: each block of input is converted by the library and written
// before the next one is read, and a character cut by the end of a block
// waits for the next. The library's conversions stop at a terminator, so the
// text is converted in the pieces between NUL bytes, which pass through as
// they are.
#include <cstring>
#include <memory>

#include "platform/utf8.h"
#include "kzb.h"

namespace kzb {
namespace {

enum class Mode { kWindows, kReport, kStrict };

// A growable byte buffer that, unlike std::string, does not clear what it
// is about to be written over.
class Bytes {
 public:
  char* data() { return data_.get(); }
  std::size_t size() const { return size_; }
  void clear() { size_ = 0; }
  // Room for `count` more bytes behind the end; `commit` then takes those
  // that were written.
  char* room(std::size_t count) {
    if (size_ + count > capacity_) {
      const std::size_t capacity = std::max(size_ + count, 2 * capacity_);
      std::unique_ptr<char[]> grown(new char[capacity]);
      if (size_ > 0) std::memcpy(grown.get(), data_.get(), size_);
      data_ = std::move(grown);
      capacity_ = capacity;
    }
    return data_.get() + size_;
  }
  void commit(std::size_t count) { size_ += count; }
  void push(char byte) {
    *room(1) = byte;
    ++size_;
  }

 private:
  std::unique_ptr<char[]> data_;
  std::size_t size_ = 0, capacity_ = 0;
};

// The first sequence that a conversion changed or dropped, by its offset in
// the bytes given, and how many there were.
struct Tally {
  std::uint64_t changed = 0;
  std::size_t offset = SIZE_MAX;
  std::size_t length = 0;
  char32_t character = 0;  // encode: the character without an exact form
  void note(std::size_t at, std::size_t bytes, char32_t code = 0) {
    ++changed;
    if (at < offset) offset = at, length = bytes, character = code;
  }
};

std::string hex_bytes(const char* bytes, std::size_t count) {
  std::string text;
  char cell[4];
  for (std::size_t i = 0; i < count; ++i) {
    std::snprintf(cell, sizeof cell, i ? " %02X" : "%02X", static_cast<unsigned char>(bytes[i]));
    text += cell;
  }
  return text;
}

// ---- Code page 932 to UTF-8 -------------------------------------------------

bool is_lead_byte(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// Single bytes that code page 932 assigns: ASCII and the half-width kana.
// Windows maps 0x80, 0xA0 and 0xFD to 0xFF to stand-ins of their own.
bool is_assigned_single(unsigned char byte) {
  return byte < 0x80 || (byte >= 0xA1 && byte <= 0xDF);
}

// The end of the last whole character in text[0, size): a lead byte takes
// the byte after it, whatever it is. A byte that is no lead byte always ends
// a character, so only the run of lead-byte values at the end needs
// counting; `size` falls inside a character when the run is odd.
std::size_t whole_characters(const char* text, std::size_t size) {
  std::size_t run = 0;
  while (run < size && is_lead_byte(static_cast<unsigned char>(text[size - 1 - run]))) ++run;
  return size - (run % 2);
}

class Decoder {
 public:
  Decoder() {
    // What the platform gives for a lead byte without a trail, and the one
    // pair that decodes to the same character.
    KZ_WCHAR unit[4];
    KZ_SJIS2UNICODE("\x81", unit, 4);
    replacement_ = unit[0];
    char pair[4];
    KZ_UNICODE2SJIS(unit, pair, 4);
    std::memcpy(own_pair_, pair, 2);
  }

  // Appends the UTF-8 of text[0, size) to `out`; text[size] must be
  // writable. With a tally, notes each sequence that is not code page 932.
  void convert(char* text, std::size_t size, Bytes& out, Tally* tally) {
    const char kept = text[size];
    text[size] = '\0';
    for (std::size_t start = 0;;) {
      const std::size_t end = start + std::strlen(text + start);
      if (end > start) convert_piece(text + start, end - start, start, out, tally);
      if (end == size) break;
      out.push('\0');
      start = end + 1;
    }
    text[size] = kept;
  }

 private:
  void convert_piece(const char* piece, std::size_t size, std::size_t offset, Bytes& out,
                     Tally* tally) {
    if (wide_.size() < size + 1) wide_.resize(size + 1);
    // n bytes never give more than n units; the result counts the terminator and one more.
    const int32_t result = KZ_SJIS2UNICODE(piece, wide_.data(), static_cast<int32_t>(size + 1));
    const std::size_t units = result > 1 ? static_cast<std::size_t>(result - 2) : 0;
    if (tally) check(piece, size, offset, units, *tally);
    const auto written = kz::utf8::encode(wide_.data(), units, out.room(3 * units), true);
    out.commit(written.written);
  }

  // Finds the sequences that are not code page 932 text, matching each
  // character of the piece with its unit; runs of ASCII, one unit a byte,
  // are passed over eight at a time.
  void check(const char* piece, std::size_t size, std::size_t offset, std::size_t units,
             Tally& tally) {
    std::size_t i = 0, k = 0;
    while (i < size && k < units) {
      std::uint64_t word;
      if (i + 8 <= size && k + 8 <= units &&
          (std::memcpy(&word, piece + i, 8), (word & 0x8080808080808080u) == 0)) {
        i += 8, k += 8;
        continue;
      }
      const auto byte = static_cast<unsigned char>(piece[i]);
      const std::size_t length = is_lead_byte(byte) && i + 1 < size ? 2 : 1;
      const bool bad = is_lead_byte(byte)
                           ? wide_[k] == replacement_ &&
                                 (length == 1 || std::memcmp(piece + i, own_pair_, 2) != 0)
                           : !is_assigned_single(byte);
      if (bad) tally.note(offset + i, length);
      i += length, ++k;
    }
  }

  std::vector<KZ_WCHAR> wide_;
  KZ_WCHAR replacement_ = 0;
  char own_pair_[2] = {};
};

// ---- UTF-8 to code page 932 -------------------------------------------------

class Encoder {
 public:
  // Converts text[0, size) and appends it to `out`, leaving a UTF-8
  // sequence cut at the end unread unless `end`; gives the bytes read. With a
  // tally, notes each character without an exact code page 932 form (invalid
  // UTF-8 reads as U+FFFD, which has none).
  std::size_t convert(const char* text, std::size_t size, bool end, Bytes& out, Tally* tally) {
    if (wide_.size() < size + 1) wide_.resize(size + 1);
    const auto decoded = kz::utf8::decode(text, size, wide_.data(), end);
    wide_[decoded.written] = 0;
    // A NUL unit comes only from a NUL byte, and most text has none.
    const bool nul = std::memchr(text, 0, decoded.read) != nullptr;
    std::size_t units_before = 0, bytes_before = 0;  // where the current piece starts
    for (std::size_t start = 0;;) {
      const KZ_WCHAR* piece = wide_.data() + start;
      std::size_t units = nul ? 0 : decoded.written;
      while (nul && piece[units] != 0) ++units;
      if (units > 0) {
        const std::size_t capacity = 2 * units + 1;
        char* bytes = out.room(capacity);
        const int32_t result = KZ_UNICODE2SJIS(piece, bytes, static_cast<int32_t>(capacity));
        const std::size_t written = result > 1 ? static_cast<std::size_t>(result - 2) : 0;
        if (tally && (nul || !all_known_exact(piece, units)))
          bytes_before = check(piece, units, bytes_before, decoded, *tally);
        out.commit(written);
      }
      units_before = start + units;
      if (units_before == decoded.written) break;
      out.push('\0');
      start = units_before + 1;
      ++bytes_before;  // the NUL
    }
    return decoded.read;
  }

 private:
  // Whether a unit comes back from code page 932 as itself, learnt from
  // the platform the first time the unit is met.
  bool exact(char16_t unit) {
    std::uint8_t& known = exact_[unit];
    if (known == kUnknown) {
      const KZ_WCHAR one[2] = {static_cast<KZ_WCHAR>(unit), 0};
      char narrow[8];
      KZ_WCHAR back[4];
      const bool same = KZ_UNICODE2SJIS(one, narrow, sizeof narrow) > 1 &&
                        KZ_SJIS2UNICODE(narrow, back, 4) > 1 && back[0] == one[0] && back[1] == 0;
      known = same ? kExact : kChanged;
    }
    return known == kExact;
  }

  // Whether every unit of the piece is known to come back as itself: one
  // table lookup a unit and no branch, so that text without a finding (and
  // units met before) costs little; the exact check runs only otherwise.
  bool all_known_exact(const KZ_WCHAR* piece, std::size_t units) const {
    unsigned doubt = 0;
    for (std::size_t k = 0; k < units; ++k) doubt |= exact_[static_cast<char16_t>(piece[k])];
    return doubt == 0;
  }

  // Notes each character of the piece that has no exact form, at its byte
  // offset in the input, and gives the offset behind the piece. A surrogate
  // pair never has one.
  std::size_t check(const KZ_WCHAR* piece, std::size_t units, std::size_t at,
                    const kz::utf8::Decoded& decoded, Tally& tally) {
    static_assert(sizeof(KZ_WCHAR) == 2);
    for (std::size_t k = 0; k < units;) {
      // Runs of ASCII, four units at a time.
      std::uint64_t four;
      if (k + 4 <= units && (std::memcpy(&four, piece + k, 8), (four & 0xFF80FF80FF80FF80u) == 0)) {
        k += 4, at += 4;
        continue;
      }
      const auto unit = static_cast<char16_t>(piece[k]);
      if (unit < 0x80) {
        ++k, ++at;
        continue;
      }
      const bool pair = (unit & 0xFC00) == 0xD800 && k + 1 < units &&
                        (static_cast<char16_t>(piece[k + 1]) & 0xFC00) == 0xDC00;
      const std::size_t length = pair ? 4 : unit < 0x800 ? 2 : 3;
      if (pair || !exact(unit)) {
        const char32_t code = pair ? 0x10000 + ((char32_t(unit) - 0xD800) << 10) +
                                         (char32_t(static_cast<char16_t>(piece[k + 1])) - 0xDC00)
                                   : char32_t(unit);
        // U+FFFD at the place of the first invalid input: that input is the
        // finding, and the offsets behind it move by its length.
        if (code == kz::utf8::kReplacement && at == decoded.first_bad) {
          tally.note(at, decoded.bad_length, 0);
          at += decoded.bad_length - length;
        } else {
          tally.note(at, length, code);
        }
      }
      at += length;
      k += pair ? 2 : 1;
    }
    return at;
  }

  static constexpr std::uint8_t kExact = 0, kUnknown = 1, kChanged = 2;
  // ASCII comes back as itself, and check() never asks about it.
  std::vector<std::uint8_t> exact_ = [] {
    std::vector<std::uint8_t> table(65536, kUnknown);
    std::fill_n(table.begin(), 0x80, kExact);
    return table;
  }();
  std::vector<KZ_WCHAR> wide_;
};

// ---- The commands -----------------------------------------------------------

struct Options {
  Mode mode = Mode::kWindows;
  Args files;
};

int parse(const Command& command, const Args& args, Options& options) {
  bool files_only = false;
  for (const std::string& arg : args) {
    if (files_only || arg == "-" || arg.empty() || arg[0] != '-') {
      options.files.push_back(arg);
    } else if (arg == "--") {
      files_only = true;
    } else if (arg == "--strict") {
      options.mode = Mode::kStrict;
    } else if (arg == "--report") {
      options.mode = Mode::kReport;
    } else {
      return usage_error(command, "unknown option '%s'", arg.c_str());
    }
  }
  return kOk;
}

// Where a line starts and which it is, for the message of a finding.
struct Place {
  std::uint64_t line = 1;    // the line of the byte at the start of the block
  std::uint64_t column = 0;  // bytes of that line in earlier blocks
};

// The stream that both commands run: blocks in, whole characters converted,
// written as they come. In strict mode a block ends at a line end, so that
// nothing of a line with a finding is written; a line longer than
// kStrictLine is written in parts.
constexpr std::size_t kStrictLine = 1 << 20;

template <class Convert, class Whole, class Describe>
int run_stream(const Options& options, Convert convert, Whole whole, Describe describe) {
  Bytes converted;
  Tally total;
  Place place;
  const int status = for_each_input(options.files, [&](const InputName& name, char* data,
                                                       std::size_t size, bool end,
                                                       std::size_t& used) {
    std::size_t usable = end ? size : whole(data, size);
    if (options.mode == Mode::kStrict && !end) {
      const void* last = nullptr;
      for (std::size_t i = usable; i > 0 && !last; --i)
        if (data[i - 1] == '\n') last = data + i - 1;
      if (last)
        usable = static_cast<const char*>(last) - data + 1;
      else if (size < kStrictLine)
        usable = 0;
    }
    converted.clear();
    Tally found;
    used = convert(data, usable, end, converted, &found);
    total.changed += found.changed;
    if (options.mode == Mode::kStrict && found.changed > 0) {
      // Write the lines before the one with the finding, then tell it.
      std::size_t line_start = found.offset;
      while (line_start > 0 && data[line_start - 1] != '\n') --line_start;
      std::uint64_t line = place.line;
      for (std::size_t i = 0; i < line_start; ++i) line += data[i] == '\n';
      const std::uint64_t column =
          found.offset - line_start + 1 + (line_start == 0 ? place.column : 0);
      converted.clear();
      convert(data, line_start, true, converted, nullptr);
      out().write(std::string_view(converted.data(), converted.size()));
      const std::string file = name.standard() ? "" : name.name + ": ";
      return fail(kFailed, "%sline %llu, byte %llu: %s", file.c_str(),
                  static_cast<unsigned long long>(line), static_cast<unsigned long long>(column),
                  describe(data + found.offset, found).c_str());
    }
    if (options.mode == Mode::kStrict) {
      const char* newline = nullptr;
      for (std::size_t i = 0; i < used; ++i)
        if (data[i] == '\n') ++place.line, newline = data + i;
      place.column = newline ? used - (newline - data + 1) : place.column + used;
    }
    if (!out().write(std::string_view(converted.data(), converted.size())) || !out().flush())
      return kFailed;
    if (end) place = Place{};
    return kOk;
  });
  if (status == kOk && (total.changed > 0 || options.mode == Mode::kReport))
    std::fprintf(stderr, "kzb: %llu sequence%s replaced or changed\n",
                 static_cast<unsigned long long>(total.changed), total.changed == 1 ? "" : "s");
  return status;
}

}  // namespace

extern const Command kCommand_decode;
extern const Command kCommand_encode;

int run_decode(const Args& args) {
  Options options;
  if (const int status = parse(kCommand_decode, args, options)) return status;
  Decoder decoder;
  return run_stream(
      options,
      [&](char* data, std::size_t size, bool, Bytes& out, Tally* tally) {
        decoder.convert(data, size, out, tally);
        return size;
      },
      whole_characters,
      [](const char* at, const Tally& found) {
        return "invalid code page 932 sequence " + hex_bytes(at, found.length);
      });
}

int run_encode(const Args& args) {
  Options options;
  if (const int status = parse(kCommand_encode, args, options)) return status;
  Encoder encoder;
  return run_stream(
      options,
      [&](char* data, std::size_t size, bool end, Bytes& out, Tally* tally) {
        return encoder.convert(data, size, end, out, tally);
      },
      [](const char*, std::size_t size) { return size; },
      [](const char* at, const Tally& found) {
        if (found.character == 0) return "invalid UTF-8 sequence " + hex_bytes(at, found.length);
        char code[16];
        std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(found.character));
        return std::string(code) + " " + std::string(at, found.length) +
               " has no code page 932 form";
      });
}

const Command kCommand_decode = {"decode", R"usage(decode [--strict | --report] [FILE...]
  Converts code page 932 (Shift-JIS) text to UTF-8, exactly as Windows
  does: a lead byte takes the byte after it as its trail, whatever it is.
  NUL bytes pass through.
  --strict  stop at the first sequence that is not code page 932 text (a
            lone or invalid lead byte, an unassigned byte or pair), write
            nothing of its line, tell its line and byte, and exit 1
  --report  tell how many sequences were replaced or changed, even none
  Without either, a count is told when anything was replaced.
  Example: kzb decode old.txt > new.txt
)usage",
                                 run_decode};

const Command kCommand_encode = {"encode", R"usage(encode [--strict | --report] [FILE...]
  Converts UTF-8 text to code page 932 (Shift-JIS), exactly as Windows
  does: a character without a form of its own takes a similar one or '?'.
  Invalid UTF-8 reads as U+FFFD. NUL bytes pass through.
  --strict  stop at the first character without an exact code page 932
            form, or at invalid UTF-8, write nothing of its line, tell its
            line and byte, and exit 1
  --report  tell how many characters were replaced or changed, even none
  Without either, a count is told when anything was replaced.
  Example: kzb encode --strict notes.txt > notes-sjis.txt
)usage",
                                 run_encode};

// ---- The tour ---------------------------------------------------------------

void tour_encoding() {
  out().print("Shift-JIS and UTF-16\n");
  const std::string sample(reinterpret_cast<const char*>(kSampleSjis), kSampleSjisSize);
  const std::string first_line = sample.substr(0, sample.find('\n'));
  out().print("  sample line (code page 932): %s\n",
              hex_bytes(first_line.data(), first_line.size()).c_str());

  wstring wide(first_line.size() + 1, 0);
  const int32_t decoded =
      KZ_SJIS2UNICODE(first_line.c_str(), wide.data(), static_cast<int32_t>(wide.size()));
  show("KZ_SJIS2UNICODE(sample line)",
       std::to_string(decoded) + ", \"" + to_utf8(wide.c_str()) + "\"");
  std::string narrow(wide.size() * 2 + 1, 0);
  const int32_t encoded =
      KZ_UNICODE2SJIS(wide.c_str(), narrow.data(), static_cast<int32_t>(narrow.size()));
  show("KZ_UNICODE2SJIS(that text)",
       std::to_string(encoded) + ", " + (narrow.c_str() == first_line ? "same bytes" : "differs"));
  show("KZ_SJIS2UNICODE(\"abc\", size 8)", std::to_string(KZ_SJIS2UNICODE("abc", wide.data(), 8)));
  show("KZ_SJIS2UNICODE(\"\", size 8)", std::to_string(KZ_SJIS2UNICODE("", wide.data(), 8)));
  show("KZ_SJIS2UNICODE(\"abc\", size 0: needed + 1)",
       std::to_string(KZ_SJIS2UNICODE("abc", nullptr, 0)));
  show("KZ_IsSJisMultiByteChar(\"\\x81\\x5C\")",
       std::to_string(KZ_IsSJisMultiByteChar("\x81\x5C")));
  show("KZ_IsSJisMultiByteChar(\"\\x81\") (lead byte at the end)",
       std::to_string(KZ_IsSJisMultiByteChar("\x81")));
  StrList list{0, nullptr};
  KZ_DeleteStrListW(&list);
  show("KZ_DeleteStrListW(empty list)", "count " + std::to_string(list.count));
}

}  // namespace kzb
