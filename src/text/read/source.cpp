#include "text/read/source.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>

#include "frame/errors.h"
#include "frame/output.h"
#include "library/records/record_file.h"
#include "library/repository/directory_contents.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "text/read/input.h"
#include "text/read/lexer.h"
#include "text/read/parser.h"
#include "text/read/syntax_errors.h"

namespace korel {

namespace {

void (*doParseHook)() = nullptr;

void warn(int, const char* message) { KernelWarning(readerWarning, message); }
DAG getlabel(DAG) { return DAG(); }

// ---- the string being parsed

struct StringSource {
  const char* next;
  bool addTerminator;
  int last = ' ';          // delivered last, the look-ahead of a parse that has ended
  bool textEnded = false;  // what was delivered last isn't from the text
};

/// At the end of the text come the terminator that is missing, a newline behind a terminator, and
/// then the end.
int nextStringChar(void* closure) {
  auto& s = *static_cast<StringSource*>(closure);
  int c = static_cast<unsigned char>(*s.next);
  s.textEnded = c == 0;
  if (c != 0) ++s.next;
  else if (s.last == '\n' || s.last == -1) c = -1;
  else if (s.last == ';' || s.last == ':') c = '\n';
  else c = s.addTerminator ? ';' : -1;
  s.last = c;
  return c;
}

void recordEndOfInput(int position) { recordSyntaxError(position, "unexpected end of input"); }

bool isBlank(char c) { return c == ' ' || (c >= 9 && c <= 13); }

/// True when the text holds more than blanks and a comment behind the statement.
bool moreThanStatement(const StringSource& source) {
  if (source.textEnded) return false;
  const char* rest = source.next - 1;        // from the look-ahead on
  if (*rest == ';' || *rest == ':') ++rest;  // behind a lone `quit`
  while (isBlank(*rest)) ++rest;
  return *rest != '#' && *rest != 0;
}

// ---- the files being read

bool stopReading = false;  // an error has decided so; looked at after each statement

void closeInputAbove(int unit) {
  while (r_unit0 > unit) closeinput();
}
void closeInputProcedure(const char*) { closeInputAbove(static_cast<int>(errorProcParam)); }

void reportReading(const char* name) {
  sendStream(Stream::EXCEPT, {cons0, strinstall("while reading `%1`"), naminstall(name)});
}

/// Statement after statement of the unit above `outer`, until its end or an error stops it.
void evaluateStatements(const char* name, int outer, bool echo) {
  while (!stopReading) {
    DAG statement = doparse();
    if (recordedSyntaxError().text != nullptr) reportReading(name);
    if (r_unit0 <= outer || stopReading) return;
    if (tagOf(statement) == CONTROL) return;
    const bool shown = echo && defaultNerinVariables.display != 0;
    EvaluateDAG(statement, nullptr, nullptr, shown, 0, nullptr);
    if (stopReading) reportReading(name);
    if (r_unit0 <= outer) return;
    closeInputAbove(outer + 1);  // a `quit` or an error may have left the files it was reading open
  }
}

}  // namespace

DAG parsestring(const char* text, bool addTerminator) {
  StringSource source{text, addTerminator};
  PushKorelParser();
  clearSyntaxError();
  DAG statement = ParseKorel({{nextStringChar, &source}, recordEndOfInput, recordSyntaxError, warn, getlabel});
  PopKorelParser();

  if (statement && tagOf(statement) >= GARBAGE) statement = DAG();
  RecordedSyntaxError error = recordedSyntaxError();
  if (!statement && error.text == nullptr && source.last != -1) {
    recordEndOfInput(lexCharCount);
    error = recordedSyntaxError();
  }
  if (error.text != nullptr)
    KernelException("incorrect syntax in parse: %1 (%2)", strinstall(error.text), Newint(error.position));
  if (moreThanStatement(source)) KernelWarning(readerWarning, "extra characters at end of parsed string");
  return statement ? statement : null;
}

void InstallDoParseHook(void (*hook)()) { doParseHook = hook; }

DAG doparse() {
  if (doParseHook != nullptr) doParseHook();
  clearSyntaxError();
  if (r_unit0 == 0) resetParserNesting();  // nothing encloses the terminal's statements
  PushKorelParser();
  DAG statement = ParseKorel(
      {{[](void*) { return nextInputChar(); }, nullptr}, reportEndOfInput, reportSyntaxError, warn, getlabel});
  PopKorelParser();
  if (!statement) return null;
  pushBackInputChar();
  return statement;
}

DAG ReadSourceFile(const char* name, bool failQuietly, bool echo) {
  int outer = r_unit0;
  if (!Ropen(name)) {
    if (failQuietly) return ini("FAIL");
    KernelException("unable to read `%1`", naminstall(name));
  }
  if (outer == 0) stopReading = false;
  // The parameter is any word: the unit that stays open.
  PushParamErrorProc(closeInputProcedure, DAG(static_cast<Word>(outer)));
  evaluateStatements(name, outer, echo);
  PopErrorProc();
  closeInputAbove(outer);
  if (outer == 0) stopReading = false;
  return null;
}

DAG ReadSourceOrDotMFile(const char* name, bool failQuietly, bool echo) {
  if (isRecordFileName(name)) return ReadDotMFile(name, failQuietly, nullptr);
  return ReadSourceFile(name, failQuietly, echo);
}

void CloseReadOnError(int stop) {
  if (r_unit0 <= 0) return;
  if (defaultNerinVariables.errorbreak < stop || SpecialError == stackOverflow) stopReading = true;
  if (stop == stoppedBySyntaxError) FillInLastErrorAndException("syntax error while reading file");
}

int callsys(const char* command) {
  if (secureMode) userror("system calls are disabled");
  std::fflush(nullptr);
  int status = std::system(command);
  doubtDirectoryContents();  // what it has done is seen
  if (status == -1) return -1;
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace korel
