#include "algebra/engine/polynomial.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "algebra/polynomials/expanded_size.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/unique_pairs.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"
#include "store/pairs.h"
#include "store/vocabulary.h"

namespace korel::engine {

// ---- integers

double bitsOf(DAG integer) {
  if (isImmediate(integer)) {
    const std::int32_t value = std::abs(immediateValue(integer));
    return value == 0 ? 0 : 32 - __builtin_clz(static_cast<unsigned>(value));
  }
  constexpr double bitsPerDigit = 13.28771238;  // log2 of 10000
  const Word n = digitCount(integer);
  return (n - 1) * bitsPerDigit + std::log2(digitsOf(integer)[n - 1] + 1.0) + 0.001;
}

void readInteger(DAG x, Limb* to, int width) {
  if (isImmediate(x)) {
    const std::int64_t value = immediateValue(x);
    for (int i = 0; i < width; ++i) to[i] = i == 0 ? static_cast<Limb>(value) : value < 0 ? ~Limb{0} : 0;
    return;
  }
  for (int i = 0; i < width; ++i) to[i] = 0;
  for (std::int64_t k = digitCount(x) - 1; k >= 0; --k) {
    Limb carry = digitsOf(x)[k];
    for (int i = 0; i < width; ++i) {
      Wide product = Wide{to[i]} * BASE + carry;
      to[i] = static_cast<Limb>(product);
      carry = static_cast<Limb>(product >> 64);
    }
  }
  if (!hasTag(x, INTNEG)) return;
  Limb carry = 1;
  for (int i = 0; i < width; ++i) {
    to[i] = ~to[i] + carry;
    carry = carry != 0 && to[i] == 0 ? 1 : 0;
  }
}

DAG makeInteger(const Limb* x, int width) {
  const bool negative = isNegative(x, width);
  Limb magnitude[widest];
  Limb carry = negative ? 1 : 0;
  for (int i = 0; i < width; ++i) {
    magnitude[i] = (negative ? ~x[i] : x[i]) + carry;
    carry = carry != 0 && magnitude[i] == 0 ? 1 : 0;
  }
  int n = width;
  while (n > 0 && magnitude[n - 1] == 0) --n;
  if (n == 0) return cons0;
  if (n == 1 && magnitude[0] <= static_cast<Limb>(maxImmediate)) {
    const auto value = static_cast<std::int32_t>(magnitude[0]);
    return immediate(negative ? -value : value);
  }
  Group groups[2 * widest];
  std::size_t count = 0;
  while (n > 0) {
    Group rest = 0;
    for (int i = n - 1; i >= 0; --i) {
      GroupQuotient parts = splitGroup(Wide{rest} << 64 | magnitude[i]);
      magnitude[i] = parts.quotient;
      rest = parts.rest;
    }
    groups[count++] = rest;
    if (magnitude[n - 1] == 0) --n;
  }
  return simpl(integerOfGroups(groups, count, negative ? INTNEG : INTPOS));
}

// ---- what the operands hold

namespace {

bool isVariableBase(DAG base, DAG exponent) {
  if (isImmediate(base)) return false;
  switch (tagOf(base)) {
    case NAME: return isPlainName(base);
    case TABLEREF: case FUNCTION: return true;
    case SUM: return consneg(exponent);
    default: return false;
  }
}

// Position of the variable, entered when it is new; -1 when there is no more room.
int variableOf(Layout& layout, DAG base) {
  for (int i = 0; i < layout.count; ++i)
    if (layout.variables[i].base == base) return i;
  if (layout.count == mostVariables) return -1;
  layout.variables[layout.count] = {base, 1, 0, 0};
  return layout.count++;
}
int knownVariable(const Layout& layout, DAG base) {
  int i = 0;
  while (layout.variables[i].base != base) ++i;
  return i;
}

constexpr std::int32_t largestRoot = 1 << 20;

bool surveyPower(Layout& layout, DAG base, DAG exponent) {
  if (!isVariableBase(base, exponent)) return false;
  int v = variableOf(layout, base);
  if (v < 0) return false;
  if (isImmediate(exponent)) return true;
  if (!isTag(exponent, RATIONAL) || !isImmediate(exponent[1]) || !isImmediate(exponent[2])) return false;
  std::int64_t root = std::lcm<std::int64_t>(layout.variables[v].root, immediateValue(exponent[2]));
  if (root > largestRoot) return false;
  layout.variables[v].root = static_cast<std::int32_t>(root);
  return true;
}

// The number of a pair of a sum: its coefficient, or its constant term.
DAG numberOf(Pair pair) { return isNumber(pair.term) ? simpl(mul(pair.term, pair.coefficient)) : pair.coefficient; }

bool surveyTerm(Layout& layout, DAG term) {
  if (isNumber(term)) return true;
  if (!isTag(term, PROD)) return surveyPower(layout, term, cons1);
  for (Word i = 1; i < lengthOf(term); i += 2)
    if (!surveyPower(layout, term[i], term[i + 1])) return false;
  return true;
}

Pair pairOf(DAG sum, std::size_t i) { return isTag(sum, SUM) ? pairsOf(sum)[i] : Pair{sum, cons1}; }

bool surveyNumbers(Operand& operand) {
  operand.denominator = cons1;
  for (std::size_t i = 0; i < operand.terms; ++i) {
    DAG c = numberOf(pairOf(operand.sum, i));
    passWork(objectSteps);
    if (!isRationalNumber(c)) return false;
    if (!isTag(c, RATIONAL)) continue;
    DAG parts[2];
    gcdsimpl(operand.denominator, c[2], parts);
    operand.denominator = simpl(mul(parts[0], c[2]));
  }
  operand.bits = 0;
  for (std::size_t i = 0; i < operand.terms; ++i) {
    DAG c = numberOf(pairOf(operand.sum, i));
    if (operand.denominator != cons1) c = simpl(mul(c, operand.denominator));
    operand.bits = std::max(operand.bits, bitsOf(c));
  }
  return true;
}

/// Exponent in units of 1/root.
std::int64_t units(const Variable& v, DAG exponent) {
  if (isImmediate(exponent)) return std::int64_t{immediateValue(exponent)} * v.root;
  return std::int64_t{immediateValue(exponent[1])} * (v.root / immediateValue(exponent[2]));
}

// Calls `visit(variable, exponent)` on each power of a term.
template <class Visit>
void forEachPower(const Layout& layout, DAG term, Visit visit) {
  if (isNumber(term)) return;
  if (!isTag(term, PROD)) {
    int v = knownVariable(layout, term);
    return visit(v, std::int64_t{layout.variables[v].root});
  }
  for (Word i = 1; i < lengthOf(term); i += 2) {
    int v = knownVariable(layout, term[i]);
    visit(v, units(layout.variables[v], term[i + 1]));
  }
}

bool surveyExponents(const Layout& layout, Operand& operand) {
  std::size_t met[mostVariables] = {};
  for (int v = 0; v < layout.count; ++v) operand.lowest[v] = operand.highest[v] = 0;
  for (std::size_t i = 0; i < operand.terms; ++i)
    forEachPower(layout, pairOf(operand.sum, i).term, [&](int v, std::int64_t e) {
      operand.lowest[v] = met[v] == 0 ? e : std::min(operand.lowest[v], e);
      operand.highest[v] = met[v] == 0 ? e : std::max(operand.highest[v], e);
      ++met[v];
    });
  for (int v = 0; v < layout.count; ++v) {
    // A term without the variable has it to the power 0.
    if (met[v] < operand.terms) {
      operand.lowest[v] = std::min<std::int64_t>(operand.lowest[v], 0);
      operand.highest[v] = std::max<std::int64_t>(operand.highest[v], 0);
    }
    if (operand.highest[v] - operand.lowest[v] > largestExponent) return false;
  }
  return true;
}

}  // namespace

bool survey(Layout& layout, Operand* operands, int count) {
  for (int k = 0; k < count; ++k) {
    Operand& operand = operands[k];
    operand.terms = isTag(operand.sum, SUM) ? pairCount(operand.sum) : 1;
    passWork(static_cast<std::int64_t>(operand.terms) * objectSteps);
    for (std::size_t i = 0; i < operand.terms; ++i)
      if (!surveyTerm(layout, pairOf(operand.sum, i).term)) return false;
  }
  for (int k = 0; k < count; ++k)
    if (!surveyNumbers(operands[k]) || !surveyExponents(layout, operands[k])) return false;
  return true;
}

bool assignFields(Layout& layout, const std::int64_t* ranges) {
  int shift = 0;
  layout.guards = 0;
  for (int v = layout.count - 1; v >= 0; --v) {
    Variable& variable = layout.variables[v];
    variable.bits = 65 - __builtin_clzll(static_cast<std::uint64_t>(ranges[v]) | 1);
    variable.shift = shift;
    shift += variable.bits;
    if (shift > 127) return false;
    layout.guards |= Monomial{1} << (shift - 1);
  }
  return true;
}

// ---- in and out

Monomial monomialOfTerm(const Layout& layout, const Operand& operand, std::size_t i) {
  Monomial m = 0;
  auto raise = [&](int v, std::int64_t e) {
    m += static_cast<Monomial>(static_cast<__int128>(e)) << layout.variables[v].shift;
  };
  for (int v = 0; v < layout.count; ++v) raise(v, -operand.lowest[v]);
  forEachPower(layout, pairOf(operand.sum, i).term, raise);
  return m;
}

DAG integerOfTerm(const Operand& operand, std::size_t i) {
  DAG c = numberOf(pairOf(operand.sum, i));
  return operand.denominator == cons1 ? c : simpl(mul(c, operand.denominator));
}

Polynomial pack(Arena& arena, const Layout& layout, const Operand& operand, int width) {
  Polynomial p;
  p.count = operand.terms;
  p.width = width;
  p.monomials = arena.make<Monomial>(p.count);
  p.coefficients = arena.make<Limb>(p.count * width);
  for (std::size_t i = 0; i < p.count; ++i) {
    passWork(objectSteps);
    p.monomials[i] = monomialOfTerm(layout, operand, i);
    readInteger(integerOfTerm(operand, i), p.coefficients + i * width, width);
  }
  sortTerms(arena, p);
  return p;
}

void sortTerms(Arena& arena, Polynomial& p) {
  if (std::is_sorted(p.monomials, p.monomials + p.count, [](Monomial a, Monomial b) { return a > b; })) return;
  struct Place {
    Monomial monomial;
    std::size_t at;
  };
  auto* places = arena.make<Place>(p.count);
  for (std::size_t i = 0; i < p.count; ++i) places[i] = {p.monomials[i], i};
  std::sort(places, places + p.count, [](const Place& a, const Place& b) { return a.monomial > b.monomial; });
  auto* sorted = arena.make<Limb>(p.count * p.width);
  for (std::size_t i = 0; i < p.count; ++i) {
    p.monomials[i] = places[i].monomial;
    std::copy_n(p.coefficient(places[i].at), p.width, sorted + i * p.width);
  }
  arena.free(places);
  arena.free(p.coefficients);
  p.coefficients = sorted;
}

void checkTermCount(std::size_t terms) {
  const auto n = static_cast<double>(terms);
  checkRoom(n, n * wordsOfSmallTerm);
}

namespace {

DAG exponentOf(const Variable& v, std::int64_t e) {
  if (v.root == 1 && fitsImmediate(e)) return immediate(static_cast<std::int32_t>(e));
  if (e % v.root == 0) return NewInteger(e / v.root);
  return simpl(mul(NewInteger(e), simpl(new3(RATIONAL, cons1, NewInteger(v.root)))));
}

// The monomial as a term of a sum; the number 1 for the constant one.
DAG termOf(const Layout& layout, Monomial m, const std::int64_t* lowest) {
  Pair pairs[mostVariables];
  Word n = 0;
  for (int v = 0; v < layout.count; ++v) {
    const Variable& variable = layout.variables[v];
    const std::int64_t e = exponentIn(variable, m) + lowest[v];
    if (e != 0) pairs[n++] = {variable.base, simpl(exponentOf(variable, e))};
  }
  if (n == 0) return cons1;
  if (n == 1 && pairs[0].coefficient == cons1) return pairs[0].term;
  return uniquePairs(PROD, pairs, n);
}

// Refuses what no memory holds before its first term is made.
void checkRoomForTerms(const Layout& layout, const Monomial* monomials, std::size_t count, const std::int64_t* lowest,
                       double wordsOfCoefficient) {
  constexpr std::size_t few = 10000;
  if (count < few) return;
  std::size_t powers = 0;
  for (std::size_t i = 0; i < count; ++i)
    for (int v = 0; v < layout.count; ++v) powers += exponentIn(layout.variables[v], monomials[i]) + lowest[v] != 0;
  const auto n = static_cast<double>(count);
  checkRoom(n, n * (wordsOfSmallTerm - 2 + wordsOfCoefficient) + 2 * static_cast<double>(powers));
}

// The sum of terms and coefficients, which are rational numbers.
class SumBuilder {
 public:
  SumBuilder(Arena& arena, const Layout& layout, std::size_t count, const std::int64_t* lowest, DAG denominator)
      : layout_(layout), lowest_(lowest), pairs_(arena.make<Pair>(count + 1)) {
    inverse_ = denominator == cons1 ? cons1 : simpl(power(denominator, -1));
  }
  void add(Monomial m, DAG coefficient) {
    passWork(objectSteps);
    if (inverse_ != cons1) coefficient = simpl(mul(coefficient, inverse_));
    DAG term = termOf(layout_, m, lowest_);
    pairs_[count_++] = term == cons1 ? Pair{coefficient, cons1} : Pair{term, coefficient};
  }
  DAG sum() const {
    if (count_ == 0) return cons0;
    if (count_ == 1 && pairs_[0].coefficient == cons1) return pairs_[0].term;
    return uniquePairs(SUM, pairs_, static_cast<Word>(count_));
  }

 private:
  const Layout& layout_;
  const std::int64_t* lowest_;
  Pair* pairs_;
  DAG inverse_;
  std::size_t count_ = 0;
};

}  // namespace

DAG unpack(Arena& arena, const Layout& layout, const Polynomial& p, const std::int64_t* lowest, DAG denominator) {
  constexpr double wordsOfLimb = 4.82;  // digits of base 10000
  checkRoomForTerms(layout, p.monomials, p.count, lowest, p.width == 1 ? 0 : p.width * wordsOfLimb / 2);
  SumBuilder builder(arena, layout, p.count, lowest, denominator);
  for (std::size_t i = 0; i < p.count; ++i) builder.add(p.monomials[i], makeInteger(p.coefficient(i), p.width));
  return builder.sum();
}

DAG unpackIntegers(Arena& arena, const Layout& layout, const Monomial* monomials, const DAG* coefficients,
                   std::size_t count, const std::int64_t* lowest, DAG denominator) {
  checkRoomForTerms(layout, monomials, count, lowest, 0);
  SumBuilder builder(arena, layout, count, lowest, denominator);
  for (std::size_t i = 0; i < count; ++i)
    if (coefficients[i] != cons0) builder.add(monomials[i], coefficients[i]);
  return builder.sum();
}

}  // namespace korel::engine
