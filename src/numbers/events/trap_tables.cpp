// Float arithmetic with infinities and undefined values, as tables by operand class.
//
// Each table is searched from the top for the first row that takes both operands. A row's answer is a
// value, an event with its default, or a step further (the reciprocal of a zero, the library).

#include "eval/evaluate/evalf.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- operand classes; an operand has one, a row takes a set of them

enum OperandClass : unsigned {
  plusInf = 1,  // float infinities
  minusInf = 2,
  exactMinusZero = 4,  // the immediate `consm0`
  floatMinusZero = 8,  // -0.
  otherZero = 16,      // every other zero form
  positive = 32,       // finite numbers, by `consneg`: an HFLOAT is not negative
  negativeOdd = 64,
  negativeEven = 128,  // integers by parity, for powers
  negativeOther = 256,
  positiveOdd = 512,
  positiveEven = 1024,
  complexNumber = 2048,
  otherObject = 4096,
};
constexpr unsigned infinite = plusInf | minusInf;
constexpr unsigned zero = exactMinusZero | floatMinusZero | otherZero;
constexpr unsigned odd = positiveOdd | negativeOdd;
constexpr unsigned even = positiveEven | negativeEven;
constexpr unsigned negative = negativeOdd | negativeEven | negativeOther;
constexpr unsigned nonnegative = positive | positiveOdd | positiveEven;
constexpr unsigned nonzero = negative | nonnegative;
constexpr unsigned number = zero | nonzero | infinite;

unsigned classOf(DAG x) {
  if (isFloatInfinity(x)) return tagOf(x[1]) == INTPOS ? plusInf : minusInf;
  if (isNumeric(x)) {
    if (x == consm0) return exactMinusZero;
    if (isSoftFloat(x) && x[1] == consm0) return floatMinusZero;
    if (isZero(x)) return otherZero;
    if (isInteger(x)) {
      if (consneg(x)) return isodd(x) ? negativeOdd : negativeEven;
      return isodd(x) ? positiveOdd : positiveEven;
    }
    return consneg(x) ? negativeOther : positive;
  }
  if (isComplex(x)) return isZero(x) ? otherZero : complexNumber;
  return otherObject;
}

// ---- rows

struct Operands {
  DAG a, b;
  unsigned classA, classB;
};
using Answer = DAG (*)(const Operands&);

struct TrapRow {
  unsigned a, b;  // classes that the row takes
  Answer answer;
};

template <std::size_t n>
DAG answerOf(const TrapRow (&table)[n], const Operands& operands) {
  for (const TrapRow& row : table)
    if ((row.a & operands.classA) != 0 && (row.b & operands.classB) != 0) return row.answer(operands);
  return DAG();
}

// What all four have in common before their tables: a float's exact special partner becomes a float,
// and an undefined float is the result. False when the operation isn't theirs (result 0).
bool prepare(DAG a, DAG b, Operands& operands, DAG& result) {
  auto special = [](DAG x) { return isExactInfinity(x) || isExactUndefined(x); };
  if (isSoftFloat(a) && special(b)) b = isExactInfinity(b) ? consfinf : consfNaN;
  else if (isSoftFloat(b) && special(a)) a = isExactInfinity(a) ? consfinf : consfNaN;
  result = DAG();
  if (!isSoftFloat(a) && !isSoftFloat(b)) return false;
  if (isFloatUndefined(a)) result = a;
  else if (isFloatUndefined(b)) result = b;
  if (result) return false;
  operands = {a, b, classOf(a), classOf(b)};
  return true;
}

bool isNegativeClass(unsigned c) { return (c & (negative | minusInf | exactMinusZero | floatMinusZero)) != 0; }

DAG infinityOfSign(bool isNegative) { return isNegative ? consfminf : consfinf; }
DAG zeroOfSign(bool isNegative) { return isNegative ? consfm0 : consf0; }
bool quotientIsNegative(const Operands& o) { return isNegativeClass(o.classA) != isNegativeClass(o.classB); }

// ---- names of the operations

DAG plusName() { return ini("+"); }
DAG timesName() { return ini("*"); }
DAG divideName() { return naminstall("/"); }
DAG powerName() { return ini("^"); }

template <DAG (*operation)()>
DAG invalid(const Operands& o, DAG standard) {
  return TriggerNumericEvent(invalidOperation, operation(), o.a, o.b, standard, true);
}
template <DAG (*operation)()>
DAG invalidUndefined(const Operands& o) {
  return invalid<operation>(o, consfNaN);
}
DAG quotientByZero(const Operands& o, DAG standard) {
  return TriggerNumericEvent(divisionByZero, divideName(), o.a, o.b, standard, true);
}

DAG first(const Operands& o) { return o.a; }
DAG second(const Operands& o) { return o.b; }

// ---- sums

constexpr TrapRow sumTable[] = {
    // a         b         result
    {plusInf,  plusInf,  first},
    {minusInf, minusInf, first},
    {infinite, infinite, invalidUndefined<plusName>},
    {infinite, number,   first},
    {number,   infinite, second},
};

// ---- products

DAG signedFirst(const Operands& o) { return consneg(o.b) ? negate(o.a) : o.a; }
DAG signedSecond(const Operands& o) { return consneg(o.a) ? negate(o.b) : o.b; }

constexpr TrapRow productTable[] = {
    // a         b         result
    {plusInf,  plusInf,  [](const Operands&) { return consfinf; }},
    {minusInf, minusInf, [](const Operands&) { return consfinf; }},
    {infinite, infinite, [](const Operands&) { return consfminf; }},
    {infinite, zero,     invalidUndefined<timesName>},
    {zero,     infinite, invalidUndefined<timesName>},
    {infinite, number,   signedFirst},
    {number,   infinite, signedSecond},
};

// ---- quotients

DAG zeroByInfinity(const Operands& o) {
  // Only -0. counts as a negative zero here.
  bool aNegative = o.classA == floatMinusZero;
  return invalid<divideName>(o, zeroOfSign(aNegative != (o.classB == minusInf)));
}
DAG finiteByZero(const Operands& o) {
  bool aNegative = isNumeric(o.a) && consneg(o.a);
  return quotientByZero(o, infinityOfSign(aNegative != (o.classB == floatMinusZero)));
}

constexpr unsigned anything = ~0u;
constexpr TrapRow quotientTable[] = {
    // a              b               result
    {infinite,      infinite,       invalidUndefined<divideName>},
    {infinite,      exactMinusZero, [](const Operands& o) { return quotientByZero(o, negate(o.a)); }},
    // The sign of a float zero plays no part.
    {infinite,      zero,           [](const Operands& o) { return quotientByZero(o, o.a); }},
    // An invalid operation, not a silent infinity.
    {infinite,      nonzero,        [](const Operands& o) {
       return invalid<divideName>(o, signedFirst(o)); }},
    {zero,          infinite,       zeroByInfinity},
    {zero,          zero,           invalidUndefined<divideName>},
    {nonzero,       infinite,       [](const Operands& o) { return zeroOfSign(quotientIsNegative(o)); }},
    {anything,      zero,           finiteByZero},
};

// ---- powers

DAG reciprocalOf(DAG x) { return TrapFDIV(cons1, x); }

DAG minusZeroPower(const Operands& o) {
  DAG power = (o.classB & odd) != 0 ? consfm0 : consf0;
  return (o.classB & negative) != 0 ? reciprocalOf(power) : power;
}
DAG libraryPower(const Operands& o) { return evalsysf("evalf/power", new3(EXPSEQ, o.a, o.b)); }
DAG plusZero(const Operands&) { return consf0; }
DAG minusZero(const Operands&) { return consfm0; }
DAG plusInfinity(const Operands&) { return consfinf; }
DAG minusInfinity(const Operands&) { return consfminf; }

constexpr unsigned below = negative | minusInf;
constexpr TrapRow powerTable[] = {
    // a                b                 result
    {plusInf,         zero,             invalidUndefined<powerName>},
    {plusInf,         below,            plusZero},
    {plusInf,         number,           plusInfinity},
    {minusInf,        positiveOdd,      minusInfinity},
    {minusInf,        negativeOdd,      minusZero},
    {minusInf,        positiveEven,     plusInfinity},
    {minusInf,        negativeEven,     plusZero},
    {minusInf,        number,           invalidUndefined<powerName>},
    {floatMinusZero,  odd | even,       minusZeroPower},
    {floatMinusZero,  number,           invalidUndefined<powerName>},
    {zero,            infinite | zero,  invalidUndefined<powerName>},
    {zero,            negative,         [](const Operands& o) { return reciprocalOf(o.a); }},
    {zero,            number,           plusZero},
    {nonzero,         zero,             [](const Operands&) { return cons1; }},
    {negative,        infinite,         invalidUndefined<powerName>},
    {nonnegative,     plusInf,          plusInfinity},
    {nonnegative,     minusInf,         plusZero},
};

}  // namespace

DAG TrapFSUM(DAG a, DAG b) {
  Operands operands;
  DAG result;
  return prepare(a, b, operands, result) ? answerOf(sumTable, operands) : result;
}

DAG TrapFPROD(DAG a, DAG b) {
  Operands operands;
  DAG result;
  return prepare(a, b, operands, result) ? answerOf(productTable, operands) : result;
}

DAG TrapFDIV(DAG a, DAG b) {
  if (b == cons0) {
    if (isSoftFloat(a)) {
      b = consf0;
    } else if (isExactUndefined(a)) {
      return a;
    } else {
      DAG standard = isZero(a) ? ini("undefined") : exactInfinity(consneg(a));
      return TriggerNumericEvent(divisionByZero, divideName(), a, b, standard, true);
    }
  }
  if (isExactInfinity(b)) {
    if (isSoftFloat(a)) b = consfinf;
    else if (isNumeric(a) || (isComplex(a) && !isFloatComplex(a))) return cons0;
  }
  Operands operands;
  DAG result;
  return prepare(a, b, operands, result) ? answerOf(quotientTable, operands) : result;
}

DAG TrapFPOWER(DAG a, DAG b) {
  if (isExactInfinity(a)) {
    if (isZero(b)) return TriggerNumericEvent(invalidOperation, powerName(), a, b, cons1, true);
    if (consneg(b)) return reciprocalOf(a);
  }
  if (!isNumeric(a) && !isExactUndefined(a) && isZero(b)) return cons1;
  Operands operands;
  DAG result;
  if (!prepare(a, b, operands, result)) return result;
  if (DAG answer = answerOf(powerTable, operands)) return answer;
  // A float exponent without a special value on either side is the library's.
  const bool finite = (operands.classA & nonzero) != 0 && isFloatNumber(operands.b);
  return finite ? libraryPower(operands) : DAG();
}

DAG TransformSEQ2F(DAG x) {
  Word n = lengthOf(x);
  Word i = 1;
  while (i < n && !isSoftFloat(x[i])) ++i;
  if (i == n) return DAG();

  // The float form of a special value, or 0.
  auto floatForm = [](DAG part) {
    if (isExactInfinity(part)) return consfinf;
    if (isExactUndefined(part)) return consfNaN;
    return isExactMinusInfinity(part) ? consfminf : DAG();
  };
  bool changed = false;
  for (i = 1; i < n; ++i) {
    DAG word = x[i];
    if (isFloatNumber(word)) continue;
    if (DAG special = floatForm(word)) {
      x[i] = special;
      changed = true;
    } else if (isComplex(word)) {
      Word parts = lengthOf(word) - 1, k = 1;
      while (k <= parts && !floatForm(word[k])) ++k;
      if (k > parts) continue;
      DAG floats = CopyAlg(word);
      for (k = 1; k <= parts; ++k) {
        if (isFloatNumber(floats[k])) continue;
        DAG special = floatForm(floats[k]);
        floats[k] = special ? special : evalf(floats[k]);
      }
      x[i] = floats;
      changed = true;
    }
  }
  return changed ? x : DAG();
}

}  // namespace korel
