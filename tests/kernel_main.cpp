// The main program of every test program: starts a kernel once, then runs the tests on it.

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "kernel_fixture.h"
#include "session/driver.h"
#include "session/driver_state.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/message.h"
#include "text/print/printer.h"
#include "text/read/source.h"

namespace korel::test {

// ---- objects as text

namespace {

void appendCharacter(void* target, int c) { static_cast<std::string*>(target)->push_back(static_cast<char>(c)); }
void appendFailure(void* target, const char* message) { static_cast<std::string*>(target)->append(message); }

std::string printed(DAG x, int flags) {
  std::string result;
  if (!x) return "0 pointer";
  PrintKorel(x, appendCharacter, appendFailure, 0, &result, flags);
  return result;
}

}  // namespace

std::string text(DAG x) { return printed(x, 0); }

std::string messageText(DAG exception) {
  std::string result;
  expandMessage(exception, appendCharacter, &result);
  return result;
}

// ---- expected errors

std::string errorOfCall(void (*body)(void*), void* data) {
  std::jmp_buf buffer;
  EnvironmentBlock block;
  const int procs = errorProcDepth();
  const std::int32_t level = evaluationLevel;
  EnvironmentBlock* const previous = enterEnvironment(block, buffer);
  ++trapSet;
  const int code = _setjmp(buffer);
  if (code == 0) body(data);
  --trapSet;
  dropErrorProcs(procs);
  RestoreEnvironment(previous);
  evaluationLevel = level;
  SpecialError = noSpecialError;
  if (code == 0) return "";
  if (code == jumpError) return messageText(lastException());
  return "jump " + std::to_string(code);
}

DAG lastException() { return ini("lastexception")[1]; }

// ---- output

namespace {

/// The members of `arguments` from `from` on, joined.
std::string joined(DAG arguments, Word from, const char* separator, int flags) {
  std::string result;
  for (Word i = from; i < lengthOf(arguments); ++i) {
    if (i > from) result += separator;
    result += printed(arguments[i], flags);
  }
  return result;
}

bool isText(DAG x) { return hasTag(x, STRING) || hasTag(x, NAME); }

/// Text pieces as they stand, objects printed.
std::string pieces(DAG arguments) {
  std::string result;
  for (Word i = 1; i < lengthOf(arguments); ++i)
    result += isText(arguments[i]) ? textOf(arguments[i]) : printed(arguments[i], 0);
  return result;
}

std::string rendered(const std::string& stream, DAG arguments) {
  bool empty = lengthOf(arguments) == 1;
  if (stream == "RESULT" || stream == "PRINT" || stream == "LPRINT")
    return joined(arguments, 1, ", ", printBareOutermost) + "\n";
  if (stream == "CHAR") return empty ? "" : textOf(arguments[1]);
  if (stream == "WARN") return "Warning, " + messageText(copydel(arguments, 0, 1)) + "\n";
  if (stream == "EXCEPT") {
    std::string place = isObject(arguments[1]) ? "(in " + text(arguments[1]) + ") " : "";
    return "Error, " + place + messageText(arguments) + "\n";
  }
  if (stream == "INTR") return "Warning, computation interrupted\n";
  if (stream == "ERROR" || stream == "DIAG" || stream == "INFO") return pieces(arguments) + "\n";
  return "";
}

}  // namespace

DAG receive(void* context, DAG message) {
  auto& frontEnd = *static_cast<FrontEnd*>(context);
  frontEnd.streams.push_back(text(message));
  DAG arguments = message[2];
  std::string stream = textOf(message[1]) + std::strlen("INTERFACE_");
  frontEnd.output += rendered(stream, arguments);
  DAG answer = frontEnd.reply != nullptr ? frontEnd.reply(message) : DAG();
  if (answer) return answer;
  if (stream == "GET") return getinterface(arguments, frontEnd.variables);
  if (stream == "SET") return setinterface(arguments, frontEnd.variables);
  return null;
}

int interruptQuery(void* context) {
  auto& frontEnd = *static_cast<FrontEnd*>(context);
  if (frontEnd.interruptsAfter < 0) return 0;
  return frontEnd.interruptsAfter-- == 0;
}

std::string outputOfCall(void (*body)(void*), void* data) {
  FrontEnd frontEnd;
  const DriverState before = driver;
  driver.contexts[driver.depth > 0 ? driver.depth - 1 : 0] = &frontEnd;
  driver.resultCB = receive;
  driver.interruptCB = interruptQuery;
  body(data);
  driver.resultCB = before.resultCB;
  driver.interruptCB = before.interruptCB;
  return frontEnd.output;
}

// ---- the language

DAG parsed(const char* source) { return simpl(nerintokorel(parsestring(source, 1))); }
DAG valueOf(const char* source) { return simpl(eval(parsed(source))); }
std::string evaluated(const char* source) { return text(valueOf(source)); }

std::string sayTo(FrontEnd& frontEnd, const char* statement) {
  frontEnd.output.clear();
  DAG parsed = parsestring(statement, 1);
  EvaluateDAG(parsed, receive, interruptQuery, defaultNerinVariables.display, 0, &frontEnd);
  if (!frontEnd.output.empty() && frontEnd.output.back() == '\n') frontEnd.output.pop_back();
  return frontEnd.output;
}

std::string say(const char* statement) {
  FrontEnd frontEnd;
  return sayTo(frontEnd, statement);
}

// ---- processes

ChildResult inChildCall(void (*body)(void*), void* data) {
  int ends[2];
  if (pipe(ends) != 0) return {-1, "no pipe"};
  std::fflush(nullptr);
  pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    body(data);
    std::fflush(nullptr);
    _exit(0);
  }
  close(ends[1]);
  ChildResult result{0, ""};
  char buffer[4096];
  for (ssize_t n; (n = read(ends[0], buffer, sizeof buffer)) > 0;)
    result.output.append(buffer, static_cast<std::size_t>(n));
  close(ends[0]);
  waitpid(child, &result.status, 0);
  result.status = WIFSIGNALED(result.status) ? 128 + WTERMSIG(result.status) : WEXITSTATUS(result.status);
  return result;
}

namespace {

/// Runs all tests inside a block of their own, where an error that no test expects lands.
int runTests() {
  std::jmp_buf buffer;
  EnvironmentBlock block;
  enterEnvironment(block, buffer);
  int code = _setjmp(buffer);
  if (code == 0) return RUN_ALL_TESTS();
  const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
  std::fprintf(stderr, "%s.%s: jump %d, unexpected error: %s\n", test != nullptr ? test->test_suite_name() : "?",
               test != nullptr ? test->name() : "?", code, messageText(lastException()).c_str());
  std::fflush(nullptr);
  _exit(1);
}

int startAndRun() {
  char program[] = "tests", skipStartFiles[] = "-s";
  char* arguments[] = {program, skipStartFiles, nullptr};
  if (const char* message = InitializeKorel(2, arguments)) {
    std::fprintf(stderr, "%s\n", message);
    return 1;
  }
  printgcstatus = 0;
  FrontEnd frontEnd;
  EvaluateDAG(DAG(), receive, interruptQuery, 1, 0, &frontEnd);
  return runTests();
}

}  // namespace

}  // namespace korel::test

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  return korel::test::startAndRun();
}
