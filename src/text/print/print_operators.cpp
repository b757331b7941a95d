// Operators of fixed shape, sequences, and calls.

#include "numbers/integer/integer.h"
#include "store/tag_facts.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

const char* operatorOf(Tag tag) {
  switch (tag) {
    case EQUATION: return "=";
    case INEQUAT: return "<>";
    case LESSEQ: return "<=";
    case LESSTHAN: return "<";
    case RANGE: return "..";
    case AND: return "and";
    default: return "or";
  }
}

// An operand in front of an index, a member or an argument list. These follow an atom: a number or
// a procedure in front of an index reads back only in parentheses, and so does a postfix operator.
void printHead(DAG head, bool atomNeeded) {
  bool parenthesised = isFactorial(head);
  constexpr TagSet noAtoms = numberTags | TagSet{PROC, MODDEF, MODULE};
  if (atomNeeded && !parenthesised) parenthesised = isAmong(head, noAtoms);
  if (parenthesised) {
    printParenthesised(head);
  } else {
    printObject(head, bindsCall);
  }
}

void printBracketed(char open, DAG contents, const char* separator, char close) {
  EmitChar(open);
  printList(contents, separator);
  EmitChar(close);
}

// ---- calls with a notation of their own

// A number before a dot, or a float behind one, would take the dot as its decimal point. These tell whether
// the text of an operand ends, or begins, so.

bool endsInNumber(DAG x) {
  for (;;) {
    if (isNumeric(x)) return true;
    if (!x) return false;
    Word last = lengthOf(x) - 1;
    switch (tagOf(x)) {
      case POWER: case CATENATE: case DCOLON: x = x[2]; continue;
      case PROD:
        // Fractions stand in parentheses as exponents.
        if (isTag(x[last], RATIONAL)) return false;
        x = x[last] == cons1 || x[last] == consm1 ? x[last - 1] : x[last];
        continue;
      case SUM: x = x[last - 1] == cons1 ? x[last] : x[last - 1]; continue;
      case FUNCTION:
        if (!isDotProduct(x)) return false;
        x = x[2][lengthOf(x[2]) - 1];
        continue;
      default: return false;
    }
  }
}

bool beginsWithFloat(DAG x) {
  for (;;) {
    if (isFloatNumber(x)) return true;
    if (!isObject(x)) return false;
    if (isFactorial(x)) {
      x = x[2][1];
    } else if (hasTag(x, POWER) || hasTag(x, DCOLON) || hasTag(x, FUNCTION)) {
      x = x[1];
    } else {
      return false;
    }
  }
}

void printDotProduct(DAG arguments, int min) {
  bool parenthesised = min >= bindsProduct;
  if (parenthesised) EmitChar('(');
  for (Word i = 1, n = lengthOf(arguments); i < n; ++i) {
    DAG operand = arguments[i];
    bool last = i + 1 == n;
    if (i > 1) EmitChar('.');
    if ((last ? isNumeric(operand) && !isInteger(operand) : endsInNumber(operand)) ||
        (i > 1 && beginsWithFloat(operand))) {
      printObject(operand, bindsMoreThanAnything);
    } else if (i == 1) {
      printObject(operand, isDotProduct(operand) ? bindsSum : bindsProduct);
    } else {
      printObject(operand, bindsPower);
    }
  }
  if (parenthesised) EmitChar(')');
}

// The elements of a row or column, which the grammar takes without parentheses from ranges on. Those behind
// the first may be a sequence of their own.
void printElements(DAG elements, char separator, bool& isFirst) {
  if (isSequence(elements)) {
    for (Word i = 1, n = lengthOf(elements); i < n; ++i) printElements(elements[i], separator, isFirst);
    return;
  }
  if (!isFirst) EmitChar(separator);
  isFirst = false;
  if (ParenLevel(elements) < bindsRange) {
    printParenthesised(elements);
  } else {
    printObject(elements, bindsNothing);
  }
}
void printConstructor(DAG elements, char separator) {
  bool isFirst = true;
  EmitChar('<');
  printElements(elements, separator, isFirst);
  EmitChar('>');
}

bool isRtableReference(DAG x) {
  if (!printRtableRefs || !isName(x[1]) || !hasText(x[1], "RTABLE") || isEmptySequence(x[2])) return false;
  DAG first = isSequence(x[2]) ? x[2][1] : x[2];
  return first && isInteger(first);
}

// What an operand of `||` may be without parentheses: on the left whatever can stand there in the
// grammar, on the right a name or a number.
bool isBareLeftOfConcatenation(DAG x) {
  constexpr TagSet bare = textTags | frameReferenceTags | TagSet{MEMBER, TABLEREF, CATENATE};
  if (isTag(x, FUNCTION)) return !isFactorial(x) && !isDotProduct(x);
  return isObject(x) && isAmong(x, bare);
}
bool isBareRightOfConcatenation(DAG x) {
  constexpr TagSet bare = {INTPOS, NAME, LOCAL, PARAM};
  return x && isAmong(x, bare);
}

void printConcatenated(DAG x, bool bare) {
  if (bare) {
    printObject(x, bindsNothing);
  } else {
    printParenthesised(x);
  }
}

}  // namespace

bool isDotProduct(DAG x) { return isCallOf(x, ini(".")) && isSequence(x[2]) && memberCount(x[2]) >= 2; }

bool isFactorial(DAG x) { return isCallOf(x, ini("factorial")) && isSequence(x[2]) && memberCount(x[2]) == 1; }

char constructorSeparator(DAG x) {
  if (!isName(x[1])) return 0;
  if (hasText(x[1], "rtable/ConstructColumn")) return ',';
  return hasText(x[1], "rtable/ConstructRow") ? '|' : '\0';
}

// ---- selection and pairs

void printMember(DAG x, int, int own) {
  if (!isEmptySequence(x[1])) printHead(x[1], true);
  EmitToken(":-");
  printObject(x[2], own);
}

void printTableref(DAG x, int, int) {
  printHead(x[1], true);
  printBracketed('[', x[2], ",", ']');
}

void printDcolon(DAG x, int min, int own) {
  bool parenthesised = min == own;
  if (parenthesised) EmitChar('(');
  printObject(x[1], own);
  EmitToken("::");
  // `a::n!` is the factorial of a::n.
  if (isFactorial(x[2])) {
    printParenthesised(x[2]);
  } else {
    printObject(x[2], own);
  }
  if (parenthesised) EmitChar(')');
}

void printCatenate(DAG x, int, int) {
  printConcatenated(x[1], isBareLeftOfConcatenation(x[1]));
  printBetweenBlanks("||");
  printConcatenated(x[2], isBareRightOfConcatenation(x[2]));
}

void printRelation(DAG x, int min, int own) {
  bool parenthesised = min == own;
  if (parenthesised) EmitChar('(');
  printObject(x[1], own);
  printBetweenBlanks(operatorOf(tagOf(x)));
  printObject(x[2], own);
  if (parenthesised) EmitChar(')');
}

void printBoolean(DAG x, int, int own) {
  printObject(x[1], own);
  printBetweenBlanks(operatorOf(tagOf(x)));
  printObject(x[2], own);
}

void printNot(DAG x, int, int own) {
  EmitToken("not");
  EmitSpace();
  printObject(x[1], own);
}

void printUneval(DAG x, int, int) { printBracketed('\'', x[1], ",", '\''); }

// ---- sequences

void printSequence(DAG x, int min, int) {
  if (lengthOf(x) == 1) {
    EmitToken("NULL");
  } else if (lengthOf(x) == 2) {
    printObject(x[1], min);
  } else {
    printList(x, ", ");
  }
}

void printListOrSet(DAG x, int, int) {
  if (hasTag(x, LIST)) {
    printBracketed('[', x[1], ", ", ']');
  } else {
    printBracketed('{', x[1], ", ", '}');
  }
}

// ---- calls

void printFunction(DAG x, int min, int own) {
  DAG head = x[1], arguments = x[2];
  if (isFactorial(x)) {
    printObject(arguments[1], own);
    EmitChar('!');
    return;
  }
  if (isDotProduct(x)) {
    printDotProduct(arguments, min);
    return;
  }
  if (char separator = constructorSeparator(x)) {
    printConstructor(arguments, separator);
    return;
  }
  if (isRtableReference(x)) {
    EmitToken("_rtable[");
    printObject(isSequence(arguments) ? arguments[1] : arguments, bindsNothing);
    EmitChar(']');
    return;
  }
  printHead(head, false);
  if (isSequence(arguments)) {
    printBracketed('(', arguments, ",", ')');
  } else {
    EmitChar('(');
    printObject(arguments, bindsMoreThanAnything);
    EmitChar(')');
  }
}

}  // namespace korel
