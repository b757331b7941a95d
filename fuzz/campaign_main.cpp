// A fuzz target without a fuzzer: random inputs by number, or the inputs in files.
//
//   <target>_campaign FIRST LAST [LENGTH]   inputs of LENGTH bytes, one for each seed
//   <target>_campaign FILE...               the bytes of each file
//
// Each input has ten seconds of processor time; the seed that runs stands in the last line of standard error when the
// process ends early.

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sys/time.h>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr long secondsForInput = 10;

/// The process ends by a signal when the time is up.
void startClock() {
  itimerval limit{};
  limit.it_value.tv_sec = secondsForInput;
  setitimer(ITIMER_PROF, &limit, nullptr);
}

void runSeed(unsigned seed, std::size_t length) {
  std::mt19937 generator(seed);
  std::vector<std::uint8_t> bytes(length);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator() >> 8);
  std::fprintf(stderr, "\rseed %u ", seed);
  startClock();
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

bool runFile(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return false;
  std::vector<std::uint8_t> bytes;
  for (int c; (c = std::fgetc(file)) != EOF;) bytes.push_back(static_cast<std::uint8_t>(c));
  std::fclose(file);
  std::fprintf(stderr, "%s\n", path);
  startClock();
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  LLVMFuzzerInitialize(&argc, &argv);
  if (argc >= 3 && std::isdigit(static_cast<unsigned char>(argv[1][0]))) {
    unsigned long first = std::strtoul(argv[1], nullptr, 10), last = std::strtoul(argv[2], nullptr, 10);
    std::size_t length = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 400;
    for (unsigned long seed = first; seed <= last; ++seed) runSeed(static_cast<unsigned>(seed), length);
    std::fprintf(stderr, "\n");
    return 0;
  }
  for (int i = 1; i < argc; ++i)
    if (!runFile(argv[i])) return 1;
  return 0;
}
