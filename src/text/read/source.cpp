#include "text/read/source.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "library/records/record_file.h"
#include "library/repository/directory_contents.h"
#include "session/driver.h"
#include "frame/errors.h"
#include "session/interface.h"
#include "frame/output.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "text/read/input.h"
#include "text/read/lexer.h"
#include "text/read/parser.h"
#include "text/read/syntax_errors.h"

namespace korel {

int restrictionsActive = 1;

namespace {

void (*doParseHook)() = nullptr;

void warn(int, const char* message) { KernelWarning(3, message); }
DAG getlabel(DAG) { return DAG(); }

// ---- the string being parsed

struct StringSource {
  const char* next = nullptr;
  int last = ' ';
  bool addTerminator = false;
};
StringSource stringSource;

/// At the end of the text come the terminator that is missing, a newline behind a terminator, and
/// then the end.
int nextStringChar() {
  StringSource& s = stringSource;
  int c = static_cast<unsigned char>(*s.next);
  if (c != 0)
    ++s.next;
  else if (s.last == '\n' || s.last == -1)
    c = -1;
  else if (s.last == ';' || s.last == ':')
    c = '\n';
  else
    c = s.addTerminator ? ';' : -1;
  s.last = c;
  return c;
}

void recordEndOfInput(int position) { recordSyntaxError(position, "unexpected end of input"); }

bool isBlank(int c) { return c == ' ' || (c >= 9 && c <= 13); }

/// True when the string holds more than blanks and a comment behind the statement.
bool moreThanStatement() {
  int c = stringSource.last;
  if (c == '#') return false;
  if (c == ';' || c == ':') c = nextStringChar();
  while (isBlank(c)) c = nextStringChar();
  return c != '#' && c != -1;
}

// ---- the files being read

void closeInputAbove(int unit) {
  while (r_unit0 > unit) closeinput();
}
void closeInputProcedure(const char*) { closeInputAbove(static_cast<int>(errorProcParam)); }

void reportReading(const char* name) {
  sendStream("INTERFACE_EXCEPT", {cons0, strinstall("while reading `%1`"), naminstall(name)});
}

/// Statement after statement of the unit above `outer`, until its end or an error stops it.
void evaluateStatements(const char* name, int outer, int echo) {
  while (!stopReading) {
    DAG statement = doparse();
    if (recordedSyntaxError().text != nullptr) reportReading(name);
    if (r_unit0 <= outer || stopReading) return;
    if (tagOf(statement) == CONTROL) return;
    int shown = echo != 0 && defaultNerinVariables.display != 0;
    EvaluateDAG(statement, nullptr, nullptr, shown, 0, nullptr);
    if (stopReading) reportReading(name);
    if (r_unit0 <= outer) return;
    closeInputAbove(outer + 1);  // a `quit` or an error may have left the files it was reading open
  }
}

}  // namespace

DAG parsestring(const char* text, int addTerminator) {
  StringSource outer = stringSource;
  PushKorelParser();
  stringSource = {text, ' ', addTerminator != 0};
  restrictionsActive = 0;
  clearSyntaxError();
  DAG statement =
      ParseKorel(nextStringChar, recordEndOfInput, recordSyntaxError, warn, getlabel, true);
  restrictionsActive = 1;
  PopKorelParser();

  if (statement && tagOf(statement) >= GARBAGE) statement = DAG();
  RecordedSyntaxError error = recordedSyntaxError();
  if (!statement && error.text == nullptr && stringSource.last != -1) {
    recordEndOfInput(lexCharCount);
    error = recordedSyntaxError();
  }
  bool more = error.text == nullptr && moreThanStatement();
  stringSource = outer;
  if (error.text != nullptr)
    KernelException("incorrect syntax in parse: %1 (%2)", strinstall(error.text),
                    Newint(error.position));
  if (more) KernelWarning(3, "extra characters at end of parsed string");
  return statement ? statement : null;
}

void InstallDoParseHook(void (*hook)()) { doParseHook = hook; }

DAG doparse() {
  if (doParseHook != nullptr) doParseHook();
  clearSyntaxError();
  if (r_unit0 == 0) resetParserNesting();  // nothing encloses the terminal's statements
  PushKorelParser();
  DAG statement =
      ParseKorel(nextInputChar, reportEndOfInput, reportSyntaxError, warn, getlabel, true);
  PopKorelParser();
  if (!statement) return null;
  if (nextch2 != -2) {
    nextch = lastInputChar;
    --icharno[r_unit0];
  }
  return statement;
}

DAG ReadSourceFile(const char* name, int failQuietly, int echo) {
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

DAG ReadSourceOrDotMFile(const char* name, int failQuietly, int echo) {
  if (isRecordFileName(name)) return ReadDotMFile(name, failQuietly != 0, nullptr);
  return ReadSourceFile(name, failQuietly, echo);
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
