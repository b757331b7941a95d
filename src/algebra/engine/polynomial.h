#pragma once
// Polynomials of the engine: monomials packed into machine words, coefficients of a fixed width.
//
// A monomial is an integer of 128 bits with a field for each variable, the first one on top, so that the order of
// integers is the lexicographic order of monomials, a product of monomials is a sum, and a test of divisibility is a
// difference. The top bit of each field is a guard: always 0 in a monomial, it shows a borrow.
//
// A variable is what stands as a base in the expression: a name, an indexed name, a call, or a sum below a fraction
// bar. Its exponents are counted from the lowest one of the operand, in units of 1/root.

#include <cstddef>
#include <cstdint>

#include "algebra/engine/arena.h"
#include "algebra/engine/limbs.h"
#include "store/dag.h"

namespace korel::engine {

using Monomial = unsigned __int128;

inline constexpr int mostVariables = 32;
/// Exponents beyond this are nothing for the engine.
inline constexpr std::int64_t largestExponent = std::int64_t{1} << 40;

struct Variable {
  DAG base;
  std::int32_t root;  // exponents are multiples of 1/root
  int shift, bits;    // of the field, guard included
};

/// The variables of some operands and where their fields are.
struct Layout {
  int count = 0;
  Variable variables[mostVariables];
  Monomial guards = 0;
};

/// What is known of an operand before it is packed.
struct Operand {
  DAG sum;  // a SUM, or one term
  std::size_t terms = 0;
  DAG denominator{};                        // common one of its coefficients
  std::int64_t lowest[mostVariables] = {};  // exponents, in units of 1/root
  std::int64_t highest[mostVariables] = {};
  double bits = 0;  // of the largest coefficient times the denominator, at most
};

/// Terms in descending order of their monomials, none with coefficient 0; the arrays are the arena's.
struct Polynomial {
  std::size_t count = 0;
  Monomial* monomials = nullptr;
  Limb* coefficients = nullptr;  // `width` limbs each
  int width = 1;

  const Limb* coefficient(std::size_t i) const { return coefficients + i * width; }
};

/// Looks through expressions; false when one of them is nothing for the engine (a float, a complex number, a power that
/// could combine with others).
bool survey(Layout& layout, Operand* operands, int count);
/// Gives the variables their fields for exponents from 0 to `range[i]`; false when they don't fit.
bool assignFields(Layout& layout, const std::int64_t* ranges);
/// Packs an operand, its coefficients times its denominator, in `width` limbs.
Polynomial pack(Arena& arena, const Layout& layout, const Operand& operand, int width);
/// The monomial of term `i` of an operand, and its coefficient times the denominator.
Monomial monomialOfTerm(const Layout& layout, const Operand& operand, std::size_t i);
DAG integerOfTerm(const Operand& operand, std::size_t i);
/// Limbs that the coefficients of an operand need.
inline int widthOf(const Operand& operand) { return widthFor(operand.bits); }

/// The expression: coefficients divided by `denominator`, exponents raised by `lowest`. Simplified.
/// Error: "object too large".
DAG unpack(Arena& arena, const Layout& layout, const Polynomial& p, const std::int64_t* lowest, DAG denominator);
/// The same for coefficients that are integers of the kernel, in any order of terms.
DAG unpackIntegers(Arena& arena, const Layout& layout, const Monomial* monomials, const DAG* coefficients,
                   std::size_t count, const std::int64_t* lowest, DAG denominator);

inline std::int64_t exponentIn(const Variable& v, Monomial m) {
  return static_cast<std::int64_t>(m >> v.shift & ((Monomial{1} << v.bits) - 1));
}
inline bool divides(const Layout& layout, Monomial divisor, Monomial m) {
  return (((m | layout.guards) - divisor) & layout.guards) == layout.guards;
}

/// Brings the terms into descending order.
void sortTerms(Arena& arena, Polynomial& p);

/// An integer in `width` limbs; it fits.
void readInteger(DAG x, Limb* to, int width);
/// The integer that the limbs are, canonical and simplified.
DAG makeInteger(const Limb* x, int width);
/// Binary logarithm of |x|, rounded up a little; 0 for 0.
double bitsOf(DAG integer);

/// More terms than an object can have: "object too large".
void checkTermCount(std::size_t terms);

}  // namespace korel::engine
