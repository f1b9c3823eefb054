// KZ_SJIS2UNICODE and KZ_UNICODE2SJIS against memcpy of the same input bytes
// (through a real call) and glibc's iconv (CP932 to and from UTF-16LE, the
// converter opened once), on text of five shapes: ASCII only, ASCII with a
// Japanese word every ~80 bytes, ASCII with one character in twenty Japanese,
// Japanese with short ASCII runs, and one 40-byte path. The long texts run at
// 8 MiB and at 64 MiB (iconv only at 8 MiB, where it already takes long).
// Each destination has exactly the needed size, so the zero-fill of the
// exports costs what it costs a caller who sizes by the text. The ratios are
// printed at the end; run with --benchmark_repetitions to get medians.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "kz_basis.h"

namespace {

using wstring = std::basic_string<KZ_WCHAR>;

// A small deterministic generator, so every run times the same texts.
struct Random {
  std::uint64_t state = 0x932932932ULL;
  unsigned next(unsigned bound) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<unsigned>((state >> 33) % bound);
  }
};

void put_pair(std::string& out, unsigned lead, unsigned trail) {
  out.push_back(static_cast<char>(lead));
  out.push_back(static_cast<char>(trail));
}

// Kanji of the first level (rows 0x89 to 0x97 are complete), hiragana,
// katakana and punctuation, with about 15% ASCII: digits, letters, blanks
// and line ends.
std::string japanese_text(std::size_t bytes) {
  Random random;
  std::string out;
  while (out.size() < bytes) {
    const unsigned kind = random.next(100);
    if (kind < 40) {
      const unsigned trail = random.next(188);
      put_pair(out, 0x89 + random.next(15), trail < 63 ? 0x40 + trail : 0x80 + (trail - 63));
    } else if (kind < 68) {
      put_pair(out, 0x82, 0x9F + random.next(83));  // hiragana
    } else if (kind < 80) {
      put_pair(out, 0x83, 0x40 + random.next(0x3F));  // katakana
    } else if (kind < 84) {
      put_pair(out, 0x81, 0x41 + random.next(2));  // comma, full stop
    } else if (kind < 97) {
      out.push_back(static_cast<char>('0' + random.next(10)));
      out.push_back(static_cast<char>('a' + random.next(26)));
    } else {
      out.push_back(random.next(2) ? ' ' : '\n');
    }
  }
  out.resize(bytes);
  if (static_cast<unsigned char>(out.back()) >= 0x80) out.back() = '\n';  // no cut pair
  return out;
}

// One ASCII line: a path, a CSV row or a log line.
void ascii_line(Random& random, std::string& out) {
  char line[160];
  switch (random.next(3)) {
    case 0:
      std::snprintf(line, sizeof line, "C:\\work\\project%u\\src\\module_%u\\file%04u.cpp\r\n",
                    random.next(50), random.next(200), random.next(10000));
      break;
    case 1:
      std::snprintf(line, sizeof line, "%u,%u,\"item-%05u\",%u.%02u,2024-%02u-%02u\r\n",
                    random.next(100000), random.next(1000), random.next(100000), random.next(10000),
                    random.next(100), 1 + random.next(12), 1 + random.next(28));
      break;
    default:
      std::snprintf(line, sizeof line,
                    "2024/11/%02u %02u:%02u:%02u INFO worker %u finished job %u in %u ms\r\n",
                    1 + random.next(28), random.next(24), random.next(60), random.next(60),
                    random.next(16), random.next(1000000), random.next(5000));
      break;
  }
  out += line;
}

// One kanji of the first level or a hiragana.
void japanese_character(Random& random, std::string& out) {
  if (random.next(2)) {
    const unsigned trail = random.next(188);
    put_pair(out, 0x89 + random.next(15), trail < 63 ? 0x40 + trail : 0x80 + (trail - 63));
  } else {
    put_pair(out, 0x82, 0x9F + random.next(83));
  }
}

// ASCII lines; after every `word_every` bytes on average a Japanese word of
// two to six characters (0: none).
std::string ascii_text(std::size_t bytes, unsigned word_every) {
  Random random;
  std::string out, line;
  while (out.size() < bytes) {
    line.clear();
    ascii_line(random, line);
    for (char c : line) {
      out.push_back(c);
      if (word_every != 0 && random.next(word_every) == 0)
        for (unsigned k = 2 + random.next(5); k > 0; --k) japanese_character(random, out);
    }
  }
  out.resize(bytes);
  if (static_cast<unsigned char>(out.back()) >= 0x80) out.back() = '\n';  // no cut pair
  return out;
}

// ASCII lines with one character in twenty a single Japanese character.
std::string scattered_text(std::size_t bytes) {
  Random random;
  std::string out, line;
  while (out.size() < bytes) {
    line.clear();
    ascii_line(random, line);
    for (char c : line) {
      if (random.next(20) == 0)
        japanese_character(random, out);
      else
        out.push_back(c);
    }
  }
  out.resize(bytes);
  if (static_cast<unsigned char>(out.back()) >= 0x80) out.back() = '\n';
  return out;
}

// 40 bytes, three of the characters double-byte.
const std::string kPath = "C:\\work\\project\\\x83\x66\x81\x5B\x83\x5E\\report-2024-1.csv";

const char* const kShapes[] = {"ascii", "words", "scattered", "japanese", "path40"};
constexpr int kPathShape = 4;

std::string make_text(int shape, std::size_t bytes) {
  switch (shape) {
    case 0:
      return ascii_text(bytes, 0);
    case 1:
      return ascii_text(bytes, 80);
    case 2:
      return scattered_text(bytes);
    case 3:
      return japanese_text(bytes);
    default:
      return kPath;
  }
}

struct Case {
  std::string narrow;
  wstring wide;
};

wstring decode_once(const std::string& narrow) {
  const int32_t needed = KZ_SJIS2UNICODE(narrow.c_str(), nullptr, 0) - 1;
  wstring wide(static_cast<std::size_t>(needed), 0);
  KZ_SJIS2UNICODE(narrow.c_str(), wide.data(), needed);
  wide.pop_back();  // the string keeps its own terminator
  return wide;
}

// The benchmarks of one case run together; only that case's texts are kept,
// so that the 64 MiB ones do not pile up.
const Case& text_case(int shape, std::size_t bytes) {
  static Case current;
  static int current_shape = -1;
  static std::size_t current_bytes = 0;
  if (shape != current_shape || bytes != current_bytes) {
    current = Case{};
    current.narrow = make_text(shape, bytes);
    current.wide = decode_once(current.narrow);
    current_shape = shape;
    current_bytes = bytes;
  }
  return current;
}

const Case& text_case(const benchmark::State& state) {
  return text_case(static_cast<int>(state.range(0)), static_cast<std::size_t>(state.range(1)));
}

void decode_ours(benchmark::State& state) {
  const Case& c = text_case(state);
  const int32_t size = static_cast<int32_t>(c.wide.size() + 1);
  std::vector<KZ_WCHAR> dst(static_cast<std::size_t>(size));
  for (auto _ : state) {
    benchmark::DoNotOptimize(KZ_SJIS2UNICODE(c.narrow.c_str(), dst.data(), size));
    benchmark::ClobberMemory();
  }
  if (std::memcmp(dst.data(), c.wide.c_str(), dst.size() * sizeof(KZ_WCHAR)) != 0)
    state.SkipWithError("decoded text differs");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * c.narrow.size()));
}

void encode_ours(benchmark::State& state) {
  const Case& c = text_case(state);
  const int32_t size = static_cast<int32_t>(c.narrow.size() + 1);
  std::vector<char> dst(static_cast<std::size_t>(size));
  for (auto _ : state) {
    benchmark::DoNotOptimize(KZ_UNICODE2SJIS(c.wide.c_str(), dst.data(), size));
    benchmark::ClobberMemory();
  }
  if (std::memcmp(dst.data(), c.narrow.c_str(), dst.size()) != 0)
    state.SkipWithError("encoded text differs");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * c.narrow.size()));
}

// iconv converts the text without a terminator; its state is reset per call.
void convert_iconv(benchmark::State& state, const char* to, const char* from, const char* in,
                   std::size_t in_bytes, char* out, std::size_t out_bytes,
                   std::size_t expected_out) {
  iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    state.SkipWithError("iconv_open failed");
    return;
  }
  std::size_t produced = 0;
  for (auto _ : state) {
    char* src = const_cast<char*>(in);
    char* dst = out;
    std::size_t src_left = in_bytes, dst_left = out_bytes;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    benchmark::DoNotOptimize(iconv(converter, &src, &src_left, &dst, &dst_left));
    benchmark::ClobberMemory();
    produced = out_bytes - dst_left;
  }
  iconv_close(converter);
  if (produced != expected_out) state.SkipWithError("iconv produced a different length");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * in_bytes));
}

void decode_iconv(benchmark::State& state) {
  const Case& c = text_case(state);
  std::vector<char> dst(c.wide.size() * 2);
  convert_iconv(state, "UTF-16LE", "CP932", c.narrow.data(), c.narrow.size(), dst.data(),
                dst.size(), c.wide.size() * 2);
  if (std::memcmp(dst.data(), c.wide.data(), dst.size()) != 0)
    state.SkipWithError("iconv decoded differently");
}

void encode_iconv(benchmark::State& state) {
  const Case& c = text_case(state);
  std::vector<char> dst(c.narrow.size());
  convert_iconv(state, "CP932", "UTF-16LE", reinterpret_cast<const char*>(c.wide.data()),
                c.wide.size() * 2, dst.data(), dst.size(), c.narrow.size());
}

// memcpy through a real call, as a caller's copy of the same bytes would be.
void* (*volatile copy_call)(void*, const void*, std::size_t) = std::memcpy;

void copy_bytes(benchmark::State& state, const void* src, std::size_t bytes) {
  std::vector<char> dst(bytes);
  auto* copy = copy_call;
  for (auto _ : state) {
    benchmark::DoNotOptimize(copy(dst.data(), src, bytes));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// The decoder's input: the narrow text with its terminator.
void memcpy_narrow(benchmark::State& state) {
  const Case& c = text_case(state);
  copy_bytes(state, c.narrow.c_str(), c.narrow.size() + 1);
}

// The encoder's input: the wide text with its terminator.
void memcpy_wide(benchmark::State& state) {
  const Case& c = text_case(state);
  copy_bytes(state, c.wide.c_str(), (c.wide.size() + 1) * sizeof(KZ_WCHAR));
}

constexpr std::size_t kSizes[] = {8u << 20, 64u << 20};

std::string size_name(std::size_t bytes) {
  std::string name;
  if (bytes != 0) name.append("/").append(std::to_string(bytes >> 20)).append("MiB");
  return name;
}

void register_all() {
  struct Entry {
    const char* name;
    void (*body)(benchmark::State&);
    bool large;  // also on the 64 MiB texts
  } entries[] = {{"decode/ours", decode_ours, true},     {"decode/iconv", decode_iconv, false},
                 {"encode/ours", encode_ours, true},     {"encode/iconv", encode_iconv, false},
                 {"memcpy/narrow", memcpy_narrow, true}, {"memcpy/wide", memcpy_wide, true}};
  for (int shape = 0; shape < 5; ++shape)
    for (std::size_t bytes : kSizes) {
      if (shape == kPathShape && bytes != kSizes[0]) continue;
      const std::size_t size_arg = shape == kPathShape ? 0 : bytes;
      for (const auto& entry : entries) {
        if (!entry.large && bytes != kSizes[0]) continue;
        const std::string name =
            std::string(entry.name) + "/" + kShapes[shape] + size_name(size_arg);
        benchmark::RegisterBenchmark(name.c_str(), entry.body)
            ->Args({shape, static_cast<int64_t>(size_arg)})
            ->Unit(shape == kPathShape ? benchmark::kNanosecond : benchmark::kMicrosecond);
      }
    }
}

// Keeps each run's time per iteration beside the usual console output.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    // One time per benchmark: its run, or the median of its repetitions; CPU
    // time, which a machine shared with other work disturbs less.
    for (const auto& run : runs) {
      if (run.error_occurred) continue;
      const std::string name = run.run_name.function_name;
      if (run.run_type == Run::RT_Iteration && seconds_.count(name) == 0)
        seconds_[name] = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
        seconds_[name] = run.cpu_accumulated_time / static_cast<double>(run.iterations);
    }
  }

  double seconds(const std::string& name) const {
    const auto found = seconds_.find(name);
    return found == seconds_.end() ? 0 : found->second;
  }

  // memcpy's time over the conversion's (1.0 is memcpy's speed, higher is
  // better), and iconv's time over ours where it ran.
  void print_ratios() const {
    std::printf("\nspeed as a fraction of memcpy of the same input bytes (higher is better)\n");
    std::printf("  %-10s %-7s %8s %8s %10s %10s\n", "text", "size", "decode", "encode", "dec/iconv",
                "enc/iconv");
    for (int shape = 0; shape < kPathShape; ++shape)
      for (std::size_t bytes : kSizes) {
        const std::string tail = std::string("/") + kShapes[shape] + size_name(bytes);
        const double decode = seconds("decode/ours" + tail), encode = seconds("encode/ours" + tail);
        const double narrow = seconds("memcpy/narrow" + tail), wide = seconds("memcpy/wide" + tail);
        if (decode == 0 || encode == 0) continue;
        std::printf("  %-10s %-7s %8.3f %8.3f", kShapes[shape], size_name(bytes).c_str() + 1,
                    narrow / decode, wide / encode);
        const double decode_iconv = seconds("decode/iconv" + tail);
        const double encode_iconv = seconds("encode/iconv" + tail);
        if (decode_iconv != 0 && encode_iconv != 0)
          std::printf(" %9.1fx %9.1fx", decode_iconv / decode, encode_iconv / encode);
        std::printf("\n");
      }
    const std::string tail = std::string("/") + kShapes[kPathShape];
    const double copy = seconds("memcpy/narrow" + tail);
    const double decode = seconds("decode/ours" + tail), encode = seconds("encode/ours" + tail);
    if (copy != 0 && decode != 0 && encode != 0) {
      std::printf(
          "\nthe 40-byte call: decode %.1f ns (%.1fx), encode %.1f ns (%.1fx) a memcpy call of "
          "its 41 bytes, %.1f ns",
          decode * 1e9, decode / copy, encode * 1e9, encode / copy, copy * 1e9);
      const double decode_iconv = seconds("decode/iconv" + tail);
      const double encode_iconv = seconds("encode/iconv" + tail);
      if (decode_iconv != 0 && encode_iconv != 0)
        std::printf("; %.1fx and %.1fx iconv", decode_iconv / decode, encode_iconv / encode);
      std::printf("\n");
    }
  }

 private:
  std::map<std::string, double> seconds_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  register_all();
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.print_ratios();
  benchmark::Shutdown();
  return 0;
}
