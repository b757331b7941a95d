#pragma once
// Ctrl-C: the signal leaves a mark, which the running statement or the reader of a line takes.

namespace korel {

/// From now on an interrupt leaves a mark, and cuts short a read that waits.
void catchInterrupts();
/// Waits until there is something to read. False, and the mark taken away, when an interrupt came
/// first: none slips in between the look at the mark and the wait.
bool waitForInput(int descriptor);
/// True when an interrupt has come since the last call; takes the mark away.
bool takeInterrupt();

}  // namespace korel
