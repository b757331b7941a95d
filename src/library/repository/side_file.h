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

}  // namespace korel
