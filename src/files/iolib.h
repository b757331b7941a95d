#pragma once
// The numbered operations of input and output, as the library's procedures call them: one table.

#include "frame/builtin_call.h"

namespace korel {

/// The operands of an operation, from 1 on: those behind the number in iolib(n, operands...), or all that a procedure
/// of the library was given.
struct IolibCall {
  DAG arguments;    // EXPSEQ
  Word before = 1;  // members before the operands
  Word count() const { return lengthOf(arguments) - 1 - before; }
  /// Where operand k stands in `arguments`.
  Word place(Word k) const { return before + k; }
  DAG operand(Word k) const { return arguments[place(k)]; }
};

namespace iolib {
// Each operation answers with a simplified value. Their errors stand with the operations.
DAG openStreamFile(const IolibCall& call);
DAG openRawFile(const IolibCall& call);
DAG readLineOperation(const IolibCall& call);
DAG writeLines(const IolibCall& call);
DAG readBytesOperation(const IolibCall& call);
DAG writeBytes(const IolibCall& call);
DAG position(const IolibCall& call);
DAG closeFiles(const IolibCall& call);
DAG removeFiles(const IolibCall& call);
DAG formattedWrite(const IolibCall& call);
DAG formattedWriteToString(const IolibCall& call);
DAG formattedRead(const IolibCall& call);
DAG formattedReadFromString(const IolibCall& call);
DAG status(const IolibCall& call);
DAG makePipe(const IolibCall& call);
DAG forkKernel(const IolibCall& call);
DAG execute(const IolibCall& call);
DAG waitForChild(const IolibCall& call);
DAG selectReady(const IolibCall& call);
DAG openProcess(const IolibCall& call);
DAG isAtEnd(const IolibCall& call);
DAG killProcesses(const IolibCall& call);
DAG flush(const IolibCall& call);
DAG systemTime(const IolibCall& call);
DAG currentDirectory(const IolibCall& call);
DAG environmentVariable(const IolibCall& call);
DAG makeDirectory(const IolibCall& call);
DAG removeDirectory(const IolibCall& call);
DAG archiveTool(const IolibCall& call);
}  // namespace iolib

namespace builtin {
/// iolib(n, operands...): operation n; `null` for one that isn't there. Errors: "first argument to iolib must be a
/// positive integer", those of the operation.
DAG iolib(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
