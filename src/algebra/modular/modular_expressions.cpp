#include "algebra/modular/modular_expressions.h"

#include "algebra/modular/modular_polynomials.h"
#include "algebra/modular/modular_rings.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/map.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

struct Reduction {
  DAG modulus;
  bool symmetric;

  DAG operator()(DAG x) const { return mod(x, modulus, symmetric); }
  DAG integer(DAG x) const { return simpl(imod(x, modulus, symmetric)); }
  /// base^n for an integer base.
  DAG power(DAG base, DAG n) const { return integer(mpower(base, n, modulus)); }
};

DAG reducedRational(DAG x, const Reduction& reduce) {
  DAG inverse = mInverse(x[2], reduce.modulus);
  if (inverse == cons0 && reduce.modulus != cons1) mInverseError();
  return reduce.integer(mul(x[1], inverse));
}

DAG reducedComplex(DAG x, const Reduction& reduce) {
  DAG imaginary = reduce(x[lengthOf(x) - 1]);
  DAG real = lengthOf(x) == 3 ? reduce(x[1]) : cons0;
  if (imaginary == cons0) return real;
  return simpl(real == cons0 ? new2(COMPLEX, imaginary) : new3(COMPLEX, real, imaginary));
}

DAG reducedFirstField(DAG x, const Reduction& reduce) {
  DAG first = reduce(x[1]);
  return first == x[1] ? x : simpl(new3(tagOf(x), first, x[2]));
}

// Once more when something has changed: the simplifier may have added numbers up.
DAG reducedAgain(DAG before, DAG after, const Reduction& reduce) {
  after = simpl(after);
  return after == before ? after : reduce(after);
}

DAG reducedSum(DAG x, const Reduction& reduce) {
  DAG sum = CopyAlg(x);
  for (Word i = 1; i + 1 < lengthOf(x); i += 2) {
    if (isNumeric(x[i])) {
      sum[i] = reduce(x[i]);
      continue;
    }
    sum[i + 1] = reduce(x[i + 1]);
    if (!isNameOrIndexed(x[i])) sum[i] = reduce(x[i]);
  }
  return reducedAgain(x, sum, reduce);
}

DAG reducedProduct(DAG x, const Reduction& reduce) {
  DAG product = CopyAlg(x);
  for (Word i = 1; i + 1 < lengthOf(x); i += 2) {
    DAG base = reduce(x[i]);
    if (base == x[i]) continue;
    if (isInteger(base) && isInteger(x[i + 1])) {
      product[i] = reduce.power(base, x[i + 1]);
      product[i + 1] = cons1;
    } else {
      product[i] = base;
    }
  }
  return reducedAgain(x, product, reduce);
}

DAG reducedSeries(DAG x, const Reduction& reduce) {
  DAG series = CopyAlg(x);
  for (Word i = 2; i + 1 < lengthOf(x); i += 2)
    if (x[i] != order1) series[i] = reduce(x[i]);
  return simpl(series);
}

DAG reducedCall(DAG x, const Reduction& reduce) {
  DAG head = x[1], arguments = x[2];
  if (isName(head) && (hasText(head, "power") || hasText(head, "&^")) && memberCount(arguments) == 2) {
    DAG base = reduce(arguments[1]), exponent = arguments[2];
    if (isInteger(exponent) && isInteger(base)) return reduce.power(base, exponent);
    return simpl(newCall(head, {base, exponent}));
  }
  if (!isNameOrIndexed(head)) return x;
  DAG result = simpl(evalextf("mod/", head, libraryArguments(arguments, reduce.modulus)));
  return isEmptySequence(result) ? x : result;
}

DAG reducedMembers(DAG x, const Reduction& reduce) {
  DAG copy = CopyAlg(x);
  if (isAmong(x, TagSet{LIST, SET})) {
    copy[1] = reduce(x[1]);
  } else {
    for (Word i = 1; i < lengthOf(x); ++i) copy[i] = reduce(x[i]);
  }
  return simpl(copy);
}

DAG reduceElement(DAG x, void* state) { return (*static_cast<const Reduction*>(state))(x); }

}  // namespace

DAG mod(DAG x, DAG m, bool symmetric) {
  checkStack();
  passWork(objectSteps);
  Reduction reduce = {m, symmetric};
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: return reduce.integer(x);
    case RATIONAL: return reducedRational(x, reduce);
    case COMPLEX: return reducedComplex(x, reduce);
    case NAME: case TABLEREF: case CATENATE: case UNEVAL: return x;
    case POWER: case DCOLON: return reducedFirstField(x, reduce);
    case SUM: return reducedSum(x, reduce);
    case PROD: return reducedProduct(x, reduce);
    case SERIES: return reducedSeries(x, reduce);
    case FUNCTION: return reducedCall(x, reduce);
    case EQUATION: case INEQUAT: case EXPSEQ: case LIST: case SET: return reducedMembers(x, reduce);
    case RTABLE: return MapFunction({reduceElement, &reduce, OperandWalk::mapping}, x);
    default: KernelException("invalid argument for modp or mods");
  }
}

namespace {

// While the call runs the operator `mod` is this built-in: `mod/f` may use it.
DAG binmod(const BuiltinCall& call, const char* name, bool symmetric) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG x = call.arguments[1], m = call.arguments[2];
  if (!isInteger(m)) {
    if (isNumber(m) || !isAmong(m, algebraicTags)) wrongParameters(call);
    return unevaluatedCall(call);
  }
  if (isZeroImmediate(m)) return TriggerNumericEvent(divisionByZero, naminstall(name), x, m, ini("undefined"), true);
  EnvironmentChange change;
  changeEnvironmentWord(change, envMod, naminstall(name));
  DAG result = mod(x, simpl(absalg(m)), symmetric);
  restoreEnvironmentWord(change);
  return result;
}

}  // namespace

DAG builtin::modp(const BuiltinCall& call) { return binmod(call, "modp", false); }
DAG builtin::mods(const BuiltinCall& call) { return binmod(call, "mods", true); }

}  // namespace korel
