#include "algebra/engine/integer_polynomial.h"

#include <algorithm>
#include <cmath>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/objects.h"
#include "store/pairs.h"
#include "store/vocabulary.h"

namespace korel::engine {

IntegerPolynomial fromTerms(Arena& arena, IntegerTerm* terms, std::size_t count) {
  std::sort(terms, terms + count, [](const IntegerTerm& a, const IntegerTerm& b) { return a.monomial > b.monomial; });
  IntegerPolynomial p;
  p.count = count;
  p.monomials = arena.make<Monomial>(p.count);
  p.coefficients = arena.make<DAG>(p.count);
  for (std::size_t i = 0; i < p.count; ++i) {
    p.monomials[i] = terms[i].monomial;
    p.coefficients[i] = terms[i].coefficient;
  }
  return p;
}

IntegerPolynomial packIntegers(Arena& arena, const Layout& layout, const Operand& operand) {
  auto* terms = arena.make<IntegerTerm>(operand.terms);
  for (std::size_t i = 0; i < operand.terms; ++i) {
    passWork(objectSteps);
    terms[i] = {monomialOfTerm(layout, operand, i), integerOfTerm(operand, i)};
  }
  const IntegerPolynomial p = fromTerms(arena, terms, operand.terms);
  arena.free(terms);
  return p;
}

Polynomial inLimbs(Arena& arena, const IntegerPolynomial& p) {
  const int width = widthFor(bitsOfLargest(p));
  if (width == 0) return {};
  Polynomial result;
  result.count = p.count;
  result.monomials = p.monomials;
  result.width = width;
  result.coefficients = arena.make<Limb>(p.count * width);
  for (std::size_t i = 0; i < p.count; ++i) readInteger(p.coefficients[i], result.coefficients + i * width, width);
  return result;
}

IntegerPolynomial asIntegers(Arena& arena, const Polynomial& p) {
  IntegerPolynomial result;
  result.count = p.count;
  result.monomials = p.monomials;
  result.coefficients = arena.make<DAG>(p.count);
  for (std::size_t i = 0; i < p.count; ++i) {
    passWork(objectSteps);
    result.coefficients[i] = makeInteger(p.coefficient(i), p.width);
  }
  return result;
}

std::int64_t digitsForBits(double bits) { return static_cast<std::int64_t>((bits + 2) / 13.28771237) + 1; }

double bitsOfLargest(const IntegerPolynomial& p) {
  double bits = 1;
  for (std::size_t i = 0; i < p.count; ++i) bits = std::max(bits, bitsOf(p.coefficients[i]));
  return bits;
}

// ---- values

namespace {

// The integer of `n` digits, lowest first, as a canonical simplified object.
DAG integerOfDigits(const Word* digits, std::int64_t n, bool negative) {
  while (n > 0 && digits[n - 1] == 0) --n;
  if (n == 0) return cons0;
  if (n > static_cast<std::int64_t>(maxLength) - 1) KernelException("object too large");
  DAG result = news(static_cast<Word>(n + 1));
  setHeader(result, negative ? INTNEG : INTPOS, static_cast<Word>(n + 1));
  std::copy_n(digits, n, digitsOf(result));
  return simpl(MakeImmediate(result));
}

void writeDigits(DAG x, Word* to) {
  if (!isImmediate(x)) {
    std::copy_n(digitsOf(x), digitCount(x), to);
    return;
  }
  std::int64_t value = std::abs(std::int64_t{immediateValue(x)});
  for (; value != 0; value /= BASE) *to++ = static_cast<Word>(value % BASE);
}

}  // namespace

DAG valueAtPower(Arena& arena, const Box& box, const IntegerPolynomial& p, std::int64_t digits) {
  const auto places = static_cast<std::int64_t>(box.places()) * digits;
  // Positive and negative coefficients apart, so that no digit borrows.
  auto* parts = arena.makeZero<Word>(2 * places);
  for (std::size_t i = 0; i < p.count; ++i) {
    DAG c = p.coefficients[i];
    passWork(digits);
    writeDigits(c, parts + (consneg(c) ? places : 0) + static_cast<std::int64_t>(box.placeOf(p.monomials[i])) * digits);
  }
  DAG value = simpl(add(integerOfDigits(parts, places, false), integerOfDigits(parts + places, places, true)));
  arena.free(parts);
  return value;
}

PowerSum fromValue(Arena& arena, DAG n, std::int64_t digits) {
  const bool negative = consneg(n);
  std::int64_t length = isImmediate(n) ? 3 : digitCount(n);
  const std::int64_t places = (length + digits - 1) / digits + 1;
  auto* all = arena.makeZero<Word>(places * digits);
  writeDigits(n, all);
  PowerSum p;
  p.exponents = arena.make<std::size_t>(places);
  p.coefficients = arena.make<DAG>(places);
  bool carry = false;
  for (std::int64_t place = 0; place < places; ++place) {
    Word* chunk = all + place * digits;
    passWork(objectSteps + 4 * digits);
    for (std::int64_t k = 0; carry && k < digits; ++k) {
      carry = ++chunk[k] == BASE;
      if (carry) chunk[k] = 0;
    }
    const bool above = chunk[digits - 1] >= BASE / 2;
    if (above) {
      // x - chunk, with a carry into the next place.
      Word borrow = 0;
      for (std::int64_t k = 0; k < digits; ++k) {
        const Word digit = chunk[k] + borrow;
        chunk[k] = digit == 0 ? 0 : BASE - digit;
        borrow = digit == 0 ? 0 : 1;
      }
      carry = true;
    }
    DAG c = integerOfDigits(chunk, digits, above != negative);
    if (c == cons0) continue;
    p.exponents[p.count] = static_cast<std::size_t>(place);
    p.coefficients[p.count++] = c;
  }
  arena.free(all);
  return p;
}

IntegerPolynomial inBox(Arena& arena, const Box& box, const PowerSum& p, std::size_t lowest) {
  IntegerPolynomial result;
  if (p.count == 0) return result;
  const std::size_t first = p.exponents[0];
  if (static_cast<double>(p.exponents[p.count - 1] - first + lowest) >= box.places()) return result;
  result.count = p.count;
  result.monomials = arena.make<Monomial>(p.count);
  result.coefficients = arena.make<DAG>(p.count);
  for (std::size_t i = 0; i < p.count; ++i) {
    result.monomials[p.count - 1 - i] = box.monomialAt(p.exponents[i] - first + lowest);
    result.coefficients[p.count - 1 - i] = p.coefficients[i];
  }
  return result;
}


// ---- contents

DAG contentOf(const IntegerPolynomial& p) {
  DAG content = cons0;
  for (std::size_t i = 0; i < p.count && content != cons1; ++i) {
    passWork(objectSteps);
    content = simpl(igcd(content, p.coefficients[i]));
  }
  return content;
}

void divideBy(IntegerPolynomial& p, DAG divisor) {
  if (divisor == cons1) return;
  for (std::size_t i = 0; i < p.count; ++i) {
    DAG quotient;
    passWork(objectSteps);
    rem(p.coefficients[i], divisor, &quotient);
    p.coefficients[i] = simpl(quotient);
  }
}

}  // namespace korel::engine
