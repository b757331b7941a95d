#pragma once
// What tests share: a kernel that main started once, and ways to see what it says.
//
// Tests run at depth 0 in a block of their own. An error that a test doesn't expect ends the
// program with its message; expected ones go through `errorOf`. A statement run by `say` may
// collect at its end: objects that a test holds over it live in names.

#include <string>
#include <vector>

#include "session/interface.h"
#include "store/dag.h"

namespace korel::test {

// ---- objects as text

/// `x` as one-dimensional text that reads back.
std::string text(DAG x);
/// A message with its parameters filled in: EXPSEQ(procedure or 0, text, parameters...).
std::string messageText(DAG exception);

// ---- expected errors

std::string errorOfCall(void (*body)(void*), void* data);

/// The message of the error that `body` raises, its marks filled in; "" when it returns. "jump 2",
/// "jump 3" for a misplaced `return` or `break`. What `body` creates with a destructor leaks.
template <class Body>
std::string errorOf(Body&& body) {
  return errorOfCall([](void* data) { (*static_cast<std::remove_reference_t<Body>*>(data))(); },
                     const_cast<void*>(static_cast<const void*>(&body)));
}
/// The exception of the last error, as an object: (procedure or 0, message, parameters...).
DAG lastException();

// ---- output

/// The settings without the text that each record owns for itself.
inline InterfaceVariables withOwnTexts(InterfaceVariables variables) {
  variables.plotoptions = nullptr;
  return variables;
}

/// A front end: keeps what it is told, and answers about interface variables.
struct FrontEnd {
  std::string output;                // as a terminal program shows it
  std::vector<std::string> streams;  // each message as a call, INTERFACE_CHAR("text")
  InterfaceVariables variables = withOwnTexts(defaultNerinVariables);
  DAG (*reply)(DAG message) = nullptr;  // asked first when set; 0: no answer of its own
  int interruptsAfter = -1;             // polls until it interrupts, or -1
};
/// The handlers of a `FrontEnd`, for `EvaluateDAG`.
DAG receive(void* frontEnd, DAG message);
int interruptQuery(void* frontEnd);

std::string outputOfCall(void (*body)(void*), void* data);

/// What the kernel sends while `body` runs, as a terminal shows it.
template <class Body>
std::string outputOf(Body&& body) {
  return outputOfCall([](void* data) { (*static_cast<std::remove_reference_t<Body>*>(data))(); },
                      const_cast<void*>(static_cast<const void*>(&body)));
}

// ---- the language

/// The simplified, not evaluated object that `source` stands for.
DAG parsed(const char* source);
/// The value of an expression.
DAG valueOf(const char* source);
/// Its value as text.
std::string evaluated(const char* source);
/// What a front end shows when the statement runs at top level, without the last line end.
std::string say(const char* statement);
/// The same, told to a front end of the test's own.
std::string sayTo(FrontEnd& frontEnd, const char* statement);

// ---- processes

struct ChildResult {
  int status;          // exit status; 128 + n for signal n
  std::string output;  // standard output and error
};
ChildResult inChildCall(void (*body)(void*), void* data);

/// Runs `body` in a child process, for what a process can do only once.
template <class Body>
ChildResult inChild(Body&& body) {
  return inChildCall([](void* data) { (*static_cast<std::remove_reference_t<Body>*>(data))(); },
                     const_cast<void*>(static_cast<const void*>(&body)));
}

}  // namespace korel::test
