#pragma once
// The steps of writing a record, shared by the files of the writer.

#include <csetjmp>

#include "library/records/records.h"
#include "store/dag.h"

namespace korel {

struct WrittenNumbers;

/// The call under way. Plain data: a failure jumps past it.
struct Writing {
  PutByte putch;
  WriteFailure failed;
  void* context;
  int width;
  int column;
  int flags;
  int depth;  // of the record being written, 1 at the top
  RepositoryDesc* repository;
  WrittenNumbers* numbers;
  std::jmp_buf stop;
};

/// Tells of the failure and ends the call.
[[noreturn]] void failWriting(Writing& w, const char* text);
void put(Writing& w, int c);
void putInt(Writing& w, std::int64_t value);
/// The record of `x`, a back reference when there is one.
void putRecord(Writing& w, DAG x);
/// What follows the code in the record of an RTABLE (record_rtables.cpp).
void putRtable(Writing& w, DAG rtable);

}  // namespace korel
