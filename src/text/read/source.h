#pragma once
// Reading statements: from a string, from the current input unit, from a whole file.

#include "store/dag.h"

namespace korel {

/// Parses one statement from `text`; at its end a `;` is added when `addTerminator`. `null` for a text
/// without a statement. Errors: "incorrect syntax in parse: %1 (%2)" with the text of the error and
/// its position; text behind the statement is a warning, "extra characters at end of parsed string".
DAG parsestring(const char* text, bool addTerminator);

/// The next statement of the current input unit: `null` after a reported syntax error, CONTROL(1) at
/// the end of the input. What follows the terminator stays for the next call.
DAG doparse();
/// `hook` is called whenever `doparse` starts on a statement; null: none.
void InstallDoParseHook(void (*hook)());

/// Reads a file statement by statement, each evaluated in a frame of its own; results are shown when
/// `echo`. Gives `null`. A file that can't be opened: the name `FAIL` when `failQuietly`, else the error
/// "unable to read `%1`".
DAG ReadSourceFile(const char* name, bool failQuietly, bool echo);
/// The same; a name ending in `.m` is a file of records, which this kernel can't read: an error.
DAG ReadSourceOrDotMFile(const char* name, bool failQuietly, bool echo);

/// What ends the reading of a file while `errorbreak` is below it.
enum ReadStop : int { stoppedByInterrupt, stoppedBySyntaxError, stoppedByStatement };
/// Decides whether the file being read is dropped; an exhausted stack drops it in any case. A syntax error
/// also becomes the last error: "syntax error while reading file".
void CloseReadOnError(int stop);

/// Runs a command of the operating system; its exit status, or -1. Error in secure mode: "system calls
/// are disabled".
int callsys(const char* command);

}  // namespace korel
