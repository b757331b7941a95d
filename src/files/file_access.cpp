#include "files/file_access.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "debug/debugger.h"
#include "files/system_errors.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/vocabulary.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korel {

namespace {

// ---- the front end

// The line that each of the two entries has been sent, and how much of it has been read.
struct HeldLine {
  DAG text;
  std::size_t position;
  bool endsLine;  // the newline that the line lacks has been delivered
};
HeldLine heldLines[2];

HeldLine& heldLineOf(const FileRecord& file) {
  if (file.descriptor != defaultDescriptor && file.descriptor != terminalDescriptor) notimpl("ReadCharFromFile:1");
  return heldLines[file.descriptor == defaultDescriptor ? 0 : 1];
}

// Asks for the next line; false at the end of the input.
bool requestLine(const FileRecord& file, HeldLine& line) {
  sendCollectedText();
  for (;;) {
    // In the debugger's dialogue the default input is what the person types there.
    DAG reply = file.descriptor == terminalDescriptor ? sendStream(Stream::READLINE, {})
                : debuggerActive                      ? sendStream(Stream::DEBUG_READLINE, {cons0})
                                                      : sendStream(Stream::READLINE, {naminstall("default")});
    if (!reply || !isText(reply)) return false;
    if (textOf(reply)[0] == 0) continue;
    line = {reply, 0, false};
    return true;
  }
}

int nextFromFrontEnd(const FileRecord& file) {
  HeldLine& line = heldLineOf(file);
  for (;;) {
    if (line.text) {
      const char* at = textOf(line.text) + line.position;
      if (*at != 0) {
        ++line.position;
        return static_cast<unsigned char>(*at);
      }
      line.text = DAG();
      if (line.position > 0 && at[-1] != '\n') return '\n';
    }
    if (!requestLine(file, line)) return -1;
  }
}

char collected[8192];
std::size_t collectedSize = 0;

void collect(char c) {
  if (c == 0) return;  // texts of messages end at a zero
  collected[collectedSize++] = c;
  if (collectedSize == sizeof collected - 1) sendCollectedText();
}

// ---- the system

// After a failed read or write: true when it was interrupted and is to be tried again.
bool mayTryAgain() {
  if (errno != EINTR) return false;
  if (TestInterrupt()) jumpback();
  return true;
}

int nextOfStream(std::FILE* stream) {
  for (;;) {
    const int c = getc_unlocked(stream);
    if (c != EOF || ferror(stream) == 0) return c == EOF ? -1 : c;
    const bool again = mayTryAgain();
    const int error = errno;
    clearerr(stream);
    if (!again) raiseSystemError(error);
  }
}

// The first newline or zero from `at` on; `end` when there is none.
const char* endOfLine(const char* at, const char* end) {
#if defined(__SSE2__)
  const __m128i newline = _mm_set1_epi8('\n'), zero = _mm_setzero_si128();
  for (; end - at >= 16; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const int found = _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, newline), _mm_cmpeq_epi8(bytes, zero)));
    if (found != 0) return at + __builtin_ctz(static_cast<unsigned>(found));
  }
#endif
  while (at != end && *at != '\n' && *at != 0) ++at;
  return at;
}

std::size_t readDescriptor(int descriptor, char* bytes, std::size_t n) {
  std::size_t done = 0;
  while (done < n) {
    const ssize_t got = ::read(descriptor, bytes + done, n - done);
    if (got == 0) break;
    if (got < 0 && !mayTryAgain()) raiseSystemError();
    if (got > 0) done += static_cast<std::size_t>(got);
  }
  return done;
}

void writeDescriptor(int descriptor, const char* bytes, std::size_t n) {
  while (n > 0) {
    const ssize_t put = ::write(descriptor, bytes, n);
    if (put < 0) {
      if (!mayTryAgain()) raiseSystemError();
      continue;
    }
    bytes += put;
    n -= static_cast<std::size_t>(put);
  }
}

[[noreturn]] void cannotRead() { userror("cannot read from this type of file"); }

void streamFailed(std::FILE* stream) {
  const int error = errno;
  clearerr(stream);
  raiseSystemError(error);
}

}  // namespace

// ---- reading

int ReadCharFromFile(FileRecord& file) {
  file.ahead = {};
  if (file.pushedBack != nothingPushedBack) {
    const int c = file.pushedBack;
    file.pushedBack = nothingPushedBack;
    return c;
  }
  switch (file.kind) {
    case FileKind::stream: case FileKind::process: return nextOfStream(file.stream);
    case FileKind::raw: case FileKind::pipe: {
      char c;
      return readDescriptor(file.descriptor, &c, 1) == 1 ? static_cast<unsigned char>(c) : -1;
    }
    case FileKind::direct: return nextFromFrontEnd(file);
    default: cannotRead();
  }
}

void prepareToRead(FileRecord& file) {
  file.ahead = {};
  if (file.wroteLast) std::fseek(file.stream, 0, SEEK_CUR);
  file.wroteLast = false;
  file.readLast = file.kind == FileKind::stream && !file.reads;
}

namespace {

bool isBuffered(const FileRecord& file) {
  const bool isStream = file.kind == FileKind::stream || file.kind == FileKind::process;
  return isStream && !file.wroteLast && file.pushedBack == nothingPushedBack;
}

// What the C library has read ahead is sliced: no copy and no call (bench/files.sh, lines of a file).
bool findBufferedLine(std::FILE* stream, std::string_view& line) {
  const char* begin = stream->_IO_read_ptr;
  const char* end = endOfLine(begin, stream->_IO_read_end);
  line = {begin, static_cast<std::size_t>(end - begin)};
  return end != stream->_IO_read_end && *end == '\n';
}
void passBufferedLine(std::FILE* stream, std::string_view line) { stream->_IO_read_ptr += line.size() + 1; }

}  // namespace

bool readBufferedLine(FileRecord& file, std::string_view& line) {
  if (!isBuffered(file) || !findBufferedLine(file.stream, line)) return false;
  passBufferedLine(file.stream, line);
  return true;
}

DAG readBufferedString(FileRecord& file) {
  if (!isBuffered(file)) return DAG();
  std::FILE* stream = file.stream;
  std::string_view line;
  Word hash;
  if (file.ahead.begin != nullptr && file.ahead.begin == stream->_IO_read_ptr) {
    line = {file.ahead.begin, static_cast<std::size_t>(file.ahead.end - file.ahead.begin)};
    hash = file.ahead.hash;
  } else {
    if (!findBufferedLine(stream, line)) return DAG();
    hash = hashstring(line);
  }
  DAG text = stringhashunique(hash, line, strtab);
  passBufferedLine(stream, line);
  // What the look for the next line will read is on its way while this one is worked on.
  file.ahead = {};
  if (findBufferedLine(stream, line)) {
    file.ahead = {line.data(), line.data() + line.size(), hashstring(line)};
    prefetchString(file.ahead.hash);
  }
  return text;
}

namespace {

// By the C library, which reads on to the newline. The bytes are kept for the next line. False at the end of the file,
// or when it was interrupted.
bool readStreamLine(std::FILE* stream, TextBuffer& space, std::string_view& line) {
  static char* bytes = nullptr;
  static std::size_t capacity = 0;
  const ssize_t n = ::getline(&bytes, &capacity, stream);
  if (n < 0) return false;
  const auto length = static_cast<std::size_t>(n);
  const std::size_t end = length > 0 && bytes[length - 1] == '\n' ? length - 1 : length;
  line = {bytes, end};
  if (std::memchr(bytes, 0, end) == nullptr) return true;
  for (std::size_t i = 0; i < end; ++i)
    if (bytes[i] != 0) space.append(bytes[i]);
  line = space.view();
  return true;
}

}  // namespace

bool readLine(FileRecord& file, TextBuffer& space, std::string_view& line) {
  prepareToRead(file);
  if (readBufferedLine(file, line)) return true;
  space.clear();
  const bool isStream = file.kind == FileKind::stream || file.kind == FileKind::process;
  if (isStream && file.pushedBack == nothingPushedBack) {
    if (readStreamLine(file.stream, space, line)) return true;
    if (ferror(file.stream) == 0) return false;
    if (!mayTryAgain()) streamFailed(file.stream);
    clearerr(file.stream);
  }
  int c = ReadCharFromFile(file);
  if (c == -1) return false;
  for (; c != -1 && c != '\n'; c = ReadCharFromFile(file))
    if (c != 0) space.append(static_cast<char>(c));
  line = space.view();
  return true;
}

std::size_t readBytes(FileRecord& file, char* bytes, std::size_t n) {
  std::size_t done = 0;
  if (n > 0 && file.pushedBack != nothingPushedBack) {
    bytes[done++] = static_cast<char>(file.pushedBack);
    file.pushedBack = nothingPushedBack;
  }
  switch (file.kind) {
    case FileKind::stream: case FileKind::process:
      while (done < n) {
        done += std::fread(bytes + done, 1, n - done, file.stream);
        if (done == n || ferror(file.stream) == 0) break;
        if (!mayTryAgain()) streamFailed(file.stream);
        clearerr(file.stream);
      }
      return done;
    case FileKind::raw: case FileKind::pipe: return done + readDescriptor(file.descriptor, bytes + done, n - done);
    default: cannotRead();
  }
}

// ---- writing

void prepareToWrite(FileRecord& file) {
  file.ahead = {};
  if (file.readLast) setFilePosition(file, filePosition(file));
  file.readLast = false;
  file.wroteLast = file.kind == FileKind::stream;
}

void WriteCharToFile(FileRecord& file, int c) {
  switch (file.kind) {
    case FileKind::stream: case FileKind::process:
      if (putc_unlocked(c, file.stream) == EOF) streamFailed(file.stream);
      return;
    case FileKind::direct: return collect(static_cast<char>(c));
    default: break;
  }
  const char byte = static_cast<char>(c);
  writeToFile(file, &byte, 1);
}

void writeToFile(FileRecord& file, const char* bytes, std::size_t n) {
  switch (file.kind) {
    case FileKind::stream: case FileKind::process:
      if (fwrite_unlocked(bytes, 1, n, file.stream) != n) streamFailed(file.stream);
      return;
    case FileKind::raw: case FileKind::pipe: return writeDescriptor(file.descriptor, bytes, n);
    case FileKind::direct:
      for (std::size_t i = 0; i < n; ++i) collect(bytes[i]);
      return;
    case FileKind::interface:
      for (std::size_t i = 0; i < n; ++i)
        if (bytes[i] != 0) file.collected = AppendToString(file.collected, bytes[i]);
      return;
    case FileKind::unused: notimpl("WriteCharToFile");
  }
}

void writeLineToFile(FileRecord& file, const char* bytes, std::size_t n) {
  if (file.kind == FileKind::stream || file.kind == FileKind::process) {
    // Into the C library's buffer while it has room; it has none where each line goes out at once.
    char* at = file.stream->_IO_write_ptr;
    if (file.stream->_IO_write_end - at > static_cast<std::ptrdiff_t>(n)) {
      std::memcpy(at, bytes, n);
      at[n] = '\n';
      file.stream->_IO_write_ptr = at + n + 1;
      return;
    }
  }
  writeToFile(file, bytes, n);
  WriteCharToFile(file, '\n');
}

void FlushFile(FileRecord& file) {
  switch (file.kind) {
    case FileKind::stream: case FileKind::process:
      if (std::fflush(file.stream) != 0) streamFailed(file.stream);
      return;
    case FileKind::direct:
      sendCollectedText();
      Msendflush();
      return;
    case FileKind::interface: {
      if (file.collected[0] == 0) return;
      DAG text = StringToMString(file.collected);
      file.collected = NewLongString();
      switch2(new3(FUNCTION, naminstall(textOf(file.name)), new2(EXPSEQ, text)));
      return;
    }
    case FileKind::raw: case FileKind::pipe: return;
    case FileKind::unused: notimpl("FlushFile");
  }
}

void sendCollectedText() {
  if (collectedSize == 0) return;
  collected[collectedSize] = 0;
  collectedSize = 0;  // first: a failure of the front end doesn't send it twice
  Msendprint(collected);
}

void sendCollectedTextOnError(const char*) {
  if (SpecialError == noSpecialError) sendCollectedText();
  else collectedSize = 0;
}

void forgetHeldLines() {
  for (HeldLine& line : heldLines) {
    line = {};
    registerRoot(&line.text);
  }
  collectedSize = 0;
}

// ---- positions

std::int64_t filePosition(FileRecord& file) {
  std::int64_t at = 0;
  if (file.kind == FileKind::stream) at = std::ftell(file.stream);
  else at = ::lseek(file.descriptor, 0, SEEK_CUR);
  if (at < 0) raiseSystemError();
  return file.pushedBack == nothingPushedBack ? at : at - 1;
}

void setFilePosition(FileRecord& file, std::int64_t position) {
  file.ahead = {};
  const int whence = position == endOfFile ? SEEK_END : SEEK_SET;
  const std::int64_t offset = position == endOfFile ? 0 : position;
  const bool done = file.kind == FileKind::stream ? std::fseek(file.stream, offset, whence) == 0
                                                  : ::lseek(file.descriptor, offset, whence) >= 0;
  if (!done) raiseSystemError();
  file.pushedBack = nothingPushedBack;
}

void FileSink(void* file, int c) { WriteCharToFile(*static_cast<FileRecord*>(file), c); }
int nextOfFile(void* file) { return ReadCharFromFile(*static_cast<FileRecord*>(file)); }
void backToFile(void* file, int c) { pushBackToFile(*static_cast<FileRecord*>(file), c); }

}  // namespace korel
