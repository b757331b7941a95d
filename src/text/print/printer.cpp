#include "text/print/printer.h"

#include <csetjmp>
#include <cstdio>

#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "store/tag_facts.h"
#include "text/print/print_object.h"

namespace korel {

PrintStyle printStyle = quoteAll;
int printDepth = 0;
bool printAttributes = false;
bool printTildes = false;
bool printAddresses = false;
bool printRtableRefs = false;
DAG mProcPrint;
int printProcDepth = 0;
const PrintedHolder* printedHolders = nullptr;
DAG printAssignTarget;

namespace {

// The attribute of an object that shows it as a call of `setattribute`, or 0.
DAG shownAttribute(DAG x) {
  if (!printAttributes || !isObject(x)) return DAG();
  constexpr TagSet behindContents = {LIST, SET}, behindTwoFields = {TABLEREF, FUNCTION, FLOAT};
  Word place = isAmong(x, behindContents) ? 2 : isAmong(x, behindTwoFields) ? 3 : 0;
  if (place == 0 || lengthOf(x) <= place || isEmptySequence(x[place])) return DAG();
  return x[place];
}

void printTagged(DAG x, int min, int own) {
  const TagPrinting* printing = printingOf(tagOf(x));
  PrintRow row = printing != nullptr ? printing->print : printUnprintable;
  DAG attribute = shownAttribute(x);
  if (!attribute) {
    row(x, min, own);
    return;
  }
  EmitToken("setattribute");
  EmitChar('(');
  row(x, bindsNothing, own);
  EmitChar(',');
  printList(attribute, ",");
  EmitChar(')');
}

void printAddress(DAG x) {
  char text[32];
  std::snprintf(text, sizeof text, "\\%p\\", reinterpret_cast<void*>(static_cast<std::uintptr_t>(x.word)));
  EmitToken(text);
}

// ---- failures

// Where an error during the present printing goes back to, and its text.
std::jmp_buf* returnPoint = nullptr;
const char* failureText = nullptr;

void returnToPrinter(const char* message) {
  failureText = message;
  PopErrorProc();
  ::_longjmp(*returnPoint, 1);
}

void markBrokenToken(void*, int) {
  if (printAtomic > 0 && printStyle < quoteNothing) EmitContinuation();
}

void setPrintingState(int flags) {
  printStyle = (flags & printBare) != 0 ? quoteNothing : (flags & printBareOutermost) != 0 ? quoteInside : quoteAll;
  printAttributes = (flags & printProgramText) != 0;
  printTildes = (flags & printWithTildes) != 0;
  printAddresses = (flags & printWithAddresses) != 0;
  printRtableRefs = (flags & printRtableNumbers) != 0;
  printDepth = printAtomic = 0;
  printAssignTarget = DAG();
  printedHolders = nullptr;
}

// One printing; a null separator prints `object` as it is, as part of `definition` if there is one.
void printUnderTrap(DAG object, Sink sink, ErrorSink onError, int width, void* closure, int flags,
                    const char* separator, DAG definition = DAG()) {
  InitializeOutput(sink, onError, markBrokenToken, width - 1, closure);
  setPrintingState(flags);
  mProcPrint = definition;
  printProcDepth = definition ? 1 : 0;
  std::jmp_buf here;
  std::jmp_buf* previous = returnPoint;
  returnPoint = &here;
  if (::_setjmp(here) == 0) {
    PushErrorProc(returnToPrinter);
    if (separator == nullptr) {
      printObject(object, bindsNothing);
    } else {
      printList(object, separator);
    }
    PopErrorProc();
    returnPoint = previous;
  } else {
    returnPoint = previous;
    EmitError(failureText);  // may raise
  }
}

}  // namespace

// ---- the walk

void printObject(DAG x, int min) {
  checkStack();
  passWork(objectSteps);
  ++printDepth;
  if (printAddresses) printAddress(x);
  if (x) {
    int own = ParenLevel(x);
    if (own < min) {
      EmitChar('(');
      printTagged(x, bindsNothing, own);
      EmitChar(')');
    } else {
      printTagged(x, min, own);
    }
  }
  --printDepth;
}

void printUnprintable(DAG, int, int) { KernelException("unprintable data structure"); }

bool isUnderWay(DAG holder) {
  for (const PrintedHolder* outer = printedHolders; outer != nullptr; outer = outer->link)
    if (outer->holder == holder) return true;
  return false;
}

void printSeparator(const char* separator) {
  for (; *separator != '\0'; ++separator) {
    if (*separator == ' ') {
      EmitSpace();
    } else {
      EmitChar(static_cast<unsigned char>(*separator));
    }
  }
}

void printList(DAG sequence, const char* separator) {
  if (!isSequence(sequence)) {
    printObject(sequence, bindsNothing);
    return;
  }
  bool first = true;
  for (Word i = 1, n = lengthOf(sequence); i < n; ++i) {
    if (!sequence[i]) continue;
    if (!first) printSeparator(separator);
    first = false;
    printObject(sequence[i], bindsNothing);
  }
}

void printBetweenBlanks(const char* keyword) {
  EmitSpace();
  EmitToken(keyword);
  EmitSpace();
}

void printParenthesised(DAG x) {
  EmitChar('(');
  printObject(x, bindsNothing);
  EmitChar(')');
}

// ---- entry points

void PrintKorel(DAG object, Sink sink, ErrorSink onError, int width, void* closure, int flags) {
  printUnderTrap(object, sink, onError, width, closure, flags, nullptr);
}

void PrintKorelWithin(DAG definition, DAG object, Sink sink, ErrorSink onError, void* closure) {
  printUnderTrap(object, sink, onError, 0, closure, 0, ", ", definition);
}

void PrintKorelList(DAG sequence, Sink sink, ErrorSink onError, int width, void* closure, int flags,
                    const char* separator) {
  printUnderTrap(sequence, sink, onError, width, closure, flags, separator);
}

}  // namespace korel
