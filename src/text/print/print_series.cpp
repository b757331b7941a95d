// Power series and modular polynomials: dense and sparse lists of coefficients by exponent.

#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// ---- series

void printSeriesPower(DAG variable, std::int32_t exponent) {
  if (exponent == 0) {
    EmitChar('1');
    return;
  }
  printObject(variable, bindsPower);
  if (exponent == 1) return;
  EmitChar('^');
  if (exponent < 0) EmitChar('(');
  EmitInteger(exponent);
  if (exponent < 0) EmitChar(')');
}

// The order term's coefficient. A front end has it from records, as an object of its own.
bool isOrderOne(DAG c) { return c == order1 || (isCallOf(c, ini("O")) && singleMember(c[2]) == cons1); }

void printSeriesTerm(DAG variable, DAG coefficient, std::int32_t exponent, bool first) {
  if (isOrderOne(coefficient)) {
    if (!first) EmitChar('+');
    EmitToken("O(");
    printSeriesPower(variable, exponent);
    EmitChar(')');
    return;
  }
  if (coefficient == cons1) {
    if (!first) EmitChar('+');
  } else {
    if (isNumeric(coefficient)) {
      bool minus = printsLeadingMinus(coefficient);
      if (!first && !minus) EmitChar('+');
      printObject(coefficient, minus ? bindsNothing : bindsProduct);
    } else {
      if (!first) EmitChar('+');
      printFactor(coefficient);
    }
    EmitChar('*');
  }
  printSeriesPower(variable, exponent);
}

// The place of the pair (name, 1) in a sum x - a, or 0.
Word placeOfVariable(DAG sum) {
  for (Word i = 1, n = lengthOf(sum); i + 1 < n; i += 2)
    if (sum[i + 1] == cons1 && isName(sum[i])) return i;
  return 0;
}

// The variable of the expansion, as x=a when the expansion is in x - a.
void printExpansionPoint(DAG variable) {
  Word place = isTag(variable, SUM) ? placeOfVariable(variable) : 0;
  if (place == 0) {
    printObject(variable, bindsNothing);
    return;
  }
  DAG point = copydel(variable, place - 1, 2);
  for (Word i = 1, n = lengthOf(point); i + 1 < n; i += 2) point[i + 1] = negate(point[i + 1]);
  printObject(variable[place], bindsNothing);
  EmitChar('=');
  printObject(simpl(point), bindsNothing);
}

// ---- modular polynomials

Word coefficientCount(DAG x) { return lengthOf(x) - 3; }

// The coefficient of degree `i` as an integer.
DAG coefficientAt(DAG x, Word i) {
  return hasRawCoefficients(x) ? Newint(static_cast<std::int32_t>(rawField(x, 3 + i))) : x[3 + i];
}

// `*`, unless this is the first factor of its term.
void printTimes(bool& first) {
  if (!first) EmitChar('*');
  first = false;
}

void printModularPower(DAG variable, Word exponent, bool& first) {
  if (exponent == 0) return;
  printTimes(first);
  printObject(variable, bindsPower);
  if (exponent == 1) return;
  EmitChar('^');
  EmitInteger(exponent);
}

// The terms of `x`, each times `outer`^`outerExponent` when there is an `outer`, from the highest degree down.
void printModularTerms(DAG x, DAG outer, Word outerExponent, bool& anyTerm) {
  for (Word i = coefficientCount(x); i-- > 0;) {
    DAG coefficient = coefficientAt(x, i);
    if (coefficient == cons0) continue;
    if (anyTerm) EmitChar('+');
    anyTerm = true;
    bool first = true;
    if (coefficient != cons1 || (i == 0 && outerExponent == 0)) {
      printTimes(first);
      printObject(coefficient, bindsProduct);
    }
    if (outer) printModularPower(outer, outerExponent, first);
    printModularPower(x[1], i, first);
  }
}

}  // namespace

void printSeries(DAG x, int, int) {
  DAG variable = x[1];
  Word n = lengthOf(x);
  EmitToken("series(");
  if (n < 4) EmitChar('0');
  for (Word i = 2; i + 1 < n; i += 2)
    printSeriesTerm(variable, x[i], static_cast<std::int32_t>(rawField(x, i + 1)), i == 2);
  EmitChar(',');
  printExpansionPoint(variable);
  if (n >= 4 && !isOrderOne(x[n - 2])) {
    EmitChar(',');
    EmitInteger(static_cast<std::int32_t>(rawField(x, n - 1)));
  }
  EmitChar(')');
}

// The call that makes the polynomial anew.
void printModularPolynomial(DAG x, int, int) {
  const bool several = isSequence(x[1]);
  bool anyTerm = false;
  EmitToken(several ? "modp2(" : "modp1(");
  EmitToken("ConvertIn(");
  if (!several) printModularTerms(x, DAG(), 0, anyTerm);
  for (Word i = several ? coefficientCount(x) : 0; i-- > 0;)
    if (isTag(x[3 + i], ZPPOLY)) printModularTerms(x[3 + i], x[1][1], i, anyTerm);
  if (!anyTerm) EmitChar('0');
  DAG indeterminates = asSequence(x[1]);
  for (Word i = 1; i < lengthOf(indeterminates); ++i) {
    EmitChar(',');
    printObject(indeterminates[i], bindsNothing);
  }
  EmitChar(')');
  EmitChar(',');
  printObject(x[2], bindsNothing);
  EmitChar(')');
}

}  // namespace korel
