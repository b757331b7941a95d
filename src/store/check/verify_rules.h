#pragma once
// The object catalogue as rules: what a well-formed object of each tag looks like.
//
// The walk (verify.cpp) calls these in order for each object: its shape, then for each component, once
// that has been found well-formed itself, whether it is of a kind that may stand there, and at last
// what concerns several components at once. Components may be unchecked when the depth has run out, so
// that nothing here reads farther than a bounds check allows.

#include "store/dag.h"

namespace korel {

/// The text of a failure.
struct Finding {
  char text[512];
};

/// The object's control word, header and fields can be read, as far as its length is believed.
bool isReadableObject(DAG x);

/// Control word, header, length and raw fields of `s`, which is readable.
bool checkShape(DAG s, Finding& finding);
/// The component that follows `i` (0 for the first), or 0 behind the last.
Word nextComponent(DAG s, Word i);
/// Whether component `i`, well-formed in itself, may stand there.
bool checkComponent(DAG s, Word i, Finding& finding);
/// What concerns the object as a whole.
bool checkWhole(DAG s, Finding& finding);
/// What the failure of component `i` means for `s`.
void describeBadComponent(DAG s, Word i, Finding& finding);
/// The failure of a reference itself.
void describeBadAddress(DAG x, Finding& finding);

}  // namespace korel
