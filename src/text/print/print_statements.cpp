// Statements.

#include "store/constants.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

bool isNull(DAG x) { return !x || isEmptySequence(x); }

// A blank and the statements, or nothing for an empty body.
void printBehindBlank(DAG body) {
  if (isNull(body)) return;
  EmitSpace();
  printObject(body, 0);
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
  return isObject(left) && hasTag(left, NAME) ? left : DAG();
}

bool isProtection(DAG attribute) { return attribute == ini("protected"); }

bool isProtected(DAG name) {
  DAG attribute = name[2];
  if (!isSequence(attribute)) return attribute && isProtection(attribute);
  for (Word i = 1, n = lengthOf(attribute); i < n; ++i)
    if (isProtection(attribute[i])) return true;
  return false;
}

void printQuotedCall(const char* function, DAG name) {
  EmitToken(function);
  EmitChar('(');
  EmitChar('\'');
  printObject(name, 0);
  EmitChar('\'');
  EmitChar(')');
}

// The attributes of a name beside its protection, as a statement behind the assignment.
void printAttributeStatement(DAG name) {
  DAG attribute = name[2];
  if (!attribute) return;
  DAG single[1] = {attribute};
  bool sequence = isSequence(attribute);
  Word count = sequence ? lengthOf(attribute) - 1 : 1;
  bool any = false;
  for (Word i = 0; i < count; ++i) {
    DAG entry = sequence ? attribute[i + 1] : single[i];
    if (isProtection(entry)) continue;
    if (!any) {
      EmitChar(';');
      EmitSpace();
      EmitToken("setattribute");
      EmitChar('(');
      printObject(name, 0);
    }
    any = true;
    EmitChar(',');
    printObject(entry, 0);
  }
  if (any) EmitChar(')');
}

void printRightSide(DAG x, int own) {
  DAG right = x[2];
  if (isObject(right) && hasTag(right, PROC)) {
    DAG outer = printAssignTarget;
    printAssignTarget = x[1];
    printObject(right, own);
    printAssignTarget = outer;
  } else if (right == nameOnLeft(x) && right && printProcDepth == 0 && printStyle == 0) {
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
    case READ:
      return "read";
    case SAVE:
      return "save";
    case STOP:
      return "quit";
    case ERROR:
      return "error";
    case RETURN:
      return "return";
    case BREAK:
      return "break";
    default:
      return "next";
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
    printObject(operand, 0);
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
  bool overMembers = lengthOf(x) == 5;
  if (!isNull(x[1])) clauses.print("for", x[1]);
  if (overMembers) {
    clauses.print("in", x[2]);
  } else {
    if (x[2] != cons1) clauses.print("from", x[2]);
    if (x[3] != cons1) clauses.print("by", x[3]);
    if (!isNull(x[4])) clauses.print("to", x[4]);
  }
  DAG condition = overMembers ? x[3] : x[5];
  if (condition != ini("true")) clauses.print("while", condition);
  if (clauses.any) EmitSpace();
  EmitToken("do");
  printBehindBlank(overMembers ? x[4] : x[6]);
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
    printObject(x[i], 0);
  }
}

void printTry(DAG x, int, int) {
  Word n = lengthOf(x);
  EmitToken("try");
  printBehindBlank(x[1]);
  for (Word i = 2; i + 1 < n; i += 2) {
    printPart("catch", x[i]);
    EmitChar(':');
    printBehindBlank(x[i + 1]);
  }
  if (n % 2 != 0) printPart("finally", x[n - 1]);
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
    printObject(x[i], 0);
  }
  EmitChar(')');
}

}  // namespace korel
