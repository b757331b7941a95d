#include "algebra/polynomials/expand.h"

#include <algorithm>

#include "algebra/float_context.h"
#include "algebra/polynomial_types.h"
#include "algebra/polynomials/expanded_size.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "store/copy_on_change.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/pairs.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool hasBothParts(DAG x) { return isTag(x, COMPLEX) && lengthOf(x) == 3; }

// ---- products of two sums

// From here on the library multiplies: lengths in words of the two sums.
bool isBigProduct(std::int64_t la, std::int64_t lb) { return (la - 5) * (lb - 5) > 400 && la * lb > 2500; }

DAG asSum(DAG x) { return isTag(x, SUM) || isTag(x, COMPLEX) ? x : new3(SUM, x, cons1); }

// A raw SUM with room for `pairs` of them.
DAG newSum(std::int64_t pairs) {
  if (2 * pairs + 1 > maxLength) KernelException("object too large");
  return newl2(static_cast<Word>(2 * pairs + 1), SUM);
}

// Each term times both parts of the complex number.
DAG timesComplex(DAG sum, DAG complex) {
  const Word n = lengthOf(sum);
  DAG result = newSum(std::int64_t{n - 1} * (lengthOf(complex) - 1) / 2);
  Word at = 1;
  for (Word i = 1; i < n; i += 2) {
    if (lengthOf(complex) == 3) {
      result[at++] = sum[i];
      result[at++] = mul(sum[i + 1], complex[1]);
    }
    result[at++] = simpl(NewPROD(sqrtm1, sum[i]));
    result[at++] = mul(sum[i + 1], imaginaryPartOf(complex));
  }
  return simpl(result);
}

// Product of the terms of two sums, as a term: monomials as they are, others expanded once more.
DAG productOfTerms(DAG a, DAG b) {
  if (isTag(a, COMPLEX) || isTag(b, COMPLEX)) return exprod(a, b);
  bool plain = (isNumeric(a) || monomial(a)) && (isNumeric(b) || monomial(b));
  DAG product = NewPROD(a, b);
  return plain ? product : expand(simpl(product));
}

// The products of two operands before like ones are merged: words of each term, with its pair and its place in the
// table of simplified objects, on average.
void checkRoomForProducts(DAG a, DAG b) {
  auto wordsOfTerms = [](DAG sum) {
    double words = 0;
    for (Word i = 1; i < lengthOf(sum); i += 2) words += isTag(sum[i], PROD) ? lengthOf(sum[i]) : 3;
    return words / pairCount(sum);
  };
  const double terms = static_cast<double>(pairCount(a)) * pairCount(b);
  checkRoom(terms, terms * (wordsOfTerms(a) + wordsOfTerms(b) + 4));
}

DAG timesSum(DAG a, DAG b) {
  const Word la = lengthOf(a), lb = lengthOf(b);
  constexpr std::int64_t fewWords = 100000;
  if (std::int64_t{la} * lb > fewWords) checkRoomForProducts(a, b);
  DAG result = newSum(std::int64_t{la - 1} / 2 * ((lb - 1) / 2));
  Word at = 1;
  for (Word i = 1; i < la; i += 2) {
    passWork(std::int64_t{lb} * objectSteps);
    for (Word j = 1; j < lb; j += 2) {
      result[at++] = productOfTerms(a[i], b[j]);
      DAG c = result[at++] = mul(a[i + 1], b[j + 1]);
      if (isObject(c)) passWork(lengthOf(c));
    }
  }
  return simpl(result);
}

}  // namespace

DAG exprod(DAG a, DAG b) {
  a = asSum(a);
  b = asSum(b);
  if (isBigProduct(lengthOf(a), lengthOf(b))) return evalsysf("expand/bigprod", newSequence({simpl(a), simpl(b)}));
  if (isTag(a, COMPLEX) && isTag(b, COMPLEX)) return simpl(cxmul(a, b));
  if (isTag(a, COMPLEX) && isTag(b, COMPLEX)) return NewPROD(a, b);
  if (isTag(b, COMPLEX)) return timesComplex(a, b);
  if (isTag(a, COMPLEX)) return timesComplex(b, a);
  return timesSum(a, b);
}

namespace {

// Long coefficients are made anew for each pair of terms, and are not given back before the end. Fractions may shorten
// each other.
void checkRoomForCoefficients(DAG a, DAG b) {
  struct Coefficients {
    double words = 0, whole = 0;
    explicit Coefficients(DAG sum) {
      for (Word i = 2; i < lengthOf(sum); i += 2) {
        if (isTag(sum[i], RATIONAL)) continue;
        ++whole;
        if (!isImmediate(sum[i])) words += lengthOf(sum[i]);
      }
    }
  } ofA(a), ofB(b);
  checkRoom(0, ofA.words * ofB.whole + ofB.words * ofA.whole);
}

}  // namespace

DAG productByTerms(DAG a, DAG b) {
  constexpr std::int64_t mostPairs = 1 << 20;  // of a sum before like terms are merged
  a = asSum(a);
  b = asSum(b);
  if (isTag(a, COMPLEX) && isTag(b, COMPLEX)) return NewPROD(a, b);
  if (isTag(b, COMPLEX)) return timesComplex(a, b);
  if (isTag(a, COMPLEX)) return timesComplex(b, a);
  checkRoomForCoefficients(a, b);
  const auto rows = static_cast<Word>(std::max<std::int64_t>(1, mostPairs / lengthOf(b)));
  DAG sum = cons0;
  for (Word first = 1; first < lengthOf(a); first += 2 * rows) {
    const Word end = std::min(first + 2 * rows, lengthOf(a));
    DAG part = simpl(timesSum(copysub(a, first - 1, end - first), b));
    sum = sum == cons0 ? part : simpl(new5(SUM, sum, cons1, part, cons1));
  }
  return sum;
}

DAG exlistprod(DAG a, DAG b) {
  bool first = isTag(a, LIST), second = isTag(b, LIST);
  if (first == second) return NewPROD(a, b);
  DAG list = first ? a : b, factor = first ? b : a;
  DAG members = CopyAlg(list[1]);
  for (Word i = 1; i < lengthOf(members); ++i) members[i] = exprod(members[i], factor);
  return simpl(withField(list, 1, simpl(members)));
}

namespace {

// ---- by tag

DAG expandFields(DAG x, Word from, Word step) {
  DAG result = withFields(x, from, step, [](DAG field) { return expand(field); });
  return result == x ? x : simpl(result);
}

// b^n for a sum b and n > 1: a small power by one product after the other.
DAG expandPower(DAG b, DAG n) {
  constexpr std::int64_t smallest = 33;  // (n - 2) * (words of b - 1) from which the library works
  if (!isImmediate(n) || (immediateValue(n) - 2) * std::int64_t{lengthOf(b) - 1} >= smallest)
    return evalsysf("expand/bigpow", newSequence({b, n}));
  DAG result = b;
  for (std::int32_t k = immediateValue(n); k > 1; --k) result = exprod(result, b);
  return result;
}

// A product of atoms with exponents that are atoms: nothing in it can be expanded.
bool isProductOfAtoms(DAG x) {
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isImmediate(x[i]) && (tagOf(x[i]) > TABLEREF || isTag(x[i], COMPLEX))) return false;
  return true;
}

// Sums among the factors are multiplied out one after the other, lists joined, what is left simplified.
DAG expandProduct(DAG x) {
  checkSizeOfProduct(x);
  CopyOnChange rest(x);
  DAG sums = cons1, lists = cons1, others = cons1;
  for (Word i = 1; i < lengthOf(x); i += 2) {
    DAG b = expand(x[i]), e = x[i + 1];
    if (isTag(b, SUM) && isInteger(e) && !consneg(e) && e != cons1) {
      b = expandPower(b, e);
      e = cons1;
    }
    if (e != cons1 || !(isTag(b, SUM) || hasBothParts(b) || isTag(b, LIST) || x[i + 1] != cons1)) {
      rest.set(i, b);
      continue;
    }
    rest.set(i, cons1);
    rest.set(i + 1, cons1);
    if (isTag(b, LIST)) {
      if (lists == cons1) lists = b;
      else others = simpl(NewPROD(others, b));
    } else {
      sums = sums == cons1 ? b : exprod(sums, b);
    }
  }
  DAG result = rest.changed() ? simpl(rest.result) : x;
  if (sums != cons1) result = result == cons1 ? sums : exprod(result, sums);
  if (lists != cons1) result = result == cons1 ? lists : simpl(exlistprod(result, lists));
  if (others != cons1) result = simpl(NewPROD(result, others));
  return result;
}

// The call stays when the library knows nothing of it.
DAG expandCall(DAG x) {
  DAG head = x[1];
  if (isTag(head, FUNCTION) && head[1] == ini("@@") && lengthOf(asSequence(head[2])) == 3)
    return evalsysf("expand/@@_call", newSequence({head[2][1], head[2][2], x[2]}));
  if (!isNameOrIndexed(head)) return x;
  DAG result = evalextf("expand/", head, x[2]);
  return result == null ? x : result;
}

bool isOperator(DAG procedure) { return isMember(ini("operator"), asSequence(optionsOf(procedure))); }

DAG expandByTag(DAG x) {
  switch (tagOf(x)) {
    case FUNCTION: return expandCall(x);
    case SERIES: {
      DAG result = withFields(x, referenceFields(x), [](DAG field) { return expand(field); });
      return result == x ? x : simpl(result);
    }
    case PROC: return isOperator(x) ? evalsysf("expand/operator", x) : x;
    case DCOLON: {
      DAG first = expand(x[1]);
      return first == x[1] ? x : simpl(new3(DCOLON, first, x[2]));
    }
    case POWER: return evalsysf("expand/power", newSequence({x[1], x[2]}));
    case SUM: return expandFields(x, 1, 2);
    case LIST: case SET: {
      DAG members = expand(x[1]);
      return members == x[1] ? x : simpl(withField(x, 1, members));
    }
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case EXPSEQ: return expandFields(x, 1, 1);
    case PROD: return expandProduct(x);
    default: return x;
  }
}

}  // namespace

DAG expand(DAG x) {
  if (isImmediate(x) || tagOf(x) <= TABLEREF) return x;
  if (isTag(x, PROD) && isProductOfAtoms(x)) return x;
  checkStack();
  passWork(objectSteps);
  if (isTag(x, EXPSEQ)) return expandByTag(x);
  if (DAG known = recall(Remembering::expand, x); known != absent) return known;
  DAG result = simpl(expandByTag(x));
  memorize(Remembering::expand, x, result);
  return result;
}

namespace {

// `x` expanded with a name in place of each of the expressions kept, members of `kept` from `from` on.
DAG expandWithout(DAG x, DAG kept, Word from) {
  const Word n = lengthOf(kept) - from;
  DAG freezing = newl2(n + 1, EXPSEQ), thawing = newl2(n + 1, EXPSEQ);
  for (Word i = 1; i <= n; ++i) {
    DAG part = kept[from + i - 1], name = simpl(newLocalName("O"));
    freezing[i] = simpl(new3(EQUATION, part, name));
    thawing[i] = simpl(new3(EQUATION, name, part));
  }
  DAG frozen = subs1(simpl(freezing), x);
  return subs1(simpl(thawing), expand(frozen));
}

}  // namespace

DAG builtin::expand(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 1) wrongParameters(call);
  DAG x = call.arguments[1];
  return inFloatContextOf(x, [&] { return n == 1 ? korel::expand(x) : expandWithout(x, call.arguments, 2); });
}

}  // namespace korel
