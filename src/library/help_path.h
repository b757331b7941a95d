#pragma once
// The library path, as the front end's help pages follow it.

namespace korel {

/// Tells the front end the path when `libname` has another value than at the last call.
void InitializeHelp();

}  // namespace korel
