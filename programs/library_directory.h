#pragma once
// The tree of files that belongs to this program: `../lib/korel` of an installation, `..` of a build tree. It holds the
// library in `lib` and what external code includes in `extern/include`.

namespace korel {

/// The library; null when there is none. Valid until the next call.
const char* programLibrary();
/// Makes the tree the value of the environment variable KOREL, unless that is set: compilers of wrappers look there.
void exportProgramTree();

}  // namespace korel
