#include "algebra/polynomials/coefficients.h"

#include "algebra/polynomials/coefficient_series.h"
#include "algebra/polynomials/degree.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/indeterminates.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/unique_pairs.h"
#include "eval/statements/assign.h"
#include "eval/structure/map.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct Wanted {
  DAG x;  // a NAME or TABLEREF
  DAG n;
};

DAG coefficientOf(const Wanted& wanted, DAG p);

DAG coefficientOfSum(const Wanted& wanted, DAG p) {
  DAG result = newl2(lengthOf(p), SUM);
  Word at = 1;
  for (Word i = 1; i < lengthOf(p); i += 2) {
    DAG part = coefficientOf(wanted, p[i]);
    if (part == cons0) continue;
    result[at++] = part;
    result[at++] = p[i + 1];
  }
  shorten(result, lengthOf(result), at);
  return simpl(result);
}

// The position of the pair that alone holds x, as an integer power of it; 0 for any other product.
Word powerPosition(DAG product, DAG x) {
  Word at = 0;
  for (Word i = 1; i < lengthOf(product); i += 2) {
    if (product[i] == x) {
      if (!isInteger(product[i + 1])) return 0;
      at = i;
    } else if (isObject(product[i]) && tagOf(product[i]) > NAME && hasOutsideIndices(product[i], x)) {
      return 0;
    }
  }
  return at;
}

DAG coefficientInSeries(const Wanted& wanted, DAG s) {
  if (s[1] != wanted.x) KernelException("unable to compute coeff");
  std::int64_t n = LongLongValue(wanted.n);
  for (Word i = 2; i + 1 < lengthOf(s); i += 2)
    if (static_cast<std::int32_t>(rawField(s, i + 1)) == n) return s[i];
  return cons0;
}

bool occurs(DAG p, DAG x) {
  if (isImmediate(p) || tagOf(p) <= NAME) return p == x;
  return hasOutsideIndices(p, x);
}

DAG coefficientOf(const Wanted& wanted, DAG p) {
  if (p == wanted.x) return wanted.n == cons1 ? cons1 : cons0;
  passWork(objectSteps);
  if (isTag(p, PROD)) {
    if (Word at = powerPosition(p, wanted.x)) return p[at + 1] == wanted.n ? simpl(copydel(p, at - 1, 2)) : cons0;
  }
  if (isTag(p, SUM) && lengthOf(p) > 3) return coefficientOfSum(wanted, p);
  if (!occurs(p, wanted.x)) return wanted.n == cons0 ? p : cons0;
  switch (tagOf(p)) {
    case SERIES: return coefficientInSeries(wanted, p);
    case SUM: return coefficientOfSum(wanted, p);
    default: {
      DAG series = seriesForCoefficient(p, wanted.x, LongLongValue(wanted.n));
      return coefficientOf(wanted, series);
    }
  }
}

// A fresh name takes the place of what is no name.
DAG coefficientOfExpression(DAG p, DAG x, DAG n) {
  DAG name = simpl(newLocalName("O"));
  DAG renamed = subs1(simpl(new2(EXPSEQ, simpl(new3(EQUATION, x, name)))), p);
  return coefficientOf({name, n}, renamed);
}

// Real or imaginary part: the coefficients of I in a number.
DAG partOfNumber(DAG number, DAG n) {
  if (n == cons0) return lengthOf(number) == 3 ? number[1] : cons0;
  return n == cons1 ? number[lengthOf(number) - 1] : cons0;
}

// The position of a factor that alone holds I, and is a number; 0 when there is none.
Word complexFactor(DAG product) {
  Word at = 0;
  for (Word i = 1; i < lengthOf(product); i += 2) {
    if (isTag(product[i], COMPLEX) && product[i + 1] == cons1 && at == 0) at = i;
    else if (has(product[i], sqrtm1) || has(product[i + 1], sqrtm1)) return 0;
  }
  return at;
}

// I stands in numbers, where no name can take its place.
DAG coefficientOfImaginaryUnit(DAG p, DAG n) {
  if (isTag(p, COMPLEX)) return partOfNumber(p, n);
  if (!has(p, sqrtm1)) return n == cons0 ? p : cons0;
  if (isTag(p, SUM)) {
    DAG sum = CopyAlg(p);
    for (Word i = 1; i < lengthOf(p); i += 2) sum[i] = coefficientOfImaginaryUnit(p[i], n);
    return simpl(sum);
  }
  if (isTag(p, PROD))
    if (Word at = complexFactor(p)) return simpl(NewPROD(partOfNumber(p[at], n), simpl(copydel(p, at - 1, 2))));
  return coefficientOfExpression(p, sqrtm1, n);
}

}  // namespace

DAG coeff(DAG p, DAG x, DAG n) {
  if (p == x) return n == cons1 ? cons1 : cons0;
  if (isTag(p, RTABLE)) {
    DAG operands[2] = {x, n};
    return simpl(MapFunction({[](DAG element, void* state) {
                                auto* it = static_cast<DAG*>(state);
                                return coeff(element, it[0], it[1]);
                              },
                              operands, OperandWalk::mapping},
                             p));
  }
  if (isNameOrIndexed(x)) return coefficientOf({x, n}, p);
  if (x == sqrtm1) return coefficientOfImaginaryUnit(p, n);
  if (!has(p, x)) return n == cons0 ? p : cons0;
  return coefficientOfExpression(p, x, n);
}

DAG builtin::coeff(const BuiltinCall& call) {
  const Word count = argumentCount(call);
  if (count < 2 || count > 3) wrongParameters(call);
  DAG p = call.arguments[1], x = call.arguments[2], n = cons1;
  if (count == 3) {
    n = call.arguments[3];
  } else if (isTag(x, PROD) && lengthOf(x) == 3 && isInteger(x[2])) {
    n = x[2];
    x = x[1];
  }
  if (!isInteger(n) || (isNumber(x) && x != sqrtm1)) wrongParameters(call);
  return korel::coeff(p, x, n);
}

// ---- leading and trailing coefficients

DAG lcoeff(DAG p, DAG variables, PolynomialEnd end, DAG* term) {
  DAG powers = newl2(2 * lengthOf(variables) - 1, PROD);
  Word at = 1;
  for (Word i = 1; i < lengthOf(variables) && !isNumber(p); ++i) {
    DAG d = degree(p, variables[i], end == PolynomialEnd::leading ? DegreeEnd::high : DegreeEnd::low);
    if (!isInteger(d)) KernelException("invalid argument for sign, lcoeff or tcoeff");
    p = coeff(p, variables[i], d);
    if (d == cons0) continue;
    powers[at++] = variables[i];
    powers[at++] = d;
  }
  shorten(powers, lengthOf(powers), at);
  if (term != nullptr) *term = simpl(powers);
  return p;
}

DAG signOf(DAG p, DAG variables) {
  DAG c = lcoeff(p, variables, PolynomialEnd::leading);
  if (!isNumber(c) && c != p) return signOf(c, indetsSequence(c));
  if (isTag(c, COMPLEX)) c = lengthOf(c) == 3 && !isZero(c[1]) ? c[1] : c[lengthOf(c) - 1];
  if (!isNumeric(c)) {
    if (variables != indetsSequence(c)) return signOf(c, indetsSequence(c));
    KernelException("invalid argument for sign, lcoeff or tcoeff");
  }
  return consneg(c) ? consm1 : cons1;
}

DAG withoutComplexLead(DAG p) {
  if (!hasid(p, COMPLEX)) return p;
  DAG lead = lcoeff(p, indetsSequence(p), PolynomialEnd::leading);
  return isTag(lead, COMPLEX) ? expand(simpl(NewPROD(p, simpl(new3(PROD, lead, consm1))))) : p;
}

namespace {

DAG endCoefficient(const BuiltinCall& call, PolynomialEnd end) {
  const Word n = argumentCount(call);
  if (n < 1 || n > 3 || (n == 3 && !isNameOrIndexed(call.arguments[3]))) wrongParameters(call);
  DAG p = call.arguments[1], term;
  DAG result = lcoeff(p, variablesArgument(call, 2, p), end, &term);
  if (n == 3) assign(evalname(call.arguments[3]), term);
  return result;
}

}  // namespace

DAG builtin::lcoeff(const BuiltinCall& call) { return endCoefficient(call, PolynomialEnd::leading); }
DAG builtin::tcoeff(const BuiltinCall& call) { return endCoefficient(call, PolynomialEnd::trailing); }

DAG builtin::sign(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || argumentCount(call) > 2) wrongParameters(call);
  DAG p = call.arguments[1];
  return signOf(p, variablesArgument(call, 2, p));
}

// ---- all coefficients

namespace {

// A product, taken apart into what is in the variables and the rest.
struct Split {
  DAG coefficient, term;
};

Split splitProduct(DAG p, DAG variables) {
  DAG rest = newl2(lengthOf(p), PROD), term = newl2(lengthOf(p), PROD);
  Word restAt = 1, termAt = 1;
  for (Word i = 1; i < lengthOf(p); i += 2) {
    const bool isVariable = isMember(p[i], variables);
    if (isVariable ? !isInteger(p[i + 1]) || consneg(p[i + 1]) : hasany(p[i], variables))
      KernelException("invalid arguments to coeffs");
    DAG into = isVariable ? term : rest;
    Word& at = isVariable ? termAt : restAt;
    into[at++] = p[i];
    into[at++] = p[i + 1];
  }
  shorten(rest, lengthOf(rest), restAt);
  shorten(term, lengthOf(term), termAt);
  return {simpl(rest), simpl(term)};
}

Split splitTerm(DAG p, DAG variables) {
  if (isMember(p, variables)) return {cons1, p};
  if (isImmediate(p) || tagOf(p) <= NAME) return {p, cons1};
  if (isTag(p, PROD)) return splitProduct(p, variables);
  if (hasany(p, variables)) KernelException("invalid arguments to coeffs");
  return {p, cons1};
}

// Terms in the order in which they first occur, each with the sum of what it is multiplied by.
CoefficientLists coefficientsOfSum(DAG p, DAG variables) {
  const Word count = (lengthOf(p) - 1) / 2;
  DAG parts = newl2(count + 1, EXPSEQ), terms = newl2(count + 1, EXPSEQ);
  for (Word i = 1; i <= count; ++i) {
    passWork(objectSteps);
    Split split = splitTerm(p[2 * i - 1], variables);
    parts[i] = split.coefficient;
    terms[i] = split.term;
  }
  // The sums of the coefficients of equal terms: their lengths, then their pairs.
  DAG firsts = firstOccurrences(&terms[1], count, 1);
  auto firstOf = [&](Word i) { return static_cast<Word>(immediateValue(firsts[i])) + 1; };
  DAG sizes = newl2(count + 1, BINARY);
  for (Word i = 1; i <= count; ++i) rawField(sizes, firstOf(i)) += 2;
  DAG sums = newl2(count + 1, EXPSEQ);
  for (Word i = 1; i <= count; ++i) {
    Word to = firstOf(i);
    if (to == i) {
      sums[i] = newl2(rawField(sizes, i) + 1, SUM);
      rawField(sizes, i) = 1;
    }
    Word& at = rawField(sizes, to);
    sums[to][at++] = parts[i];
    sums[to][at++] = p[2 * i];
  }
  Word kept = 0;
  for (Word i = 1; i <= count; ++i) {
    if (firstOf(i) != i) continue;
    DAG sum = simpl(sums[i]);
    if (sum == cons0) continue;
    parts[++kept] = sum;
    terms[kept] = terms[i];
  }
  shorten(parts, count + 1, kept + 1);
  shorten(terms, count + 1, kept + 1);
  if (kept == 0) return {newSequence({cons0}), newSequence({cons1})};
  return {parts, terms};
}

}  // namespace

CoefficientLists coeffs(DAG p, DAG variables) {
  if (isTag(p, SUM)) return coefficientsOfSum(p, variables);
  Split split = splitTerm(p, variables);
  return {newSequence({split.coefficient}), newSequence({split.term})};
}

DAG builtin::coeffs(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 1 || n > 3 || (n == 3 && !isNameOrIndexed(call.arguments[3]))) wrongParameters(call);
  DAG p = call.arguments[1];
  CoefficientLists lists = korel::coeffs(p, variablesArgument(call, 2, p));
  if (n == 3) assign(evalname(call.arguments[3]), simpl(lists.terms));
  return lists.coefficients;
}

}  // namespace korel
