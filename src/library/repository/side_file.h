#pragma once
// The side file of a repository, "%s/korel.rep": the next object number, and the bytes that replaced members waste.
//
//   offset  0    4 bytes  next number, little-endian
//           4  256 bytes  the directory's text
//         260    4 bytes  wasted bytes, little-endian
//
// Other processes use it as well: it is locked from reading to writing. A file without content, left by a process that
// was killed while it made one, counts as absent.

#include <cstdint>

namespace korel {

/// The directory's next number, from 1 on; 0 when the file can't be read or written.
std::uint32_t CreateUniqueObjectNumber(const char* directory);
/// Adds `n` bytes to the waste, or sets it to 0 for n = 0; the new total, or `n` when the file can't be read or
/// written.
std::uint32_t UpdateWastedSpace(const char* directory, std::uint32_t n);

// ---- saves and collections of one directory exclude each other
//
// A save writes objects before the members that lead to them: a collection in between would take them for dead. Each
// locks the directory itself, saves as many as there are at once, a collection alone.

enum class DirectoryUse { save, collect };
/// Waits for the lock; the descriptor to be closed by `leaveDirectory`, or -1 when the directory can't be locked.
int enterDirectory(const char* directory, DirectoryUse use);
/// Whether a collection would have to wait now.
bool isDirectoryBusy(const char* directory);
void leaveDirectory(int lock);

}  // namespace korel
