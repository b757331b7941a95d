#pragma once
// The steps of writing a record, shared by the files of the writer.

#include <csetjmp>
#include <cstdint>

#include "library/records/records.h"
#include "store/dag.h"

namespace korel {

struct WrittenNumbers;

/// The call under way. Plain data: a failure jumps past it.
struct Writing {
  PutBytes putBytes;
  WriteFailure failed;
  void* context;
  std::int64_t width;  // of a line
  std::int64_t column;
  int flags;
  int depth;  // of the record being written, 1 at the top
  RepositoryDesc* repository;
  WrittenNumbers* numbers;
  std::jmp_buf stop;
  char *at, *end;  // bytes that wait to be given
  char bytes[1024];
};

/// Tells of the failure and ends the call.
[[noreturn]] void failWriting(Writing& w, const char* text);
void flush(Writing& w);
void breakLine(Writing& w);
inline void put(Writing& w, int c) {
  *w.at = static_cast<char>(c);
  if (++w.at == w.end) flush(w);
  if (++w.column == w.width) breakLine(w);
}
void putInt(Writing& w, std::int64_t value);
/// The record of `x`, a back reference when there is one.
void putRecord(Writing& w, DAG x);
/// What follows the code in the record of an RTABLE (record_rtables.cpp).
void putRtable(Writing& w, DAG rtable);

}  // namespace korel
