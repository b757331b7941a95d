// Any bytes as XML: the first one gives the reader's flags.
//
// What must hold for every input: a tree or one reported failure; a tree that can be written reads back, with the same
// flags, to what is written alike. Nothing crashes, hangs or runs out of stack.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fuzz_kernel.h"
#include "openmath/openmath.h"
#include "store/constants.h"
#include "text/format/text_buffer.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

struct Bytes {
  const char* data;
  std::size_t size, at;
};
Bytes input;
int flags;

int nextByte(void* context) {
  auto* bytes = static_cast<Bytes*>(context);
  return bytes->at < bytes->size ? static_cast<unsigned char>(bytes->data[bytes->at++]) : -1;
}
void ignoreFailure(void*, int, const char*) {}

DAG readAndWrite() {
  DAG tree = ParseOpenMath(nextByte, nullptr, ignoreFailure, flags, &input);
  if (!tree) return null;
  // Without entities a text may hold what ends it; with them it is written as it was.
  if ((flags & xmlReadEntities) == 0) return null;
  TextBuffer first, second;
  PrintOpenMath(tree, TextBufferSink, &first, xmlWriteEntities);
  Bytes again = {first.bytes(), first.size(), 0};
  DAG other = ParseOpenMath(nextByte, nullptr, ignoreFailure, flags & ~xmlKeepSpace, &again);
  if (!other) std::abort();
  PrintOpenMath(other, TextBufferSink, &second, xmlWriteEntities);
  Bytes third = {second.bytes(), second.size(), 0};
  if (!ParseOpenMath(nextByte, nullptr, ignoreFailure, flags & ~xmlKeepSpace, &third)) std::abort();
  return null;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  flags = data[0] & 7;
  input = {reinterpret_cast<const char*>(data) + 1, size - 1, 0};
  startClock();
  run(readAndWrite);
  collectEvery(256);
  return 0;
}
