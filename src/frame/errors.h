#pragma once
// The one way in which failures travel.
//
// Raising an error stores an exception, EXPSEQ (procedure or 0, message, parameters...), in
// `lastexception` and jumps with code 4 to the innermost environment block. A message text holds
// marks: %1..%9 a parameter, %-1 an ordinal, %0 all of them, %% a percent sign; parameters travel
// unformatted and the front end expands them.
//
// Frames that a jump can pass over hold nothing with a destructor that matters; state that an error
// would leave dirty is restored by an error procedure.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Why an error cannot be caught.
enum SpecialErrorCode : std::int32_t {
  noSpecialError = 0,
  timeExpired = 1,
  computationInterrupted = 2,
  internalError = 3,
  assertionFailed = 4,
  stackOverflow = 5,
};
extern std::int32_t SpecialError;
/// Count of active traps (`try`, `traperror`).
extern std::int32_t trapSet;

[[noreturn]] void raiseKernelException(const char* text, const DAG* parameters, int count);

/// Raises `text` with one parameter a mark. An EXPSEQ parameter spreads over several places.
/// A null text raises the last error again.
template <class... Parameters>
[[noreturn]] inline void KernelException(const char* text, Parameters... parameters) {
  DAG list[sizeof...(Parameters) + 1] = {parameters...};
  raiseKernelException(text, list, sizeof...(Parameters));
}
/// Raises what the statement `error` was given: EXPSEQ (message, parameters...), one object, or
/// `null` for the last error again.
[[noreturn]] void KorelException(DAG arguments);
/// The same as if the procedure of that name had raised it: what a helper of several procedures finds. With 0 the one
/// that is running.
[[noreturn]] void KorelExceptionOf(DAG procedure, DAG arguments);
[[noreturn]] void userror(const char* text);
/// A message with one printf conversion, whose formatted value becomes parameter 1 (for a text with
/// error procedures registered: part of the text).
[[noreturn]] void _userror2(const char* format, const char* value);
[[noreturn]] void _userror2(const char* format, long value);
/// An internal inconsistency: a special error that no trap catches.
[[noreturn]] void notimpl(const char* text);

void sendKernelWarning(int level, const char* text, const DAG* parameters, int count);
/// Sends a warning at `level` (0 to 4, 2 the ordinary one) and returns.
template <class... Parameters>
inline void KernelWarning(int level, const char* text, Parameters... parameters) {
  DAG list[sizeof...(Parameters) + 1] = {parameters...};
  sendKernelWarning(level, text, list, sizeof...(Parameters));
}

using ErrorProcedure = void (*)(const char* message);
/// The parameter of the error procedure that is running: a reference or any other word.
extern std::uintptr_t errorProcParam;
/// Registers `f`, to be called when an error, or a `return`, `break` or `next`, passes; `PopErrorProc` on
/// every normal way out.
void PushErrorProc(ErrorProcedure f);
void PushParamErrorProc(ErrorProcedure f, DAG parameter);
void PushParamErrorProc(ErrorProcedure f, void* parameter);
void PopErrorProc();
/// A call of a procedure that runs without a frame of its own. What is raised within it, and not in a block entered
/// since, is raised as if it had one: the exception, the traceback and the debugger name it. `PopErrorProc` ends it.
struct FramelessCall {
  DAG name, arguments, procedure;  // the name called, EXPSEQ, PROC
};
void PushFramelessCall(const FramelessCall& call);
/// `PushErrorProc` for a procedure that only puts a variable back: special errors, which call no other, call it
/// too, so that an interrupt or a time limit leaves neither a loop variable nor `Digits` changed.
/// `frameless` is a call that begins here too, if it isn't null.
void PushStateKeeper(ErrorProcedure f, void* parameter, const FramelessCall* frameless = nullptr);
/// True when an error procedure is registered.
bool hasErrorProc();
/// Depth of the stack of error procedures, and the way back to an earlier depth without calling any.
int errorProcDepth();
void dropErrorProcs(int depth);

/// Sets `lasterror` and `lastexception` to a text without a jump; gives the text as a NAME.
DAG FillInLastErrorAndException(const char* message);
void clearLastError();

/// Value of the expression sequence `x`, or the text of the error that it raised.
DAG traperror(DAG x);
/// Calls `f(argument)` under a trap; `failed` tells whether an error came.
DAG KernelTrapError(DAG (*f)(DAG), DAG argument, bool& failed);

/// Parameter marks of a message: how many parameters it takes; -1 when it holds %0.
int countMarks(const char* text);
/// `text` to be part of a message, with its percent signs doubled where it has any: it holds no mark.
const char* withoutMarks(const char* text);

}  // namespace korel
