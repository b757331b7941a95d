#include "eval/structure/map.h"

#include "numbers/arithmetic.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "eval/structure/operands.h"
#include "eval/types/types.h"

namespace korel {

namespace {


// A value that evaluates to itself.
bool isConstant(DAG x) {
  if (isImmediate(x)) return true;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case STRING: return true;
    default: return false;
  }
}

// ---- each kind of object

DAG mapSequence(const OperandWalk& walk, DAG sequence) {
  Word n = lengthOf(sequence);
  DAG result = newl2(n, EXPSEQ);
  Word used = 1;
  for (Word i = 1; i < n; ++i) {
    ++evaluationLevel;
    DAG value = walk.worker(sequence[i], walk.state);
    --evaluationLevel;
    if (!isImmediate(value)) {
      value = simpl(value);
      // What the call made lives on in the result, whose level is this one.
      updategen(value);
    }
    // An empty sequence has no place in a sequence: the simplifier would make another one without it.
    if (value != null) result[used++] = value;
    collectInLoop();
  }
  if (used != n) shorten(result, n, used);
  return simpl(result);
}

DAG mapFields(const OperandWalk& walk, DAG x, Word from, Word end, Word step) {
  DAG result = CopyAlg(x);
  for (Word i = from; i < end; i += step)
    if (x[i]) result[i] = walk.worker(x[i], walk.state);
  return result;
}

// Terms or factors `i` of `count` in the view of `op`, each with coefficient or exponent 1.
DAG mapPairs(const OperandWalk& walk, DAG x, Tag tag, std::int64_t count, DAG (*part)(std::int64_t i, DAG x)) {
  DAG result = newl2(static_cast<Word>(2 * count + 1), tag);
  Word used = 1;
  for (std::int64_t i = 1; i <= count; ++i) {
    DAG value = simpl(walk.worker(part(i, x), walk.state));
    if (walk.drops && value == null) continue;
    result[used] = value;
    result[used + 1] = cons1;
    used += 2;
  }
  if (used != lengthOf(result)) shorten(result, lengthOf(result), used);
  return result;
}

struct EntryWalk {
  const OperandWalk& walk;
  DAG fresh;
};

// Keys stay; an entry that is dropped goes with its key. The walk is over a copy: what is called may store.
DAG mapEntries(const OperandWalk& walk, DAG entries) {
  EntryWalk e{walk, newhashtab(lengthOf(entries) - 1)};
  hashforeach(
      copyhashtab(entries),
      [](void* arg, PairAddress pair) {
        auto& w = *static_cast<EntryWalk*>(arg);
        DAG key = pairKey(pair);
        DAG value = simpl(w.walk.worker(pairValue(pair), w.walk.state));
        if (!w.walk.drops || value != null) hashinsert(key.word, value, w.fresh);
        return true;
      },
      &e);
  return e.fresh;
}

DAG mapPolynomial(const OperandWalk& walk, DAG x) {
  DAG result = CopyAlg(x);
  bool raw = hasRawCoefficients(x);
  for (std::int64_t i = 1, n = numterms(x); i <= n; ++i) {
    DAG value = simpl(walk.worker(op1(i, x), walk.state));
    bool fits = isInteger(value) && !consneg(value) && compcon(value, x[2]) < 0;
    if (!fits || (raw && !isImmediate(value))) KernelException("invalid map onto ZPPOLY");
    if (raw) rawField(result, i + 2) = static_cast<Word>(immediateValue(value));
    else result[i + 2] = value;
  }
  Word n = lengthOf(result), length = n;
  while (length > 3 && (raw ? rawField(result, length - 1) == 0 : result[length - 1] == cons0)) --length;
  if (length != n) shorten(result, n, length);
  return result;
}

}  // namespace

void cannotBeMapped() {
  KernelException("procs, params, locals, lexicals, and modules cannot be mapped");
}

bool isMappedWhole(DAG x) {
  if (isImmediate(x)) return true;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING:
    case NAME: case MEMBER: case TABLEREF: case PROC: case MODDEF: case MODULE:
    case BINARY: case GARBAGE: case FOREIGN: case CONTROL: case DEBUG:
      return true;
    default: return false;
  }
}

DAG MapFunction(const OperandWalk& walk, DAG x) {
  if (isMappedWhole(x)) return simpl(walk.worker(x, walk.state));
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case LOCAL: case PARAM: case LEXICAL: cannotBeMapped();
    case RTABLE: KernelException(walk.rtableText, naminstall("rtable"));
    case EXPSEQ: return mapSequence(walk, x);
    case LIST: case SET: {
      DAG body = mapSequence(walk, x[1]);
      DAG result = CopyAlg(x);
      result[1] = body;
      return simpl(result);
    }
    case TABLE: {
      if (!isTag(x[3], HASHTAB)) return x;
      DAG entries = mapEntries(walk, x[3]);
      return simpl(new4(TABLE, x[1], x[2], entries));
    }
    case HASHTAB: return mapEntries(walk, x);
    case FUNCTION: {
      DAG body = mapSequence(walk, x[2]);
      DAG result = CopyAlg(x);
      result[2] = body;
      return simpl(result);
    }
    case ZPPOLY: return simpl(mapPolynomial(walk, x));
    case SERIES: return simpl(mapFields(walk, x, 2, n, 2));
    case SUM:
      if (n >= 5) return simpl(withListsAdded(mapPairs(walk, x, SUM, numterms(x), mterm)));
      return simpl(mapPairs(walk, x, PROD, numterms(x), fact));
    case PROD:
      if (n >= 5) return simpl(mapPairs(walk, x, PROD, numterms(x), fact));
      return simpl(mapFields(walk, new3(POWER, x[1], x[2]), 1, 3, 1));
    default: {
      ReferenceFields fields = referenceFields(x);
      return simpl(mapFields(walk, x, fields.first, fields.end, fields.step));
    }
  }
}

// ---- calls

DAG applyTo(DAG f, DAG y, DAG x, DAG extra) {
  // A number is the function of that constant value: what x -> 1 becomes.
  if (isNumeric(f)) return f;
  Word more = lengthOf(extra) - 1, at = 1;
  DAG arguments = newl2(more + (y ? 3 : 2), EXPSEQ);
  if (y) arguments[at++] = y;
  arguments[at++] = isConstant(x) ? x : new2(UNEVAL, new2(EXPSEQ, x));
  for (Word i = 1; i <= more; ++i) arguments[at++] = extra[i];
  return eval(new3(FUNCTION, f, arguments));
}

namespace {

struct Mapping {
  DAG f, y, extra;
};

DAG callWorker(DAG operand, void* state) {
  auto& m = *static_cast<Mapping*>(state);
  return applyTo(m.f, m.y, operand, m.extra);
}

// `map(type, x, t)`: the test itself, without the making of a call.
DAG typeWorker(DAG operand, void* state) {
  auto& m = *static_cast<Mapping*>(state);
  return type(operand, m.extra[1]) ? ini("true") : ini("false");
}

DAG mapOver(DAG f, DAG y, DAG x, DAG extra) {
  Mapping mapping{f, y, extra};
  bool test = f == ini("type") && !y && lengthOf(extra) == 2;
  return MapFunction({test ? typeWorker : callWorker, &mapping, false, "invalid map onto %1"}, x);
}

DAG rest(DAG arguments, Word taken) {
  Word n = lengthOf(arguments) - 1;
  return n > taken ? copysub(arguments, taken, n - taken) : null;
}

}  // namespace

DAG builtin::map(const BuiltinCall& call) {
  if (argumentCount(call) < 2) wrongParameters(call);
  DAG args = call.arguments;
  return mapOver(args[1], DAG(), args[2], rest(args, 2));
}

DAG builtin::map2(const BuiltinCall& call) {
  if (argumentCount(call) < 3) wrongParameters(call);
  DAG args = call.arguments;
  return mapOver(args[1], args[2], args[3], rest(args, 3));
}

}  // namespace korel
