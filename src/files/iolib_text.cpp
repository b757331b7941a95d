// Lines, formats and bytes: operations 2 to 5 and 9 to 12 of `iolib`.

#include "files/iolib.h"

#include <cstring>

#include "eval/simplify/simplify.h"
#include "files/file_access.h"
#include "files/members.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "rtable/axes.h"
#include "rtable/rtable_object.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/format/print_format.h"
#include "text/format/scan_format.h"

namespace korel {

namespace {

FileRecord& fileToRead(const IolibCall& call) {
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::reading);
  prepareToRead(file);
  return file;
}
FileRecord& fileToWrite(const IolibCall& call) {
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::writing);
  prepareToWrite(file);
  return file;
}

[[noreturn]] void wrongOperands() {
  KernelException("wrong number (or type) of parameters in function %1", ini("iolib"));
}

}  // namespace

// ---- lines

DAG iolib::readLineOperation(const IolibCall& call) {
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::reading);
  if (DAG text = readBufferedString(file)) return text;
  TextBuffer space;
  std::string_view line;
  return readLine(file, space, line) ? strinstall(line) : cons0;
}

DAG native::filelines(const BuiltinCall& call) {
  FileRecord& file = lookUpFile(call.arguments, 1, FileUse::reading);
  Members lines;
  // Lines are looked up in the table of strings some lines late, when what the look will read is on its way.
  constexpr int batch = 32;
  TextBuffer space;
  std::string_view line[batch];
  Word hash[batch];
  for (;;) {
    int n = 0;
    for (; n < batch && readBufferedLine(file, line[n]); ++n) {
      hash[n] = hashstring(line[n]);
      prefetchString(hash[n]);
    }
    passWork(50 * (n + 1));
    for (int i = 0; i < n; ++i) lines.append(stringhashunique(hash[i], line[i], strtab));
    if (n == batch) continue;
    // The buffer holds no further line.
    if (!readLine(file, space, line[0])) return lines.list();
    lines.append(strinstall(line[0]));
  }
}

namespace {

// The members from `first` on as lines; the count of bytes.
DAG writeMembers(FileRecord& file, DAG members, Word first) {
  std::int64_t count = 0;
  PushStateKeeper(sendCollectedTextOnError, nullptr);
  for (Word k = first, end = lengthOf(members); k < end; ++k) {
    const char* text = textOf(members[k]);
    const std::size_t n = std::strlen(text);
    writeLineToFile(file, text, n);
    count += static_cast<std::int64_t>(n) + 1;
  }
  PopErrorProc();
  sendCollectedText();
  return NewInteger(count);
}

}  // namespace

DAG iolib::writeLines(const IolibCall& call) {
  for (Word k = 2; k <= call.count(); ++k)
    if (!isText(call.operand(k))) wrongOperands();
  FileRecord& file = fileToWrite(call);
  return writeMembers(file, call.arguments, call.place(2));
}

DAG native::fileputlines(const BuiltinCall& call) {
  FileRecord& file = lookUpFile(call.arguments, 1, FileUse::writing);
  prepareToWrite(file);
  return writeMembers(file, call.arguments[2][1], 1);
}

// ---- formats

DAG iolib::formattedWrite(const IolibCall& call) {
  if (call.count() == 0) userror("file name or descriptor required");
  if (call.count() < 2 || !isText(call.operand(2))) userror("format string expected");
  FileRecord& file = fileToWrite(call);
  PushStateKeeper(sendCollectedTextOnError, nullptr);
  const std::int64_t count = DoPrintF(FileSink, &file, textOf(call.operand(2)), call.arguments, call.place(3));
  PopErrorProc();
  sendCollectedText();
  return NewInteger(count);
}

DAG iolib::formattedWriteToString(const IolibCall& call) {
  if (call.count() < 1 || !isText(call.operand(1))) userror("format string expected");
  TextBuffer text;
  DoPrintF(TextBufferSink, &text, textOf(call.operand(1)), call.arguments, call.place(2));
  return text.string();
}

namespace {

DAG scanResult(const ScanResult& result) { return result.endedAtOnce ? cons0 : simpl(new2(LIST, result.values)); }

}  // namespace

DAG iolib::formattedRead(const IolibCall& call) {
  if (call.count() < 2 || !isText(call.operand(2))) userror("input and format strings expected");
  FileRecord& file = fileToRead(call);
  ScanSource source{.get = nextOfFile, .unget = backToFile, .closure = &file};
  return scanResult(DoScanF(source, textOf(call.operand(2)), call.arguments, call.place(3)));
}

DAG iolib::formattedReadFromString(const IolibCall& call) {
  if (call.count() < 2 || !isText(call.operand(1)) || !isText(call.operand(2)))
    userror("input and format strings expected");
  ScanSource source{.text = textOf(call.operand(1))};
  return scanResult(DoScanF(source, textOf(call.operand(2)), call.arguments, call.place(3)));
}

// ---- bytes

namespace {

bool isHardwareFormat(DAG r) { return datatypeOf(r) >= dataInteger8; }

// The bytes of the elements of `r`, as they lie in memory.
std::int64_t blockSize(DAG r) {
  if (!isHardwareFormat(r)) userror("Array with hardware datatype expected");
  if (functionCount(r) > 0) userror("Array without indexing-function expected");
  if (storageOf(r) != storageRectangular) userror("dense rectangular Array expected");
  return RTableNumBytes(r);
}

struct ByteRequest {
  std::int64_t count = -1;  // -1: all that there is
  bool text = false;
  DAG rtable;
};

// The operands behind the file: an rtable, a count, the word TEXT.
ByteRequest readRequest(const IolibCall& call) {
  ByteRequest request;
  Word k = 2;
  if (k <= call.count() && isTag(call.operand(k), RTABLE)) request.rtable = call.operand(k++);
  if (k <= call.count() && isInteger(call.operand(k))) {
    const bool fits = readLongLong(call.operand(k++), request.count) && request.count >= 0;
    if (!fits) userror("optional byte count and/or `TEXT` expected");
  }
  if (k <= call.count() && isText(call.operand(k)) && hasText(call.operand(k), "TEXT")) {
    request.text = true;
    ++k;
  }
  if (k <= call.count()) userror("optional byte count and/or `TEXT` expected");
  return request;
}

DAG readIntoRTable(FileRecord& file, const ByteRequest& request) {
  DAG r = request.rtable;
  const std::int64_t size = blockSize(r);
  if (rtableFlag(r, rtableReadOnly) != 0) userror("cannot write into a readonly Array");
  if (request.count > size) KernelException("specified byte count exceeds size of %1 data", subtypeWord(r));
  const std::int64_t wanted = request.count >= 0 ? request.count : size;
  if (wanted == 0) return cons0;
  return NewInteger(
      static_cast<std::int64_t>(readBytes(file, reinterpret_cast<char*>(dataOf(r)), static_cast<std::size_t>(wanted))));
}

DAG listOfBytes(TextBuffer& bytes) {
  const std::size_t n = bytes.size();
  if (n >= maxLength - 1) KernelException("object too large");
  DAG members = newl2(static_cast<Word>(n + 1), EXPSEQ);
  for (std::size_t i = 0; i < n; ++i)
    members[static_cast<std::int64_t>(i + 1)] = immediate(static_cast<unsigned char>(bytes.bytes()[i]));
  return simpl(new2(LIST, members));
}

DAG textOfBytes(TextBuffer& bytes) {
  TextBuffer text;  // without the zeros, at which a text would end
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (bytes.bytes()[i] != 0) text.append(bytes.bytes()[i]);
  return text.string();
}

}  // namespace

DAG iolib::readBytesOperation(const IolibCall& call) {
  const ByteRequest request = call.count() > 1 ? readRequest(call) : ByteRequest{};
  if (request.rtable && request.text)
    KernelException("TEXT mode cannot be used to read a %1", subtypeWord(request.rtable));
  FileRecord& file = lookUpFile(call.arguments, call.place(1), FileUse::reading);
  if (file.kind == FileKind::direct) userror("`terminal` or `default` can only be used with fopen");
  prepareToRead(file);
  if (request.rtable) return readIntoRTable(file, request);
  constexpr std::int64_t piece = 1 << 16;
  TextBuffer bytes;
  std::int64_t left = request.count >= 0 ? request.count : INT64_MAX;
  while (left > 0) {
    passWork(piece / 8);
    const auto wanted = static_cast<std::size_t>(left < piece ? left : piece);
    const std::size_t got = readBytes(file, bytes.reserve(wanted), wanted);
    bytes.setSize(bytes.size() + got);
    left -= static_cast<std::int64_t>(got);
    if (got < wanted) break;
  }
  if (bytes.size() == 0 && request.count != 0) return cons0;
  return request.text ? textOfBytes(bytes) : listOfBytes(bytes);
}

namespace {

void addBytes(TextBuffer& bytes, DAG list) {
  DAG members = list[1];
  for (Word i = 1; i < lengthOf(members); ++i) {
    const bool isByte = isImmediate(members[i]) && immediateValue(members[i]) >= 0 && immediateValue(members[i]) <= 255;
    if (!isByte) userror("byte value is out of range");
    bytes.append(static_cast<char>(immediateValue(members[i])));
  }
}

}  // namespace

DAG iolib::writeBytes(const IolibCall& call) {
  if (call.count() == 0) userror("file name or descriptor required");
  if (call.count() != 2) userror("string, list, or rtable data expected");
  DAG data = call.operand(2);
  TextBuffer bytes;
  const char* from = nullptr;
  std::size_t n = 0;
  if (isText(data)) {
    from = textOf(data);
    n = std::strlen(from);
  } else if (isTag(data, LIST)) {
    addBytes(bytes, data);
    from = bytes.bytes();
    n = bytes.size();
  } else if (isTag(data, RTABLE)) {
    n = static_cast<std::size_t>(blockSize(data));
    from = reinterpret_cast<const char*>(dataOf(data));
  } else {
    userror("string, list, or rtable data expected");
  }
  FileRecord& file = fileToWrite(call);
  PushStateKeeper(sendCollectedTextOnError, nullptr);
  writeToFile(file, from, n);
  PopErrorProc();
  sendCollectedText();
  return NewInteger(static_cast<std::int64_t>(n));
}

}  // namespace korel
