#pragma once
// Display preparation: the object that is shown in place of a result.
//
// Calls of functions that have a procedure `print/f` in the library are replaced by what that
// gives. A name of a table, an rtable or a procedure shows as the name, except as an argument of
// `print` or `lprint`, where its value is shown. An object in which nothing changes stays the same
// object. Both functions run procedures of the language, and may raise what these raise.

#include "store/dag.h"

namespace korel {

/// What is shown: a result, or the argument sequence of `print`, in which a member that is a name shows its
/// value.
enum class DisplayOf : unsigned char { result, arguments };
/// `object` as it is shown. Internal error for statements other than assignments and for the kernel's own
/// records: "in prtprepro1".
DAG prtprepro(DAG object, DisplayOf what);
/// The same for the argument sequence of `lprint`. Internal error: "in lprtprepro1".
DAG lprtprepro(DAG object);

}  // namespace korel
