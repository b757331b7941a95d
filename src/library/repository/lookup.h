#pragma once
// Names whose value may be in the library: found by name along `libname`, once, when somebody first asks for it.
//
// A name carries the deferred bit until then. Its attribute is `null`, when nothing is known of it, or the reference
// to an object of one repository (repository.h).

#include "store/dag.h"

namespace korel {

/// Fetches value and attributes of `name` and clears its deferred bit, whether there are any or not, and also when
/// the file can't be read: whatever error that is comes once. A module is loaded with its `load` function.
void RetrieveName(DAG name);
inline bool isDeferred(DAG name) { return (controlWord(name) & deferredBit) != 0; }

/// Reads the member `name` of `directory`, a text, as part of that repository; false when there is none. The profile
/// shows it as a call of `profiled`: a name that is looked at, or a procedure that is called by name.
constexpr const char* profiledStore = "readstore";
constexpr const char* profiledLibrary = "readlib";
bool readFromDirectory(DAG directory, const char* name, const char* profiled);

/// Attaches the library: puts the directories called `update` in front of those that they stand beside.
void initializeLibrary();

}  // namespace korel
