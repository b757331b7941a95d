#pragma once
// A file that is written beside its place and takes it when it is whole, so that a full disk, an error or a kill
// leaves the old one as it was.
//
// A symbolic link is followed. What is no regular file, or can't have another beside it, is written as it stands.

#include "library/archive/archive_files.h"

namespace korel {

struct ReplacedFile {
  int descriptor = -1;
  char path[longestArchivePath] = "";
  char temporary[longestArchivePath] = "";  // "" when it is written as it stands
};
/// False when it can't be opened for writing.
bool openReplaced(ReplacedFile& file, const char* name);
/// Closes it and puts it in its place; false when that fails, and the old file stays.
bool commitReplaced(ReplacedFile& file);
/// Closes it and leaves the old one.
void abandonReplaced(ReplacedFile& file);

}  // namespace korel
