// Binding strength of printed objects, and whether a printed object begins with a minus.

#include <cmath>

#include "store/constants.h"
#include "store/objects.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

bool isUnit(DAG complex) { return lengthOf(complex) == 2 && complex[1] == cons1; }

int levelOfComplex(DAG x) {
  if (printAttributes) return bindsCall;
  if (isUnit(x)) return bindsAtom;
  return lengthOf(x) == 2 ? bindsProduct : bindsSum;
}

// A sum whose text is that of another object: of its only term, or of that term's coefficient.
// Gives that object, or 0 for a sum of its own.
DAG standsFor(DAG sum) {
  if (lengthOf(sum) != 3) return DAG();
  if (sum[2] == cons1) return sum[1];
  if (sum[1] == cons1) return sum[2];
  return DAG();
}

bool isMinusInfinity(DAG x) { return isTag(x, SUM) && lengthOf(x) == 3 && x[1] == ini("infinity") && x[2] == consm1; }

bool beginsWithMinus(DAG complex) {
  return !printAttributes && (IsNegative(complex[1]) || isMinusInfinity(complex[1]));
}

}  // namespace

int ParenLevel(DAG x) {
  for (;;) {
    if (!x) return bindsAtom;
    Tag tag = tagOf(x);
    const TagPrinting* printing = printingOf(tag);
    if (printing == nullptr) return bindsNothing;
    if (printing->strength != bindsByContent) return printing->strength;
    switch (tag) {
      case RATIONAL: return IsNegative(x) ? bindsMinus : bindsProduct;
      case FLOAT: case HFLOAT: return IsNegative(x) ? bindsMinus : bindsCall;
      case COMPLEX: return levelOfComplex(x);
      default: break;
    }
    // A SUM
    DAG other = standsFor(x);
    if (!other) {
      if (lengthOf(x) != 3) return bindsSum;
      return printsLeadingMinus(x[2]) ? bindsMinus : bindsProduct;
    }
    x = other;
  }
}

bool IsNegative(DAG x) {
  if (isImmediate(x)) return static_cast<std::int32_t>(x.word) < 0;
  if (!x) return false;
  switch (tagOf(x)) {
    case INTNEG: return true;
    case RATIONAL: return IsNegative(x[1]);
    case FLOAT: return !isName(x[2]) && IsNegative(x[1]);
    case HFLOAT: return std::isfinite(hfloatValue(x)) && std::signbit(hfloatValue(x));
    default: return false;
  }
}

bool printsLeadingMinus(DAG x) {
  for (;;) {
    if (isImmediate(x) || !x) return IsNegative(x);
    switch (tagOf(x)) {
      case COMPLEX: return beginsWithMinus(x);
      case PROD:
        // A sum prints such a product as a minus and the product with its head negated.
        return lengthOf(x) >= 3 && x[2] == cons1 && isTag(x[1], COMPLEX) && beginsWithMinus(x[1]);
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
          if (isTag(x, SUM)) return false;
          continue;
        }
        x = x[2];
        continue;
      }
      default: return IsNegative(x);
    }
  }
}

}  // namespace korel
