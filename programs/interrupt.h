#pragma once
// Signals leave a mark, which the running statement or the reader of a line takes: Ctrl-C ends the statement, SIGTERM
// the program, and SIGUSR1 stops it in the dialogue of the debugger.

namespace korel {

/// From now on the signals leave marks, and cuts short a read that waits.
void catchInterrupts();
/// Waits until there is something to read. False, and the mark taken away, when an interrupt came
/// first: no signal slips in between the look at the mark and the wait.
bool waitForInput(int descriptor);
/// True when an interrupt has come since the last call; takes the mark away. Does not return when the program has
/// been asked to end.
bool takeInterrupt();

}  // namespace korel
