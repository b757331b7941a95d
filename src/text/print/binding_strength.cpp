// Binding strength of printed objects, and whether a printed object begins with a minus.

#include <cmath>
#include <iterator>

#include "store/constants.h"
#include "store/objects.h"
#include "text/print/print_object.h"
#include "text/print/printer.h"

namespace korel {

namespace {

constexpr int levelOfMinus = 7, levelOfSum = 8, levelOfProduct = 9, levelOfCall = 11,
              levelOfAtom = 12;
// Rows that the object's content decides.
constexpr int byContent = -1;

constexpr signed char levelOfTag[] = {
    // none
    0,
    // INTNEG INTPOS RATIONAL FLOAT HFLOAT COMPLEX STRING NAME
    levelOfMinus, levelOfAtom, byContent, byContent, byContent, byContent, levelOfAtom, levelOfAtom,
    // MEMBER TABLEREF DCOLON CATENATE POWER PROD SERIES SUM
    levelOfCall, levelOfCall, levelOfCall, levelOfAtom, 10, levelOfProduct, 6, byContent,
    // ZPPOLY FUNCTION UNEVAL EQUATION INEQUAT LESSEQ LESSTHAN AND
    6, levelOfCall, 0, 4, 4, 4, 4, 2,
    // NOT OR EXPSEQ LIST LOCAL PARAM LEXICAL PROC
    3, 1, 0, levelOfAtom, levelOfAtom, levelOfAtom, levelOfAtom, levelOfAtom,
    // RANGE SET TABLE RTABLE MODDEF MODULE
    5, levelOfAtom, 0, 0, levelOfAtom, levelOfAtom,
    // statements from ASSIGN to USE, and the kernel's own records
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
static_assert(std::size(levelOfTag) == tagCount + 1);

bool isUnit(DAG complex) { return lengthOf(complex) == 2 && complex[1] == cons1; }

int levelOfComplex(DAG x) {
  if (printAttributes) return levelOfCall;
  if (isUnit(x)) return levelOfAtom;
  return lengthOf(x) == 2 ? levelOfProduct : levelOfSum;
}

// A sum whose text is that of another object: of its only term, or of that term's coefficient.
// Gives that object, or 0 for a sum of its own.
DAG standsFor(DAG sum) {
  if (lengthOf(sum) != 3) return DAG();
  if (sum[2] == cons1) return sum[1];
  if (sum[1] == cons1) return sum[2];
  return DAG();
}

bool isMinusInfinity(DAG x) {
  return isObject(x) && hasTag(x, SUM) && lengthOf(x) == 3 && x[1] == ini("infinity") &&
         x[2] == consm1;
}

bool beginsWithMinus(DAG complex) {
  return !printAttributes && (IsNegative(complex[1]) || isMinusInfinity(complex[1]));
}

}  // namespace

int ParenLevel(DAG x) {
  for (;;) {
    if (!x) return levelOfAtom;
    Tag tag = tagOf(x);
    int number = tagNumber(tag);
    if (number > tagCount) return 0;
    if (levelOfTag[number] != byContent) return levelOfTag[number];
    switch (tag) {
      case RATIONAL:
        return IsNegative(x) ? levelOfMinus : levelOfProduct;
      case FLOAT:
      case HFLOAT:
        return IsNegative(x) ? levelOfMinus : levelOfCall;
      case COMPLEX:
        return levelOfComplex(x);
      default:
        break;
    }
    // A SUM
    DAG other = standsFor(x);
    if (!other) {
      if (lengthOf(x) != 3) return levelOfSum;
      return printsLeadingMinus(x[2]) ? levelOfMinus : levelOfProduct;
    }
    x = other;
  }
}

bool IsNegative(DAG x) {
  if (isImmediate(x)) return static_cast<std::int32_t>(x.word) < 0;
  if (!x) return false;
  switch (tagOf(x)) {
    case INTNEG:
      return true;
    case RATIONAL:
      return IsNegative(x[1]);
    case FLOAT:
      return !(isObject(x[2]) && hasTag(x[2], NAME)) && IsNegative(x[1]);
    case HFLOAT:
      return std::isfinite(hfloatValue(x)) && std::signbit(hfloatValue(x));
    default:
      return false;
  }
}

bool printsLeadingMinus(DAG x) {
  for (;;) {
    if (isImmediate(x) || !x) return IsNegative(x);
    switch (tagOf(x)) {
      case COMPLEX:
        return beginsWithMinus(x);
      case PROD:
        // A sum prints such a product as a minus and the product with its head negated.
        return lengthOf(x) >= 3 && x[2] == cons1 && isObject(x[1]) && hasTag(x[1], COMPLEX) &&
               beginsWithMinus(x[1]);
      case SUM: {
        DAG other = standsFor(x);
        if (other) {
          x = other;
          continue;
        }
        if (lengthOf(x) < 5) return false;  // one pair: parenthesised behind an operator
        // The text of the first pair begins the text.
        if (x[2] == cons1) {
          x = x[1];
          if (isObject(x) && hasTag(x, SUM)) return false;
          continue;
        }
        x = x[2];
        continue;
      }
      default:
        return IsNegative(x);
    }
  }
}

}  // namespace korel
