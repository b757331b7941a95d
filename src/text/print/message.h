#pragma once
// Messages with their parameter marks filled in: %1 to %9 a parameter, %-1 to %-9 the same as an
// ordinal number, %0 all of them, %% a percent sign.

#include "store/dag.h"
#include "text/print/sinks.h"

namespace korel {

/// Sends the text of a message to `sink`. `exception` is an exception, EXPSEQ(procedure or 0, text,
/// parameters...); or an EXPSEQ(text, parameters...); or a text alone. A parameter prints with
/// nothing quoted; a mark without a parameter stands as it is.
void expandMessage(DAG exception, Sink sink, void* closure);

}  // namespace korel
