// Native library procedures: polynomials in several indeterminates over a finite field.
//
// One procedure runs them all: `kernel/native`("mod/aid/several", name, [operands...], [indeterminates...], field, p).
// Operands are expanded polynomials. The field is [] for the residues modulo the prime p, and [alpha, e] for the one
// that the root alpha of the dense polynomial e makes of them. Results are monic where the table says so, the last
// indeterminate of the list being the first to look at. FAIL is answered to what is no polynomial.

#include <algorithm>
#include <cstring>
#include <numeric>

#include "algebra/engine/integer_polynomial.h"
#include "algebra/modular/dense_factor.h"
#include "algebra/modular/dense_objects.h"
#include "algebra/modular/grid_polynomials.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG listOf(DAG sequence) { return simpl(new2(LIST, simpl(sequence))); }

/// What the operands hold, and which indeterminate of the list each variable is.
struct Problem {
  engine::Arena& arena;
  engine::Layout layout = {};
  engine::Operand* operands = nullptr;
  long count = 0;
  DAG alpha{};  // of the field, or none
  Extents indeterminates = {};
  int placeOf[engine::mostVariables] = {};  // of a variable of the layout; -1 is alpha
  int layoutOf[engine::mostVariables] = {};
  int alphaInLayout = -1;
  // All exponents of indeterminate v are multiples of strides[v], and stand divided by it in grids.
  long strides[engine::mostVariables] = {};
};

int placeIn(DAG list, DAG x) {
  for (Word i = 1; i < lengthOf(list[1]); ++i)
    if (list[1][i] == x) return static_cast<int>(i) - 1;
  return -1;
}

bool readProblem(Problem& problem, DAG operands, DAG names) {
  const Word count = memberCount(operands[1]);
  problem.count = static_cast<long>(count);
  problem.operands = problem.arena.makeZero<engine::Operand>(count);
  for (Word i = 0; i < count; ++i) problem.operands[i].sum = operands[1][i + 1];
  engine::Layout& layout = problem.layout;
  if (!engine::survey(layout, problem.operands, static_cast<int>(count))) return false;
  problem.indeterminates.count = static_cast<int>(memberCount(names[1]));
  std::int64_t ranges[engine::mostVariables] = {};
  for (int v = 0; v < layout.count; ++v) {
    DAG base = layout.variables[v].base;
    problem.placeOf[v] = placeIn(names, base);
    if (problem.placeOf[v] < 0) {
      if (base != problem.alpha) return false;
      problem.alphaInLayout = v;
    }
    if (layout.variables[v].root != 1) return false;
    for (long k = 0; k < problem.count; ++k) {
      if (problem.operands[k].lowest[v] < 0) return false;
      ranges[v] = std::max(ranges[v], problem.operands[k].highest[v]);
    }
  }
  return engine::assignFields(layout, ranges);
}

// Where f(x^n) may stand for f(x): exponents that have a divisor in common are divided by it. Indeterminates before
// `first` are left as they are.
void findStrides(Problem& problem, int first) {
  for (int v = 0; v < problem.indeterminates.count; ++v) problem.strides[v] = v < first ? 1 : 0;
  for (long k = 0; k < problem.count; ++k)
    for (std::size_t i = 0; i < problem.operands[k].terms; ++i) {
      const engine::Monomial m = engine::monomialOfTerm(problem.layout, problem.operands[k], i);
      for (int v = 0; v < problem.layout.count; ++v) {
        if (v == problem.alphaInLayout) continue;
        long& stride = problem.strides[problem.placeOf[v]];
        stride = std::gcd(stride, static_cast<long>(engine::exponentIn(problem.layout.variables[v], m) +
                                                    problem.operands[k].lowest[v]));
      }
    }
  for (int v = 0; v < problem.indeterminates.count; ++v) problem.strides[v] = std::max(problem.strides[v], 1L);
}

// ---- elements of a field, in and out

template <class R>
struct Coefficients;

template <class R>
struct PrimeCoefficients {
  const R& ring;

  void prepare(Workspace&, std::int64_t) {}
  void set(typename R::Unit* r, DAG c, std::int64_t) const { ring.setInteger(r, c); }
  static long degree() { return 0; }
  DAG part(const typename R::Unit* c, long) const { return simpl(ring.integer(c)); }
};
template <>
struct Coefficients<HardwareRing> : PrimeCoefficients<HardwareRing> {};
template <>
struct Coefficients<WideRing> : PrimeCoefficients<WideRing> {};
template <class Base>
struct Coefficients<GaloisRing<Base>> {
  const GaloisRing<Base>& ring;
  typename Base::Unit* powers = nullptr;  // of alpha

  void prepare(Workspace& space, std::int64_t highest) {
    powers = ring.take(space, static_cast<long>(highest) + 1);
    ring.setSmall(powers, 1);
    auto* alpha = ring.take(space, 1);
    {
      Workspace step;
      Dense<Base> y = {ring.base.take(step, std::max(ring.k, 2L)), 1};
      ring.base.clear(y.c, 1);
      ring.base.setSmall(ring.base.at(y.c, 1), 1);
      ring.reduce(alpha, y);
    }
    for (std::int64_t e = 1; e <= highest; ++e) ring.multiply(ring.at(powers, e), ring.at(powers, e - 1), alpha);
  }
  void set(typename Base::Unit* r, DAG c, std::int64_t exponent) const {
    Workspace space;
    auto* number = ring.base.take(space, 1);
    ring.base.setInteger(number, c);
    for (long j = 0; j < ring.k; ++j)
      ring.base.multiply(ring.base.at(r, j), ring.base.at(ring.at(powers, exponent), j), number);
  }
  long degree() const { return ring.k - 1; }
  DAG part(const typename Base::Unit* c, long j) const { return simpl(ring.base.integer(ring.base.at(c, j))); }
};

template <class R>
struct Polynomials {
  const Grids<R>& grids;
  Problem& problem;
  Coefficients<R> coefficients;
  DAG names;

  using Unit = typename R::Unit;

  Grid<R> load(long operand) const {
    const engine::Operand& source = problem.operands[operand];
    engine::IntegerPolynomial p = engine::packIntegers(problem.arena, problem.layout, source);
    auto exponent = [&](std::size_t i, int v) {
      const std::int64_t e = engine::exponentIn(problem.layout.variables[v], p.monomials[i]) + source.lowest[v];
      return v == problem.alphaInLayout ? e : e / problem.strides[problem.placeOf[v]];
    };
    Extents extents = problem.indeterminates;
    for (int v = 0; v < problem.layout.count; ++v) {
      if (v == problem.alphaInLayout) continue;
      const int place = problem.placeOf[v];
      extents.degree[place] = static_cast<long>(source.highest[v]) / problem.strides[place];
    }
    Grid<R> g = grids.zero(extents);
    Workspace space;
    auto *element = grids.ring.take(space, 1), *scale = grids.ring.take(space, 1);
    coefficients.set(scale, source.denominator, 0);
    if (!grids.ring.invert(scale, scale)) mInverseError();
    for (std::size_t i = 0; i < p.count; ++i) {
      coefficients.set(element, p.coefficients[i], problem.alphaInLayout < 0 ? 0 : exponent(i, problem.alphaInLayout));
      std::size_t place = 0;
      for (int v = 0; v < problem.layout.count; ++v)
        if (v != problem.alphaInLayout)
          place += static_cast<std::size_t>(exponent(i, v)) * extents.placesBelow(problem.placeOf[v]);
      grids.ring.multiply(element, element, scale);
      grids.ring.add(grids.at(g, place), grids.at(g, place), element);
    }
    return grids.trimmed(g);
  }

  DAG expression(const Grid<R>& polynomial) const {
    const Grid<R> g = grids.trimmed(polynomial);
    engine::Layout layout;
    std::int64_t ranges[engine::mostVariables] = {};
    const std::int64_t lowest[engine::mostVariables] = {};
    layout.count = g.extents.count + (problem.alpha ? 1 : 0);
    for (int v = 0; v < g.extents.count; ++v) {
      layout.variables[v] = {names[1][static_cast<Word>(v) + 1], 1, 0, 0};
      ranges[v] = std::int64_t{g.extents.degree[v]} * problem.strides[v];
    }
    if (problem.alpha) {
      layout.variables[g.extents.count] = {problem.alpha, 1, 0, 0};
      ranges[g.extents.count] = coefficients.degree();
    }
    if (!engine::assignFields(layout, ranges)) KernelException("object too large");
    const std::size_t n = g.extents.places(), parts = static_cast<std::size_t>(coefficients.degree()) + 1;
    std::size_t nonzero = 0, count = 0;
    for (std::size_t i = 0; i < n; ++i) nonzero += grids.ring.isZero(grids.at(g, i)) ? 0 : 1;
    auto* monomials = problem.arena.make<engine::Monomial>(nonzero * parts);
    auto* integers = problem.arena.make<DAG>(nonzero * parts);
    for (std::size_t i = 0; i < n; ++i) {
      if (grids.ring.isZero(grids.at(g, i))) continue;
      std::size_t rest = i;
      engine::Monomial m = 0;
      for (int v = 0; v < g.extents.count; ++v) {
        const std::size_t side = static_cast<std::size_t>(g.extents.degree[v]) + 1;
        const auto stride = static_cast<engine::Monomial>(problem.strides[v]);
        m |= static_cast<engine::Monomial>(rest % side) * stride << layout.variables[v].shift;
        rest /= side;
      }
      for (std::size_t j = 0; j < parts; ++j) {
        monomials[count] = m;
        if (problem.alpha)
          monomials[count] |= static_cast<engine::Monomial>(j) << layout.variables[g.extents.count].shift;
        integers[count++] = coefficients.part(grids.at(g, i), static_cast<long>(j));
      }
    }
    return engine::unpackIntegers(problem.arena, layout, monomials, integers, count, lowest, cons1);
  }

  Grid<R> one() const { return grids.one(problem.indeterminates.count); }
};

// ---- the operations

template <class P>
DAG reduced(const P& p) {
  return p.expression(p.load(0));
}
template <class P>
DAG product(const P& p) {
  return p.expression(p.grids.product(p.load(0), p.load(1)));
}
// monic
template <class P>
DAG commonDivisor(const P& p) {
  return p.expression(p.grids.commonDivisor(p.load(0), p.load(1)));
}
// [numerator, monic denominator] in lowest terms
template <class P>
DAG lowestTerms(const P& p) {
  auto a = p.load(0), b = p.load(1), n = a, d = b;
  if (p.grids.isZero(b)) KernelException("division by zero");
  auto g = p.grids.commonDivisor(a, b);
  p.grids.quotient(a, g, n);
  p.grids.quotient(b, g, d);
  Workspace space;
  auto* inverse = p.grids.ring.take(space, 1);
  if (!p.grids.ring.invert(inverse, p.grids.ring.at(d.c, p.grids.leadingPlace(d)))) mInverseError();
  p.grids.scale(n, inverse);
  p.grids.scale(d, inverse);
  return listOf(newSequence({p.expression(n), p.expression(d)}));
}
// [the quotient], or [] when the second operand doesn't divide the first
template <class P>
DAG quotient(const P& p) {
  auto a = p.load(0), b = p.load(1), q = a;
  if (p.grids.isZero(b)) KernelException("division by zero");
  return p.grids.quotient(a, b, q) ? listOf(newSequence({p.expression(q)})) : emptylist;
}
template <class P>
DAG resultant(const P& p) {
  return p.expression(p.grids.resultant(p.load(0), p.load(1)));
}
template <class P>
DAG determinant(const P& p) {
  long n = 0;
  while (n * n < p.problem.count) ++n;
  auto first = p.load(0);
  auto* entries = p.problem.arena.template make<decltype(first)>(static_cast<std::size_t>(n * n));
  for (long i = 0; i < n * n; ++i) entries[i] = p.load(i);
  return p.expression(p.grids.determinant(entries, n));
}

// Factors in order: by their leading monomials, then by coefficients from the top.
template <class R>
bool comesBefore(const Grids<R>& grids, const Grid<R>& a, const Grid<R>& b) {
  for (int v = a.extents.count; v-- > 0;)
    if (a.extents.degree[v] != b.extents.degree[v]) return a.extents.degree[v] < b.extents.degree[v];
  const long lead = grids.leadingPlace(a), other = grids.leadingPlace(b);
  if (lead != other) return lead < other;
  for (long i = (lead + 1) * grids.ring.width; i-- > 0;)
    if (a.c[i] != b.c[i]) return a.c[i] < b.c[i];
  return false;
}
// [leading coefficient, [[factor, multiplicity], ...]]
template <class P, class Find>
DAG parts(const P& p, Find find) {
  auto f = p.load(0), lead = p.one();
  const long place = p.grids.leadingPlace(f);
  GridList<std::remove_cvref_t<decltype(p.grids.ring)>> found;
  if (place < 0) lead = f;
  else p.grids.ring.copy(lead.c, p.grids.ring.at(f.c, place), 1);
  if (place > 0) find(f, found);
  auto* order = p.problem.arena.template make<long>(static_cast<std::size_t>(found.count));
  for (long i = 0; i < found.count; ++i) order[i] = i;
  std::sort(order, order + found.count,
            [&](long i, long j) { return comesBefore(p.grids, found.factors[i], found.factors[j]); });
  DAG pairs = newl2(static_cast<Word>(found.count + 1), EXPSEQ);
  for (long i = 0; i < found.count; ++i)
    pairs[i + 1] = listOf(newSequence(
        {p.expression(found.factors[order[i]]), immediate(static_cast<std::int32_t>(found.multiplicities[order[i]]))}));
  return listOf(newSequence({p.expression(lead), listOf(pairs)}));
}
template <class P>
DAG squareFree(const P& p) {
  return parts(p, [&](auto& f, auto& found) { p.grids.squareFreeParts(f, found); });
}
template <class P>
DAG factors(const P& p) {
  return parts(p, [&](auto& f, auto& found) { p.grids.factors(f, found); });
}

struct Operation {
  const char* name;
  long operands;  // 0: a square number of them
  int rigid;      // indeterminates whose exponents must stay; `all` or the main one or none
  DAG (*small)(const Polynomials<HardwareRing>&);
  DAG (*wide)(const Polynomials<WideRing>&);
  DAG (*smallField)(const Polynomials<GaloisRing<HardwareRing>>&);
  DAG (*wideField)(const Polynomials<GaloisRing<WideRing>>&);
};
constexpr int all = engine::mostVariables;
#define KOREL_OPERATION(name, operands, rigid, function)                                             \
  {                                                                                                  \
    name, operands, rigid, function<Polynomials<HardwareRing>>, function<Polynomials<WideRing>>,     \
        function<Polynomials<GaloisRing<HardwareRing>>>, function<Polynomials<GaloisRing<WideRing>>> \
  }
constexpr Operation operations[] = {
    KOREL_OPERATION("Det", 0, 0, determinant),      KOREL_OPERATION("Divide", 2, 0, quotient),
    KOREL_OPERATION("Expand", 1, 0, reduced),       KOREL_OPERATION("Factors", 1, all, factors),
    KOREL_OPERATION("Gcd", 2, 0, commonDivisor),    KOREL_OPERATION("Multiply", 2, 0, product),
    KOREL_OPERATION("Normal", 2, 0, lowestTerms),   KOREL_OPERATION("Resultant", 2, 1, resultant),
    KOREL_OPERATION("Sqrfree", 1, all, squareFree),
};
#undef KOREL_OPERATION

bool operandsFit(const Operation& operation, DAG operands) {
  const auto count = static_cast<long>(memberCount(operands[1]));
  if (operation.operands != 0) return count == operation.operands;
  long n = 1;
  while (n * n < count) ++n;
  return n * n == count;
}

template <class R>
DAG runOn(const R& ring, Problem& problem, DAG names, DAG (*run)(const Polynomials<R>&)) {
  Workspace space;
  const Grids<R> grids = {ring, problem.arena};
  Polynomials<R> polynomials = {grids, problem, {ring}, names};
  std::int64_t highest = 0;
  if (problem.alphaInLayout >= 0)
    for (long k = 0; k < problem.count; ++k)
      highest = std::max(highest, problem.operands[k].highest[problem.alphaInLayout]);
  polynomials.coefficients.prepare(space, highest);
  return run(polynomials);
}

}  // namespace

DAG native::severalIndeterminates(const BuiltinCall& call) {
  if (argumentCount(call) != 5) wrongParameters(call);
  DAG name = call.arguments[1], operands = call.arguments[2], names = call.arguments[3], field = call.arguments[4];
  DAG m = call.arguments[5];
  if (!isText(name) || !isTag(operands, LIST) || !isTag(names, LIST) || !isTag(field, LIST) || !isInteger(m))
    wrongParameters(call);
  const Operation* operation = std::find_if(std::begin(operations), std::end(operations),
                                            [&](const Operation& o) { return hasText(name, o.name); });
  if (operation == std::end(operations) || !operandsFit(*operation, operands)) wrongParameters(call);
  const bool extended = memberCount(field[1]) == 2;
  if (extended && (!mVerify(field[1][2], m) || denseDegree(field[1][2]) < 1)) wrongParameters(call);
  if (!isPrimeModulus(m)) KernelException("prime modulus expected, but received %1", m);
  engine::Arena arena;
  Problem problem{.arena = arena};
  if (extended) problem.alpha = field[1][1];
  if (!readProblem(problem, operands, names)) return ini("FAIL");
  findStrides(problem, operation->rigid);
  GuardedWorkspace space;
  auto run = [&](const auto& base, auto plain, auto above) {
    using Base = std::remove_cvref_t<decltype(base)>;
    if (!extended) return runOn(base, problem, names, plain);
    return runOn(GaloisRing<Base>(base, space, load(base, space, field[1][2])), problem, names, above);
  };
  if (isHardwareModulus(m)) return run(HardwareRing(m), operation->small, operation->smallField);
  return run(WideRing(m, space), operation->wide, operation->wideField);
}

}  // namespace korel
