#include "eval/evaluate/evaluate.h"

#include "builtins/builtins.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/operand.h"
#include "eval/evaluate/select.h"
#include "eval/procedures/calls.h"
#include "eval/procedures/modules.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "library/repository/lookup.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// A value that last-name evaluation hides behind its name.
bool isHidden(DAG value) { return isAmong(value, TagSet{PROC, TABLE, MODDEF, MODULE}); }

[[gnu::noinline]] DAG evalNameObject(DAG x, DAG* lastName) {
  checkStack();
  DAG value;
  if (!isEnvironmentName(x) && (controlWord(x) & deferredBit) == 0) [[likely]] {
    if (lastName != nullptr) *lastName = x;
    if (!x[1]) return x;
    value = eval(x[1], lastName);
  } else {
    if (x == ini("%") || x == ini("%%") || x == ini("%%%")) return valuenv(x, true, lastName);
    if (lastName != nullptr) *lastName = x;
    value = valuenv(x, true, lastName);
  }
  if (lastName != nullptr) return value;
  return isHidden(value) ? x : value;
}

// A name instance of a frame, or what a captured local is bound to: one level only.
DAG evalInstance(DAG x, DAG* lastName) {
  if (!isName(x)) return lastName != nullptr && isNameOrIndexed(x) ? eval(x, lastName) : x;
  // A local that was stored with what shares it is fetched when it is asked for.
  if (!x[1] && (controlWord(x) & deferredBit) != 0) [[unlikely]]
    RetrieveName(x);
  DAG value = x[1];
  if (lastName == nullptr) return !value || isTag(value, PROC) || isTag(value, TABLE) ? x : value;
  *lastName = x;
  if (!value) return x;
  return isNameOrIndexed(value) ? eval(value, lastName) : value;
}

[[gnu::noinline]] DAG evalLocal(DAG x, DAG* lastName) { return evalInstance(evparloc(x), lastName); }

[[gnu::noinline]] DAG evalParameter(DAG x, DAG* lastName) {
  DAG value = evparloc(x);
  return lastName != nullptr && isNameOrIndexed(value) ? eval(value, lastName) : value;
}

[[gnu::noinline]] DAG evalLexical(DAG x, DAG* lastName) {
  DAG value = evparloc(x);
  if (static_cast<std::int32_t>(rawField(x, 1)) <= 0)
    return lastName != nullptr && isNameOrIndexed(value) ? eval(value, lastName) : value;
  if (!isTag(value, NAME)) return value;
  return evalInstance(value, lastName);
}

// Every field evaluated from `from` on in steps of `step`; the object is copied at the first change.
DAG evalFields(DAG x, Word from = 1, Word step = 1) {
  passWork(objectSteps);
  return withFields(x, from, step, [](DAG field) { return evalOperand(field); });
}

// Sums and products that hold rtables go to the library as a whole.
DAG combineRtables(DAG x) {
  bool sum = hasTag(x, SUM);
  DAG entries = newl2((lengthOf(x) - 1) / 2 + 1, EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(x); i += 2, ++at) {
    DAG element = x[i], factor = x[i + 1];
    if (!isTag(element, RTABLE)) {
      entries[at] = new3(tagOf(x), element, factor);
    } else if (factor == cons1) {
      entries[at] = element;
    } else {
      entries[at] = eval(newCall(naminstall(sum ? "rtable/Product" : "rtable/Power"), {element, factor}));
    }
  }
  return eval(new3(FUNCTION, naminstall(sum ? "rtable/Sum" : "rtable/Product"), entries));
}

TagSet tagsOfTerms(DAG x) {
  TagSet tags;
  for (Word i = 1; i < lengthOf(x); i += 2) tags = tags | TagSet{tagOf(x[i])};
  return tags;
}

// Adds `value` * `factor` to `small` where all are small integers and the sum is one of the machine; else false.
[[gnu::always_inline]] inline bool gatherSmall(std::int64_t& small, DAG value, DAG factor) {
  if ((value.word & factor.word & 1) == 0 || value == consm0) return false;
  const std::int64_t product =
      std::int64_t{static_cast<std::int32_t>(value.word) >> 1} * (static_cast<std::int32_t>(factor.word) >> 1);
  std::int64_t sum;
  if (__builtin_add_overflow(small, product, &sum)) return false;
  small = sum;
  return true;
}

// The sum from its term `i` on, whose value is `stopped`. The terms before were numbers, of the total `folded`, or
// there are none and `folded` is 0.
[[gnu::noinline]] DAG evalSumFrom(DAG x, Word i, DAG folded, DAG stopped, std::uint64_t since) {
  passWork(objectSteps);
  Word n = lengthOf(x);
  DAG result;
  if (folded) {
    result = newl2(n - i + 3, SUM);
    result[1] = folded;
    result[2] = cons1;
    result[3] = stopped;
    result[4] = x[i + 1];
    for (Word k = i + 2, at = 5; k < n; k += 2, at += 2) {
      result[at + 1] = x[k + 1];
      result[at] = eval(x[k]);
    }
  } else {
    CopyOnChange copy(x);
    copy.set(1, stopped);
    for (Word k = 3; k < n; k += 2) copy.set(k, eval(x[k]));
    result = copy.result;
  }
  const TagSet kinds = tagsOfTerms(result);
  if (kinds.contains(RTABLE)) return combineRtables(result);
  return noteValue(x, kinds.contains(LIST) ? withListsAdded(result) : result, since);
}

// The sum whose term `i` has the value `value` and whose terms before were small integers, in all `small`. Numeric
// terms are folded while they come first; from the first other term on, the rest is a SUM.
[[gnu::always_inline]] inline DAG evalSumOfNumbers(DAG x, Word i, std::int64_t small, DAG value, std::uint64_t since) {
  const Word n = lengthOf(x);
  DAG folded;
  for (;;) {
    DAG factor = x[i + 1];
    if (!gatherSmall(small, value, factor)) {
      if (i > 1 && (small != 0 || !folded)) {
        // What has been gathered may be 0, which is a term all the same.
        DAG gathered = NewInteger(small);
        folded = folded ? add(folded, gathered) : gathered;
        small = 0;
      }
      if (!isNumeric(value)) return evalSumFrom(x, i, folded, value, since);
      DAG product = factor == cons1 ? value : mul(factor, value);
      folded = folded ? add(folded, product) : product;
    }
    i += 2;
    if (i >= n) break;
    value = evalOperand(x[i]);
  }
  if (folded == consm0 && n > 3) return NewInteger(small);
  return small == 0 ? folded : add(folded, NewInteger(small));
}

// Most sums in loops are of a few small integers (bench/programs/long_loop.krl, fibonacci.krl).
[[gnu::noinline]] DAG evalSum(DAG x) {
  checkStack();
  const std::uint64_t since = evaluationClock;
  if (DAG known = knownValue(x)) [[unlikely]]
    return known;
  const Word n = lengthOf(x);
  std::int64_t small = 0;
  for (Word i = 1; i < n; i += 2) {
    DAG value = evalOperand(x[i]);
    if (!gatherSmall(small, value, x[i + 1])) [[unlikely]]
      return evalSumOfNumbers(x, i, small, value, since);
  }
  return NewInteger(small);
}

// The product of factors that are all exact numbers with integer exponents, or 0 when `simpl` must look
// at them. It takes the same steps as the simplifier would, without the raw PROD in between.
DAG exactProduct(DAG x, const DAG* bases, Word count) {
  DAG product = cons1;
  for (Word k = 0; k < count; ++k) {
    DAG base = bases[k], exponent = x[2 * k + 2];
    if (!isRationalNumber(base) || base == consm0 || !isImmediate(exponent)) return DAG();
    std::int32_t n = immediateValue(exponent);
    if (n < 1 && (n == 0 || base == cons0)) return DAG();
    product = mul(product, n == 1 ? base : power(base, n));
  }
  return product;
}

// Evaluated bases, exact numbers left out, in a PROD.
[[gnu::noinline]] DAG productOf(DAG x, const DAG* bases, Word count, std::uint64_t since) {
  passWork(objectSteps);
  CopyOnChange copy(x);
  for (Word k = 0; k < count; ++k) copy.set(2 * k + 1, bases[k]);
  DAG result = copy.result;
  return tagsOfTerms(result).contains(RTABLE) ? combineRtables(result) : noteValue(x, result, since);
}

constexpr Word fewFactors = 4;

[[gnu::noinline]] DAG evalLongProduct(DAG x, std::uint64_t since) {
  DAG result = evalFields(x, 1, 2);
  return tagsOfTerms(result).contains(RTABLE) ? combineRtables(result) : noteValue(x, result, since);
}

[[gnu::noinline]] DAG evalProduct(DAG x) {
  checkStack();
  const std::uint64_t since = evaluationClock;
  if (DAG known = knownValue(x)) [[unlikely]]
    return known;
  Word count = (lengthOf(x) - 1) / 2;
  if (count > fewFactors) return evalLongProduct(x, since);
  DAG bases[fewFactors];
  for (Word k = 0; k < count; ++k) bases[k] = evalOperand(x[2 * k + 1]);
  if (count == 2 && isImmediate(bases[0]) && isImmediate(bases[1]) && x[2] == cons1 && x[4] == cons1 &&
      bases[0] != consm0 && bases[1] != consm0) [[likely]]
    return NewInteger(std::int64_t{static_cast<std::int32_t>(bases[0].word) >> 1} *
                      (static_cast<std::int32_t>(bases[1].word) >> 1));
  if (isRationalNumber(bases[0]))
    if (DAG product = exactProduct(x, bases, count)) return product;
  return productOf(x, bases, count, since);
}

[[gnu::noinline]] DAG evalPower(DAG x) {
  checkStack();
  const std::uint64_t since = evaluationClock;
  if (DAG known = knownValue(x)) [[unlikely]]
    return known;
  DAG result = evalFields(x);
  if (isTag(result[1], RTABLE) || isTag(result[2], RTABLE))
    return eval(newCall(naminstall("rtable/Power"), {result[1], result[2]}));
  return noteValue(x, result, since);
}

[[gnu::noinline]] DAG evalSeries(DAG x) {
  passWork(objectSteps);
  return withReferences(x, [](DAG field) { return evalOperand(field); });
}

[[gnu::noinline]] DAG evalAllFields(DAG x) {
  checkStack();
  const std::uint64_t since = evaluationClock;
  if (DAG known = knownValue(x)) [[unlikely]]
    return known;
  return noteValue(x, evalFields(x), since);
}

[[gnu::noinline]] DAG evalMember(DAG x, DAG* lastName) {
  DAG member = evalname(x);
  return isTag(member, NAME) ? eval(member, lastName) : member;
}

[[gnu::noinline]] DAG evalConcatenation(DAG x, DAG* lastName) {
  checkStack();
  DAG name = evalname(x);
  return isTag(name, CATENATE) ? name : eval(name, lastName);
}

[[gnu::noinline]] DAG evalTruth(DAG x) {
  checkStack();
  return evalbool(x);
}

[[gnu::noinline]] DAG evalModuleDefinition(DAG x) {
  DAG definition = evparloc(x);
  DAG name = definition[moddefName] == null ? ini("unknown") : definition[moddefName];
  return EvaluateModuleDefinition(definition, name);
}

[[gnu::noinline]] DAG evalFloatObject(DAG x) {
  if (!isTag(x[2], NAME) || isNumeric(x[1])) return x;
  DAG mantissa = eval(x[1]);
  return isNumeric(mantissa) ? simpl(new3(FLOAT, mantissa, x[2])) : x;
}

[[gnu::noinline]] DAG evalHardwareFloat(DAG x) { return eval(HFloatToFloat(x)); }

}  // namespace

// A step of every evaluation: each case that works is a function of its own, to which this one jumps without
// a stack frame (bench/programs/fibonacci.krl).
DAG eval(DAG x, DAG* lastName) {
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case COMPLEX: case TABLE: case STRING: case RTABLE: case ZPPOLY:
    case MODULE:
      return x;
    case HFLOAT: return evalHardwareFloat(x);
    case FLOAT: return isImmediate(x[2]) ? x : evalFloatObject(x);
    case NAME:
      if (DAG value = constantOfName(x)) {
        if (lastName != nullptr) *lastName = x;
        return value;
      }
      return evalNameObject(x, lastName);
    case LOCAL: return evalLocal(x, lastName);
    case PARAM: return evalParameter(x, lastName);
    case LEXICAL: return evalLexical(x, lastName);
    case MEMBER: return evalMember(x, lastName);
    case TABLEREF: return evalTableReference(x, lastName);
    case CATENATE: return evalConcatenation(x, lastName);
    case SUM: return evalSum(x);
    case PROD: return evalProduct(x);
    case POWER: return evalPower(x);
    case SERIES: return evalSeries(x);
    case FUNCTION: return evalFunction(x);
    case UNEVAL: return unquoted(x[1]);
    case DCOLON: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case EXPSEQ: case LIST: case RANGE: case SET:
      return evalAllFields(x);
    case AND: case NOT: case OR: return evalTruth(x);
    case PROC: return evparloc(x);
    case MODDEF: return evalModuleDefinition(x);
    default: KernelException("invalid expression");
  }
}

}  // namespace korel
