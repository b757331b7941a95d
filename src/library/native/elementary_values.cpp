// Exact values of the elementary functions: at multiples of Pi/12 and Pi/10, of their inverses there, at negative and
// imaginary arguments, and where one function undoes another.

#include <array>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string_view>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/assumptions/known.h"
#include "library/native/elementary_rows.h"
#include "library/native/exact_expressions.h"
#include "library/native/known_turns.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- surds: (a sqrt(p) + b sqrt(q)) / d, or sqrt(a + b sqrt(q)) / d where p is 0

struct Surd {
  int a, p, b, q, d;
};
DAG valueOf(const Surd& s) {
  if (s.p == 0) {
    DAG square = sumOf(immediate(s.a), productOf(immediate(s.b), rootOf(immediate(s.q))));
    return productOf(quotientOf(1, s.d), rootOf(square));
  }
  DAG first = productOf(quotientOf(s.a, s.d), rootOf(immediate(s.p)));
  return s.b == 0 ? first : sumOf(first, productOf(quotientOf(s.b, s.d), rootOf(immediate(s.q))));
}

struct AngleRow {
  int place;  // the angle in parts of Pi/60
  Surd sine, tangent, cosecant;
};
constexpr AngleRow angles[] = {
    //     sine              tangent             cosecant
    {0, {0, 1, 0, 0, 1}, {0, 1, 0, 0, 1}, {0, 1, 0, 0, 1}},
    {5, {1, 6, -1, 2, 4}, {2, 1, -1, 3, 1}, {1, 6, 1, 2, 1}},
    {6, {1, 5, -1, 1, 4}, {25, 0, -10, 5, 5}, {1, 5, 1, 1, 1}},
    {10, {1, 1, 0, 0, 2}, {1, 3, 0, 0, 3}, {2, 1, 0, 0, 1}},
    {12, {10, 0, -2, 5, 4}, {5, 0, -2, 5, 1}, {50, 0, 10, 5, 5}},
    {15, {1, 2, 0, 0, 2}, {1, 1, 0, 0, 1}, {1, 2, 0, 0, 1}},
    {18, {1, 5, 1, 1, 4}, {25, 0, 10, 5, 5}, {1, 5, -1, 1, 1}},
    {20, {1, 3, 0, 0, 2}, {1, 3, 0, 0, 1}, {2, 3, 0, 0, 3}},
    {24, {10, 0, 2, 5, 4}, {5, 0, 2, 5, 1}, {50, 0, -10, 5, 5}},
    {25, {1, 6, 1, 2, 4}, {2, 1, 1, 3, 1}, {1, 6, -1, 2, 1}},
    {30, {1, 1, 0, 0, 1}, {0, 1, 0, 0, 1}, {1, 1, 0, 0, 1}},
};
constexpr int quarterTurn = 30;

const AngleRow* rowAt(int place) {
  for (const AngleRow& row : angles)
    if (row.place == place) return &row;
  return nullptr;
}

// The three functions of the table, and the other three at the complement.
struct Circular {
  Surd AngleRow::*column;
  bool complement;
  std::array<int, 4> signs;  // in the four quadrants
};
const Circular* circularOf(Elementary f) {
  static constexpr Circular sine = {&AngleRow::sine, false, {1, 1, -1, -1}};
  static constexpr Circular cosine = {&AngleRow::sine, true, {1, -1, -1, 1}};
  static constexpr Circular tangent = {&AngleRow::tangent, false, {1, -1, 1, -1}};
  static constexpr Circular cotangent = {&AngleRow::tangent, true, {1, -1, 1, -1}};
  static constexpr Circular secant = {&AngleRow::cosecant, true, {1, -1, -1, 1}};
  static constexpr Circular cosecant = {&AngleRow::cosecant, false, {1, 1, -1, -1}};
  switch (f) {
    case Elementary::sin: return &sine;
    case Elementary::cos: return &cosine;
    case Elementary::tan: return &tangent;
    case Elementary::cot: return &cotangent;
    case Elementary::sec: return &secant;
    case Elementary::csc: return &cosecant;
    default: return nullptr;
  }
}

// ---- circular functions of multiples of Pi

// The place of a value in 0 .. Pi/2 among the rows, or -1; the angle is turns * Pi.
int placeOf(DAG turns) {
  DAG place = simpl(mul(turns, immediate(2 * quarterTurn)));
  return isImmediate(place) ? immediateValue(place) : -1;
}

DAG atMultipleOfPi(Elementary f, DAG turns) {
  const Circular& c = *circularOf(f);
  // turns modulo 2 as quadrant and rest.
  DAG halves = simpl(mul(turns, immediate(2)));
  DAG whole = floorOfNumber(halves);
  DAG rest = simpl(mul(add(halves, negate(whole)), quotientOf(1, 2)));
  const int quadrant = moduloOf(whole, 4);
  DAG angle = quadrant % 2 == 0 ? rest : simpl(add(quotientOf(1, 2), simpl(negate(rest))));
  DAG sign = immediate(c.signs[static_cast<std::size_t>(quadrant)]);
  const int place = placeOf(angle);
  const AngleRow* row = place < 0 ? nullptr : rowAt(c.complement ? quarterTurn - place : place);
  if (row != nullptr) {
    const bool pole = (c.column == &AngleRow::tangent && row->place == quarterTurn) ||
                      (c.column == &AngleRow::cosecant && row->place == 0);
    DAG pi = naminstall("Pi");
    if (pole) return poleOf(nameOf(f), simpl(productOf(turns, pi)), ini("undefined"));
    return productOf(sign, valueOf(row->*c.column));
  }
  if (angle == turns) return DAG();
  return productOf(sign, callOf(f, productOf(angle, naminstall("Pi"))));
}

// f(y + k Pi/2).
DAG turnedBy(Elementary f, DAG y, int k) {
  struct Turn {
    Elementary f;
    int sign;
  };
  using E = Elementary;
  static constexpr Turn turns[6][4] = {
      {{E::sin, 1}, {E::cos, 1}, {E::sin, -1}, {E::cos, -1}}, {{E::cos, 1}, {E::sin, -1}, {E::cos, -1}, {E::sin, 1}},
      {{E::tan, 1}, {E::cot, -1}, {E::tan, 1}, {E::cot, -1}}, {{E::cot, 1}, {E::tan, -1}, {E::cot, 1}, {E::tan, -1}},
      {{E::sec, 1}, {E::csc, -1}, {E::sec, -1}, {E::csc, 1}}, {{E::csc, 1}, {E::sec, 1}, {E::csc, -1}, {E::sec, -1}},
  };
  const Turn& turn = turns[static_cast<int>(f) - static_cast<int>(E::sin)][k];
  DAG inner = exactAt(turn.f, y);
  return productOf(immediate(turn.sign), inner ? inner : callOf(turn.f, y));
}

// What multiples of Pi in a sum do to a circular function.
DAG atSumWithPi(Elementary f, DAG x) {
  DAG pi = ini("Pi");
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    if (x[i] != pi || !isRationalNumber(x[i + 1])) continue;
    DAG turns = x[i + 1];
    if (n == 3) return atMultipleOfPi(f, turns);
    DAG halves = simpl(mul(turns, immediate(2)));
    DAG others = sumOf(x, productOf(simpl(negate(turns)), pi));
    if (isInteger(halves)) return turnedBy(f, others, moduloOf(halves, 4));
    DAG whole = mtrunc(turns);
    if (whole == cons0) return DAG();
    return turnedBy(f, sumOf(x, productOf(simpl(negate(whole)), pi)), 2 * moduloOf(whole, 2));
  }
  return DAG();
}

// What n Pi/2 does for a name n that is known to be an integer, of known parity.
DAG atKnownTurns(Elementary f, DAG x) {
  const QuarterTurns turns = quarterTurnsIn(x, TurnUnit::real);
  int r;
  DAG sign;
  if (!turns.count || !halfTurnsOf(turns.count, r, sign)) return DAG();
  DAG value = turns.rest == cons0 ? atMultipleOfPi(f, quotientOf(r, 2)) : turnedBy(f, turns.rest, r);
  return f == Elementary::tan || f == Elementary::cot ? value : productOf(sign, value);
}

// ---- inverse circular functions

bool isSurdLike(DAG x) {
  if (isRationalNumber(x)) return true;
  if (!isTag(x, SUM) && !isTag(x, PROD)) return false;
  DAG base = x[1];
  while (isTag(base, SUM) || isTag(base, PROD)) base = base[1];
  return isRationalNumber(base);
}

// The angle in -Pi/2 .. Pi/2 whose `column` is x, as a multiple of Pi, or 0.
DAG turnsOf(Surd AngleRow::*column, DAG x) {
  if (!isSurdLike(x)) return DAG();
  DAG opposite = negativeOf(x);
  for (const AngleRow& row : angles) {
    if (column == &AngleRow::tangent && row.place == quarterTurn) continue;
    if (column == &AngleRow::cosecant && row.place == 0) continue;
    DAG value = valueOf(row.*column);
    if (value == x) return quotientOf(row.place, 2 * quarterTurn);
    if (value == opposite) return quotientOf(-row.place, 2 * quarterTurn);
  }
  return DAG();
}

DAG inverseCircular(Elementary f, DAG x) {
  Surd AngleRow::*column = &AngleRow::sine;
  if (f == Elementary::arctan || f == Elementary::arccot) column = &AngleRow::tangent;
  if (f == Elementary::arcsec || f == Elementary::arccsc) column = &AngleRow::cosecant;
  DAG turns = turnsOf(column, x);
  if (!turns) return DAG();
  if (f == Elementary::arccos || f == Elementary::arccot || f == Elementary::arcsec)
    turns = simpl(add(quotientOf(1, 2), simpl(negate(turns))));
  return productOf(turns, ini("Pi"));
}

// ---- functions of functions

Elementary elementaryNamed(DAG head) {
  if (!isName(head)) return Elementary::count;
  const char* text = textOf(head);
  if (std::strchr("aelcst", text[0]) == nullptr) return Elementary::count;
  for (int i = 0; i < static_cast<int>(Elementary::count); ++i)
    if (std::strcmp(text, rowOf(static_cast<Elementary>(i)).name) == 0) return static_cast<Elementary>(i);
  return Elementary::count;
}
// The function whose call with one argument x is.
Elementary functionOf(DAG x) {
  if (!isTag(x, FUNCTION) || lengthOf(x) != 3 || !isSequence(x[2]) || memberCount(x[2]) != 1) return Elementary::count;
  return elementaryNamed(x[1]);
}

DAG square(DAG x) { return powerOf(x, immediate(2)); }
DAG oneMinus(DAG x) { return sumOf(cons1, negativeOf(x)); }

// Sine and cosine of the inverse circular function g at y, sinh and cosh of the hyperbolic one.
struct SineCosineOf {
  DAG sine, cosine;
};
bool partsOfInverse(Elementary g, DAG y, SineCosineOf& parts) {
  DAG half = quotientOf(1, 2), minusHalf = quotientOf(-1, 2);
  switch (g) {
    case Elementary::arcsin: parts = {y, powerOf(oneMinus(square(y)), half)}; return true;
    case Elementary::arccos: parts = {powerOf(oneMinus(square(y)), half), y}; return true;
    case Elementary::arctan: {
      DAG inverse = powerOf(sumOf(cons1, square(y)), minusHalf);
      parts = {productOf(y, inverse), inverse};
      return true;
    }
    case Elementary::arccot: {
      DAG inverse = powerOf(sumOf(cons1, square(y)), minusHalf);
      parts = {inverse, productOf(y, inverse)};
      return true;
    }
    case Elementary::arcsec: {
      DAG r = powerOf(y, consm1);
      parts = {powerOf(oneMinus(square(r)), half), r};
      return true;
    }
    case Elementary::arccsc: {
      DAG r = powerOf(y, consm1);
      parts = {r, powerOf(oneMinus(square(r)), half)};
      return true;
    }
    case Elementary::arcsinh: parts = {y, powerOf(sumOf(cons1, square(y)), half)}; return true;
    case Elementary::arccosh:
      parts = {productOf(powerOf(sumOf(y, consm1), half), powerOf(sumOf(y, cons1), half)), y};
      return true;
    case Elementary::arctanh: {
      DAG inverse = powerOf(oneMinus(square(y)), minusHalf);
      parts = {productOf(y, inverse), inverse};
      return true;
    }
    default: return false;
  }
}

bool isBetween(Elementary f, Elementary low, Elementary high) { return f >= low && f <= high; }

// f(g(y)) for an inverse function g, or 0.
DAG ofInverse(Elementary f, DAG x) {
  const Elementary g = functionOf(x);
  if (g == Elementary::count) return DAG();
  DAG y = x[2][1];
  constexpr Elementary inverses[] = {Elementary::arcsin,  Elementary::arccos,  Elementary::arctan,
                                     Elementary::arccot,  Elementary::arcsec,  Elementary::arccsc,
                                     Elementary::arcsinh, Elementary::arccosh, Elementary::arctanh,
                                     Elementary::arccoth, Elementary::arcsech, Elementary::arccsch};
  const int k = static_cast<int>(f) - static_cast<int>(Elementary::sin);
  if (g == inverses[k]) return y;
  const bool circular = isBetween(f, Elementary::sin, Elementary::csc);
  if (circular != isBetween(g, Elementary::arcsin, Elementary::arccsc)) return DAG();
  SineCosineOf parts;
  if (!partsOfInverse(g, y, parts)) return DAG();
  switch (k % 6) {
    case 0: return parts.sine;
    case 1: return parts.cosine;
    case 2: return productOf(parts.sine, powerOf(parts.cosine, consm1));
    case 3: return productOf(parts.cosine, powerOf(parts.sine, consm1));
    case 4: return powerOf(parts.cosine, consm1);
    default: return powerOf(parts.sine, consm1);
  }
}

// arcsin(sin(r)) and its like for a rational r: r itself within the range of the inverse, else turned into it.
DAG inverseOfFunction(Elementary f, DAG x) {
  const Elementary g = functionOf(x);
  if (g == Elementary::count) return DAG();
  DAG y = x[2][1];
  if (f == Elementary::arcsinh && g == Elementary::sinh && isKnown(y, Property::real)) return y;
  if (f == Elementary::arctanh && g == Elementary::tanh && isKnown(y, Property::real)) return y;
  if (f == Elementary::arccosh && g == Elementary::cosh && isKnown(y, Property::nonnegative)) return y;
  if (!isRationalNumber(y)) return DAG();
  const bool isSine = f == Elementary::arcsin && g == Elementary::sin;
  const bool isCosine = f == Elementary::arccos && g == Elementary::cos;
  if (!isSine && !isCosine && !(f == Elementary::arctan && g == Elementary::tan)) return DAG();
  const int halfTurns = isCosine ? 2 : 1;
  std::int32_t turns;
  if (!periodsIn(FloatValue(y), halfTurns * std::numbers::pi, turns)) return DAG();
  const double rest = FloatValue(y) - halfTurns * turns * std::numbers::pi;
  if (turns != 0) y = sumOf(y, productOf(immediate(-halfTurns * turns), ini("Pi")));
  return (isSine && turns % 2 != 0) || (isCosine && rest < 0) ? negativeOf(y) : y;
}

// ---- imaginary arguments

// c of x = c I for a number, or a product that begins with such a number; 0 otherwise.
DAG overI(DAG x) {
  if (isComplex(x)) return lengthOf(x) == 2 ? imaginaryPartOf(x) : DAG();
  if (!isTag(x, PROD) || !isComplex(x[1]) || lengthOf(x[1]) != 2 || x[2] != cons1) return DAG();
  return productOf(x, productOf(consm1, sqrtm1));
}

struct Turned {
  Elementary from, to;
  int power;  // of I in front
};
using E = Elementary;
constexpr Turned imaginary[] = {
    {E::sin, E::sinh, 1},       {E::cos, E::cosh, 0},       {E::tan, E::tanh, 1},       {E::cot, E::coth, 3},
    {E::sec, E::sech, 0},       {E::csc, E::csch, 3},       {E::sinh, E::sin, 1},       {E::cosh, E::cos, 0},
    {E::tanh, E::tan, 1},       {E::coth, E::cot, 3},       {E::sech, E::sec, 0},       {E::csch, E::csc, 3},
    {E::arcsin, E::arcsinh, 1}, {E::arctan, E::arctanh, 1}, {E::arcsinh, E::arcsin, 1}, {E::arctanh, E::arctan, 1},
};
DAG valueOrCall(Elementary f, DAG x) {
  DAG value = exactAt(f, x);
  return value ? value : callOf(f, x);
}
DAG atImaginary(Elementary f, DAG x) {
  for (const Turned& row : imaginary) {
    if (row.from != f) continue;
    DAG y = overI(x);
    if (!y) return DAG();
    DAG value = valueOrCall(row.to, y);
    return row.power == 0 ? value : productOf(row.power == 1 ? sqrtm1 : negativeOf(sqrtm1), value);
  }
  return DAG();
}

// ---- parity

bool isNegativeNumber(DAG x) {
  if (isComplex(x)) return consneg(lengthOf(x) == 2 || x[1] == cons0 ? imaginaryPartOf(x) : x[1]);
  return isNumeric(x) && consneg(x);
}
// Every term bears a minus sign.
bool isNegated(DAG x) {
  if (isNumber(x)) return isNegativeNumber(x);
  if (isTag(x, PROD)) return isNumber(x[1]) && x[2] == cons1 && isNegativeNumber(x[1]);
  if (!isTag(x, SUM)) return false;
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    const bool negative = isNumber(x[i]) ? isNegativeNumber(x[i]) : isNumeric(x[i + 1]) && consneg(x[i + 1]);
    if (!negative && !(isTag(x[i], PROD) && x[i + 1] == cons1 && isNegated(x[i]))) return false;
  }
  return true;
}

DAG byParity(Elementary f, DAG x) {
  if (!isNegated(x)) return DAG();
  const Parity parity = rowOf(f).parity;
  if (parity == Parity::none) return DAG();
  DAG opposite = valueOrCall(f, negativeOf(x));
  return parity == Parity::even ? opposite : negativeOf(opposite);
}

// ---- single points

struct Point {
  Elementary f;
  int x;
  const char* value;  // as `end` reads it; "pole" for a division by zero
};
constexpr Point points[] = {
    {E::exp, 0, "1"},          {E::ln, 1, "0"},           {E::ln, 0, "pole"},       {E::sin, 0, "0"},
    {E::cos, 0, "1"},          {E::tan, 0, "0"},          {E::cot, 0, "pole"},      {E::sec, 0, "1"},
    {E::csc, 0, "pole"},       {E::sinh, 0, "0"},         {E::cosh, 0, "1"},        {E::tanh, 0, "0"},
    {E::coth, 0, "pole"},      {E::sech, 0, "1"},         {E::csch, 0, "pole"},     {E::arcsinh, 0, "0"},
    {E::arccosh, 1, "0"},      {E::arccosh, 0, "I*Pi/2"}, {E::arccosh, -1, "I*Pi"}, {E::arctanh, 0, "0"},
    {E::arctanh, 1, "pole"},   {E::arctanh, -1, "pole"},  {E::arccoth, 1, "pole"},  {E::arccoth, -1, "pole"},
    {E::arccoth, 0, "I*Pi/2"}, {E::arcsech, 1, "0"},      {E::arcsech, 0, "pole"},  {E::arcsech, -1, "I*Pi"},
    {E::arccsch, 0, "pole"},   {E::arcsec, 0, "pole"},    {E::arccsc, 0, "pole"},
};

DAG constantNamed(const char* text) {
  const std::string_view t = text;
  DAG pi = ini("Pi");
  if (t == "0") return cons0;
  if (t == "1") return cons1;
  if (t == "-1") return consm1;
  if (t == "infinity") return ini("infinity");
  if (t == "-infinity") return consminf;
  if (t == "Pi") return pi;
  if (t == "Pi/2") return productOf(quotientOf(1, 2), pi);
  if (t == "-Pi/2") return productOf(quotientOf(-1, 2), pi);
  if (t == "I*Pi") return productOf(sqrtm1, pi);
  if (t == "I*Pi/2") return productOf(productOf(quotientOf(1, 2), sqrtm1), pi);
  return ini("undefined");
}

DAG atPoint(Elementary f, DAG x) {
  for (const Point& point : points) {
    if (point.f != f || x != immediate(point.x)) continue;
    if (std::string_view(point.value) != "pole") return constantNamed(point.value);
    return poleOf(nameOf(f), x, f == E::ln ? consminf : ini("undefined"));
  }
  return DAG();
}

bool isCircularInverse(Elementary f) { return isBetween(f, E::arcsin, E::arccsc); }

}  // namespace

DAG atEnd(Elementary f, DAG x) {
  const char* value = nullptr;
  if (isExactInfinity(x)) value = rowOf(f).atInfinity;
  else if (isExactMinusInfinity(x)) value = rowOf(f).atMinusInfinity;
  else if (isExactUndefined(x)) value = "undefined";
  return value == nullptr ? DAG() : constantNamed(value);
}

DAG exactAt(Elementary f, DAG x) {
  if (isImmediate(x))
    if (DAG value = atPoint(f, x)) return value;
  if (isName(x) && f != E::sqrt) {
    if (x == ini("Pi") && isBetween(f, E::sin, E::csc)) return atMultipleOfPi(f, cons1);
    return x == ini("infinity") || x == ini("undefined") ? atEnd(f, x) : DAG();
  }
  if (isExactMinusInfinity(x) && f != E::sqrt) return atEnd(f, x);
  if (f == E::exp) return exactExp(x);
  if (f == E::ln) return exactLn(x);
  if (f == E::sqrt) return exactRoot(x, 2);
  if (DAG value = byParity(f, x)) return value;
  if (isCircularInverse(f)) {
    if (DAG value = inverseCircular(f, x)) return value;
  }
  if (isBetween(f, E::sin, E::csc) && isTag(x, SUM)) {
    if (DAG value = atSumWithPi(f, x)) return value;
  }
  if (isBetween(f, E::sin, E::csc) && (isTag(x, PROD) || isTag(x, SUM))) {
    if (DAG value = atKnownTurns(f, x)) return value;
  }
  if (isTag(x, FUNCTION)) return isBetween(f, E::sin, E::csch) ? ofInverse(f, x) : inverseOfFunction(f, x);
  if (f == E::arccosh && isSurdLike(x)) {
    DAG angle = inverseCircular(E::arccos, x);
    return angle ? productOf(sqrtm1, angle) : DAG();
  }
  return atImaginary(f, x);
}

}  // namespace korel
