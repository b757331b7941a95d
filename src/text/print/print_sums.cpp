// Sums, products and powers: signs, coefficients and exponents.
//
// Negated coefficients and exponents are printed as a minus or a slash and the magnitude; nothing
// is changed to print it.

#include "numbers/arithmetic.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

bool isProduct(DAG x) { return isTag(x, PROD); }

// ---- the pairs of a product

// `^` and the exponent, without its sign when `magnitude`.
void printExponent(DAG exponent, bool magnitude) {
  EmitChar('^');
  if (!magnitude) {
    printObject(exponent, bindsPower);
    return;
  }
  bool fraction = isTag(exponent, RATIONAL);
  if (fraction) EmitChar('(');
  printMagnitude(exponent);
  if (fraction) EmitChar(')');
}

// A base with a negative exponent, which stands behind a slash.
void printDivisor(DAG base, DAG exponent) {
  printObject(base, bindsPower);
  if (exponent != consm1) printExponent(exponent, true);
}

void printFirstPair(DAG base, DAG exponent, bool onlyPair, int min, int own) {
  if (exponent == cons1) {
    printObject(base, onlyPair ? min : isDotProduct(base) ? bindsSum : own);
  } else if (IsNegative(exponent)) {
    EmitChar('1');
    EmitChar('/');
    printDivisor(base, exponent);
  } else {
    printObject(base, bindsPower);
    printExponent(exponent, false);
  }
}

void printFurtherPair(DAG base, DAG exponent) {
  if (exponent == cons1) {
    EmitChar('*');
    printFactor(base);
  } else if (IsNegative(exponent)) {
    EmitChar('/');
    printDivisor(base, exponent);
  } else {
    EmitChar('*');
    printObject(base, bindsPower);
    printExponent(exponent, false);
  }
}

// ---- the pairs of a sum

// What stands behind a coefficient: the factors of a product one by one.
void printTermAsFactor(DAG term) {
  if (!isProduct(term)) {
    EmitChar('*');
    printFactor(term);
    return;
  }
  for (Word i = 1, n = lengthOf(term); i + 1 < n; i += 2) printFurtherPair(term[i], term[i + 1]);
}

// A product whose head is a complex number that begins with a minus: the minus, and the product
// with the head negated.
void printNegatedProduct(DAG product) {
  DAG head = product[1];
  DAG negated = CopyAlg(head);
  for (Word i = 1, n = lengthOf(head); i < n; ++i) negated[i] = negate(head[i]);
  DAG copy = CopyAlg(product);
  copy[1] = negated;
  EmitChar('-');
  printObject(copy, bindsProduct);
}

bool isNegatedProduct(DAG term) { return isProduct(term) && printsLeadingMinus(term); }

void printTermBehindMinus(DAG term) {
  EmitChar('-');
  printFactor(term);
}

void printFirstTerm(DAG term, DAG coefficient, bool onlyPair, int min, int own) {
  if (coefficient == cons1) {
    if (onlyPair) {
      printObject(term, min);
    } else if (isNegatedProduct(term)) {
      printNegatedProduct(term);
    } else {
      bool number = isNumeric(term) && !isTag(term, HFLOAT);
      bool nested = isTag(term, SUM);
      printObject(term, number ? bindsNothing : nested ? own + 1 : own);
    }
  } else if (coefficient == consm1) {
    printTermBehindMinus(term);
  } else {
    printObject(coefficient, bindsNothing);
    if (term != cons1) printTermAsFactor(term);
  }
}

// `term` with the sign that it needs behind other terms: a plus unless its text begins with a minus.
void printFurtherTerm(DAG term) {
  if (isNegatedProduct(term)) {
    printNegatedProduct(term);
  } else if (printsLeadingMinus(term)) {
    printObject(term, bindsNothing);
  } else {
    EmitChar('+');
    printObject(term, bindsSum);
  }
}

void printFurtherTermWithCoefficient(DAG term, DAG coefficient, int own) {
  if (coefficient == cons1) {
    printFurtherTerm(term);
  } else if (coefficient == consm1) {
    printTermBehindMinus(term);
  } else {
    bool minus = printsLeadingMinus(coefficient);
    if (!minus) EmitChar('+');
    printObject(coefficient, minus ? bindsNothing : own);
    if (term != cons1) printTermAsFactor(term);
  }
}

}  // namespace

void printFactor(DAG x) {
  // -I is a product by its strength, but its minus can't follow an operator.
  if (printsLeadingMinus(x) && !isNumeric(x)) {
    printParenthesised(x);
  } else {
    printObject(x, bindsProduct);
  }
}

void printSum(DAG x, int min, int own) {
  Word n = lengthOf(x);
  if (n < 3) {
    EmitChar('0');
    return;
  }
  bool onlyPair = n == 3;
  printFirstTerm(x[1], x[2], onlyPair, min, onlyPair ? own : bindsSum);
  for (Word i = 3; i + 1 < n; i += 2) printFurtherTermWithCoefficient(x[i], x[i + 1], bindsSum);
}

void printProduct(DAG x, int min, int own) {
  Word n = lengthOf(x);
  if (n < 3) {
    EmitChar('1');
    return;
  }
  printFirstPair(x[1], x[2], n == 3, min, own);
  for (Word i = 3; i + 1 < n; i += 2) printFurtherPair(x[i], x[i + 1]);
}

void printPower(DAG x, int min, int own) {
  bool parenthesised = min == own;
  if (parenthesised) EmitChar('(');
  printObject(x[1], own);
  EmitChar('^');
  printObject(x[2], own);
  if (parenthesised) EmitChar(')');
}

}  // namespace korel
