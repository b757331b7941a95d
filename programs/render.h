#pragma once
// What the kernel sends, as text: each stream of its messages has its form, and some want an
// answer.
//
// Everything goes to standard output, or to the file that output has been redirected to, in the
// order in which it comes, and is on its way when a statement ends.

#include "store/dag.h"

namespace korel {

/// The result handler of the session: shows `message`, a call of a stream, and gives the reply.
DAG answerMessage(void* context, DAG message);
/// Ends a line that the output has left unfinished, so that what is typed next begins one of its own.
void finishOutputLine();

}  // namespace korel
