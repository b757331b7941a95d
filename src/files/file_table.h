#pragma once
// The table of open files: streams, descriptors, pipes, processes, and the streams of the front end.
//
// A program names a file by its name, a NAME or STRING that is compared as text, or by the number of its record. Files
// stay open until they are closed, over errors too, down to the end of the run or a restart. `default` and `terminal`
// stand for the front end and have records only while they are open.

#include <cstdint>
#include <cstdio>

#include "store/dag.h"

namespace korel {

enum class FileKind : std::uint8_t {
  unused,
  stream,     // by the C library's buffers
  direct,     // `default` or `terminal`
  raw,        // a descriptor
  pipe,       // an end of a pipe
  process,    // a pipe to a command
  interface,  // text for a stream of the front end
};
constexpr int defaultDescriptor = -1, terminalDescriptor = -2;
constexpr int nothingPushedBack = -2;

// A line that the stream's buffer holds, looked at before it is asked for.
struct LineAhead {
  const char* begin = nullptr;  // null: none
  const char* end = nullptr;    // its newline
  Word hash = 0;
};

struct FileRecord {
  DAG name{};                   // NAME or STRING
  std::FILE* stream = nullptr;  // of a stream or process
  int descriptor = 0;
  bool reads = false;  // it was opened for reading
  bool text = false;
  FileKind kind = FileKind::unused;
  int pushedBack = nothingPushedBack;
  bool readLast = false, wroteLast = false;  // what the C library has to be told of when it changes
  LineAhead ahead{};                         // forgotten when something else reads or writes
  char* collected = nullptr;                 // long string of an INTERFACE_ stream, until it is flushed
};
constexpr int fileTableSize = 47;
extern FileRecord fileTable[fileTableSize];
extern int openFileCount;

inline int slotOf(const FileRecord& file) { return static_cast<int>(&file - fileTable); }
inline bool isInUse(const FileRecord& file) { return file.kind != FileKind::unused; }
const char* kindName(FileKind kind);

/// Clears the table; part of the start.
void InitializeIOLibrary();
/// Closes all files; nothing is raised.
void CleanUpIOLibrary();
/// Writes out what the buffers of all streams hold.
void flushAllFiles();

// ---- opening and closing

struct FileMode {
  bool reads;
  bool text;
  bool updates = false;     // a file that exists keeps its content
  std::int64_t offset = 0;  // of an update: where it begins; `endOfFile`: at its end
};
constexpr std::int64_t endOfFile = -1;

/// Opens `name` and gives its record. Errors: "too many files already open", "file I/O is disabled", "file currently
/// in use by writeto or appendto", "TEXT mode not supported for raw I/O", "could not seek to initial offset -
/// file closed",
/// and those of the system.
FileRecord& OpenFile(DAG name, const FileMode& mode, FileKind kind);
/// A record for a descriptor that is open.
FileRecord& enterDescriptor(DAG name, int descriptor, bool reads, FileKind kind);
/// Frees the record, then closes the file. Errors: those of the system.
void CloseFile(FileRecord& file);

// ---- finding

/// The record with this name, or null.
FileRecord* fileNamed(const char* name);
enum class FileUse : std::uint8_t { open, reading, writing };
/// The file that member `position` of the EXPSEQ names. A name that isn't open is opened as a text stream for reading
/// or writing; for `open` it has to be open. Errors: "file name or descriptor required", "file descriptor not in use",
/// "file or pipe already open in READ mode", and those of `OpenFile`.
FileRecord& lookUpFile(DAG arguments, Word position, FileUse use);
/// EXPSEQ: the count of open files, the depth of `read`, the size of the table, and a LIST for each file.
DAG fileStatus();
/// The LIST of one file.
DAG fileDescription(const FileRecord& file);

}  // namespace korel
