#pragma once
// Display preparation: the object that is shown in place of a result.
//
// Calls of functions that have a procedure `print/f` in the library are replaced by what that
// gives. A name of a table, an rtable or a procedure shows as the name, except as an argument of
// `print` or `lprint`, where its value is shown. An object in which nothing changes stays the same
// object. Both functions run procedures of the language, and may raise what these raise.

#include "store/dag.h"

namespace korel {

/// `object` as it is shown. With `flag` 1 it is the argument sequence of `print`: a member that is
/// a name shows its value. Internal error for statements other than assignments and for the
/// kernel's own records: "in prtprepro1".
DAG prtprepro(DAG object, int flag);
/// The same for the argument sequence of `lprint`. Internal error: "in lprtprepro1".
DAG lprtprepro(DAG object);

}  // namespace korel
