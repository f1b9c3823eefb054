// KZ_SJIS2UNICODE and KZ_UNICODE2SJIS against glibc's iconv (CP932 to and
// from UTF-16LE, the converter opened once) and memcpy of the same bytes, on
// Japanese text, mostly-ASCII text and one short path. Each destination has
// exactly the needed size, so the zero-fill of the exports costs what it
// costs a caller who sizes by the text. The ratios are printed at the end.
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

// Paths, CSV rows and log lines; one line in about thirty has a Japanese word.
std::string ascii_text(std::size_t bytes) {
  Random random;
  std::string out;
  char line[160];
  while (out.size() < bytes) {
    switch (random.next(3)) {
      case 0:
        std::snprintf(line, sizeof line, "C:\\work\\project%u\\src\\module_%u\\file%04u.cpp\r\n",
                      random.next(50), random.next(200), random.next(10000));
        break;
      case 1:
        std::snprintf(line, sizeof line, "%u,%u,\"item-%05u\",%u.%02u,2024-%02u-%02u\r\n",
                      random.next(100000), random.next(1000), random.next(100000),
                      random.next(10000), random.next(100), 1 + random.next(12),
                      1 + random.next(28));
        break;
      default:
        std::snprintf(line, sizeof line,
                      "2024/11/%02u %02u:%02u:%02u INFO worker %u finished job %u in %u ms\r\n",
                      1 + random.next(28), random.next(24), random.next(60), random.next(60),
                      random.next(16), random.next(1000000), random.next(5000));
        break;
    }
    out += line;
    if (random.next(30) == 0) out += "\x93\xFA\x96\x7B\x8C\xEA\x83\x65\x83\x4C\x83\x58\x83\x67\r\n";
  }
  out.resize(bytes);
  if (static_cast<unsigned char>(out.back()) >= 0x80) out.back() = '\n';
  return out;
}

// 40 bytes, three of the characters double-byte.
const std::string kPath = "C:\\work\\project\\\x83\x66\x81\x5B\x83\x5E\\report-2024-1.csv";

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

const Case& text_case(int which) {
  static const std::vector<Case> cases = [] {
    std::vector<Case> made;
    for (const auto& narrow : {japanese_text(8u << 20), ascii_text(8u << 20), kPath})
      made.push_back({narrow, decode_once(narrow)});
    return made;
  }();
  return cases[static_cast<std::size_t>(which)];
}

const char* const kCaseNames[] = {"japanese", "mostly_ascii", "path40"};

void decode_ours(benchmark::State& state) {
  const Case& c = text_case(static_cast<int>(state.range(0)));
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
  const Case& c = text_case(static_cast<int>(state.range(0)));
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
  const Case& c = text_case(static_cast<int>(state.range(0)));
  std::vector<char> dst(c.wide.size() * 2);
  convert_iconv(state, "UTF-16LE", "CP932", c.narrow.data(), c.narrow.size(), dst.data(),
                dst.size(), c.wide.size() * 2);
  if (std::memcmp(dst.data(), c.wide.data(), dst.size()) != 0)
    state.SkipWithError("iconv decoded differently");
}

void encode_iconv(benchmark::State& state) {
  const Case& c = text_case(static_cast<int>(state.range(0)));
  std::vector<char> dst(c.narrow.size());
  convert_iconv(state, "CP932", "UTF-16LE", reinterpret_cast<const char*>(c.wide.data()),
                c.wide.size() * 2, dst.data(), dst.size(), c.narrow.size());
}

void copy_memcpy(benchmark::State& state) {
  const Case& c = text_case(static_cast<int>(state.range(0)));
  std::vector<char> dst(c.narrow.size());
  for (auto _ : state) {
    std::memcpy(dst.data(), c.narrow.data(), c.narrow.size());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * c.narrow.size()));
}

void register_all() {
  struct Entry {
    const char* name;
    void (*body)(benchmark::State&);
  } entries[] = {{"decode/ours", decode_ours},
                 {"decode/iconv", decode_iconv},
                 {"encode/ours", encode_ours},
                 {"encode/iconv", encode_iconv},
                 {"memcpy", copy_memcpy}};
  for (int which = 0; which < 3; ++which)
    for (const auto& entry : entries)
      benchmark::RegisterBenchmark((std::string(entry.name) + "/" + kCaseNames[which]).c_str(),
                                   entry.body)
          ->Arg(which)
          ->Unit(which == 2 ? benchmark::kNanosecond : benchmark::kMicrosecond);
}

// Keeps each run's time per iteration beside the usual console output.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    // One time per benchmark: its run, or the median of its repetitions.
    for (const auto& run : runs) {
      if (run.error_occurred) continue;
      if (run.run_type == Run::RT_Iteration && seconds_.count(run.run_name.str()) == 0)
        seconds_[run.run_name.str()] = run.real_accumulated_time / run.iterations;
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
        seconds_[run.run_name.str()] = run.real_accumulated_time / run.iterations;
    }
  }
  void print_ratios() const {
    std::printf("\nours against iconv (iconv time / our time; higher is better)\n");
    for (const char* direction : {"decode", "encode"})
      for (int which = 0; which < 3; ++which) {
        const std::string suffix =
            std::string("/") + kCaseNames[which] + "/" + std::to_string(which);
        const auto ours = seconds_.find(std::string(direction) + "/ours" + suffix);
        const auto theirs = seconds_.find(std::string(direction) + "/iconv" + suffix);
        const auto copy = seconds_.find("memcpy" + suffix);
        if (ours == seconds_.end() || theirs == seconds_.end()) continue;
        std::printf("  %-6s %-13s %6.1fx iconv", direction, kCaseNames[which],
                    theirs->second / ours->second);
        if (copy != seconds_.end())
          std::printf("   (%.1fx the time of memcpy)", ours->second / copy->second);
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
