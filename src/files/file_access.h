#pragma once
// Characters, lines and bytes of open files.
//
// What is written to `default` and `terminal` is collected and goes out as one message at the end of an operation, or
// when an error ends it: `sendCollectedText`.

#include <cstdint>
#include <string_view>

#include "files/file_table.h"
#include "text/format/text_buffer.h"

namespace korel {

/// The next character, or -1 at the end. Errors: "cannot read from this type of file", those of the system.
int ReadCharFromFile(FileRecord& file);
/// The next call of `ReadCharFromFile` gives `c`.
inline void pushBackToFile(FileRecord& file, int c) { file.pushedBack = c; }
/// Errors: those of the system.
void WriteCharToFile(FileRecord& file, int c);
void writeToFile(FileRecord& file, const char* bytes, std::size_t n);
/// The bytes and a newline.
void writeLineToFile(FileRecord& file, const char* bytes, std::size_t n);
void FlushFile(FileRecord& file);

/// To be called before an operation reads or writes, on files that do both.
void prepareToRead(FileRecord& file);
void prepareToWrite(FileRecord& file);

/// The next line without its newline, and without zeros; false at the end of the file. It stands in `space`, or where
/// the file keeps it, until something is read again.
bool readLine(FileRecord& file, TextBuffer& space, std::string_view& line);
/// The next line when the file's buffer holds the whole of it, without zeros; it stands there until another function
/// reads. False when the buffer doesn't, and nothing has been read.
bool readBufferedLine(FileRecord& file, std::string_view& line);
/// The unique STRING of that line; the next one is looked at already. 0 when the buffer doesn't hold it.
DAG readBufferedString(FileRecord& file);
/// Reads up to `n` bytes; how many there were.
std::size_t readBytes(FileRecord& file, char* bytes, std::size_t n);

/// Where the next read or write takes place; a character pushed back counts as unread no more.
std::int64_t filePosition(FileRecord& file);
/// Goes there, or to `endOfFile`.
void setFilePosition(FileRecord& file, std::int64_t position);

/// Sends what has been written to the front end.
void sendCollectedText();
/// The same on the way of an error; to be registered by `PushStateKeeper`.
void sendCollectedTextOnError(const char*);
/// Forgets the lines that the front end has sent; part of the start.
void forgetHeldLines();

/// A sink and a source whose closure is a FileRecord.
void FileSink(void* file, int c);
int nextOfFile(void* file);
void backToFile(void* file, int c);

}  // namespace korel
