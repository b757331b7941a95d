#include "eval/simplify/aliases.h"

#include <cstring>

#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel {

namespace {

Word aliasCount() { return lengthOf(AliasToKorel) - 1; }

bool isImaginaryUnit(DAG x) { return x == sqrtm1 || (isTag(x, NAME) && std::strcmp(textOf(x), "I") == 0); }

bool isConstant(DAG x) { return isImmediate(x) || tagOf(x) <= STRING || x == ini("infinity") || x == ini("undefined"); }

void checkEquations(DAG equations, bool allowAny) {
  for (Word i = 1; i < lengthOf(equations); ++i)
    if (!isTag(equations[i], EQUATION)) KernelException("equations expected");
  if (allowAny) return;
  for (Word i = 1; i < lengthOf(equations); ++i)
    for (DAG side : {equations[i][1], equations[i][2]}) {
      if (isImaginaryUnit(side)) KernelException("use interface(imaginaryunit=...) to set the imaginary unit");
      if (isConstant(side)) KernelException("aliases cannot be numeric or string constants");
    }
}

// The pairs being edited: two sequences with room for every new entry, `count` of them in use.
struct Tables {
  DAG in, out;
  Word count;
};

DAG withRoom(DAG sequence, Word more) {
  DAG result = newl2(lengthOf(sequence) + more, EXPSEQ);
  for (Word i = 1; i < lengthOf(sequence); ++i) result[i] = sequence[i];
  return result;
}

void enter(Tables& tables, DAG equation, bool isAlias) {
  DAG left = equation[1], right = equation[2];
  Word at = 1;
  while (at <= tables.count && tables.in[at][1] != left) ++at;
  if (left == right) {
    if (at > tables.count) return;
    for (Word i = at; i < tables.count; ++i) {
      tables.in[i] = tables.in[i + 1];
      tables.out[i] = tables.out[i + 1];
    }
    --tables.count;
    return;
  }
  if (at > tables.count) tables.count = at;
  tables.in[at] = equation;
  tables.out[at] = isAlias ? simpl(new3(EQUATION, right, left)) : simpl(new3(EQUATION, null, null));
}

void store(DAG& table, DAG sequence, Word count) {
  sequence = count == 0 ? null : simpl(copysub(sequence, 0, count));
  updategen(sequence);
  table = sequence;
}

// An entry is applied once: what a later one would change in its right side stays as it is.
void warnOfChains() {
  for (Word i = 1; i <= aliasCount(); ++i)
    for (Word j = i + 1; j <= aliasCount(); ++j)
      if (has(AliasToKorel[i][2], AliasToKorel[j][1]))
        KernelWarning(2, "alias or macro %1 defined in terms of %2", AliasToKorel[i][1], AliasToKorel[j][1]);
}

}  // namespace

DAG subsalias(DAG table, DAG x) { return table == null ? x : substituteInCopy(table, x); }

DAG expandAliases(DAG statement) {
  if (isTag(statement, FUNCTION)) {
    if (statement[1] == ini("alias")) return statement;
    if (statement[1] == ini("macro")) return addalias(statement[2], true, false);
  }
  if (AliasToKorel == null) return statement;
  return simpl(subsalias(AliasToKorel, statement));
}

DAG addalias(DAG equations, bool allowAny, bool isAlias) {
  checkEquations(equations, allowAny);
  Word more = lengthOf(equations) - 1;
  if (more == 0) return retalias(isAlias);
  Tables tables{withRoom(AliasToKorel, more), withRoom(KorelToAlias, more), aliasCount()};
  for (Word i = 1; i <= more; ++i) enter(tables, equations[i], isAlias);
  store(AliasToKorel, tables.in, tables.count);
  store(KorelToAlias, tables.out, tables.count);
  warnOfChains();
  return retalias(isAlias);
}

DAG retalias(bool isAlias) {
  DAG list = newl2(aliasCount() + 1, EXPSEQ);
  for (Word i = 1; i <= aliasCount(); ++i) {
    bool entryIsAlias = KorelToAlias[i][1] != KorelToAlias[i][2];
    list[i] = entryIsAlias == isAlias ? AliasToKorel[i] : null;
  }
  return simpl(list);
}

DAG builtin::alias(const BuiltinCall& call) { return addalias(call.arguments, false, true); }
DAG builtin::macro(const BuiltinCall& call) { return addalias(call.arguments, true, false); }

}  // namespace korel
