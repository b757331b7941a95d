// Native library procedures: polynomials over GF(p^k), as bivariate dense polynomials in x and y modulo an irreducible
// polynomial in y.
//
// One procedure runs them all: `kernel/native`("evalgf1/aid/run", name, operands..., e, p), e the polynomial in y.
// Operands are polynomials in x and y, elements of the field (polynomials in y), and integers, as the table says.

#include <algorithm>
#include <cstring>

#include "algebra/modular/bivariate_polynomials.h"
#include "algebra/modular/dense_factor.h"
#include "algebra/modular/dense_objects.h"
#include "algebra/modular/galois_rings.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "store/names.h"

namespace korel {

namespace {

DAG listOf(DAG sequence) { return simpl(new2(LIST, simpl(sequence))); }

/// The field and what its polynomials are called.
template <class Base>
struct Field {
  const GaloisRing<Base>& ring;
  DAG x, y, m;

  using R = GaloisRing<Base>;
  using Unit = typename R::Unit;

  void loadElement(Workspace& space, Unit* r, DAG c) const {
    if (isInteger(c)) {
      ring.clear(r, 1);
      ring.base.setInteger(r, c);
      return;
    }
    ring.reduce(r, copied(ring.base, space, korel::load(ring.base, space, c), 0));
  }
  Dense<R> load(Workspace& space, DAG a) const {
    Dense<R> f = {ring.take(space, denseDegree(a) + 2), denseDegree(a)};
    for (long i = 0; i <= f.degree; ++i) {
      Workspace step;
      loadElement(step, ring.at(f.c, i), denseCoefficient(a, i));
    }
    f.degree = trimmedDegree(ring, f.c, f.degree);
    return f;
  }
  DAG storeElement(const Unit* c) const {
    return korel::store(ring.base, y, m, {const_cast<Unit*>(c), trimmedDegree(ring.base, c, ring.k - 1)});
  }
  DAG store(Dense<R> f) const {
    DAG coefficients = newl2(static_cast<Word>(f.degree + 2), EXPSEQ);
    for (long i = 0; i <= f.degree; ++i) coefficients[i + 1] = storeElement(ring.at(f.c, i));
    return newBivariate(simpl(newSequence({x, y})), m, coefficients);
  }
  /// The list of pairs, in order; each made by `first`.
  template <class First>
  DAG listed(const FactorList<R>& found, First first) const {
    DAG pairs = newl2(static_cast<Word>(found.count + 1), EXPSEQ);
    for (long i = 0; i < found.count; ++i)
      pairs[i + 1] =
          listOf(newSequence({first(found.factors[i]), immediate(static_cast<std::int32_t>(found.numbers[i]))}));
    auto* start = &pairs[1];
    std::sort(start, start + found.count, [](DAG p, DAG q) { return comesBefore(p[1][1], q[1][1]); });
    return listOf(pairs);
  }

  static bool comesBefore(DAG a, DAG b) {
    if (isInteger(a)) return compcon(a, b) < 0;
    if (denseDegree(a) != denseDegree(b)) return denseDegree(a) < denseDegree(b);
    for (long i = denseDegree(a); i >= 0; --i) {
      DAG c = denseCoefficient(a, i), d = denseCoefficient(b, i);
      if (c != d) return comesBefore(c, d);
    }
    return false;
  }
};

// ---- the operations, on either ring below; operands stand from place 2 on

template <class F>
DAG divided(const F& field, Workspace& space, DAG operands) {
  auto a = field.load(space, operands[2]), b = field.load(space, operands[3]);
  if (b.degree < 0) KernelException("division by zero");
  auto quotient = a;
  quotient.degree = a.degree - b.degree;
  quotient.c = field.ring.take(space, std::max(quotient.degree, 0L) + 1);
  if (quotient.degree < 0) quotient.degree = -1;
  else a.degree = divideDense(field.ring, a.c, a.degree, preparedDivisor(field.ring, space, b, 0), quotient.c);
  return listOf(newSequence({field.store(quotient), field.store(a)}));
}
// The result of an operation that writes its coefficients, no more than a product has.
template <class F, class Operation>
DAG combined(const F& field, Workspace& space, DAG operands, Operation operation) {
  auto a = field.load(space, operands[2]), b = field.load(space, operands[3]), result = a;
  result.c = field.ring.take(space, std::max({a.degree, b.degree, a.degree + b.degree, 0L}) + 1);
  result.degree = operation(field.ring, result.c, a, b);
  return field.store(result);
}
template <class F>
DAG multiplied(const F& field, Workspace& space, DAG operands) {
  return combined(field, space, operands,
                  [](auto& ring, auto* c, auto& a, auto& b) { return multiplyDense(ring, c, a, b); });
}
template <class F>
DAG added(const F& field, Workspace& space, DAG operands) {
  return combined(field, space, operands,
                  [](auto& ring, auto* c, auto& a, auto& b) { return addDense(ring, c, a, b); });
}
template <class F>
DAG subtracted(const F& field, Workspace& space, DAG operands) {
  return combined(field, space, operands,
                  [](auto& ring, auto* c, auto& a, auto& b) { return subtractDense(ring, c, a, b); });
}
template <class F>
DAG commonDivisor(const F& field, Workspace& space, DAG operands) {
  return field.store(gcdDense(field.ring, field.load(space, operands[2]), field.load(space, operands[3])));
}
// [g, s, t]
template <class F>
DAG cofactors(const F& field, Workspace& space, DAG operands) {
  const auto& ring = field.ring;
  auto a = field.load(space, operands[2]), b = field.load(space, operands[3]);
  auto result = gcdexDense(ring, space, a, b);
  auto product = a, t = a;
  product.c = ring.take(space, std::max({a.degree + result.s.degree, result.g.degree, 0L}) + 1);
  product.degree = multiplyDense(ring, product.c, a, result.s);
  t.degree = -1;
  if (b.degree >= 0) {
    auto rest = product;
    rest.c = ring.take(space, std::max(product.degree, result.g.degree) + 2);
    rest.degree = subtractDense(ring, rest.c, result.g, product);
    t.c = ring.take(space, std::max(rest.degree - b.degree, 0L) + 1);
    t.degree = std::max(rest.degree - b.degree, -1L);
    if (t.degree >= 0) divideDense(ring, rest.c, rest.degree, preparedDivisor(ring, space, b, 0), t.c);
  }
  return listOf(newSequence({field.store(result.g), field.store(result.s), field.store(t)}));
}
template <class F>
DAG powered(const F& field, Workspace& space, DAG operands) {
  auto a = field.load(space, operands[2]), b = field.load(space, operands[4]);
  DAG n = operands[3];
  if (!isInteger(n) || consneg(n)) KernelException("non-negative integer expected, but received %1", n);
  if (b.degree < 0) KernelException("division by zero");
  auto divisor = preparedDivisor(field.ring, space, b, b.degree);
  a.degree = divideDense(field.ring, a.c, a.degree, divisor, static_cast<typename F::Unit*>(nullptr));
  if (n == cons0) {
    if (a.degree < 0) KernelException("0^0 generated");
    a.degree = 0;
    field.ring.setSmall(a.c, 1);
    return field.store(a);
  }
  return field.store(a.degree < 0 ? a : powerDense(field.ring, space, a, exponentOf(space, n), divisor));
}
template <class F>
DAG resultant(const F& field, Workspace& space, DAG operands) {
  auto a = field.load(space, operands[2]), b = field.load(space, operands[3]);
  auto* r = field.ring.take(space, 1);
  resultantDense(field.ring, r, a, b);
  return field.storeElement(r);
}
template <class F>
DAG value(const F& field, Workspace& space, DAG operands) {
  auto a = field.load(space, operands[2]);
  auto *at = field.ring.take(space, 1), *r = field.ring.take(space, 1);
  field.loadElement(space, at, operands[3]);
  evaluateDense(field.ring, r, a, at);
  return field.storeElement(r);
}

template <class F>
auto monicOperand(const F& field, Workspace& space, DAG operands, typename F::Unit* lead) {
  auto f = field.load(space, operands[2]);
  if (f.degree < 0) KernelException("polynomial that is not zero expected");
  field.ring.copy(lead, field.ring.at(f.c, f.degree), 1);
  scaleDense(field.ring, f.c, f, invertedLead(field.ring, space, f));
  return f;
}
template <class F, class Step>
DAG foundParts(const F& field, Workspace& space, DAG operands, bool withLead, Step step) {
  auto* lead = field.ring.take(space, 1);
  auto f = monicOperand(field, space, operands, lead);
  FactorList<typename F::R> found(field.ring, space, std::max(f.degree, 1L));
  if (f.degree > 0) step(f, found);
  DAG list = field.listed(found, [&](auto g) { return field.store(g); });
  return withLead ? listOf(newSequence({field.storeElement(lead), list})) : list;
}
template <class F>
DAG factors(const F& field, Workspace& space, DAG operands) {
  return foundParts(field, space, operands, true,
                    [&](auto f, auto& found) { factorDense(field.ring, space, f, found); });
}
template <class F>
DAG squareFree(const F& field, Workspace& space, DAG operands) {
  return foundParts(field, space, operands, true, [&](auto f, auto& found) { squareFreeParts(field.ring, f, found); });
}
template <class F>
DAG byDegree(const F& field, Workspace& space, DAG operands) {
  return foundParts(field, space, operands, false, [&](auto f, auto& found) { distinctDegrees(field.ring, f, found); });
}
template <class F>
DAG irreducible(const F& field, Workspace& space, DAG operands) {
  auto* lead = field.ring.take(space, 1);
  auto f = monicOperand(field, space, operands, lead);
  return truth(f.degree > 0 && isIrreducible(field.ring, f));
}
template <class F>
DAG roots(const F& field, Workspace& space, DAG operands) {
  auto* lead = field.ring.take(space, 1);
  auto f = monicOperand(field, space, operands, lead);
  FactorList<typename F::R> linear(field.ring, space, std::max(f.degree, 1L));
  if (f.degree > 0) {
    auto part = partWithRoots(field.ring, space, f);
    if (part.degree > 0) equalDegrees(field.ring, part, 1, linear);
  }
  for (long i = 0; i < linear.count; ++i) {
    linear.numbers[i] = takeOutRoot(field.ring, space, f, linear.factors[i]);
    field.ring.negate(linear.factors[i].c, linear.factors[i].c);
  }
  return field.listed(linear, [&](auto g) { return field.storeElement(g.c); });
}

struct FieldOperation {
  const char* name;
  const char* operands;  // p a polynomial, e an element of the field, n an integer
  DAG (*small)(const Field<HardwareRing>&, Workspace&, DAG);
  DAG (*wide)(const Field<WideRing>&, Workspace&, DAG);
};
#define KOREL_FIELD_OPERATION(name, operands, function) \
  { name, operands, function<Field<HardwareRing>>, function<Field<WideRing>> }
constexpr FieldOperation operations[] = {
    KOREL_FIELD_OPERATION("Add", "pp", added),           KOREL_FIELD_OPERATION("DistDeg", "p", byDegree),
    KOREL_FIELD_OPERATION("Divide", "pp", divided),      KOREL_FIELD_OPERATION("Eval", "pe", value),
    KOREL_FIELD_OPERATION("Factors", "p", factors),      KOREL_FIELD_OPERATION("Gcd", "pp", commonDivisor),
    KOREL_FIELD_OPERATION("Gcdex", "pp", cofactors),     KOREL_FIELD_OPERATION("Irreduc", "p", irreducible),
    KOREL_FIELD_OPERATION("Multiply", "pp", multiplied), KOREL_FIELD_OPERATION("Powmod", "pnp", powered),
    KOREL_FIELD_OPERATION("Resultant", "pp", resultant), KOREL_FIELD_OPERATION("Roots", "p", roots),
    KOREL_FIELD_OPERATION("Sqrfree", "p", squareFree),   KOREL_FIELD_OPERATION("Subtract", "pp", subtracted),
};
#undef KOREL_FIELD_OPERATION

bool operandsFit(const FieldOperation& operation, DAG operands, DAG e, DAG m) {
  const std::size_t count = std::strlen(operation.operands);
  if (memberCount(operands) != count + 3 || !mVerify(e, m) || denseDegree(e) < 1) return false;
  DAG indeterminates;
  for (Word i = 0; i < count; ++i) {
    DAG operand = operands[i + 2];
    switch (operation.operands[i]) {
      case 'p':
        if (!m2Verify(operand, m) || operand[1][2] != e[1]) return false;
        if (indeterminates && operand[1] != indeterminates) return false;
        indeterminates = operand[1];
        break;
      case 'e':
        if (!isInteger(operand) && !(mVerify(operand, m) && operand[1] == e[1])) return false;
        break;
      default:
        if (!isInteger(operand)) return false;
    }
  }
  return true;
}

}  // namespace

DAG native::galoisOperation(const BuiltinCall& call) {
  DAG operands = call.arguments;
  const Word n = argumentCount(call);
  if (n < 4 || !isText(operands[1]) || !isInteger(operands[n])) wrongParameters(call);
  DAG e = operands[n - 1], m = operands[n];
  for (const FieldOperation& operation : operations) {
    if (!hasText(operands[1], operation.name)) continue;
    DAG name = naminstall(operation.name);
    if (!operandsFit(operation, operands, e, m)) KernelException("evalgf1: invalid arguments to function %1", name);
    if (!isPrimeModulus(m)) KernelException("prime modulus expected, but received %1", m);
    DAG names = operands[2][1];
    GuardedWorkspace space;
    auto run = [&](const auto& base, auto function) {
      using Base = std::remove_cvref_t<decltype(base)>;
      GaloisRing<Base> ring(base, space, load(base, space, e));
      return function(Field<Base>{ring, names[1], names[2], m}, space, operands);
    };
    if (isHardwareModulus(m)) return run(HardwareRing(m), operation.small);
    return run(WideRing(m, space), operation.wide);
  }
  wrongParameters(call);
}

}  // namespace korel
