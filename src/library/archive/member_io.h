#pragma once
// Bytes of `.m` files, whether they are files of their own or members of an archive: who reads or writes a path never
// knows which.
//
// A plain file wins over a member; a member of an archive wins over a new plain file. A path is a member's when its
// directory is one of `libname` that has an archive. One write is open at a time, and it holds its locks until
// `DeallocWrite`. Reads nest: what is read may bring other names in, which have files of their own.

#include <cstddef>

namespace korel {

/// Opens `name` for `ReadByte`, inside whatever is being read. `size` is at least `readPiece`; the buffer is the
/// caller's until `DeallocRead`. False when there is no such file and `ReadFailOK` was called; else the error "could
/// not open `%s` for reading", and those of archives.
constexpr std::size_t readPiece = 4096;
bool AllocRead(const char* name, char* buffer, std::size_t size);
/// The next byte, or -1 at the end. Error: "unable to read file or pipe".
int ReadByte();
/// What has been read and not been taken yet, or the next piece; false at the end. The bytes lie in the caller's
/// buffer.
bool ReadPiece(const unsigned char*& at, const unsigned char*& end);
void DeallocRead();
/// The next `AllocRead` reports no error when it fails.
void ReadFailOK();

/// Opens `name` for `WriteByte`. Error: "could not open `%s` for writing", and those of archives. A plain file is
/// written beside its place, which it takes at the end.
void AllocWrite(const char* name, char* buffer, std::size_t size);
/// False when the byte, or one of the bytes, could not be written.
bool WriteByte(int c);
bool WriteBytes(const char* bytes, std::size_t n);
/// Writes what is left, and the entry of a member; a third of waste in the data packs the archive.
/// Errors: "could not flush .m file", "could not update library archive index".
void DeallocWrite();
/// Drops the write: the file, or the member, stays as it was.
void AbandonWrite();

/// Closes what an error has left open.
void ResetDotMIO();

/// The descriptor of the archive that holds the member `path`, positioned at it; -1 when no archive does. For mode 1
/// (reading) `length` is the member's; for mode 2 the member's place in the index and the data are locked.
/// Errors: "only .m files can be stored in archives", "library archive is full", and those of archives.
enum MemberMode { readMember = 1, writeMember = 2 };
int OpenArchiveMember(const char* path, MemberMode mode);

}  // namespace korel
