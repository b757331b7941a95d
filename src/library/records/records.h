#pragma once
// The record format, in which objects leave the kernel and come back: `.m` files, members of libraries, and
// what crosses the pipe to a front end.
//
// An object graph is written depth first as printable text. Objects are numbered in the order in which their
// records begin; one that has been written already is a back reference to its number. A NAME inside an expression
// is a bare reference, so that a record never drags in other definitions; at the top it carries its value and
// attribute, and to read it is to assign it.
//
// The reader trusts nothing: each count and code is checked, long records are allocated as their data arrive, and
// every object is held against the catalogue (store/check/verify_rules.h) before anything else looks at it.

#include <cstddef>
#include <cstdint>

#include "store/dag.h"

namespace korel {

struct RepositoryDesc;

enum RecordFlags : int {
  recordBareName = 1,         // writing: the value of the NAME at the top is left out
  recordKeepNumbers = 2,      // the numbers of this call are there for the next one
  recordContinueNumbers = 4,  // numbering goes on from the last call
  recordOnLink = 8,           // writing: with numbers of its own, files being written keep theirs. Reading what the
                              // other end sent: a byte 1 ends it, names that exist stay as they are, and nothing is
                              // simplified but the entries of tables
};

// ---- writing

/// Takes one byte, or `n`; false when they could not be written.
using PutByte = bool (*)(void* context, int c);
using PutBytes = bool (*)(void* context, const char* bytes, std::size_t n);
using WriteFailure = void (*)(void* context, const char* text);

/// Writes the record of `x`, broken into lines of `width` characters unless that is 0. With a repository, names
/// that are no global names are written as references to its objects. False after a failure, which `failed` has
/// been told: "could not write to file", "unexpected DAG type: %ld", "too many levels of recursion".
/// Null functions: the standard output, and a line "Output Error: %s" on the standard error stream.
bool PrintDotM(DAG x, PutByte putch, WriteFailure failed, int width, int flags, RepositoryDesc* repository,
               void* context);
/// The same, the bytes being given in pieces.
bool PrintRecord(DAG x, PutBytes putBytes, WriteFailure failed, int width, int flags, RepositoryDesc* repository,
                 void* context);
/// Writes one Int.
bool PrintINT(std::int64_t value, PutByte putch, WriteFailure failed, int width, void* context);
/// Forgets the numbers that earlier calls have kept.
void forgetWrittenNumbers();
/// EXPSEQ of the locals with values that these calls have written as names: whoever reads them gets global ones.
DAG localsWrittenAsNames();

// ---- reading

/// The next byte, or -1 at the end.
using GetByte = int (*)(void* context);
/// Bytes as they come, in pieces.
struct ByteSource {
  const unsigned char* at = nullptr;
  const unsigned char* end = nullptr;
  /// Brings the next piece; false at the end. Null: there is none.
  bool (*more)(ByteSource& source) = nullptr;
  void* context = nullptr;

  /// The next byte, or -1 at the end.
  int next() { return at != end || (more != nullptr && more(*this)) ? *at++ : -1; }
};
/// The data ended in the midst of a record, `offset` bytes from where the first read began.
using ReadEnd = void (*)(void* context, long offset);
using ReadMessage = void (*)(void* context, long offset, const char* text);

/// Reads one record; 0 after a failure, of which `failed` (or `ended`) has been told. Null functions: the standard
/// input, and lines on the standard error stream.
DAG ParseDotM(GetByte getch, ReadEnd ended, ReadMessage failed, ReadMessage warn, int flags, RepositoryDesc* repository,
              void* context);
/// Reads one Int; -1 after a failure.
std::int64_t ParseINT(GetByte getch, ReadEnd ended, ReadMessage failed, void* context);

/// The state of reading one file: the numbers that its records share, and where in it the reader stands.
struct RecordNumbers {
  DAG* objects = nullptr;  // by number, from 1 on; 0 while the object isn't complete
  Word count = 0, capacity = 0;
  long offset = 0;          // bytes taken
  bool oldVersion = false;  // the file is of an earlier version, with other spellings of some names
  bool sawLinkEnd = false;  // the byte 1 that ends a record on the link has been taken
};
/// As `ParseDotM`, from pieces and on numbers of the caller's, to be given back by `releaseNumbers`. What follows the
/// record stays in the source.
DAG ParseRecord(ByteSource& source, ReadEnd ended, ReadMessage failed, ReadMessage warn, int flags,
                RepositoryDesc* repository, void* context, RecordNumbers& numbers);
void releaseNumbers(RecordNumbers& numbers);

}  // namespace korel
