#include "eval/structure/operands.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

void improperSelector() { KernelException("improper op or subscript selector"); }

std::int64_t numterms(DAG x) {
  const Kind& kind = kindOf(x);
  if (kind.body != 0) return lengthOf(x[kind.body]) - 1;
  return kind.count != nullptr ? kind.count(x) : lengthOf(x) - 1;
}

namespace {

DAG headOf(DAG x) {
  const Kind& kind = kindOf(x);
  if (kind.headField != 0) return x[kind.headField];
  if (kind.head != nullptr) return kind.head(x);
  const char* head = factsOf(tagOf(x)).head;
  if (head[0] == 0) improperSelector();
  return naminstall(head);
}

}  // namespace

DAG op1(std::int64_t i, DAG x) {
  if (i == 0) return headOf(x);
  const Kind& kind = kindOf(x);
  if (kind.body != 0) return x[kind.body][i];
  return kind.operand != nullptr ? kind.operand(x, i) : x[i];
}

DAG op(std::int64_t i, std::int64_t j, DAG x) {
  std::int64_t n = numterms(x);
  if (i < 0) i += n + 1;
  if (j < 0) j += n + 1;
  if (j > n || i < 0 || i > j + 1) improperSelector();
  if (i == j + 1) return null;
  if (i == j) return op1(i, x);
  if (Word body = kindOf(x).body; body != 0 && i == 1 && j == n) return x[body];
  DAG sequence = newl2(static_cast<Word>(j - i + 2), EXPSEQ);
  for (std::int64_t k = i; k <= j; ++k) sequence[k - i + 1] = op1(k, x);
  return simpl(sequence);
}

std::int64_t operandPosition(DAG integer) {
  if (!FitIntoWord(integer)) improperSelector();
  return LongLongValue(integer);
}

namespace {

DAG opRange(DAG range, DAG x) { return op(operandPosition(range[1]), operandPosition(range[2]), x); }

}  // namespace

bool isIntegerRange(DAG x) { return isTag(x, RANGE) && isInteger(x[1]) && isInteger(x[2]); }

DAG oplist(DAG positions, DAG x) {
  DAG list = positions[1];
  for (Word k = 1, n = lengthOf(list); k < n; ++k) {
    DAG position = list[k];
    if (isInteger(position)) {
      std::int64_t i = operandPosition(position);
      x = op(i, i, x);
    } else if (k + 1 < n) {
      KernelException("integer expected in op list");
    } else if (isIntegerRange(position)) {
      x = opRange(position, x);
    } else {
      KernelException("integer or integer range expected in op list");
    }
  }
  return x;
}

// ---- built-ins

DAG builtin::nops(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(NewInteger(numterms(call.arguments[1])));
}

DAG builtin::op(const BuiltinCall& call) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n == 1) return korel::op(1, numterms(args[1]), args[1]);
  if (n != 2) wrongParameters(call);
  DAG position = args[1], x = args[2];
  if (isInteger(position)) {
    std::int64_t i = operandPosition(position);
    return korel::op(i, i, x);
  }
  if (isIntegerRange(position)) return opRange(position, x);
  if (isTag(position, LIST)) return oplist(position, x);
  wrongParameters(call);
}

DAG builtin::member(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n < 2 || n > 3) wrongParameters(call);
  DAG x = call.arguments[1], container = call.arguments[2];
  if (!isTag(container, LIST) && !isTag(container, SET)) return unevaluatedCall(call);
  Word position = memberPosition(x, container[1]);
  if (position != 0 && n == 3) assign(evalname(call.arguments[3]), immediate(static_cast<std::int32_t>(position)));
  return truth(position != 0);
}

}  // namespace korel
