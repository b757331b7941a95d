#pragma once
// What the directories of the library hold, remembered: nearly every name that is asked for is in none of them.
//
// Of a directory the hashes of its files, folders and archive members are kept, with the times of the directory and of
// the archive's index. Whether these times are still true is asked once a statement, some times a second in long ones,
// and after everything by which this process may have changed a directory. A time as recent as the look itself says
// nothing: what came a moment later would bear the same one.

namespace korel {

/// False when `directory` has neither a file `name`.m nor a member of that name. True says that it may have.
bool mayHoldMember(const char* directory, const char* name);
/// The next question looks whether directories have changed.
void doubtDirectoryContents();
/// Forgets everything, as `FlushDotMFileCache` does.
void forgetDirectoryContents();

}  // namespace korel
