// Random programs, run in this process as the terminal program runs statements.
//
// What must hold for every program: each statement ends in a value or an error of the language, soon
// after it is interrupted at the latest; the heap stays whole; a restart makes the kernel as new. The
// bytes of the input drive a generator of statements (program_generator.h).

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>

#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "program_generator.h"
#include "session/driver.h"
#include "session/interface.h"
#include "session/statement_reader.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "text/print/message.h"
#include "text/print/printer.h"
#include "text/read/source.h"

using namespace korel;

namespace {

constexpr double secondsUntilInterrupt = 0.1;

const char* sourceText;
double statementStart;
InterfaceVariables variables;
bool showing = false;  // KOREL_FUZZ_SHOW: statements and what they give

void show(void*, int c) {
  if (showing) std::fputc(c, stderr);
}
void showFailure(void*, const char* text) {
  if (showing) std::fputs(text, stderr);
}

/// A front end that shows all it is told and keeps interface variables.
DAG receive(void*, DAG message) {
  const char* stream = textOf(message[1]);
  DAG arguments = message[2];
  if (std::strcmp(stream, "INTERFACE_GET") == 0) return getinterface(arguments, variables);
  if (std::strcmp(stream, "INTERFACE_SET") == 0) return setinterface(arguments, variables);
  if (std::strcmp(stream, "INTERFACE_EXCEPT") == 0) expandMessage(arguments, show, nullptr);
  else PrintKorel(message, show, showFailure, 79, nullptr, printBareOutermost);
  show(nullptr, '\n');
  return null;
}

int outOfTime(void*) { return cptime() - statementStart > secondsUntilInterrupt; }

DAG readText() { return parsestring(sourceText, 1); }

void runStatement(const char* text) {
  sourceText = text;
  statementStart = cptime();
  if (showing) std::fprintf(stderr, "> %s\n", text);
  DAG statement = ReadStatement(readText, receive, outOfTime, nullptr);
  statementStart = cptime();
  if (statement && statement != null) EvaluateDAG(statement, receive, outOfTime, 1, 0, nullptr);
}

void requireWholeHeap() {
  if (const char* violation = checkHeap()) {
    std::fprintf(stderr, "heap: %s\n", violation);
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  char name[] = "korel", skip[] = "-s", secure[] = "-z";
  char* argv[] = {name, skip, secure, nullptr};
  if (InitializeKorel(3, argv) != nullptr) std::abort();
  showing = std::getenv("KOREL_FUZZ_SHOW") != nullptr;
  EvaluateDAG(null, receive, nullptr, 0, 0, nullptr);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A definition that another program left would make a fault depend on what ran before.
  if (const char* message = RestartKorel()) {
    std::fprintf(stderr, "restart: %s\n", message);
    std::abort();
  }
  setIFStringVar(&variables.plotoptions, nullptr);  // its own, from the input before
  variables = defaultNerinVariables;
  variables.plotoptions = nullptr;
  for (const std::string& statement : fuzz::programOf(data, size)) runStatement(statement.c_str());
  gc();
  requireWholeHeap();
  return 0;
}
