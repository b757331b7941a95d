// Any bytes as the records of a file: read, simplified as they come, written and read again.
//
// What must hold for every input: the reader ends in objects or in one reported failure, and what is read has a
// record that reads back to the same object. Nothing crashes, hangs or takes memory that the bytes don't account for.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fuzz_kernel.h"
#include "library/records/records.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/names.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

ByteSource input;

struct Text {
  char* data;
  std::size_t size, capacity;
};
Text written;

int nextByte(void* source) { return static_cast<ByteSource*>(source)->next(); }
bool putByte(void*, int c) {
  if (written.size == written.capacity) {
    written.capacity = written.capacity == 0 ? 4096 : 2 * written.capacity;
    written.data = static_cast<char*>(std::realloc(written.data, written.capacity));
    if (written.data == nullptr) std::abort();
  }
  written.data[written.size++] = static_cast<char>(c);
  return true;
}
void ignoreEnd(void*, long) {}
void ignoreText(void*, long, const char*) {}
void ignoreFailure(void*, const char*) {}


RecordNumbers numbers;  // kept over an error that ends a record

DAG readRecords() {
  for (int records = 0; records < 20; ++records) {
    DAG x = ParseRecord(input, ignoreEnd, ignoreText, ignoreText, 0, nullptr, nullptr, numbers);
    if (!x) break;
    written.size = 0;
    if (!PrintDotM(x, putByte, ignoreFailure, 79, recordBareName, nullptr, nullptr)) break;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(written.data);
    ByteSource again{bytes, bytes + written.size};
    DAG y = ParseDotM(nextByte, ignoreEnd, ignoreText, ignoreText, 0, nullptr, &again);
    if (!y) std::abort();
  }
  return null;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input = {data, data + size};
  startClock();
  run(readRecords);
  releaseNumbers(numbers);
  // Records assign names: every so often all is given up.
  collectEvery(64);
  static int inputs = 0;
  if (++inputs % 4096 == 0) RestartKorel();
  return 0;
}
