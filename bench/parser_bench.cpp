// Reading source text: 1 MB of statements, parsed and dropped.

#include <cctype>
#include <string>

#include "row.h"
#include "text/read/source.h"

using namespace korel;
using namespace korel::bench;

namespace {

std::string program;

DAG rows() {
  const char* piece =
      "f := proc (n, m::integer) local i, s; s := 0; for i from 1 to n do if i mod 2 = 0 then "
      "s := s + a[i]*x^2 - 3/4*g(i, \"text\") else s := s - (b + c)^m fi od; s end proc;\n";
  while (program.size() < 1000000) program += piece;
  program = "proc() " + program + " end";
  rateRow(
      "parsing 1 MB of source text", "MB/s", static_cast<double>(program.size()) / 1e6,
      "classifying each character by <cctype>", [] { parsestring(program.c_str(), 1); },
      [] {
        long letters = 0;
        for (unsigned char c : program)
          letters += std::isspace(c) != 0 ? 0 : std::isalnum(c) != 0 ? 1 : std::ispunct(c) != 0 ? 2 : 3;
        volatile long sink = letters;
        (void)sink;
      });
  return null;
}

}  // namespace

int main() {
  startKernel();
  runInKernel(rows);
}
