#pragma once
// The debug dump: any object printed word by word, down to a given depth.
//
// For the debugger of the kernel's developers, and for tests: it allocates nothing, raises nothing, and
// follows no reference that lies outside the heap, so that it can be called at any time on any word.
//
//   (gdb) call korel::dump(s)
//
//   0x20014: SUM length 5, generation 3, simplified
//     [1] 0x20040: NAME "x"
//     [2] 3
//     ...

#include <cstdint>
#include <cstdio>

#include "store/dag.h"

namespace korel {

/// Where the text goes, line by line, each with its newline.
using DumpSink = void (*)(void* context, const char* line);

/// Prints `x` and `depth` levels below it (0: its own words only). At most `maxDumpFields` fields of
/// an object are shown.
void dumpObject(DAG x, int depth, DumpSink sink, void* context);
void dumpObject(DAG x, int depth, std::FILE* stream);
/// For the debugger: two levels, to the standard error stream.
void dump(DAG x);

constexpr Word maxDumpFields = 64;

}  // namespace korel
