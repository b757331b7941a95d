#pragma once
// Where statements come from: a terminal, a pipe, or a file.
//
// The kernel asks for one line after the other. At a terminal each is prompted for and can be
// edited, Ctrl-C drops the statement that is being typed, and a line that begins with `?` at the
// start of a statement asks for help. Everywhere else lines are read as they stand, and never past
// the one that is wanted: what follows in a pipe belongs to whoever reads it next.

#include "store/dag.h"

namespace korel {

/// Makes the file `path` the source of statements; null: standard input. False when it can't be
/// read, with the reason in `errno`.
bool openStatements(const char* path);
/// True when they come from a file operand.
bool readsFile();

/// The kernel's source of lines (`setTerminalSource`): at most `size` - 1 characters of a line; how
/// many, 0 at the end.
int nextStatementLine(char* buffer, int size);
/// Called before each statement is read (`InstallDoParseHook`).
void beginStatement();

/// A line that a running program asks for, as a STRING with its newline; `null` at the end.
DAG readUserLine(const char* prompt);

/// Gives back what was read from standard input and not used, where that can be done.
void closeStatements();

}  // namespace korel
