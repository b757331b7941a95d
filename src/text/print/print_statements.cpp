// Statements.

#include "store/object_fields.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

bool isNull(DAG x) { return !x || isEmptySequence(x); }

// A blank and the statements, or nothing for an empty body.
void printBehindBlank(DAG body) {
  if (isNull(body)) return;
  EmitSpace();
  printObject(body, bindsNothing);
}

// A blank, `keyword`, and the operand behind another blank.
void printPart(const char* keyword, DAG operand) {
  EmitSpace();
  EmitToken(keyword);
  printBehindBlank(operand);
}

// ---- assignments

DAG nameOnLeft(DAG assignment) {
  DAG left = assignment[1];
  return isName(left) ? left : DAG();
}

bool isProtected(DAG name) { return isMember(ini("protected"), name[2]); }

void printQuotedCall(const char* function, DAG name) {
  EmitToken(function);
  EmitChar('(');
  EmitChar('\'');
  printObject(name, bindsNothing);
  EmitChar('\'');
  EmitChar(')');
}

// The attributes of a name beside its protection, as a statement behind the assignment.
void printAttributeStatement(DAG name) {
  if (!name[2]) return;
  DAG attributes = asSequence(name[2]);
  bool any = false;
  for (Word i = 1, n = lengthOf(attributes); i < n; ++i) {
    if (attributes[i] == ini("protected")) continue;
    if (!any) {
      printSeparator("; ");
      EmitToken("setattribute");
      EmitChar('(');
      printObject(name, bindsNothing);
    }
    any = true;
    EmitChar(',');
    printObject(attributes[i], bindsNothing);
  }
  if (any) EmitChar(')');
}

void printRightSide(DAG x, int own) {
  DAG right = x[2];
  if (isTag(right, PROC)) {
    DAG outer = printAssignTarget;
    printAssignTarget = x[1];
    printObject(right, own);
    printAssignTarget = outer;
  } else if (right == nameOnLeft(x) && right && printProcDepth == 0 && printStyle == quoteAll) {
    EmitChar('\'');
    printObject(right, own);
    EmitChar('\'');
  } else {
    printObject(right, own);
  }
}

// ---- statements of a keyword and an optional operand

const char* keywordOf(Tag tag) {
  switch (tag) {
    case READ: return "read";
    case SAVE: return "save";
    case STOP: return "quit";
    case ERROR: return "error";
    case RETURN: return "return";
    case BREAK: return "break";
    default: return "next";
  }
}

// A loop's clauses, with blanks between them and none in front of the first.
struct ClausePrinter {
  bool any = false;
  void print(const char* keyword, DAG operand) {
    if (any) EmitSpace();
    any = true;
    EmitToken(keyword);
    EmitSpace();
    printObject(operand, bindsNothing);
  }
};

}  // namespace

void printAssignment(DAG x, int, int own) {
  DAG name = printProcDepth == 0 ? nameOnLeft(x) : DAG();
  bool isProtectedName = name && isProtected(name);
  if (isProtectedName) {
    printQuotedCall("unprotect", name);
    printSeparator("; ");
  }
  printObject(x[1], own);
  printBetweenBlanks(":=");
  printRightSide(x, own);
  if (name && printAttributes) printAttributeStatement(name);
  if (isProtectedName) {
    printSeparator("; ");
    printQuotedCall("protect", name);
  }
}

void printLoop(DAG x, int, int) {
  ClausePrinter clauses;
  const bool counted = isCountedLoop(x);
  if (!isNull(x[loopVariable])) clauses.print("for", x[loopVariable]);
  if (counted) {
    if (x[loopFrom] != cons1) clauses.print("from", x[loopFrom]);
    if (x[loopBy] != cons1) clauses.print("by", x[loopBy]);
    if (!isNull(x[loopTo])) clauses.print("to", x[loopTo]);
  } else {
    clauses.print("in", x[loopContainer]);
  }
  DAG condition = counted ? x[loopWhile] : x[containerLoopWhile];
  if (condition != ini("true")) clauses.print("while", condition);
  if (clauses.any) EmitSpace();
  EmitToken("do");
  printBehindBlank(bodyOfLoop(x));
  EmitSpace();
  EmitToken("end do");
}

void printConditional(DAG x, int, int) {
  Word n = lengthOf(x);
  for (Word i = 1; i + 1 < n; i += 2) {
    if (i == 1) {
      EmitToken("if");
      printBehindBlank(x[i]);
    } else {
      printPart("elif", x[i]);
    }
    printPart("then", x[i + 1]);
  }
  if (n % 2 == 0) printPart("else", x[n - 1]);
  EmitSpace();
  EmitToken("end if");
}

void printKeywordStatement(DAG x, int, int) {
  EmitToken(keywordOf(tagOf(x)));
  if (lengthOf(x) > 1) printBehindBlank(x[1]);
}

void printStatements(DAG x, int, int) {
  bool first = true;
  for (Word i = 1, n = lengthOf(x); i < n; ++i) {
    if (isNull(x[i])) continue;
    if (!first) printSeparator("; ");
    first = false;
    printObject(x[i], bindsNothing);
  }
}

void printTry(DAG x, int, int) {
  EmitToken("try");
  printBehindBlank(x[tryBody]);
  const Word end = catchEnd(x);
  for (Word i = tryFirstCatch; i < end; i += 2) {
    printPart("catch", x[i]);
    EmitChar(':');
    printBehindBlank(x[i + 1]);
  }
  if (hasFinally(x)) printPart("finally", x[end]);
  EmitSpace();
  EmitToken("end try");
}

void printUse(DAG x, int, int) {
  EmitToken("use");
  printBehindBlank(x[1]);
  printPart("in", x[2]);
  EmitSpace();
  EmitToken("end use");
}

void printDebug(DAG x, int, int) {
  EmitToken("DEBUG(");
  for (Word i = 1, n = lengthOf(x); i < n; ++i) {
    if (i > 1) EmitSpace();
    printObject(x[i], bindsNothing);
  }
  EmitChar(')');
}

}  // namespace korel
