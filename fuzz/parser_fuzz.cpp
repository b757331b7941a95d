// Any bytes as source text: parse, print, read back, simplify, print again.
//
// What must hold for every input: the parser ends in an object or in one reported error; what prints
// reads back; nothing crashes, hangs or leaves the kernel unable to go on. Statements are not run.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "fuzz_kernel.h"
#include "store/constants.h"
#include "store/long_string.h"
#include "store/objects.h"
#include "text/print/printer.h"
#include "text/read/source.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

const char* sourceText;

void ignoreError(void*, const char*) {}

char* printed(DAG x, int flags) {
  char* text = NewLongString();
  PrintKorel(x, LongStringSink, ignoreError, 0, &text, flags);
  return text;
}

// Runs as the parser's own call does, in a frame that reports errors.
DAG roundTrip() {
  DAG raw = parsestring(sourceText, 1);
  if (!raw) return null;
  // What the parser accepts and no valid object holds, as `1 := 2`, cannot be copied.
  DAG copy = CopyDAG(raw);
  if (copy != DAG(2)) DisposeString(printed(copy, 0));
  DAG simplified = nerintokorel(raw);
  char* once = printed(simplified, 0);
  DAG again = parsestring(once, 1);
  DisposeString(once);
  if (again) DisposeString(printed(nerintokorel(again), printBareOutermost));
  char* program = printed(simplified, printProgramText);
  parsestring(program, 1);
  DisposeString(program);
  return null;
}

// Numbers beside an operator that multiplies digits are cut to two digits: a tower of powers is work
// without end, not a fault.
void boundNumbers(char* text) {
  if (std::strpbrk(text, "^*!") == nullptr) return;
  if (std::strpbrk(text, "^*") != nullptr)
    for (char* mark = text; (mark = std::strchr(mark, '!')) != nullptr;) *mark = ' ';
  char* out = text;
  int run = 0;
  for (const char* in = text; *in != 0; ++in) {
    run = *in >= '0' && *in <= '9' ? run + 1 : 0;
    if (run <= 2) *out++ = *in;
  }
  *out = 0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static char text[1 << 16];
  if (size >= sizeof text) return 0;
  std::memcpy(text, data, size);
  text[size] = 0;
  boundNumbers(text);
  sourceText = text;
  startClock();
  run(roundTrip);
  collectEvery(64);
  return 0;
}
