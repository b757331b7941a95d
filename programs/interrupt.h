#pragma once
// Ctrl-C: the signal leaves a mark, which the running statement or the reader of a line takes.

namespace korel {

/// From now on an interrupt leaves a mark, and cuts short a read that waits.
void catchInterrupts();
/// True when an interrupt has come since the last call; takes the mark away.
bool takeInterrupt();

}  // namespace korel
