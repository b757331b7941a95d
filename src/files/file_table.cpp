#include "files/file_table.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "files/file_access.h"
#include "files/redirection.h"
#include "files/system_errors.h"
#include "frame/errors.h"
#include "frame/streams.h"
#include "library/repository/directory_contents.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/append.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/read/input.h"

namespace korel {

FileRecord fileTable[fileTableSize];
int openFileCount = 0;

namespace {

struct KindRow {
  const char* name;
  void (*close)(FileRecord& file);  // null: nothing to close
};
void closeStream(FileRecord& file) {
  if (std::fclose(file.stream) != 0) raiseSystemError();
}
void closeDescriptor(FileRecord& file) {
  if (::close(file.descriptor) != 0) raiseSystemError();
}
void closeProcess(FileRecord& file) {
  // Its end may have been waited for already.
  if (::pclose(file.stream) == -1 && errno != ECHILD) raiseSystemError();
}
constexpr KindRow kindRows[] = {
    // name       closed by
    {"UNUSED",    nullptr},
    {"STREAM",    closeStream},
    {"DIRECT",    nullptr},
    {"RAW",       closeDescriptor},
    {"PIPE",      closeDescriptor},
    {"PROCESS",   closeProcess},
    {"INTERFACE", nullptr},
};
const KindRow& rowOf(FileKind kind) { return kindRows[static_cast<int>(kind)]; }

void visitNames(Visitor visit) {
  for (const FileRecord& file : fileTable)
    if (isInUse(file)) visit(file.name);
}

// ---- a pipe whose reader is gone

// Writing there is an error of the write, not the end of the program, while a pipe is open for writing. A handler, in
// place of the signal ignored, isn't inherited by commands.
void passOverSignal(int) {}
struct sigaction pipeActionBefore;
bool pipesGuarded = false;

void guardPipes() {
  bool writes = false;
  for (const FileRecord& file : fileTable)
    writes = writes || ((file.kind == FileKind::pipe || file.kind == FileKind::process) && !file.reads);
  if (writes == pipesGuarded) return;
  pipesGuarded = writes;
  if (!writes) {
    sigaction(SIGPIPE, &pipeActionBefore, nullptr);
    return;
  }
  struct sigaction action = {};
  action.sa_handler = passOverSignal;
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, &pipeActionBefore);
}

FileRecord& freeRecord() {
  for (FileRecord& file : fileTable)
    if (!isInUse(file)) return file;
  userror("too many files already open");
}

FileRecord& fill(DAG name, const FileRecord& content) {
  FileRecord& file = freeRecord();
  file = content;
  file.name = name;
  ++openFileCount;
  guardPipes();
  return file;
}

}  // namespace

const char* kindName(FileKind kind) { return rowOf(kind).name; }

void InitializeIOLibrary() {
  for (FileRecord& file : fileTable) file = {};
  openFileCount = 0;
  registerRootWalker(visitNames);
  forgetRedirection();
}

void flushAllFiles() {
  for (FileRecord& file : fileTable)
    if (file.stream != nullptr && isInUse(file) && !file.reads) std::fflush(file.stream);
}

void CleanUpIOLibrary() {
  for (FileRecord& file : fileTable) {
    FileRecord closed = file;
    file = {};
    switch (closed.kind) {
      case FileKind::stream: std::fclose(closed.stream); break;
      case FileKind::process: ::pclose(closed.stream); break;
      case FileKind::raw: case FileKind::pipe: ::close(closed.descriptor); break;
      case FileKind::interface: DisposeString(closed.collected); break;
      case FileKind::unused: case FileKind::direct: break;
    }
  }
  openFileCount = 0;
  guardPipes();
}

// ---- opening

namespace {

void requireNoDirectory(int descriptor, std::FILE* stream) {
  struct stat status;
  if (fstat(descriptor, &status) != 0 || !S_ISDIR(status.st_mode)) return;
  if (stream != nullptr) std::fclose(stream);
  else ::close(descriptor);
  raiseSystemError(EISDIR);
}

// Regular files get a buffer of this size in place of the system's small one, in the place of the record that will be
// theirs; what stands for a device or a pipe keeps its own (bench/files.sh, lines of a file).
constexpr std::size_t streamBufferSize = 1 << 16;
char streamBuffers[fileTableSize][streamBufferSize];

void enlargeBuffer(std::FILE* stream) {
  struct stat status;
  if (fstat(fileno(stream), &status) != 0 || !S_ISREG(status.st_mode)) return;
  std::setvbuf(stream, streamBuffers[slotOf(freeRecord())], _IOFBF, streamBufferSize);
}

bool exists(const char* path) {
  struct stat status;
  return stat(path, &status) == 0;
}

[[noreturn]] void seekFailed() { userror("could not seek to initial offset - file closed"); }

FileRecord openStream(const char* path, const FileMode& mode) {
  const bool updates = !mode.reads && mode.updates && exists(path);
  std::FILE* stream = std::fopen(path, mode.reads ? "r" : updates ? "r+" : "w+");
  if (stream == nullptr) raiseSystemError();
  requireNoDirectory(fileno(stream), stream);
  enlargeBuffer(stream);
  const bool sought = mode.offset == endOfFile ? std::fseek(stream, 0, SEEK_END) == 0
                      : mode.offset == 0
                          ? true
                          : std::fseek(stream, mode.offset, SEEK_SET) == 0 && std::ftell(stream) == mode.offset;
  if (!sought) {
    std::fclose(stream);
    seekFailed();
  }
  return {.stream = stream, .descriptor = fileno(stream), .kind = FileKind::stream};
}

FileRecord openRaw(const char* path, const FileMode& mode) {
  if (mode.text) userror("TEXT mode not supported for raw I/O");
  const bool updates = mode.updates && exists(path);
  const int flags = mode.reads ? O_RDONLY : updates ? O_RDWR : O_WRONLY | O_CREAT | O_TRUNC;
  const int descriptor = ::open(path, flags | O_CLOEXEC, 0666);
  if (descriptor < 0) raiseSystemError();
  requireNoDirectory(descriptor, nullptr);
  const off_t wanted = mode.offset == endOfFile ? 0 : mode.offset;
  const off_t at = mode.offset == 0 ? 0 : lseek(descriptor, wanted, mode.offset == endOfFile ? SEEK_END : SEEK_SET);
  if (at < 0) {
    ::close(descriptor);
    seekFailed();
  }
  return {.descriptor = descriptor, .kind = FileKind::raw};
}

FileRecord openProcess(const char* command, const FileMode& mode) {
  std::fflush(nullptr);
  std::FILE* stream = ::popen(command, mode.reads ? "r" : "w");
  if (stream == nullptr) raiseSystemError();
  doubtDirectoryContents();
  return {.stream = stream, .descriptor = fileno(stream), .kind = FileKind::process};
}

// A stream of the front end, or one of the names that stand for it; kind `unused` for what is neither.
FileRecord frontEndFile(DAG name) {
  if (hasText(name, "default")) return {.descriptor = defaultDescriptor, .kind = FileKind::direct};
  if (hasText(name, "terminal")) return {.descriptor = terminalDescriptor, .kind = FileKind::direct};
  if (!isStreamName(name)) return {};
  if (hasText(name, streamName(Stream::REDIRECT)) && secureMode) userror("redirection is disabled");
  return {.kind = FileKind::interface, .collected = NewLongString()};
}

}  // namespace

FileRecord& OpenFile(DAG name, const FileMode& mode, FileKind kind) {
  freeRecord();  // before anything happens to the file
  FileRecord content = frontEndFile(name);
  if (content.kind == FileKind::unused) {
    const char* path = textOf(name);
    if (secureMode) userror("file I/O is disabled");
    if (kind != FileKind::process && isRedirectedTo(path)) userror("file currently in use by writeto or appendto");
    switch (kind) {
      case FileKind::stream: content = openStream(path, mode); break;
      case FileKind::process: content = openProcess(path, mode); break;
      case FileKind::raw: content = openRaw(path, mode); break;
      default: notimpl("OpenFile");
    }
    if (!mode.reads) doubtDirectoryContents();
  }
  content.reads = mode.reads;
  content.text = mode.text || content.kind == FileKind::direct;
  return fill(name, content);
}

FileRecord& enterDescriptor(DAG name, int descriptor, bool reads, FileKind kind) {
  return fill(name, {.descriptor = descriptor, .reads = reads, .text = true, .kind = kind});
}

void CloseFile(FileRecord& file) {
  if (file.kind == FileKind::interface) {
    FlushFile(file);
    DisposeString(file.collected);
  }
  FileRecord closed = file;
  file = {};
  --openFileCount;
  if (rowOf(closed.kind).close != nullptr) rowOf(closed.kind).close(closed);
  guardPipes();
  if (!closed.reads) doubtDirectoryContents();
}

// ---- finding

FileRecord* fileNamed(const char* name) {
  for (FileRecord& file : fileTable)
    if (isInUse(file) && hasText(file.name, name)) return &file;
  return nullptr;
}

namespace {

FileRecord& fileNumbered(DAG number) {
  const bool fits = isImmediate(number) && immediateValue(number) >= 0 && immediateValue(number) < fileTableSize;
  if (!fits || !isInUse(fileTable[immediateValue(number)])) userror("file descriptor not in use");
  return fileTable[immediateValue(number)];
}

// The record that was found last, which has no name when it is free: a program that reads or writes line by line names
// the same file again.
FileRecord* lastFound = fileTable;

FileRecord& fileFor(DAG x, FileUse use) {
  if (isInteger(x)) return fileNumbered(x);
  if (FileRecord* file = fileNamed(textOf(x))) return *(lastFound = file);
  if (use == FileUse::open) userror("file descriptor not in use");
  return OpenFile(x, {.reads = use == FileUse::reading, .text = true}, FileKind::stream);
}

}  // namespace

FileRecord& lookUpFile(DAG arguments, Word position, FileUse use) {
  if (position >= lengthOf(arguments)) userror("file name or descriptor required");
  DAG x = arguments[position];
  const bool again = lastFound->name == x;
  if (!again && !isInteger(x) && !isText(x)) userror("file name or descriptor required");
  FileRecord& file = again ? *lastFound : fileFor(x, use);
  if (use == FileUse::writing && file.reads && file.kind != FileKind::direct)
    userror("file or pipe already open in READ mode");
  return file;
}

// ---- status

DAG fileDescription(const FileRecord& file) {
  DAG handle = file.stream != nullptr
                   ? NewInteger(static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(file.stream)))
                   : NewInteger(file.descriptor);
  DAG members = newSequence({immediate(slotOf(file)), file.name, naminstall(kindName(file.kind)),
                             new3(EQUATION, naminstall(file.stream != nullptr ? "FP" : "FD"), simpl(handle)),
                             naminstall(file.reads ? "READ" : "WRITE"), naminstall(file.text ? "TEXT" : "BINARY")});
  return simpl(new2(LIST, members));
}

DAG fileStatus() {
  DAG status = newSequence({immediate(openFileCount), immediate(r_unit0), immediate(fileTableSize)});
  for (const FileRecord& file : fileTable)
    if (isInUse(file)) status = Append2(status, fileDescription(file));
  return simpl(status);
}

}  // namespace korel
