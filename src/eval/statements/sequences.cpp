#include "eval/statements/sequences.h"

#include <cstring>
#include <utility>

#include "numbers/arithmetic.h"
#include "eval/statements/assign.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/structure/operands.h"
#include "eval/simplify/simplify.h"
#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/statements/statements.h"
#include "eval/structure/substitute.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

enum class Kind { sequence, sum, product };

bool isCharacter(DAG x) { return isTag(x, STRING) && textOf(x)[0] != 0 && textOf(x)[1] == 0; }
int codeOf(DAG string) { return static_cast<unsigned char>(textOf(string)[0]); }

[[noreturn]] void unable(Kind kind) {
  switch (kind) {
    case Kind::sequence: KernelException("unable to execute seq");
    case Kind::sum: KernelException("unable to execute add");
    default: KernelException("unable to execute mul");
  }
}

// ---- collecting results

// The result under construction: members of a sequence, or a folded number beside a buffer of terms.
//
// Elements are made one level below, and what they leave behind is released from there. The buffer and
// the folded number's place are objects of the loop's own level, through which what they refer to stays
// alive: nothing passes the write barrier, which would keep an element's whole generation.
struct Collector {
  Kind kind;
  std::int64_t capacity;  // how many elements can come
  DAG buffer;             // EXPSEQ of members, or SUM or PROD of pairs; 0 until the first term
  Word used = 1;
  Word shared = 1;  // members before this one are simplified
  DAG kept;  // EXPSEQ (folded number, value of the loop variable)
  bool ownFolded = false;  // the folded number was made here, and nobody else refers to it
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
  if (c.ownFolded) release(before, lengthOf(before));
  c.ownFolded =
      folded != element && isObject(folded) && !isSimplified(folded) && isInteger(folded);
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
  else if (!isNumeric(element) && !hasTag(element, COMPLEX)) element = simpl(element);
  if (isTag(element, EXPSEQ) && lengthOf(element) == 2) element = element[1];
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
  return simpl(c.buffer);
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
  AllowGC(saved.pair);
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

void element(Collector& c, DAG variable, DAG value, DAG expression) {
  passWork(objectSteps);
  ++evaluationLevel;
  c.kept[2] = value;
  stepEvaluationClock();
  // The value needs no barrier here: it is held beside the folded number.
  if (c.ordinary && isOpenName(variable) && value != variable) variable[1] = value;
  else assign(variable, value);
  DAG result = eval(expression);
  collect(c, result);
  --evaluationLevel;
  collectInLoop();
}

DAG overCharacters(Kind kind, DAG variable, DAG a, DAG b, DAG expression) {
  if (!isCharacter(a) || !isCharacter(b)) KernelException("invalid string range");
  int from = codeOf(a), to = codeOf(b);
  Collector c{kind, to < from ? 0 : to - from + 1, DAG(), 1, 1, DAG()};
  begin(c, variable);
  for (int code = from; code <= to; ++code)
    element(c, variable, charinstall(static_cast<char>(code)), expression);
  return finish(c);
}

DAG overNumbersOrCharacters(Kind kind, DAG variable, DAG a, DAG b, DAG expression) {
  DAG infinity = ini("infinity");
  if ((a == infinity && b != infinity) || (b == consminf && a != consminf)) {
    Collector empty{kind, 0, DAG(), 1, 1, DAG()};
    begin(empty, variable);
    return finish(empty);
  }
  if (isTag(a, STRING) && isTag(b, STRING)) return overCharacters(kind, variable, a, b, expression);
  auto isBound = [](DAG x) { return isNumeric(x) && !isInfinite(x) && !isUndefined(x); };
  if ((!isTag(variable, NAME) && !isTag(variable, TABLEREF)) || !isBound(a) || !isBound(b)) unable(kind);
  DAG span = simpl(add(b, simpl(negate(a))));
  std::int64_t count = 0;
  if (!consneg(span)) {
    DAG whole = simpl(mtrunc(span));
    if (!FitIntoLongLong(whole)) KernelException("object too large");
    count = LongLongValue(whole) + 1;
  }
  Collector c{kind, count, DAG(), 1, 1, DAG()};
  begin(c, variable);
  DAG value = a;
  for (std::int64_t k = 0; k < count; ++k) {
    element(c, variable, value, expression);
    ++evaluationLevel;
    value = simpl(increment(value));
    --evaluationLevel;
  }
  return finish(c);
}

DAG overContainer(Kind kind, DAG variable, DAG container, DAG expression) {
  if (!isTag(variable, NAME) && !isTag(variable, TABLEREF)) unable(kind);
  bool string = isTag(container, STRING);
  bool members = isTag(container, LIST) || isTag(container, SET);
  std::int64_t count = string ? static_cast<std::int64_t>(std::strlen(textOf(container)))
                              : numterms(container);
  Collector c{kind, count, DAG(), 1, 1, DAG()};
  begin(c, variable);
  for (std::int64_t k = 1; k <= count; ++k) {
    DAG x = string ? charinstall(textOf(container)[k - 1])
            : members ? container[1][k]
                      : op(k, k, container);
    element(c, variable, x, expression);
  }
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
  DAG result = isTag(right, RANGE)
                   ? overNumbersOrCharacters(kind, variable, right[1], right[2], expression)
                   : overContainer(kind, variable, right, expression);
  releaseVariable(saved);
  return result;
}

// ---- the operator $

// The elements of `expression` with `variable` (or none) running from a to b, by substitution.
DAG dollarSequence(DAG expression, DAG variable, DAG a, DAG b) {
  bool characters = isCharacter(a) && isCharacter(b);
  std::int64_t count = 0;
  if (characters) {
    count = codeOf(b) - codeOf(a) + 1;
  } else {
    DAG span = simpl(add(b, simpl(negate(a))));
    if (consneg(span)) return null;
    DAG whole = simpl(mtrunc(span));
    if (!FitIntoLongLong(whole) || LongLongValue(whole) >= std::int64_t{maxLength} - 2)
      KernelException("object too large");
    count = LongLongValue(whole) + 1;
  }
  if (count <= 0) return null;
  DAG sequence = newl2(static_cast<Word>(count + 1), EXPSEQ);
  DAG value = a;
  for (std::int64_t k = 0; k < count; ++k) {
    passWork(objectSteps);
    if (characters) value = charinstall(static_cast<char>(codeOf(a) + k));
    if (!expression) {
      sequence[k + 1] = value;
    } else if (!variable) {
      sequence[k + 1] = expression;
    } else {
      DAG equation = new2(EXPSEQ, new3(EQUATION, variable, value));
      sequence[k + 1] = subs(equation, expression);
    }
    if (!characters) value = simpl(increment(value));
  }
  return simpl(eval(simpl(sequence)));
}

bool areConstant(DAG a, DAG b) {
  auto isBound = [](DAG x) { return isNumeric(x) && !isInfinite(x) && !isUndefined(x); };
  return (isBound(a) && isBound(b)) || (isCharacter(a) && isCharacter(b));
}

}  // namespace

DAG seqforfrom(DAG variable, DAG from, DAG to, DAG expression) {
  return overNumbersOrCharacters(Kind::sequence, variable, from, to, expression);
}
DAG seqforin(DAG variable, DAG container, DAG expression) {
  return overContainer(Kind::sequence, variable, container, expression);
}
DAG addmulforfrom(DAG variable, DAG from, DAG to, DAG expression, bool isAdd) {
  return overNumbersOrCharacters(isAdd ? Kind::sum : Kind::product, variable, from, to, expression);
}
DAG addmulforin(DAG variable, DAG container, DAG expression, bool isAdd) {
  return overContainer(isAdd ? Kind::sum : Kind::product, variable, container, expression);
}

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
    if (areConstant(range[1], range[2]))
      return dollarSequence(expression, control[1], range[1], range[2]);
  } else if (areConstant(cons1, control)) {
    return dollarSequence(expression, DAG(), cons1, control);
  }
  return unevaluatedCall(call);
}

}  // namespace korel
