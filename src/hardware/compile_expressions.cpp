// Expressions as code: arithmetic, functions, elements of arrays, calls.

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "eval/evaluate/environment_variables.h"
#include "hardware/compiler.h"
#include "hardware/hardware_calls.h"
#include "hardware/hardware_forms.h"
#include "hardware/hardware_functions.h"
#include "hardware/hardware_power.h"
#include "hardware/interpreter.h"
#include "hardware/special_functions.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Numbers whose doubles are known without fail.
bool isPlainNumber(DAG x) { return isImmediate(x) || isAmong(x, TagSet{INTNEG, INTPOS, RATIONAL, FLOAT, HFLOAT}); }

Word countOf(DAG call) { return isSequence(call[2]) ? memberCount(call[2]) : 1; }
DAG argumentOf(DAG call, Word i) { return isSequence(call[2]) ? call[2][i] : call[2]; }

bool isForm(DAG call, const char* name) { return isName(call[1]) && hasText(call[1], name); }

}  // namespace

// ---- values

int Compiler::value(DAG x, int into) {
  if (isPlainNumber(x)) return moved(constant(hfeval(x)), into);
  if (++depth_ > deepest) refuse();
  int result = 0;
  if (!refused_) {
    switch (tagOf(x)) {
      case NAME: {
        double named;
        result = hardwareConstant(textOf(x), named) ? moved(constant(named), into) : evaluate(x, into);
        break;
      }
      case LOCAL: case PARAM: {
        const int reg = variable(x);
        if (reg >= 0) result = moved(reg, into);
        else result = evaluate(x, into);
        break;
      }
      case SUM: result = sum(x, into); break;
      case PROD: result = product(x, into); break;
      case POWER: result = factor(x[1], x[2], into); break;
      case DCOLON: result = value(x[1], into); break;
      case TABLEREF: result = element(x, into); break;
      case FUNCTION: result = call(x, into); break;
      case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR:
        result = truthValue(x, into); break;
      case EXPSEQ:
        if (lengthOf(x) == 2) result = value(x[1], into);
        else result = lengthOf(x) == 1 ? moved(constant(0.0), into) : evaluate(x, into);
        break;
      default: result = evaluate(x, into); break;
    }
  }
  --depth_;
  return result;
}

int Compiler::number(DAG x, int into) {
  if (isTag(x, PARAM) && variable(x) >= 0) numericUses_ |= std::uint32_t{1} << variable(x);
  const bool unchecked = !mayBeReference(x);
  const int result = value(x, into);
  if (!unchecked) emit(Op::checkNumber, result);
  return result;
}

// ---- arithmetic

// The terms are added in order. A coefficient of -1 subtracts: the bits are the same.
int Compiler::sum(DAG x, int into) {
  const Word n = lengthOf(x);
  if (n == 1) return moved(constant(0.0), into);
  int total = 0;
  for (Word i = 1; i < n; i += 2) {
    const bool last = i + 2 == n;
    DAG coefficient = x[i + 1];
    const bool subtracts = coefficient == consm1 && i > 1;
    int term = number(x[i], coefficient == cons1 && i == 1 && last ? into : -1);
    if (coefficient != cons1 && !subtracts) {
      const int factor = number(coefficient);
      const int product = i == 1 && last ? target(into) : temporary();
      emit(Op::multiply, product, term, factor);
      term = product;
    }
    if (i == 1) {
      total = term;
      continue;
    }
    const int next = last ? target(into) : temporary();
    emit(subtracts ? Op::subtract : Op::add, next, total, term);
    total = next;
  }
  return total;
}

int Compiler::product(DAG x, int into) {
  const Word n = lengthOf(x);
  if (n == 1) return moved(constant(1.0), into);
  int total = -1;
  for (Word i = 1; i < n; i += 2) {
    const bool last = i + 2 == n;
    DAG base = x[i], exponent = x[i + 1];
    if (exponent == consm1) {
      const int divisor = number(base);
      const int next = last ? target(into) : temporary();
      emit(Op::divide, next, total < 0 ? constant(1.0) : total, divisor);
      total = next;
      continue;
    }
    const bool alone = total < 0 && last;
    const int part = exponent == cons1 ? number(base, alone ? into : -1) : factor(base, exponent, alone ? into : -1);
    if (total < 0) {
      total = part;
      continue;
    }
    const int next = last ? target(into) : temporary();
    emit(Op::multiply, next, total, part);
    total = next;
  }
  return total;
}

// base^exponent.
int Compiler::factor(DAG base, DAG exponent, int into) {
  const int b = number(base);
  constexpr int mostSteps = 64;
  const int n = isImmediate(exponent) ? immediateValue(exponent) : 0;
  if (n == 2) {
    const int result = target(into);
    emit(Op::square, result, b);
    return result;
  }
  if ((n > 2 && n <= mostSteps) || (n < 0 && n >= -mostSteps)) {
    const int result = target(into);
    emit(n > 0 ? Op::wholePower : Op::inversePower, result, b).tail.d = static_cast<std::uint16_t>(std::abs(n));
    return result;
  }
  const int e = number(exponent);
  const int result = target(into);
  emit(Op::power, result, b, e);
  return result;
}

int Compiler::truthValue(DAG x, int into) {
  const int result = temporary();
  const Label isFalse = newLabel(), end = newLabel();
  condition(x, false, isFalse);
  emit(Op::move, result, constant(1.0));
  emitJump(Op::jump, end);
  place(isFalse);
  emit(Op::move, result, constant(0.0));
  place(end);
  return moved(result, into);
}

// ---- elements

int Compiler::viewOf(int reg, Word rank) {
  auto isSame = [=](const View& view) { return view.reg == reg && view.rank == rank; };
  auto known = std::find_if(views_.begin(), views_.end(), isSame);
  if (known != views_.end()) return static_cast<int>(known - views_.begin());
  views_.push_back({reg, rank});
  return static_cast<int>(views_.size()) - 1;
}

// The array is looked at before the indices are worked out, unless these cannot fail.
Compiler::Place Compiler::place(DAG reference) {
  DAG index = reference[2];
  Place p{};
  p.rank = isSequence(index) ? memberCount(index) : 1;
  const int base = variable(reference[1]);
  p.base = base >= 0 ? base : value(reference[1]);
  p.view = viewOf(p.base, p.rank);
  auto indexAt = [&](Word k) { return isSequence(index) ? index[k + 1] : index; };
  bool safe = p.rank == 1 || p.rank == 2;
  for (Word k = 0; k < p.rank; ++k) safe = safe && (variable(indexAt(k)) >= 0 || cannotFail(indexAt(k)));
  if (!safe) emit(Op::view, p.base, 0, static_cast<int>(p.rank)).tail.d = static_cast<std::uint16_t>(p.view);
  if (p.rank == 1 || p.rank == 2) {
    // A reference as an index is found out with the bounds.
    auto indexRegister = [&](Word k) { return variable(indexAt(k)) >= 0 ? variable(indexAt(k)) : number(indexAt(k)); };
    p.first = indexRegister(0);
    p.second = p.rank == 2 ? indexRegister(1) : 0;
    return p;
  }
  if (p.rank > maxIndices) {
    refuse();
    return p;
  }
  p.first = used_;
  for (Word k = 0; k < p.rank; ++k) temporary();
  for (Word k = 0; k < p.rank; ++k) number(indexAt(k), p.first + static_cast<int>(k));
  return p;
}

int Compiler::element(DAG x, int into) {
  const Place p = place(x);
  const int result = target(into);
  if (p.rank == 1) {
    emit(Op::load1, result, p.base, p.first).tail.d = static_cast<std::uint16_t>(p.view);
  } else if (p.rank == 2) {
    Instruction& load = emit(Op::load2, result, p.base, p.first);
    load.tail.d = static_cast<std::uint16_t>(p.view);
    load.tail.e = static_cast<std::uint16_t>(p.second);
  } else {
    emit(Op::loadMany, result, p.base, p.first).tail.e = static_cast<std::uint16_t>(p.rank);
  }
  return result;
}

// ---- calls

int Compiler::functionOfNumbers(const HardwareFunction& f, DAG x, int into) {
  const Word n = countOf(x);
  if (f.arity == HardwareArity::fold) {
    if (n == 0) return evaluate(x, into);
    int total = number(argumentOf(x, 1), n == 1 ? into : -1);
    for (Word i = 2; i <= n; ++i) {
      const int next = number(argumentOf(x, i)), result = i == n ? target(into) : temporary();
      emit(Op::apply2, result, total, next).two = f.two;
      total = result;
    }
    return total;
  }
  if (n == 1 && f.one != nullptr) {
    const int argument = number(argumentOf(x, 1)), result = target(into);
    if (f.one == hfsqrt) emit(Op::squareRoot, result, argument);
    else emit(Op::apply1, result, argument).one = f.one;
    return result;
  }
  if (n == 2 && f.two != nullptr) {
    const int a = number(argumentOf(x, 1)), b = number(argumentOf(x, 2)), result = target(into);
    emit(Op::apply2, result, a, b).two = f.two;
    return result;
  }
  return evaluate(x, into);
}

// `if` and `piecewise`: pairs of a condition and a value, and what holds otherwise.
int Compiler::choice(DAG x, int into) {
  const Word n = countOf(x);
  const int result = temporary();
  const Label end = newLabel();
  Word i = 1;
  for (; i + 1 <= n; i += 2) {
    const Label otherwise = newLabel();
    condition(argumentOf(x, i), false, otherwise);
    moved(value(argumentOf(x, i + 1)), result);
    emitJump(Op::jump, end);
    place(otherwise);
  }
  moved(i == n ? value(argumentOf(x, n)) : constant(0.0), result);
  place(end);
  return moved(result, into);
}

// sum(e, i = a..b) and its kin, for a variable of the procedure: a loop that puts the variable back.
int Compiler::foldOverRange(DAG x, Fold fold, int into) {
  DAG control = argumentOf(x, 2);
  auto kept = [this](int reg) { return isConstant(reg) ? reg : moved(reg, temporary()); };
  const int lowest = kept(number(control[2][1])), highest = kept(number(control[2][2]));
  const int slot = variable(control[1]), before = moved(slot, temporary());
  const int total = moved(constant(fold.start), temporary()), counter = moved(lowest, temporary());
  const Label start = newLabel(), end = newLabel();
  emitJump(Op::jumpUnlessLessEqual, end, counter, highest);
  place(start);
  moved(counter, slot);
  const int term = number(argumentOf(x, 1));
  emit(fold.step, total, total, term);
  emitJump(Op::nextUp, start, counter, constant(1.0), highest);
  place(end);
  moved(before, slot);
  return moved(total, into);
}

// The procedure is looked for before the arguments are worked out.
int Compiler::userCall(DAG x, int into) {
  const Word n = countOf(x);
  if (n > mostArguments) return evaluate(x, into);
  for (Word i = 1; i <= n; ++i)
    if (isVarForm(argumentOf(x, i))) return evaluate(x, into);
  const auto site = static_cast<std::uint16_t>(sites_.size());
  sites_.push_back({x, DAG()});
  const int result = temporary(), callee = temporary(), first = used_;
  const Label end = newLabel();
  emitJump(Op::resolve, end, callee, result);
  code_.back().tail.d = site;
  for (Word i = 0; i < n; ++i) temporary();
  for (Word i = 0; i < n; ++i) value(argumentOf(x, i + 1), first + static_cast<int>(i));
  emit(Op::call, result, callee, first).tail.e = static_cast<std::uint16_t>(n);
  place(end);
  return moved(result, into);
}

bool Compiler::isFold(DAG x, Fold& fold) const {
  if (isForm(x, "sum") || isForm(x, "Sum") || isForm(x, "add")) fold = {0.0, Op::add};
  else if (isForm(x, "product") || isForm(x, "Product") || isForm(x, "mul")) fold = {1.0, Op::multiply};
  else return false;
  if (countOf(x) != 2) return false;
  DAG control = argumentOf(x, 2);
  return isTag(control, EQUATION) && isTag(control[2], RANGE) && variable(control[1]) >= 0;
}

int Compiler::call(DAG x, int into) {
  DAG head = x[1];
  if (isTag(head, LOCAL) || isTag(head, PARAM)) return userCall(x, into);
  if (!isName(head)) return evaluate(x, into);
  if (const HardwareFunction* f = hardwareFunction(textOf(head))) return functionOfNumbers(*f, x, into);
  if (isForm(x, "evalhf") && countOf(x) == 1) return value(argumentOf(x, 1), into);
  if (isForm(x, "piecewise") || (isForm(x, "if") && countOf(x) == 3)) return choice(x, into);
  if (Fold fold; isFold(x, fold)) return foldOverRange(x, fold, into);
  return hardwareForm(textOf(head)) != nullptr ? evaluate(x, into) : userCall(x, into);
}

int Compiler::evaluate(DAG x, int into) {
  const int result = target(into);
  emit(Op::evaluate, result).object = x;
  return result;
}

// ---- what is known without running

bool Compiler::mayBeReference(DAG x) const {
  if (isImmediate(x)) return false;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case SUM: case PROD: case POWER:
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case AND: case NOT: case OR: case TABLEREF:
      return false;
    case NAME: {
      double named;
      return !hardwareConstant(textOf(x), named);
    }
    case LOCAL: return holdsReference_[static_cast<std::size_t>(local(x))];
    case PARAM: {
      const int reg = variable(x);
      if (reg < 0) return true;
      return holdsReference_[static_cast<std::size_t>(reg)] || (knownNumeric_ >> reg & 1) == 0;
    }
    case DCOLON: return mayBeReference(x[1]);
    case EXPSEQ: return lengthOf(x) == 2 && mayBeReference(x[1]);
    case FUNCTION: {
      if (!isName(x[1])) return true;
      if (hardwareFunction(textOf(x[1])) != nullptr) return false;
      if (isForm(x, "piecewise") || isForm(x, "if")) {
        for (Word i = 1; i <= countOf(x); ++i)
          if (mayBeReference(argumentOf(x, i))) return true;
        return false;
      }
      Fold fold;
      return !isFold(x, fold) && !isForm(x, "time");
    }
    default: return true;
  }
}

bool Compiler::cannotFail(DAG x) const {
  if (isPlainNumber(x)) return true;
  switch (tagOf(x)) {
    case LOCAL: case PARAM: return variable(x) >= 0 && !mayBeReference(x);
    case SUM:
      for (Word i = 1; i < lengthOf(x); ++i)
        if (!cannotFail(x[i])) return false;
      return true;
    case PROD:
      for (Word i = 1; i < lengthOf(x); i += 2)
        if (x[i + 1] != cons1 || !cannotFail(x[i])) return false;
      return true;
    default: return false;
  }
}

}  // namespace korel
