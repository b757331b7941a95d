#include "eval/statements/sequences.h"

#include <algorithm>
#include <utility>

#include "debug/watches.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/operand.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/statements/assign.h"
#include "eval/statements/loop_elements.h"
#include "eval/statements/statements.h"
#include "eval/structure/substitute.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

enum class Kind { sequence, sum, product };

[[noreturn]] void unable(Kind kind) {
  switch (kind) {
    case Kind::sequence: KernelException("unable to execute seq");
    case Kind::sum: KernelException("unable to execute add");
    default: KernelException("unable to execute mul");
  }
}

// ---- ranges

bool isFinite(DAG x) { return isNumeric(x) && !isInfinite(x) && !isUndefined(x); }

// How many steps of 1 lead from a to b, both included.
std::int64_t countOfNumbers(DAG a, DAG b) {
  DAG span = simpl(add(b, simpl(negate(a))));
  if (consneg(span)) return 0;
  DAG whole = simpl(mtrunc(span));
  if (!FitIntoLongLong(whole) || LongLongValue(whole) == INT64_MAX) KernelException("object too large");
  return LongLongValue(whole) + 1;
}
std::int64_t countOfCharacters(DAG a, DAG b) { return std::max(0, codeOf(b) - codeOf(a) + 1); }

// ---- collecting results

// The result under construction: members of a sequence, or a folded number beside a buffer of terms.
//
// Elements are made one level below, and what they leave behind is released from there. The buffer and
// the folded number's place are objects of the loop's own level, through which what they refer to stays
// alive: nothing passes the write barrier, which would keep an element's whole generation.
struct Collector {
  Kind kind;
  std::int64_t capacity;  // how many elements can come
  DAG buffer = DAG();     // EXPSEQ of members, or SUM or PROD of pairs; 0 until the first term
  Word used = 1;
  Word shared = 1;            // members before this one are simplified
  DAG kept = DAG();           // EXPSEQ (folded number, value of the loop variable)
  bool ownFolded = false;     // the folded number was made here, and nobody else refers to it
  std::int64_t gathered = 0;  // of a sum: integers that are still to be folded
  bool ordinary = false;      // the loop variable is a name for which assignment has no rules of its own

  DAG folded() const { return kept[1]; }
};

// The number folds on. What was folded before goes back at once: a long sum leaves nothing to collect.
void foldNumber(Collector& c, DAG element) {
  DAG before = c.folded();
  DAG folded = c.kind == Kind::sum ? add(before, element) : mul(before, element);
  if (folded == before) return;
  c.kept[1] = folded;
  // An integer holds no reference; a fraction or a float may hold what it was made of.
  if (c.ownFolded && isInteger(folded)) release(before, lengthOf(before));
  c.ownFolded = folded != element && isObject(folded) && !isSimplified(folded) && isInteger(folded);
}

void foldGathered(Collector& c) {
  if (c.gathered != 0) foldNumber(c, NewInteger(std::exchange(c.gathered, 0)));
}

// Integers of a sum gather in a machine word as long as what is folded is exact: floats round in the order in
// which they come.
void fold(Collector& c, DAG element) {
  if (c.kind == Kind::sum && isInteger(element) && element != consm0 && isRationalNumber(c.folded())) {
    std::int64_t value, sum;
    if (!readLongLong(element, value)) return foldNumber(c, element);
    if (!__builtin_add_overflow(c.gathered, value, &sum)) {
      c.gathered = sum;
      return;
    }
  }
  foldGathered(c);
  foldNumber(c, element);
}

void begin(Collector& c, DAG variable) {
  c.ordinary = isOrdinaryName(variable);
  if (c.kind == Kind::sequence) {
    if (c.capacity >= std::int64_t{maxLength} - 2) KernelException("object too large");
    c.buffer = newl2(static_cast<Word>(c.capacity + 1), EXPSEQ);
  }
  c.kept = new3(EXPSEQ, c.kind == Kind::product ? cons1 : cons0, cons0);
}

// Members find their places in the table of simplified objects some rounds late: until then the lines of the table
// in which a long integer is to be found are under way (bench/programs/sequences.krl).
void collectMember(Collector& c, DAG element) {
  constexpr Word roundsLate = 6;
  const bool isLong = isObject(element) && isInteger(element) && !isSimplified(element);
  if (isLong) prefetchUnique(element);
  c.buffer[c.used++] = isLong ? element : simpl(element);
  if (c.used - c.shared <= roundsLate) return;
  DAG& member = c.buffer[c.shared++];
  member = simpl(member);
}

void collect(Collector& c, DAG element) {
  if (c.kind == Kind::sequence) return collectMember(c, element);
  // The multiple of a monomial is two words of the sum to come: the object of it would be taken apart again.
  Pair pair{DAG(), cons1};
  if (c.kind == Kind::sum && isTag(element, PROD) && !isSimplified(element) && plainProduct(element, pair))
    element = pair.term;
  else if (!isNumber(element)) element = simpl(element);
  element = singleMember(element);
  if (isNumeric(element)) {
    fold(c, element);
    return;
  }
  if (!c.buffer) {
    if (c.capacity >= std::int64_t{maxLength} / 2 - 2) KernelException("object too large");
    // The first pair is left for the folded number.
    --evaluationLevel;
    c.buffer = newl2(static_cast<Word>(2 * c.capacity + 3), c.kind == Kind::sum ? SUM : PROD);
    ++evaluationLevel;
    c.used = 3;
  }
  c.buffer[c.used] = element;
  c.buffer[c.used + 1] = pair.coefficient;
  c.used += 2;
}

DAG finish(Collector& c) {
  if (c.kind == Kind::sequence) {
    if (c.used != lengthOf(c.buffer)) shorten(c.buffer, lengthOf(c.buffer), c.used);
    return simpl(c.buffer);
  }
  foldGathered(c);
  DAG folded = simpl(c.folded());
  if (!c.buffer) return folded;
  c.buffer[1] = folded;
  c.buffer[2] = cons1;
  if (c.used != lengthOf(c.buffer)) shorten(c.buffer, lengthOf(c.buffer), c.used);
  return simpl(withListsAdded(c.buffer));
}

// ---- the loop variable

struct SavedVariable {
  DAG pair;      // EXPSEQ (name, value or the name itself), kept while the loop runs; 0 when it is no name
  Frame* frame;  // the loop's: an error passes while that of a called procedure is running
};

void putBack(const SavedVariable& saved) {
  DAG name = saved.pair[1], value = saved.pair[2];
  stepEvaluationClock();
  if (isEnvironmentName(name)) {
    Frame* running = Environment->frame;
    Environment->frame = saved.frame;
    assignenv(name, value);
    Environment->frame = running;
  } else {
    name[1] = value == name ? DAG() : value;
  }
  // Given back at once: the name may be a local that its procedure gives back, and nobody may refer to it then.
  DisposeProtected(saved.pair);
}
void restoreVar(const char*) { putBack(*reinterpret_cast<SavedVariable*>(errorProcParam)); }

void protectVariable(DAG variable, SavedVariable& saved) {
  if (!isTag(variable, NAME)) return;
  DAG value = isEnvironmentName(variable) ? valuenv(variable, false) : variable[1];
  saved = {new3(EXPSEQ, variable, value ? value : variable), Environment->frame};
  ProtectFromGC(saved.pair);
  PushStateKeeper(restoreVar, &saved);
}
void releaseVariable(const SavedVariable& saved) {
  if (!saved.pair) return;
  PopErrorProc();
  putBack(saved);
}

// ---- walking

// The value of `expression` at `value`, collected.
void collectAt(Collector& c, DAG variable, DAG value, DAG expression) {
  passWork(objectSteps);
  ++evaluationLevel;
  c.kept[2] = value;
  stepEvaluationClock();
  // The value needs no barrier here: it is held beside the folded number.
  if (c.ordinary && isUnwatched(variable) && isOpenName(variable) && value != variable) variable[1] = value;
  else assign(variable, value);
  DAG result = evalOperand(expression);
  collect(c, result);
  --evaluationLevel;
  collectInLoop();
}

DAG overCharacters(Kind kind, DAG variable, DAG a, DAG b, DAG expression) {
  if (!isCharacterString(a) || !isCharacterString(b)) KernelException("invalid string range");
  Collector c{kind, countOfCharacters(a, b)};
  begin(c, variable);
  for (int code = codeOf(a), last = codeOf(b); code <= last; ++code)
    collectAt(c, variable, charinstall(static_cast<char>(code)), expression);
  return finish(c);
}

DAG overRange(Kind kind, DAG variable, DAG a, DAG b, DAG expression) {
  DAG infinity = ini("infinity");
  if ((a == infinity && b != infinity) || (b == consminf && a != consminf)) {
    Collector empty{kind, 0};
    begin(empty, variable);
    return finish(empty);
  }
  if (isTag(a, STRING) && isTag(b, STRING)) return overCharacters(kind, variable, a, b, expression);
  if (!isNameOrIndexed(variable) || !isFinite(a) || !isFinite(b)) unable(kind);
  const std::int64_t count = countOfNumbers(a, b);
  Collector c{kind, count};
  begin(c, variable);
  DAG value = a;
  for (std::int64_t k = 0; k < count; ++k) {
    collectAt(c, variable, value, expression);
    ++evaluationLevel;
    value = simpl(increment(value));
    --evaluationLevel;
  }
  return finish(c);
}

DAG overContainer(Kind kind, DAG variable, DAG container, DAG expression) {
  if (!isNameOrIndexed(variable)) unable(kind);
  if (isTag(container, RTABLE)) container = elementsOf(container);
  const std::int64_t count = elementCount(container);
  Collector c{kind, count};
  begin(c, variable);
  for (std::int64_t k = 1; k <= count; ++k) collectAt(c, variable, element(container, k), expression);
  return finish(c);
}

DAG run(Kind kind, const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG expression = call.arguments[1], control = call.arguments[2];
  if (!isTag(control, EQUATION)) {
    // The control may be what a name or parameter stands for.
    DAG evaluated = isImmediate(control) ? control : simpl(eval(control));
    if (!isTag(evaluated, EQUATION)) wrongParameters(call);
    control = evaluated;
  }
  DAG variable = evalname(control[1]);
  DAG right = simpl(eval(control[2]));
  SavedVariable saved{};
  protectVariable(variable, saved);
  DAG result = isTag(right, RANGE) ? overRange(kind, variable, right[1], right[2], expression)
                                   : overContainer(kind, variable, right, expression);
  releaseVariable(saved);
  return result;
}

// ---- the operator $

// The elements of `expression` with `variable` (or none) running from a to b, by substitution; without an
// expression, the numbers or characters themselves.
DAG dollarSequence(DAG expression, DAG variable, DAG a, DAG b) {
  const bool characters = isCharacterString(a) && isCharacterString(b);
  const std::int64_t count = characters ? countOfCharacters(a, b) : countOfNumbers(a, b);
  if (count == 0) return null;
  if (count >= std::int64_t{maxLength} - 1) KernelException("object too large");
  DAG sequence = newl2(static_cast<Word>(count + 1), EXPSEQ);
  DAG value = a;
  for (std::int64_t k = 0; k < count; ++k) {
    passWork(objectSteps);
    if (characters) value = charinstall(static_cast<char>(codeOf(a) + k));
    sequence[k + 1] = !expression ? value
                      : !variable ? expression
                                  : subs(new2(EXPSEQ, new3(EQUATION, variable, value)), expression);
    if (!characters) value = simpl(increment(value));
  }
  return simpl(eval(simpl(sequence)));
}

bool areConstant(DAG a, DAG b) {
  return (isFinite(a) && isFinite(b)) || (isCharacterString(a) && isCharacterString(b));
}

}  // namespace

DAG builtin::seq(const BuiltinCall& call) { return run(Kind::sequence, call); }
DAG builtin::add(const BuiltinCall& call) { return run(Kind::sum, call); }
DAG builtin::mul(const BuiltinCall& call) { return run(Kind::product, call); }

DAG builtin::dollar(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 1 && isTag(call.arguments[1], RANGE)) {
    DAG range = call.arguments[1];
    if (areConstant(range[1], range[2])) return dollarSequence(DAG(), DAG(), range[1], range[2]);
    return unevaluatedCall(call);
  }
  if (n != 2) wrongParameters(call);
  DAG expression = call.arguments[1], control = call.arguments[2];
  if (isTag(control, EQUATION) && isTag(control[2], RANGE)) {
    DAG range = control[2];
    if (areConstant(range[1], range[2])) return dollarSequence(expression, control[1], range[1], range[2]);
  } else if (areConstant(cons1, control)) {
    return dollarSequence(expression, DAG(), cons1, control);
  }
  return unevaluatedCall(call);
}

}  // namespace korel
