#include "files/iolib.h"

#include "files/file_access.h"
#include "files/file_table.h"
#include "files/shell_commands.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/vocabulary.h"

namespace korel {

// ---- opening and closing

namespace {

bool isWord(DAG x, const char* text) { return isText(x) && hasText(x, text); }

bool readsByMode(DAG mode) {
  if (isWord(mode, "READ")) return true;
  if (!isWord(mode, "WRITE")) userror("file mode must be READ or WRITE");
  return false;
}

// A position: `infinity`, the end of the file, or an integer; false for anything else.
bool readPosition(DAG x, std::int64_t& position) {
  if (x == ini("infinity")) {
    position = endOfFile;
    return true;
  }
  return isInteger(x) && readLongLong(x, position) && position >= 0;
}

// Behind the type, a file that is to be updated has the position at which it begins.
DAG openFile(const IolibCall& call, FileKind kind) {
  constexpr const char* required = "file name, mode, and optional type required";
  if (call.count() < 2 || call.count() > 4 || !isText(call.operand(1))) userror(required);
  FileMode mode{.reads = readsByMode(call.operand(2)), .text = kind == FileKind::stream};
  if (call.count() > 2) {
    DAG type = call.operand(3);
    mode.text = isWord(type, "TEXT");
    if (!mode.text && !isWord(type, "BINARY")) userror("file type must be TEXT or BINARY");
  }
  if (call.count() > 3) {
    mode.updates = true;
    if (!readPosition(call.operand(4), mode.offset)) userror(required);
  }
  DAG name = call.operand(1);
  FileRecord* file = fileNamed(textOf(name));
  if (file != nullptr && file->kind != FileKind::direct) userror("file already open");
  if (kind == FileKind::raw && (isWord(name, "default") || isWord(name, "terminal")))
    userror("`terminal` or `default` can only be used with fopen");
  if (file == nullptr) file = &OpenFile(name, mode, kind);
  return immediate(slotOf(*file));
}

}  // namespace

DAG iolib::openStreamFile(const IolibCall& call) { return openFile(call, FileKind::stream); }
DAG iolib::openRawFile(const IolibCall& call) { return openFile(call, FileKind::raw); }

DAG iolib::openProcess(const IolibCall& call) {
  if (call.count() != 2 || !isText(call.operand(1))) userror("file name and mode required");
  DAG command = call.operand(1);
  if (isWord(command, "default") || isWord(command, "terminal"))
    userror("`terminal` or `default` can only be used with fopen");
  const bool reads = readsByMode(call.operand(2));
  refuseSystemCalls();
  if (fileNamed(textOf(command)) != nullptr) userror("file already open");
  return immediate(slotOf(OpenFile(command, {.reads = reads, .text = true}, FileKind::process)));
}

DAG iolib::closeFiles(const IolibCall& call) {
  if (call.count() == 0) userror("file name or descriptor required");
  for (Word k = 1; k <= call.count(); ++k) CloseFile(lookUpFile(call.arguments, call.place(k), FileUse::open));
  return null;
}

// ---- position and status

DAG iolib::position(const IolibCall& call) {
  if (call.count() < 1 || call.count() > 2) userror("file and optional position expected");
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::reading);
  if (file.kind == FileKind::direct) KernelException("operation not allowed on `%1` stream", file.name);
  if (file.kind != FileKind::stream && file.kind != FileKind::raw)
    userror("operation only supported for STREAM and RAW files");
  if (call.count() == 2) {
    std::int64_t wanted = 0;
    if (!readPosition(call.operand(2), wanted)) userror("file position must be an integer or infinity");
    setFilePosition(file, wanted);
  }
  return NewInteger(filePosition(file));
}

DAG iolib::status(const IolibCall& call) {
  if (call.count() > 1) userror("unexpected arguments");
  if (call.count() == 0) return fileStatus();
  return fileDescription(lookUpFile(call.arguments, call.place(1), FileUse::open));
}

DAG iolib::isAtEnd(const IolibCall& call) {
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::reading);
  if (file.kind != FileKind::stream) userror("operation only supported for STREAM files");
  return file.pushedBack == nothingPushedBack && std::feof(file.stream) != 0 ? cons1 : cons0;
}

DAG iolib::flush(const IolibCall& call) {
  FlushFile(lookUpFile(call.arguments, call.place(1), FileUse::open));
  return null;
}

// ---- the table

namespace {

struct Operation {
  int number;
  DAG (*run)(const IolibCall& call);
};
constexpr Operation operations[] = {
    // number  operation
    {1,  iolib::openStreamFile},
    {2,  iolib::readLineOperation},
    {3,  iolib::writeLines},
    {4,  iolib::readBytesOperation},
    {5,  iolib::writeBytes},
    {6,  iolib::position},
    {7,  iolib::closeFiles},
    {8,  iolib::removeFiles},
    {9,  iolib::formattedWrite},
    {10, iolib::formattedWriteToString},
    {11, iolib::formattedRead},
    {12, iolib::formattedReadFromString},
    {13, iolib::status},
    {14, iolib::openRawFile},
    {15, iolib::makePipe},
    {16, iolib::forkKernel},
    {17, iolib::execute},
    {18, iolib::waitForChild},
    {19, iolib::selectReady},
    {20, iolib::openProcess},
    {21, iolib::isAtEnd},
    {22, iolib::killProcesses},
    {23, iolib::flush},
    {25, iolib::systemTime},
    {27, iolib::currentDirectory},
    {28, iolib::environmentVariable},
    {29, iolib::makeDirectory},
    {30, iolib::removeDirectory},
    {31, iolib::archiveTool},
};

}  // namespace

DAG builtin::iolib(const BuiltinCall& call) {
  DAG number = argumentCount(call) == 0 ? DAG() : call.arguments[1];
  if (!number || !isInteger(number) || hasTag(number, INTNEG))
    userror("first argument to iolib must be a positive integer");
  if (!isImmediate(number)) return null;
  const IolibCall operands{call.arguments};
  for (const Operation& row : operations)
    if (row.number == immediateValue(number)) return row.run(operands);
  return null;
}

}  // namespace korel
