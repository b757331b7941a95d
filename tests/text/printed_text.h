#pragma once
// Printed objects for the printer's tests.

#include <string>

#include "store/dag.h"
#include "text/print/emit.h"

namespace korel::test {

inline void appendTo(void* target, int c) { static_cast<std::string*>(target)->push_back(static_cast<char>(c)); }
inline void appendFailureTo(void* target, const char* message) {
  *static_cast<std::string*>(target) += std::string("<<") + message + ">>";
}

/// Text of `x` under `flags` with lines of `width` characters; a failure stands as <<message>>.
std::string printed(DAG x, int flags = 0, int width = 0);
/// Text of the unsimplified object that `source` parses to.
std::string printedRaw(const char* source, int flags = 0);
/// Text of the simplified object that `source` parses to.
std::string printedSimple(const char* source, int flags = 0);

}  // namespace korel::test
