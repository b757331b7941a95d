#pragma once
// The library directory that belongs to this program.

namespace korel {

/// The library beside the running program: `../lib/korel` of an installation, `../lib` of a build
/// tree. Null when there is none. Valid until the next call.
const char* programLibrary();

}  // namespace korel
