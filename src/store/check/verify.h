#pragma once
// Structural checks of objects, and the names of tags.

#include "store/dag.h"

namespace korel {

/// Name of a tag, given as its number or as a header constant; null for 0 or beyond the table.
const char* DagIDToName(Word id);
/// Number of the tag of that name. Error: "unknown data structure label %s".
int DagNameToID(const char* name);

/// Word aligned and inside the heap, or the static HFLOAT.
bool VerifyPointer(DAG x);
inline bool VerifyDag(DAG x) { return isImmediate(x) || VerifyPointer(x); }
/// Checks `s` and `depth` levels below it against the catalogue (all of them when negative). The
/// simplified bit selects the stricter rules. A failure prints one message and gives false.
bool VerifyLevels(DAG s, int depth);
inline bool Verify(DAG x) { return VerifyLevels(x, -1); }
/// Stops the kernel when a non-zero `x` fails.
void VerifyOrDie(DAG x);
/// `VerifyOrDie` on every global root, once enabled.
void VerifyAll();
void EnableVerifyAll();

}  // namespace korel
