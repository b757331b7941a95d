#include "eval/structure/map.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/structure/kinds.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

// ---- the walk

DAG mapSequence(const OperandWalk& walk, DAG sequence) {
  Word n = lengthOf(sequence);
  DAG result = newl2(n, EXPSEQ);
  Word used = 1;
  for (Word i = 1; i < n; ++i) {
    ++evaluationLevel;
    DAG value = walk(sequence[i]);
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
    if (x[i]) result[i] = walk(x[i]);
  return result;
}

DAG MapFunction(const OperandWalk& walk, DAG x) {
  const Kind& kind = kindOf(x);
  if (kind.isSingle) return simpl(walk(x));
  if (kind.map != nullptr) return kind.map(walk, x);
  if (kind.body != 0) {
    DAG body = mapSequence(walk, x[kind.body]);
    DAG result = CopyAlg(x);
    result[kind.body] = body;
    return simpl(result);
  }
  ReferenceFields fields = referenceFields(x);
  return simpl(mapFields(walk, x, fields.first, fields.end, fields.step));
}

// ---- calls

// Values that evaluate to themselves.
constexpr TagSet selfEvaluatingTags = rationalTags | TagSet{STRING};

DAG applyTo(DAG f, DAG y, DAG x, DAG extra) {
  // A number is the function of that constant value: what x -> 1 becomes.
  if (isNumeric(f)) return f;
  Word more = lengthOf(extra) - 1, at = 1;
  DAG arguments = newl2(more + (y ? 3 : 2), EXPSEQ);
  if (y) arguments[at++] = y;
  arguments[at++] = isAmong(x, selfEvaluatingTags) ? x : new2(UNEVAL, new2(EXPSEQ, x));
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
  return truth(type(operand, m.extra[1]));
}

DAG mapOver(DAG f, DAG y, DAG x, DAG extra) {
  Mapping mapping{f, y, extra};
  bool test = f == ini("type") && !y && lengthOf(extra) == 2;
  return MapFunction({test ? typeWorker : callWorker, &mapping, OperandWalk::mapping}, x);
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
