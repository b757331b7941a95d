#pragma once
// The debugger's side in the kernel: when a program stops, and the dialogue that follows.
//
// The dialogue itself is the library procedure `debugger`. It is called with what there is to tell, as [DEBUGERROR,
// message], [DEBUGWATCH, name, value] or the value of the last command, and behind it, inside a procedure,
// [DEBUGINFO, name, statement number, kind]. Its value is a command, which is evaluated among the variables of the
// procedure that has stopped, and whose value it is given next; the empty sequence lets the program go on.
//
// A stop is armed by a depth: the next statement that is no deeper stops. `DEBUG` arms its own depth, a watch or a
// step any.

#include <csignal>
#include <cstdint>

#include "frame/builtin_call.h"
#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

/// The depth for a stop at the very next statement.
constexpr std::int32_t everyDepth = 999999999;
/// Statements of the top level are less deep than this; they never stop.
constexpr std::int32_t firstInnerDepth = 3;

/// The depth at which the next statement stops, 0 for none, and what the debugger is told then.
extern std::int32_t stepLevel;
extern DAG debugArgs;
void armStop(std::int32_t depth, DAG arguments);
/// The debugger has its turn before statement `s`, when an armed stop is for it.
void stopAt(DAG s);

/// Runs the sequence of a break point: its `DEBUG`, and the statement that it guards.
DAG runBreakPoint(DAG breakPoint, int mode);
/// Tells that `wrapper` is about to run what it is around; gives the one before, to be put back behind it.
DAG enterWrapper(DAG wrapper);

/// The dialogue, at the statement that runs. Nothing when there is no procedure `debugger`.
void debugger(DAG arguments);
/// The same for the error that `lasterror` holds, when the error table asks for it.
void EnterDebugger();
/// A signal handler may call it: the next statement of a procedure stops.
void enterDebuggerSoon();
extern volatile std::sig_atomic_t debuggerWanted;
/// For that signal: enters the dialogue on the terminal, whatever runs. Nothing without a terminal, or in the dialogue.
void DropEverythingAndEnterDebugger();

/// True inside the dialogue where an interrupt has to wait: anywhere but in a command.
bool interruptsWait();

// ---- what `debugopts` reads and sets

extern bool debuggerActive;
/// The depth of the stop that follows the dialogue.
extern std::int32_t savedStepLevel;
/// `lasterror` and `lastexception` when the dialogue began, or 0.
extern DAG lastLastError, lastLastException;
/// The statement where the debugger stands, or its wrapper; 0 outside the dialogue.
extern DAG currentStatement;
extern const DAG* currentField;  // where it stands, if that is known
/// `debugopts(interrupt)`: the dialogue and the program end.
void interruptFromDebugger();
/// A name that leads to the procedure of `frame`: its own, or `unknown/` and the address, which it is assigned to. 0
/// for the top level and for modules.
DAG nameOfProcedure(const Frame& frame);

namespace builtin {
/// DEBUG(...): the debugger stops here at top level, inside a procedure at its next statement.
DAG DEBUG_(const BuiltinCall& call);
}  // namespace builtin

void initializeDebugger();
/// For each statement of the top level, and for a restart.
void ResetDebugger();
void CleanUpDebugger();

}  // namespace korel
