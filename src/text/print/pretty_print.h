#pragma once
// Two-dimensional text: an expression as it is written by hand, with raised exponents and stacked
// fractions.
//
// Every part becomes a box of characters with a base line; rows of boxes stand on a common base line,
// and a row that is too wide for the screen is broken between its parts. What has no form of its own
// (procedures, tables, statements) appears in a box as one-dimensional text.

#include "store/dag.h"
#include "text/print/sinks.h"

namespace korel {

/// Sends `object`, an EXPSEQ standing for its members, in lines of at most `width` characters to `sink`,
/// with a line end after all but the last. False, with nothing sent, when one line of the plain form
/// says the same (nothing in it is raised or stacked), or when some part is too wide or too deep.
/// Names print with their tildes if `withTildes`.
bool PrettyPrint(DAG object, Sink sink, int width, void* closure, bool withTildes = false);

}  // namespace korel
