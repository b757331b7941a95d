// Any bytes as a format and its input: printed with objects of every kind, scanned from the rest of the bytes.
//
// What must hold for every input: each ends in text, values, or one error. Nothing crashes, hangs or takes memory that
// the format doesn't ask for; widths are cut to three digits, since a longer one is no fault.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fuzz_kernel.h"
#include "session/driver.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/format/print_format.h"
#include "text/format/scan_format.h"
#include "text/read/source.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

char format[4096], input[4096];
DAG arguments;

void drop(void*, int) {}

DAG print() {
  DoPrintF(drop, nullptr, format, arguments, 1);
  return null;
}
int nextOfInput(void* at) {
  auto* text = static_cast<const char**>(at);
  return **text == 0 ? -1 : static_cast<unsigned char>(*(*text)++);
}
void backToInput(void* at, int) { --*static_cast<const char**>(at); }
DAG scan() {
  const char* at = input;
  ScanSource source{nextOfInput, backToInput, &at};
  DoScanF(source, format, arguments, 1);
  return null;
}

// Digits of a number behind the third become blanks.
void shortenNumbers(char* text) {
  int digits = 0;
  for (; *text != 0; ++text) {
    digits = *text >= '0' && *text <= '9' ? digits + 1 : 0;
    if (digits > 3) *text = ' ';
  }
}

DAG makeArguments() {
  arguments = parsestring(
      "[3, \"text\", -5, 1.5, x^2, 2^100, 1/3, 3+4*I, c, rtable(1..2,1..3,[[1,2,3],[4,5,6]]), -7, OM_f(\"a\",1), 10, "
      "Float(infinity), rtable(1..3,1..3,storage=band[1,1]), 2, 1..4, Pi, [1,2], -1.5e-30]",
      true);
  return null;
}
DAG evaluateArguments() { return arguments; }

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel({"-z"});
  run(makeArguments);
  DAG list = EvaluateDAG(evaluateArguments(), ignoreMessage, nullptr, 0, 0, nullptr);
  if (!list) std::abort();
  arguments = list[1];
  registerRoot(&arguments);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The format ends at the first line end, the input is what follows.
  std::size_t n = 0;
  while (n < size && data[n] != '\n') ++n;
  if (n >= sizeof format || size - n >= sizeof input) return 0;
  std::memcpy(format, data, n);
  format[n] = 0;
  shortenNumbers(format);
  const std::size_t rest = n < size ? size - n - 1 : 0;
  std::memcpy(input, data + size - rest, rest);
  input[rest] = 0;
  startClock();
  run(print);
  run(scan);
  collectEvery(256);
  return 0;
}
