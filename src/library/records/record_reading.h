#pragma once
// The steps of reading a record, shared by the files of the reader.

#include <csetjmp>
#include <cstddef>

#include "library/records/records.h"
#include "store/dag.h"

namespace korel {

/// The call under way. Plain data: a failure jumps past it; scratch memory is given back by whoever lands.
struct Reading {
  ByteSource* source;
  ReadEnd ended;
  ReadMessage failed, warn;
  void* context;
  int flags;
  RepositoryDesc* repository;
  RecordNumbers* numbers;
  char* text;  // of the name or string being read
  std::size_t textSpace;
  void* block;  // elements of the rtable being read
  DAG* fields;  // of the long objects being read
  std::size_t fieldCount, fieldSpace;
  Reading* outer;  // read meanwhile, when simplification loads something
  std::jmp_buf stop;
};

[[noreturn]] void failReading(Reading& r, const char* text);
inline bool onLink(const Reading& r) { return (r.flags & recordOnLink) != 0; }
/// The next printable byte: others are passed over.
int nextPrintable(Reading& r);
inline int next(Reading& r) {
  const ByteSource& source = *r.source;
  if (source.at == source.end || *source.at < 33 || *source.at >= 127) return nextPrintable(r);
  ++r.numbers->offset;
  return *r.source->at++;
}
/// An Int of at most `hexDigits` hexadecimal digits. Failures: "short integer too large for this system",
/// "invalid character in short integer encoding".
std::int64_t nextInt(Reading& r, int hexDigits = 8);
/// An Int that counts something: 0 to `most`. Failure: "invalid dag length".
Word nextCount(Reading& r, Word most);
/// The length of an object, at least `least`.
Word nextLength(Reading& r, Word least);
/// A text, which stays until the next one.
const char* nextText(Reading& r);
/// The next record's object; 0 for the word 0.
DAG nextRecord(Reading& r);
/// Gives the object of a record its number, by which later records refer to it.
DAG enter(Reading& r, Word number, DAG x);
/// `x` as a value that others may keep: unique, when what is read is to be simplified.
DAG settled(Reading& r, DAG x);
/// What follows the code in the records of an RTABLE and of an earlier version's array of hardware floats
/// (record_rtables.cpp). Gives a fresh RTABLE; the first enters it under its number before its fields are read, since
/// its elements may lead back to it.
DAG nextRtable(Reading& r, Word number);
DAG nextOldFloatArray(Reading& r);

}  // namespace korel
