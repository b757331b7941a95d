#include "library/records/record_file.h"

#include <cstdio>
#include <cstring>

#include "eval/evaluate/known_values.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/archive/member_io.h"
#include "library/records/records.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr int headerLength = 5;
constexpr char presentHeader[] = "K6R0\n";
constexpr const char* olderHeaders[] = {"K5R4", "K5R5"};
constexpr int lineWidth = 79;

// ---- what reading must not disturb

// Loading may happen in the midst of anything: what is being simplified, the values of %, and `libname` are put aside.
struct Aside {
  DAG ditto1, ditto2, ditto3, libname;
  ProcedureRecord* procedures;
  BindingRecord* bindings;
  bool bindingsEnabled;
};

Aside putAside() {
  const Frame& frame = *Environment->frame;
  Aside a{frame.ditto1, frame.ditto2, frame.ditto3, ini("libname")[1], procSimplStack, useSimplStack, bindingsEnabled};
  procSimplStack = nullptr;
  useSimplStack = nullptr;
  bindingsEnabled = false;
  return a;
}

void bringBack(const Aside& a) {
  Frame& frame = *Environment->frame;
  frame.ditto1 = a.ditto1;
  frame.ditto2 = a.ditto2;
  frame.ditto3 = a.ditto3;
  if (ini("libname")[1] != a.libname) {
    ini("libname")[1] = a.libname;
    stepEvaluationClock();
  }
  procSimplStack = a.procedures;
  useSimplStack = a.bindings;
  bindingsEnabled = a.bindingsEnabled;
}

// ---- reading

struct FileReading {
  const char* name;
  long failedAt;
  char failure[600];
  RecordNumbers numbers;
  Aside aside;
  ByteSource source;
};

bool nextPiece(ByteSource& source) { return ReadPiece(source.at, source.end); }
void noteFailure(void* context, long offset, const char* text) {
  auto& f = *static_cast<FileReading*>(context);
  f.failedAt = offset + headerLength;
  std::snprintf(f.failure, sizeof f.failure, "%s", text);
}
void noteEnd(void* context, long offset) { noteFailure(context, offset, "unexpected end of file"); }
void warn(void*, long, const char* text) { KernelWarning(2, withoutMarks(text)); }

void abandonReading(const char*) {
  auto& f = *reinterpret_cast<FileReading*>(errorProcParam);
  DeallocRead();
  releaseNumbers(f.numbers);
  bringBack(f.aside);
}

char shown(int c) { return c >= 32 && c < 127 ? static_cast<char>(c) : ' '; }

void readHeader(FileReading& f) {
  int c[headerLength];
  for (int& byte : c) byte = f.source.next();
  bool isPresent = true;
  for (int i = 0; i < 4; ++i) isPresent = isPresent && c[i] == presentHeader[i];
  for (const char* older : olderHeaders) {
    bool matches = true;
    for (int i = 0; i < 4; ++i) matches = matches && c[i] == older[i];
    f.numbers.oldVersion = f.numbers.oldVersion || matches;
  }
  if (isPresent || f.numbers.oldVersion) return;
  char text[1400];
  std::snprintf(text, sizeof text, "`%s` is an incorrect or outdated .m file (%c%c%c%c)", withoutMarks(f.name),
                shown(c[0]), shown(c[1]), shown(c[2]), shown(c[3]));
  userror(text);
}

// Passes over what stands between two records; false at the end of the file.
bool skipSeparator(FileReading& f) {
  for (;;) {
    int c = f.source.next();
    if (c < 0) return false;
    ++f.numbers.offset;
    if (c >= 32 && c < 127) return true;
  }
}

void readRecords(FileReading& f, RepositoryDesc* repository) {
  int flags = recordKeepNumbers;
  do {
    f.failure[0] = 0;
    ParseRecord(f.source, noteEnd, noteFailure, warn, flags, repository, &f, f.numbers);
    if (f.failure[0] != 0)
      KernelException("at offset %1 in `%2`, %3", NewInteger(f.failedAt), strinstall(f.name), strinstall(f.failure));
    flags = recordKeepNumbers | recordContinueNumbers;
  } while (skipSeparator(f));
}

// ---- writing

struct FileWriting {
  const char* failure = nullptr;
  char text[128];
};

bool putBytes(void*, const char* bytes, std::size_t n) { return WriteBytes(bytes, n); }
void noteWriteFailure(void* context, const char* text) {
  auto& f = *static_cast<FileWriting*>(context);
  std::snprintf(f.text, sizeof f.text, "%s", text);
  f.failure = f.text;
}
void abandonWriting(const char*) {
  AbandonWrite();
  forgetWrittenNumbers();
}

void writeRecords(DAG list, RepositoryDesc* repository, FileWriting& f) {
  for (const char* c = presentHeader; *c != 0; ++c)
    if (!WriteByte(*c)) return noteWriteFailure(&f, "could not write to file");
  // A file holds one record at least: where there is nothing to save, that of the empty sequence.
  const bool isSeveral = isSequence(list) && memberCount(list) > 0;
  DAG alone[1] = {list};
  const DAG* objects = isSeveral ? &list[1] : alone;
  const Word count = isSeveral ? memberCount(list) : 1;
  int flags = recordKeepNumbers;
  for (Word i = 0; i < count; ++i, flags = recordKeepNumbers | recordContinueNumbers) {
    if (i > 0 && (!WriteByte(',') || !WriteByte('\n'))) return noteWriteFailure(&f, "could not write to file");
    if (!PrintRecord(objects[i], putBytes, noteWriteFailure, lineWidth, flags, repository, &f)) return;
  }
  if (!WriteByte('\n')) noteWriteFailure(&f, "could not write to file");
}

}  // namespace

bool isRecordFileName(const char* name) {
  std::size_t n = std::strlen(name);
  return n >= 2 && std::strcmp(name + n - 2, ".m") == 0;
}

DAG ReadDotMFile(const char* name, bool quiet, RepositoryDesc* repository) {
  char buffer[readPiece];
  if (quiet) ReadFailOK();
  if (!AllocRead(name, buffer, sizeof buffer)) return ini("FAIL");
  FileReading f{name, 0, "", RecordNumbers(), putAside(), ByteSource{.more = nextPiece}};
  PushParamErrorProc(abandonReading, &f);
  readHeader(f);
  readRecords(f, repository);
  PopErrorProc();
  DeallocRead();
  releaseNumbers(f.numbers);
  bringBack(f.aside);
  return null;
}

DAG WriteDotMFile(const char* name, DAG list, RepositoryDesc* repository) {
  char buffer[4096];
  AllocWrite(name, buffer, sizeof buffer);
  PushErrorProc(abandonWriting);
  forgetWrittenNumbers();
  FileWriting f;
  writeRecords(list, repository, f);
  DAG locals = localsWrittenAsNames();
  forgetWrittenNumbers();
  PopErrorProc();
  if (f.failure != nullptr) {
    AbandonWrite();
    userror(f.failure);
  }
  DeallocWrite();
  return locals;
}

}  // namespace korel
