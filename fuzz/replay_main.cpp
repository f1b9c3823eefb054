// Replays a seed corpus through a fuzz target without libFuzzer, so that
// the ordinary test run (under the sanitizers) exercises every seed.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: %s CORPUS-DIRECTORY\n", argv[0]), 2;
  std::size_t replayed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> input(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++replayed;
  }
  std::printf("replayed %zu inputs from %s\n", replayed, argv[1]);
  return replayed > 0 ? 0 : 1;
}
