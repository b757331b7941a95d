#pragma once
// The `save` statement: assignments written as source text that reads back.

#include "store/dag.h"

namespace korel {

/// Runs a SAVE. Errors: "save is disabled", "last argument to save must be a file or library name",
/// "must specify names to save when saving to a text file", "save can only save names".
DAG saveStatement(DAG statement);
/// `name` and every assigned name that its value uses, directly or through another: what makes the value
/// work in another session. An EXPSEQ, `name` first; names of the kernel are left out.
DAG BuildRequiredNameSeq(DAG name);
/// Writes an assignment for each of `names`, an EXPSEQ, into the text file `file`.
/// Errors: "could not save into `%1`", "could not close file".
void WriteSourceFile(DAG file, DAG names);

}  // namespace korel
