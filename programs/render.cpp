#include "render.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "frame/interface.h"
#include "numbers/hardware_float.h"
#include "numbers/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "terminal.h"
#include "text/message.h"
#include "text/printer.h"

namespace korel {

namespace {

std::FILE* redirected = nullptr;

std::FILE* out() { return redirected != nullptr ? redirected : stdout; }
void write(const char* text) { std::fputs(text, out()); }
void put(void*, int c) { std::putc(c, out()); }
void putError(void*, const char* text) {
  write("Error, ");
  write(text);
}

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }
bool isText(DAG x) { return isTag(x, NAME) || isTag(x, STRING); }

int lineWidth() { return defaultNerinVariables.screenwidth; }

// ---- values

void showValues(DAG arguments) {
  PrintKorelList(arguments, put, putError, lineWidth(), nullptr, printBareOutermost, ", ");
  write("\n");
}

// Pieces side by side: texts as they stand, other objects printed.
void showPieces(DAG arguments) {
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    if (isText(arguments[i]))
      write(textOf(arguments[i]));
    else
      PrintKorel(arguments[i], put, putError, 0, nullptr, 0);
  }
  write("\n");
}

void showText(DAG arguments) {
  for (Word i = 1; i < lengthOf(arguments); ++i)
    if (isText(arguments[i])) write(textOf(arguments[i]));
}

// ---- messages

// A sequence handed over as the one argument stands for the arguments.
DAG sequenceOf(DAG arguments) {
  return lengthOf(arguments) == 2 && isTag(arguments[1], EXPSEQ) ? arguments[1] : arguments;
}

void showWarning(DAG arguments) {
  DAG warning = sequenceOf(arguments);
  if (lengthOf(warning) < 3) return;
  DAG level = warning[1];
  if (isImmediate(level) && immediateValue(level) > defaultNerinVariables.warnlevel) return;
  write("Warning, ");
  DAG message = CopyAlg(warning);
  message[1] = cons0;
  expandMessage(message, put, nullptr);
  write("\n");
}

void showException(DAG arguments) {
  DAG exception = sequenceOf(arguments);
  write("Error, ");
  if (lengthOf(exception) > 1 && exception[1] != cons0 && !isImmediate(exception[1]) && !isTag(exception[1], STRING)) {
    write("(in ");
    PrintKorel(exception[1], put, putError, 0, nullptr, printBare);
    write(") ");
  }
  expandMessage(exception, put, nullptr);
  write("\n");
}

double numberOf(DAG x) { return isNumeric(x) ? FloatValue(x) : 0.0; }

// Words used, words held, CPU seconds.
void showStatus(DAG arguments) {
  if (defaultNerinVariables.quiet != 0 || defaultNerinVariables.noStatus != 0) return;
  if (lengthOf(arguments) < 4) return;
  constexpr double wordsInMegabyte = 1048576.0 / 4;
  std::fprintf(out(), "memory used=%.1fMB, alloc=%.1fMB, time=%.2f\n",
               numberOf(arguments[1]) / wordsInMegabyte, numberOf(arguments[2]) / wordsInMegabyte,
               numberOf(arguments[3]));
}

void showBanner(DAG arguments) {
  if (defaultNerinVariables.quiet != 0) return;
  showPieces(arguments);
}

// ---- questions

DAG set(DAG arguments) { return setinterface(arguments, defaultNerinVariables); }
DAG get(DAG arguments) { return getinterface(arguments, defaultNerinVariables); }

DAG redirect(DAG arguments) {
  if (redirected != nullptr) std::fclose(redirected);
  redirected = nullptr;
  if (lengthOf(arguments) < 2 || !isText(arguments[1])) return cons0;
  bool append = lengthOf(arguments) > 2 && isText(arguments[2]) &&
                std::strncmp(textOf(arguments[2]), "append", 6) == 0;
  redirected = std::fopen(textOf(arguments[1]), append ? "a" : "w");
  if (redirected != nullptr) return cons0;
  return Newint(errno);
}

DAG readLine(DAG) {
  flushOutput();
  return readUserLine("");
}

DAG nothing(DAG) { return null; }
template <void (*show)(DAG)>
DAG shown(DAG arguments) {
  show(arguments);
  return null;
}
DAG interrupted(DAG) {
  write("Warning, computation interrupted\n");
  return null;
}
DAG statementDone(DAG) {
  flushOutput();
  return null;
}

struct Stream {
  const char* name;
  DAG (*answer)(DAG arguments);
};
constexpr Stream streams[] = {
    // stream                      what is done
    {"INTERFACE_RESULT", shown<showValues>},
    {"INTERFACE_PRINT", shown<showValues>},
    {"INTERFACE_LPRINT", shown<showValues>},
    {"INTERFACE_CHAR", shown<showText>},
    {"INTERFACE_WARN", shown<showWarning>},
    {"INTERFACE_EXCEPT", shown<showException>},
    {"INTERFACE_ERROR", shown<showPieces>},
    {"INTERFACE_DIAG", shown<showPieces>},
    {"INTERFACE_INFO", shown<showPieces>},
    {"INTERFACE_INTR", interrupted},
    {"INTERFACE_LOGO", shown<showBanner>},
    {"INTERFACE_STATUS", shown<showStatus>},
    {"INTERFACE_SET", set},
    {"INTERFACE_GET", get},
    {"INTERFACE_READLINE", readLine},
    {"INTERFACE_DEBUG_READLINE", readLine},
    {"INTERFACE_REDIRECT", redirect},
    {"INTERFACE_DONE", statementDone},
    {"INTERFACE_STOP", statementDone},
    {"INTERFACE_START", nothing},
    {"INTERFACE_HELP", nothing},
    {"INTERFACE_CALLBACK", nothing},
};

}  // namespace

void flushOutput() { std::fflush(out()); }

DAG handleMessage(void*, DAG message) {
  if (!isTag(message, FUNCTION) || !isTag(message[1], NAME)) return null;
  DAG arguments = isTag(message[2], EXPSEQ) ? message[2] : null;
  const char* name = textOf(message[1]);
  for (const Stream& stream : streams)
    if (std::strcmp(name, stream.name) == 0) return stream.answer(arguments);
  // A stream of a program's own: its arguments are shown.
  showValues(arguments);
  return null;
}

}  // namespace korel
