#pragma once
// Absolute paths.

namespace korel {

constexpr int longestPath = 1024;

/// Writes the absolute path of the directory to `result`, of `longestPath` + 1 characters. Errors: "could not determine
/// current directory", "directory does not exist", "could not qualify directory", "could not return to current
/// directory".
void FullyQualifyDir(const char* path, char* result);
/// The same for a file, which needn't exist. Errors: "file name longer than %1 characters", "expanded file name would
/// be longer than %1 characters", and those of its directory.
void FullyQualifyFile(const char* path, char* result);
/// The same without errors; false where there is no such path.
bool absolutePath(const char* path, char* result);

}  // namespace korel
