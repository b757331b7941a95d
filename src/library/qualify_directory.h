#pragma once
// Directory names made absolute.

namespace korel {

constexpr int pathBufferSize = 1024;

/// The absolute path of directory `path`, in a buffer that the next call overwrites. The working
/// directory stays what it was. Errors: "could not determine current directory", "directory does
/// not exist", "could not qualify directory", "could not return to current directory".
const char* FullyQualifyDir(const char* path);

}  // namespace korel
