#pragma once
// The steps of reading a record, shared by the files of the reader.

#include <csetjmp>
#include <cstddef>

#include "library/records/record_codes.h"
#include "library/records/records.h"
#include "store/dag.h"

namespace korel {

/// Objects that have been read and wait to be simplified, the earliest first.
///
/// To find the one object of a value costs a look at a far line of the table of simplified objects. An object waits
/// here for those behind it, until the line has come (bench/library.sh, records read). Whoever holds the fields of an
/// object holds some that wait, or did when they were read: `settledObject` gives what has become of them.
struct WaitingObjects {
  static constexpr Word space = 16;
  struct Entry {
    DAG object;
    Word number;  // 0: none
    Word key;     // in the table of simplified objects, if no part of it is replaced
  };
  Entry entries[space];
  Word first, end;  // counted from the start of the call
};

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
  DAG* fields;  // of the objects being read
  std::size_t fieldCount, fieldSpace;
  WaitingObjects waiting;
  Reading* outer;  // read meanwhile, when simplification loads something
  std::jmp_buf stop;
};

/// Records claim their lengths before their data arrive: objects are made this long at first.
constexpr Word trustedLength = 64;

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
std::int64_t nextLongInt(Reading& r, int hexDigits);
inline std::int64_t nextInt(Reading& r, int hexDigits = 8) {
  // Most are of one character (bench/library.sh, records read).
  ByteSource& source = *r.source;
  if (source.at == source.end || *source.at < 33 || *source.at > 33 + largestShortInt) return nextLongInt(r, hexDigits);
  ++r.numbers->offset;
  return *source.at++ - 33;
}
/// An Int that counts something: 0 to `most`. Failure: "invalid dag length".
Word nextCount(Reading& r, Word most);
/// The length of an object, at least `least`.
Word nextLength(Reading& r, Word least);
/// What follows the code in the record of an integer of either sign (record_integers.cpp).
DAG nextInteger(Reading& r, Tag tag);
/// A text, which stays until the next one.
const char* nextText(Reading& r);
/// The next record's object, which may be waiting; 0 for the word 0.
DAG nextRecord(Reading& r);
/// The same, not waiting any more.
DAG nextSettled(Reading& r);
/// The number of the next object, open until `enter`.
Word takeNumber(Reading& r);
/// Gives the object of a record its number, by which later records refer to it.
inline DAG enter(Reading& r, Word number, DAG x) {
  r.numbers->objects[number] = x;
  return x;
}
/// Puts `field` on the pile `r.fields`; whoever has taken his fields from it lowers `r.fieldCount`.
void keepField(Reading& r, DAG field);
/// `x` as a value that others may keep: unique, when what is read is to be simplified.
DAG settled(Reading& r, DAG x);
/// Has the object of the record with this number simplified later: its fields, which may be waiting too, are values
/// (record_waiting.cpp).
DAG letWait(Reading& r, Word number, DAG x);
/// Simplifies all that waits.
void settleWaiting(Reading& r);
/// The reading ends early: what waits is no object of a record.
void forgetWaiting(Reading& r);
/// Set in the control word of an object that waited and came to another one, to which its first field leads.
constexpr Word replacedBit = 64;
/// What `x`, which doesn't wait any more, has become.
inline DAG settledObject(DAG x) { return isObject(x) && (controlWord(x) & replacedBit) != 0 ? x[1] : x; }
/// Settles the fields of `s`, which are records, and what waits if any of them does.
void settleFields(Reading& r, DAG s);
/// What follows the code in the records of an RTABLE and of an earlier version's array of hardware floats
/// (record_rtables.cpp). Gives a fresh RTABLE; the first enters it under its number before its fields are read, since
/// its elements may lead back to it.
DAG nextRtable(Reading& r, Word number);
DAG nextOldFloatArray(Reading& r);

}  // namespace korel
