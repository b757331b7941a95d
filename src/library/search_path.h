#pragma once
// The directories of the library path: made absolute, and told to the front end.

namespace korel {

constexpr int pathBufferSize = 1024;

/// The absolute path of directory `path`, in a buffer that the next call overwrites. The working
/// directory stays what it was. Errors: "could not determine current directory", "directory does
/// not exist", "could not qualify directory", "could not return to current directory".
const char* FullyQualifyDir(const char* path);

/// Tells the front end, whose help pages follow it, the path when `libname` has another value than at the
/// last call.
void InitializeHelp();

}  // namespace korel
