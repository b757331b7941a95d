#include "eval/statements/loops.h"

#include "debug/statement_walk.h"
#include "debug/watches.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/boolean.h"
#include "eval/statements/depth.h"
#include "eval/statements/loop_elements.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

// The two kinds of loops: over numbers or characters by their bounds, and over the elements of a container.
//
// A loop whose body holds no `break`, `next` or `goto` of its own runs without a jump buffer; two flags
// on the statement remember what a scan of the body found.

namespace korel {

namespace {

// What a loop keeps over the jumps that can arrive in it.
struct Loop {
  DAG variable;
  DAG condition;    // the `while` part, `true` when absent
  const DAG* body;  // the field with it, which a break point may change between two rounds
  int mode;
  std::int32_t level;  // depth at the loop statement
  bool guarded;        // has a jump buffer of its own
  EnvironmentBlock block;
  EnvironmentBlock* previous;
  std::jmp_buf buffer;
  DAG value;
};

bool jumpsOf(DAG statement, DAG body) {
  Word flags = controlWord(statement);
  if ((flags & brnextKnown) == 0) {
    flags |= brnextKnown | (hasbrnext(body) ? hasBrnext : 0);
    controlWord(statement) = flags;
  }
  return (flags & hasBrnext) != 0;
}

void enterLoop(Loop& loop, DAG statement) {
  loop.level = evaluationLevel;
  loop.value = null;
  loop.guarded = jumpsOf(statement, *loop.body);
  if (loop.guarded) loop.previous = enterEnvironment(loop.block, loop.buffer);
}
void leaveLoop(Loop& loop) {
  if (loop.guarded) RestoreEnvironment(loop.previous);
  evaluationLevel = loop.level;
}

// Where a jump that arrived in the loop's buffer leads.
enum class Arrival { next, leave };
Arrival arrive(Loop& loop, int code) {
  Environment = &loop.block;
  switch (code) {
    case jumpReturn:
      if (isCallOf(funret, ini("goto"))) {
        evaluationLevel = loop.level + branchLevels;
        if (DAG value = evalgoto(*loop.body, funret[2][1])) {
          loop.value = value;
          return Arrival::next;
        }
      }
      RestoreEnvironment(loop.previous);
      jumpOut(jumpReturn);
    case jumpBreak:
      evaluationLevel = loop.level + branchLevels;
      return isTag(funret, BREAK) ? Arrival::leave : Arrival::next;
    default: RestoreEnvironment(loop.previous); jumpOut(static_cast<JumpCode>(code));
  }
}

// Truth of the `while` part.
bool conditionHolds(const Loop& loop) {
  if (loop.condition == ini("true")) return true;
  ++evaluationLevel;
  DAG truth = plainTruthOf(loop.condition);
  if (!truth) truth = truthOf(loop.condition);
  --evaluationLevel;
  if (truth == ini("true")) return true;
  if (truth == ini("false") || truth == ini("FAIL")) return false;
  KernelException("cannot evaluate boolean: %1", truth);
}

// The name that stands in the loop's first field, or a fresh one.
DAG variableOf(DAG statement) {
  DAG field = statement[loopVariable];
  return field == null ? simpl(newLocalName("")) : evalname(field);
}
void checkVariable(DAG variable) {
  if (!isNameOrIndexed(variable)) KernelException("controlling variable of for loop must be a name");
}

// ---- counted loops

struct CountedLoop : Loop {
  DAG from, by, to;
  bool characters;
  bool bounded;
  bool falling;
  bool ordinary;  // the variable is a name that takes any value: no environment variable, no special name
  bool plain;     // ordinary, the increment and the bound small integers, and no `while` part
};

// The string of a code; beyond the last character, where a loop may end, there is none.
DAG characterString(DAG code) {
  if (!isImmediate(code) || immediateValue(code) < 1 || immediateValue(code) > 255) return null;
  return charinstall(static_cast<char>(immediateValue(code)));
}

[[noreturn]] void refuseInitialValue(DAG from) {
  if (isCharacterString(from)) KernelException("final value in for loop must have same type as initial");
  if (from == ini("infinity") || from == consminf) KernelException("infinite loops must have finite initial value");
  KernelException("initial value in for loop must be numeric or character");
}
[[noreturn]] void refuseFinalValue(DAG to) {
  if (isCharacterString(to)) KernelException("final value in for loop must have same type as initial");
  KernelException("final value in for loop must be numeric or character");
}

// Checks the bounds; false when the loop runs nothing for an infinite start or bound.
bool checkBounds(CountedLoop& loop) {
  DAG infinity = ini("infinity");
  if (!isNumeric(loop.by)) KernelException("increment of for loop must be numeric");
  if (loop.characters && !isInteger(loop.by))
    KernelException("increment when looping over characters must be an integer");
  loop.falling = consneg(loop.by);
  DAG farEnd = loop.falling ? consminf : infinity;
  if (loop.from == farEnd && loop.to != farEnd) return false;
  if (loop.characters) return true;
  if (!isNumeric(loop.from)) refuseInitialValue(loop.from);
  if (!loop.bounded) return true;
  if (loop.to == infinity || loop.to == consminf) {
    if (loop.to != farEnd) return false;
    loop.bounded = false;
  } else if (!isNumeric(loop.to)) {
    refuseFinalValue(loop.to);
  }
  return true;
}

bool pastBound(const CountedLoop& loop) {
  if (!loop.bounded) return false;
  // Both bounds immediate, as in most loops: one comparison of words.
  if (isImmediate(loop.from) && isImmediate(loop.to)) {
    std::int32_t from = immediateValue(loop.from), to = immediateValue(loop.to);
    return loop.falling ? from < to : from > to;
  }
  int order = compcon(loop.from, loop.to);
  return loop.falling ? order < 0 : order > 0;
}

void storeVariable(const CountedLoop& loop) {
  assign(loop.variable, loop.characters ? characterString(loop.from) : loop.from);
}

// The step from one small integer to another in an ordinary variable; false for any other.
bool stepImmediate(CountedLoop& loop) {
  DAG name = loop.variable;
  if (!loop.ordinary || !isImmediate(loop.by) || !isUnwatched(name)) return false;
  DAG value = name[1];
  if (!isImmediate(value) || value == consm0 || !isOpenName(name)) return false;
  std::int32_t next = (static_cast<std::int32_t>(value.word) >> 1) + immediateValue(loop.by);
  if (!fitsImmediate(next)) return false;
  name[1] = loop.from = immediate(next);
  stepEvaluationClock();
  return true;
}

// The step: the variable is read back, since the body may have changed it.
void step(CountedLoop& loop) {
  DAG value = mvalue(loop.variable);
  if (loop.characters && isTag(value, STRING)) {
    value = immediate(codeOf(value));
  } else if (!isNumeric(value) || (loop.characters && !isInteger(value))) {
    KernelException("for while(1) variable reassigned improperly");
  }
  loop.from = simpl(loop.by == cons1 && !loop.characters ? increment(value) : add(value, loop.by));
  if (loop.characters && characterString(loop.from) == null && !pastBound(loop))
    KernelException("for while(1) variable reassigned improperly");
  storeVariable(loop);
}

// Whether another round is to be run: the bound isn't passed, and the `while` part holds.
bool hasRound(CountedLoop& loop) {
  if (loop.plain && isImmediate(loop.from) && loop.from != consm0) {
    auto from = static_cast<std::int32_t>(loop.from.word), to = static_cast<std::int32_t>(loop.to.word);
    return loop.falling ? from >= to : from <= to;
  }
  return !pastBound(loop) && conditionHolds(loop);
}

// Runs from the loop's head until it ends; after a `next` again from the step.
void runCounted(CountedLoop& loop) {
  bool fromStep = false;
  if (loop.guarded) {
    int code = ::_setjmp(loop.buffer);
    if (code != 0) {
      if (arrive(loop, code) == Arrival::leave) return;
      fromStep = true;
    }
  }
  for (;;) {
    if (!fromStep) {
      evaluationLevel = loop.level;
      if (!hasRound(loop)) return;
      evaluationLevel = loop.level + branchLevels;
      standAt(*loop.body);
      loop.value = evalstat(*loop.body, loop.mode);
    }
    fromStep = false;
    if (!stepImmediate(loop)) step(loop);
    evaluationLevel = loop.level;
    if (evaluationLevel + 1 < gene[gcgen] || collectAlways) collectInStatement();
  }
}

// ---- loops over a container

struct ContainerLoop : Loop {
  DAG container;
  std::int64_t count;
  std::int64_t index;
};

void runOver(ContainerLoop& loop) {
  if (loop.guarded) {
    int code = ::_setjmp(loop.buffer);
    if (code != 0 && arrive(loop, code) == Arrival::leave) return;
  }
  while (++loop.index <= loop.count) {
    DAG x = element(loop.container, loop.index);
    assign(loop.variable, x);
    if (loop.mode >= 0 && showsMembers(*Environment->frame))
      sendStream(Stream::RESULT, {new3(ASSIGN, simpl(loop.variable), x)});
    if (!conditionHolds(loop)) return;
    standAt(*loop.body);
    loop.value = evalstat(*loop.body, loop.mode);
    evaluationLevel = loop.level + branchLevels;
  }
}

}  // namespace

DAG forfrom(DAG s, int mode) {
  CountedLoop loop{};
  loop.variable = variableOf(s);
  loop.from = simpl(eval(s[loopFrom]));
  loop.by = simpl(eval(s[loopBy]));
  updategen(loop.by);
  loop.to = simpl(eval(s[loopTo]));
  updategen(loop.to);
  loop.bounded = s[loopTo] != null;  // what only evaluates to nothing is no bound
  checkVariable(loop.variable);
  loop.condition = s[loopWhile];
  loop.body = &s[loopBody];
  loop.mode = mode;
  loop.characters = isCharacterString(loop.from) && isCharacterString(loop.to);
  if (!checkBounds(loop)) {
    assign(loop.variable, loop.from);
    return null;
  }
  if (loop.characters) {
    loop.from = immediate(codeOf(loop.from));
    loop.to = immediate(codeOf(loop.to));
  }
  loop.ordinary = !loop.characters && isOrdinaryName(loop.variable);
  loop.plain = loop.ordinary && isImmediate(loop.by) && loop.bounded && isImmediate(loop.to) && loop.to != consm0 &&
               loop.condition == ini("true");
  storeVariable(loop);
  enterLoop(loop, s);
  runCounted(loop);
  leaveLoop(loop);
  return loop.value;
}

DAG forin(DAG s, int mode) {
  ContainerLoop loop{};
  loop.variable = variableOf(s);
  loop.container = simpl(eval(s[loopContainer]));
  if (isTag(loop.container, RTABLE)) loop.container = elementsOf(loop.container);
  updategen(loop.container);
  checkVariable(loop.variable);
  loop.condition = s[containerLoopWhile];
  loop.body = &s[containerLoopBody];
  loop.mode = mode;
  loop.count = elementCount(loop.container);
  loop.index = 0;
  enterLoop(loop, s);
  evaluationLevel = loop.level + branchLevels;
  runOver(loop);
  leaveLoop(loop);
  return loop.value;
}

// Whether one of the fields `from`, `from + step`, ... before `end` has a jump of its own.
static bool anyJumps(DAG statement, Word from, Word end, Word step) {
  for (Word i = from; i < end; i += step)
    if (hasbrnext(statement[i])) return true;
  return false;
}

bool hasbrnext(DAG body) {
  if (isImmediate(body)) return false;
  const Word n = lengthOf(body);
  switch (tagOf(body)) {
    case BREAK: case NEXT: return true;
    case FUNCTION:
      if (body[1] == ini("goto")) return true;
      return body[1] == ini("TRACE") && isSequence(body[2]) && lengthOf(body[2]) == 4 && hasbrnext(body[2][3]);
    case STATSEQ: return anyJumps(body, 1, n, 1);
    case IF: return anyJumps(body, 2, n, 2) || (n % 2 == 0 && hasbrnext(body[n - 1]));
    case TRY:
      return hasbrnext(body[tryBody]) || anyJumps(body, tryFirstCatch + 1, catchEnd(body), 2) ||
             (hasFinally(body) && hasbrnext(body[n - 1]));
    default: return false;
  }
}

DAG evalgoto(DAG sequence, DAG label) {
  if (!isTag(sequence, STATSEQ)) return DAG();
  DAG value;
  for (Word i = 1, n = lengthOf(sequence); i < n; ++i) {
    if (value) {
      standAt(sequence[i]);
      value = evalstat(sequence[i], modeInner);
      continue;
    }
    DAG s = statementIn(sequence[i]);
    if (s == label) {
      value = label;
    } else if (isTag(s, IF)) {
      const Word m = lengthOf(s);
      for (Word k = 2; k < m && !value; k += 2) value = evalgoto(s[k], label);
      if (!value && m % 2 == 0) value = evalgoto(s[m - 1], label);
    }
  }
  return value;
}

}  // namespace korel
