#include "eval/types/type_match.h"

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

DAG typematchA[typematchLength];
int typematchI = -1;

namespace {

// Bindings of the matches in progress outside the innermost one: EXPSEQ (pairs..., those further out),
// or 0.
DAG outerBindings;

void visitBindings(Visitor visit) {
  for (int i = 0; i < typematchI; ++i) visit(typematchA[i]);
  visit(outerBindings);
}

void forgetBindings(const char*) {
  typematchI = -1;
  outerBindings = DAG(static_cast<Word>(errorProcParam));
}

bool isAssignable(DAG x) { return isTag(x, TABLEREF) || (isName(x) && !isProtected(x[2])); }

// In order, once all names are known to take a value.
void assignBindings(const DAG* pairs, int count) {
  for (int i = 0; i < count; i += 2)
    if (!isAssignable(pairs[i])) assign(pairs[i], pairs[i + 1]);  // its error comes before any change
  for (int i = 0; i < count; i += 2) assign(pairs[i], pairs[i + 1]);
}

DAG equationsOf(const DAG* pairs, int count) {
  DAG body = newl2(static_cast<Word>(count / 2 + 1), EXPSEQ);
  for (int i = 0; i < count; i += 2) body[i / 2 + 1] = simpl(new3(EQUATION, pairs[i], pairs[i + 1]));
  return simpl(new2(LIST, simpl(body)));
}

}  // namespace

void bindPattern(DAG name, DAG matched) {
  typematchA[typematchI++] = name;
  typematchA[typematchI++] = matched;
  if (typematchI == typematchLength) KernelException("too many patterns for typematch");
}

SuspendedBindings suspendBindings() {
  SuspendedBindings suspended{typematchI};
  if (typematchI > 0) {
    DAG saved = newl2(static_cast<Word>(typematchI + 2), EXPSEQ);
    std::copy_n(typematchA, typematchI, &saved[1]);
    saved[typematchI + 1] = outerBindings;
    PushParamErrorProc(forgetBindings, outerBindings);
    outerBindings = saved;
  }
  typematchI = -1;
  return suspended;
}

void resumeBindings(SuspendedBindings suspended) {
  typematchI = suspended.count;
  if (typematchI <= 0) return;
  PopErrorProc();
  std::copy_n(&outerBindings[1], typematchI, typematchA);
  outerBindings = outerBindings[typematchI + 1];
}

DAG builtin::typematch(const BuiltinCall& call) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n != 2 && n != 3) wrongParameters(call);
  if (n == 3 && !isNameOrIndexed(args[3])) wrongParameters(call);
  DAG pairs[typematchLength];
  typematchI = 0;
  PushParamErrorProc(forgetBindings, outerBindings);
  bool matches = korel::type(args[1], args[2]);
  PopErrorProc();
  int count = typematchI;
  std::copy_n(typematchA, count, pairs);
  typematchI = -1;
  if (!matches) return ini("false");
  if (n == 3) assign(args[3], equationsOf(pairs, count));
  else assignBindings(pairs, count);
  return ini("true");
}

void ResetTypematch() { typematchI = -1; }

void initializeTypeMatch() { registerRootWalker(visitBindings); }

}  // namespace korel
