// Statements as code: assignments, branches, loops and the ways out of them.

#include <algorithm>

#include "hardware/compiler.h"
#include "hardware/hardware_statements.h"
#include "hardware/interpreter.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

void Compiler::sequence(DAG body, int into) {
  if (!isTag(body, STATSEQ)) return statement(body, into);
  const Word n = lengthOf(body);
  if (n == 1 && into >= 0) moved(constant(0.0), into);
  for (Word i = 1; i < n; ++i) statement(onlyStatement(body[i]), i + 1 == n ? into : -1);
}

void Compiler::statement(DAG s, int into) {
  const int before = used_;
  if (++depth_ > deepest) refuse();
  if (refused_) return;
  const Tag tag = isImmediate(s) ? INTPOS : tagOf(s);
  switch (tag) {
    case ASSIGN: assignment(s, into); break;
    case IF: branch(s, into); break;
    case FOR: loop(s, into); break;
    case RETURN: returnStatement(s[1]); break;
    case BREAK: case NEXT:
      if (!loops_.empty()) emitJump(Op::jump, tag == BREAK ? loops_.back().end : loops_.back().next);
      else emit(tag == BREAK ? Op::strayBreak : Op::strayNext);
      break;
    case ERROR: emit(Op::raise).object = s[1]; break;
    default: expressionStatement(s, into); break;
  }
  used_ = before;
  --depth_;
}

void Compiler::expressionStatement(DAG s, int into) {
  if (isTag(s, FUNCTION) && isName(s[1]) && hasText(s[1], "RETURN")) {
    ++returnsCompiled_;
    return returnStatement(s[2]);
  }
  if (into < 0 && cannotFail(s)) return;
  value(s, into);
}

void Compiler::returnStatement(DAG operand) { emit(Op::leave, value(operand)); }

// ---- assignments

void Compiler::assignment(DAG s, int into) {
  DAG target = s[1];
  if (isTag(target, DCOLON)) target = target[1];
  if (isTag(target, TABLEREF)) return assignElement(s, target, into);
  const int reg = variable(target);
  if (reg < 0) {
    // An error, in the order of the plain walk.
    evaluate(s, into);
    return;
  }
  value(s[2], reg);
  if (into >= 0) moved(reg, into);
}

void Compiler::assignElement(DAG s, DAG target, int into) {
  const bool checks = mayBeReference(s[2]);
  const int v = value(s[2]);
  const Place p = place(target);
  if (checks) emit(Op::checkNumber, v);
  if (p.rank == 1) {
    emit(Op::store1, v, p.base, p.first).tail.d = static_cast<std::uint16_t>(p.view);
  } else if (p.rank == 2) {
    Instruction& store = emit(Op::store2, v, p.base, p.first);
    store.tail.d = static_cast<std::uint16_t>(p.view);
    store.tail.e = static_cast<std::uint16_t>(p.second);
  } else {
    emit(Op::storeMany, v, p.base, p.first).tail.e = static_cast<std::uint16_t>(p.rank);
  }
  if (into >= 0) moved(v, into);
}

// ---- branches

void Compiler::branch(DAG s, int into) {
  const Word n = lengthOf(s);
  const Label end = newLabel();
  for (Word i = 1; i + 1 < n; i += 2) {
    const Label otherwise = newLabel();
    condition(s[i], false, otherwise);
    sequence(s[i + 1], into);
    emitJump(Op::jump, end);
    place(otherwise);
  }
  if (n % 2 == 0) sequence(s[n - 1], into);
  else if (into >= 0) moved(constant(0.0), into);
  place(end);
}

// ---- loops

Compiler::Bounds Compiler::loopBounds(DAG s) {
  Bounds bounds{};
  bounds.variable = s[loopVariable] == null ? temporary() : variable(s[loopVariable]);
  // The body may assign what the bounds are read from.
  auto kept = [this](int reg) { return reg < parameters_ + locals_ ? moved(reg, temporary()) : reg; };
  const int from = number(s[loopFrom]);
  const int start = kept(from);
  bounds.by = kept(number(s[loopBy]));
  bounds.to = s[loopTo] == null ? -1 : kept(number(s[loopTo]));
  if (isConstant(bounds.by))
    bounds.direction = constants_[static_cast<std::size_t>(bounds.by - constantBase)] < 0 ? -1 : 1;
  emit(Op::move, bounds.variable, start);
  return bounds;
}

void Compiler::leaveWhenPast(const Bounds& b, Label end) {
  if (b.to < 0) return;
  if (b.direction > 0) emitJump(Op::jumpUnlessLessEqual, end, b.variable, b.to);
  else if (b.direction < 0) emitJump(Op::jumpUnlessLessEqual, end, b.to, b.variable);
  else emitJump(Op::leaveLoop, end, b.variable, b.by, b.to);
}

void Compiler::nextRound(const Bounds& b, Label start) {
  if (b.to < 0) emitJump(Op::nextUnbounded, start, b.variable, b.by);
  else
    emitJump(b.direction > 0   ? Op::nextUp
             : b.direction < 0 ? Op::nextDown
                               : Op::nextEither,
             start, b.variable, b.by, b.to);
}

void Compiler::loop(DAG s, int into) {
  DAG named = isCountedLoop(s) ? s[loopVariable] : DAG();
  if (!named || (named != null && !isTag(named, LOCAL))) {
    // An error, in the order of the plain walk.
    evaluate(s, into);
    return;
  }
  const Bounds bounds = loopBounds(s);
  const int result = into >= 0 ? temporary() : -1;
  if (into >= 0) emit(Op::move, into, constant(0.0));
  const Label start = newLabel(), next = newLabel(), end = newLabel();
  leaveWhenPast(bounds, end);
  place(start);
  if (s[loopWhile] != ini("true")) condition(s[loopWhile], false, end);
  loops_.push_back({next, end});
  sequence(s[loopBody], result);
  loops_.pop_back();
  if (into >= 0) emit(Op::move, into, result);
  place(next);
  nextRound(bounds, start);
  place(end);
}

}  // namespace korel
