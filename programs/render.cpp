#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "frame/errors.h"
#include "frame/streams.h"
#include "library/assumptions/assumed_name.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "render.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "terminal.h"
#include "text/print/message.h"
#include "text/print/pretty_print.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// ---- text on its way out

std::FILE* redirected = nullptr;

std::FILE* output() { return redirected != nullptr ? redirected : stdout; }

// The printer's last character: an interrupt or a time limit can stop it anywhere in a line.
int lastPrinted = '\n';

void putCharacter(void*, int c) {
  lastPrinted = c;
  putc_unlocked(c, output());
}
void putText(const char* text) {
  if (*text != 0) lastPrinted = static_cast<unsigned char>(text[std::strlen(text) - 1]);
  std::fputs(text, output());
}
void putFailure(void*, const char* text) { std::fprintf(output(), "Output Error: %s", text); }

void endLine() {
  lastPrinted = '\n';
  putc_unlocked('\n', output());
  // A person sees what a long statement writes while it runs; a pipe gets it at the end.
  static const bool seen = isatty(STDOUT_FILENO) != 0;
  if (seen) std::fflush(stdout);
}

/// A message on a stopped statement begins a line of its own.
void leaveBrokenLine() {
  bool stopped = SpecialError == computationInterrupted || SpecialError == timeExpired;
  if (stopped && lastPrinted != '\n') endLine();
}

/// Names under assumption show their tilde. Without any, a tilde is a character of a name that `lprint` would leave
/// out as well.
bool showsTildes() { return defaultNerinVariables.showassumed == 1 && assumptionsWereMade(); }

/// Objects as results show them, broken at the screen's width.
void putValues(DAG sequence, bool withTildes = false) {
  PrintKorelList(sequence, putCharacter, putFailure, defaultNerinVariables.screenwidth, nullptr,
                 printBareOutermost | (withTildes ? printWithTildes : 0), ", ");
}
/// The same as one would write them by hand, for a person at a terminal; false when plain text does.
bool putPretty(DAG sequence) {
  static const bool seen = isatty(STDOUT_FILENO) != 0;
  if (!seen || redirected != nullptr || defaultNerinVariables.prettyprint == 0) return false;
  int width = defaultNerinVariables.screenwidth;
  return PrettyPrint(sequence, putCharacter, width > 0 ? width - 1 : 999999, nullptr, showsTildes());
}
/// Objects as messages show them: nothing quoted, on one line.
void putPieces(DAG sequence) { PrintKorelList(sequence, putCharacter, putFailure, 0, nullptr, printBare, ""); }

// ---- arguments

DAG argument(DAG arguments, Word n) { return n < lengthOf(arguments) ? arguments[n] : DAG(); }
double numberOf(DAG x) { return x && isNumeric(x) ? FloatValue(x) : 0.0; }

// ---- one function a stream: shows its message and gives the reply

DAG valuesOf(DAG arguments) {
  bool isSequence = lengthOf(arguments) == 2 && isObject(arguments[1]) && hasTag(arguments[1], EXPSEQ);
  return isSequence ? arguments[1] : arguments;
}

/// A line that tells about which names in a result something is assumed.
void putAssumedNames(DAG values) {
  DAG names = assumedNamesIn(values);
  if (isEmptySequence(names)) return;
  putText("with assumptions on ");
  putValues(names);
  endLine();
}

DAG showResult(DAG arguments) {
  DAG values = valuesOf(arguments);
  if (!putPretty(values)) putValues(values, showsTildes());
  endLine();
  if (defaultNerinVariables.showassumed == 2 && assumptionsWereMade()) putAssumedNames(values);
  return null;
}

DAG showValues(DAG arguments) {
  putValues(valuesOf(arguments));
  endLine();
  return null;
}

DAG showText(DAG arguments) {
  if (isText(argument(arguments, 1))) putText(textOf(arguments[1]));
  return null;
}

DAG showWarning(DAG arguments) {
  DAG level = argument(arguments, 1);
  if (isImmediate(level) && immediateValue(level) > defaultNerinVariables.warnlevel) return null;
  putText("Warning, ");
  expandMessage(arguments, putCharacter, nullptr);
  endLine();
  return null;
}

/// The first entry of an exception is the procedure that raised it, or 0; a text alone has none.
DAG procedureOf(DAG exception) {
  DAG first = argument(exception, 1);
  bool isProcedure = lengthOf(exception) > 2 && isObject(first) && !hasTag(first, STRING) && isText(exception[2]);
  return isProcedure ? first : DAG();
}

DAG showException(DAG arguments) {
  leaveBrokenLine();
  putText("Error, ");
  if (DAG procedure = procedureOf(arguments)) {
    putText("(in ");
    putPieces(new2(EXPSEQ, procedure));
    putText(") ");
  }
  expandMessage(arguments, putCharacter, nullptr);
  endLine();
  return null;
}

DAG showPieces(DAG arguments) {
  putPieces(arguments);
  endLine();
  return null;
}

DAG showInterrupt(DAG) {
  leaveBrokenLine();
  putText("Warning, computation interrupted");
  endLine();
  return null;
}

DAG showBanner(DAG arguments) { return defaultNerinVariables.quiet ? null : showPieces(arguments); }

DAG showStatus(DAG arguments) {
  if (defaultNerinVariables.quiet || defaultNerinVariables.noStatus) return null;
  constexpr double megabyte = 1048576.0 / sizeof(Word);  // in words
  std::fprintf(output(), "memory used=%.1fMB, alloc=%.1fMB, time=%.2f", numberOf(argument(arguments, 1)) / megabyte,
               numberOf(argument(arguments, 2)) / megabyte, numberOf(argument(arguments, 3)));
  endLine();
  return null;
}

DAG endStatement(DAG) {
  std::fflush(output());
  return null;
}

DAG setVariable(DAG arguments) { return setinterface(arguments, defaultNerinVariables); }
DAG getVariable(DAG arguments) { return getinterface(arguments, defaultNerinVariables); }

DAG readLine(DAG) {
  std::fflush(output());
  return readUserLine("");
}
DAG readDebuggerLine(DAG) {
  std::fflush(output());
  return readUserLine(defaultNerinVariables.debuggerPrompt);
}

/// Output goes to a file from now on, or back to standard output. `false` when the file won't open.
DAG redirect(DAG arguments) {
  DAG file = argument(arguments, 1);
  DAG mode = argument(arguments, 2);
  std::fflush(output());
  // The line that the output has left unfinished waits for its end while another one goes to a file.
  static int lastOnTerminal;
  if (redirected != nullptr) std::fclose(redirected);
  else lastOnTerminal = lastPrinted;
  redirected = nullptr;
  lastPrinted = lastOnTerminal;
  if (!isText(file)) return ini("true");
  bool appends = mode == ini("true") || (isImmediate(mode) && immediateValue(mode) != 0);
  redirected = std::fopen(textOf(file), appends ? "a" : "w");
  if (redirected != nullptr) lastPrinted = '\n';
  return redirected != nullptr ? ini("true") : ini("false");
}

struct StreamRow {
  Stream stream;
  DAG (*answer)(DAG arguments);
};
// The streams that say nothing to a person have no row: START, STOP, HELP, and any that is unknown.
constexpr StreamRow streamRows[] = {
    {Stream::RESULT, showResult},
    {Stream::PRINT, showResult},
    {Stream::LPRINT, showValues},
    {Stream::CHAR, showText},
    {Stream::WARN, showWarning},
    {Stream::EXCEPT, showException},
    {Stream::ERROR, showPieces},
    {Stream::DIAG, showPieces},
    {Stream::INFO, showPieces},
    {Stream::INTR, showInterrupt},
    {Stream::LOGO, showBanner},
    {Stream::STATUS, showStatus},
    {Stream::DONE, endStatement},
    {Stream::SET, setVariable},
    {Stream::GET, getVariable},
    {Stream::READLINE, readLine},
    {Stream::DEBUG_READLINE, readDebuggerLine},
    {Stream::REDIRECT, redirect},
};

}  // namespace

void finishOutputLine() {
  if (lastPrinted != '\n' && redirected == nullptr) endLine();
}

DAG answerMessage(void*, DAG message) {
  if (!isTag(message, FUNCTION) || !isStreamName(message[1])) return null;
  DAG arguments = message[2];
  if (!isTag(arguments, EXPSEQ)) arguments = new2(EXPSEQ, arguments);
  const Stream stream = streamNamed(textOf(message[1]));
  for (const StreamRow& row : streamRows)
    if (row.stream == stream) return row.answer(arguments);
  return null;
}

}  // namespace korel
