#include "eval/structure/subsop.h"

#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

namespace {

// ---- the common rules

DAG takeApart(DAG x) {
  const Kind& kind = kindOf(x);
  if (kind.takeApart != nullptr) return kind.takeApart(x);
  DAG copy = CopyAlg(x);
  if (kind.body != 0) copy[kind.body] = CopyAlg(x[kind.body]);
  return copy;
}

void replaceField(TakenApart& object, std::int64_t i, DAG replacement) {
  ReferenceFields fields = referenceFields(object.parts);
  if (static_cast<Word>(i) >= fields.first && static_cast<Word>(i) < fields.end) {
    object.parts[i] = replacement;
    return;
  }
  // A raw number is taken from an integer.
  if (!isInteger(replacement) || !FitIntoWord(replacement)) improperSelector();
  rawField(object.parts, i) = static_cast<Word>(static_cast<std::int32_t>(LongLongValue(replacement)));
}

// `i` is at least 0 and within the count of operands.
void replace(TakenApart& object, std::int64_t i, DAG replacement) {
  const Kind& kind = kindOf(object.original);
  if (i == 0) {
    if (kind.headField == 0) improperSelector();
    object.parts[kind.headField] = replacement;
  } else if (kind.replace != nullptr) {
    kind.replace(object, i, replacement);
  } else if (kind.body != 0) {
    object.parts[kind.body][i] = replacement;
  } else {
    replaceField(object, i, replacement);
  }
}

DAG putTogether(const TakenApart& object) {
  const Kind& kind = kindOf(object.original);
  return kind.putTogether != nullptr ? kind.putTogether(object) : simpl(object.parts);
}

// ---- several replacements

// A replacement is EQUATION(positions as an EXPSEQ, new operand). `depth` positions have been walked.
DAG replaceAll(DAG replacements, Word depth, DAG x) {
  checkStack();
  TakenApart object{x, takeApart(x)};
  std::int64_t count = numterms(x);
  auto placeOf = [&](Word k) {
    DAG position = replacements[k][1][depth + 1];
    if (!isInteger(position)) KernelException("integer expected in op list");
    std::int64_t i = operandPosition(position);
    if (i < 0) i += count + 1;
    if (i < 0 || i > count) improperSelector();
    return i;
  };
  auto isLast = [&](Word k) { return lengthOf(replacements[k][1]) == depth + 2; };
  for (Word k = 1, n = lengthOf(replacements); k < n; ++k) {
    std::int64_t i = placeOf(k);
    if (isLast(k)) {
      replace(object, i, replacements[k][2]);
      continue;
    }
    // All that goes into the same operand goes there together, at the first of them.
    passWork(n);
    DAG inside = newl2(n, EXPSEQ);
    Word used = 1;
    bool first = true;
    for (Word m = 1; m < n; ++m) {
      if (isLast(m) || placeOf(m) != i) continue;
      if (m < k) first = false;
      inside[used++] = replacements[m];
    }
    if (!first) continue;
    if (used != n) shorten(inside, n, used);
    replace(object, i, replaceAll(inside, depth + 1, op1(i, x)));
  }
  return putTogether(object);
}

}  // namespace

DAG subsop(std::int64_t i, DAG replacement, DAG x) {
  DAG positions = new2(EXPSEQ, simpl(NewInteger(i)));
  return replaceAll(new2(EXPSEQ, new3(EQUATION, positions, replacement)), 0, x);
}

DAG subsoplist(DAG positions, DAG replacement, DAG x) {
  if (lengthOf(positions[1]) == 1) return replacement;
  return replaceAll(new2(EXPSEQ, new3(EQUATION, positions[1], replacement)), 0, x);
}

DAG builtin::subsop(const BuiltinCall& call) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = args[n];
  DAG replacements = newl2(n, EXPSEQ);
  Word used = 1;
  for (Word k = 1; k < n; ++k) {
    if (!isTag(args[k], EQUATION)) wrongParameters(call);
    DAG position = args[k][1];
    if (isTag(position, LIST)) {
      if (position == emptylist) x = args[k][2];
      else replacements[used++] = new3(EQUATION, position[1], args[k][2]);
    } else if (isInteger(position)) {
      replacements[used++] = new3(EQUATION, new2(EXPSEQ, position), args[k][2]);
    } else {
      wrongParameters(call);
    }
  }
  if (used == 1) return x;
  if (used != n) shorten(replacements, n, used);
  return replaceAll(replacements, 0, x);
}

}  // namespace korel
