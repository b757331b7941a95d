// Relations, truth values and sets in canonical form.

#include "eval/simplify/simplify.h"

#include <algorithm>

#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/structure/sets.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// First term of a SUM that is a finite number, or 0.
DAG numericTerm(DAG sum) {
  for (Word i = 1; i < lengthOf(sum); i += 2)
    if (isFiniteNumber(sum[i])) return sum[i];
  return DAG();
}

DAG difference(DAG x, DAG t) { return simpl(new5(SUM, x, cons1, t, consm1)); }

// Numbers move to the right side, so that a comparison with a sum keeps one constant.
void moveNumbers(DAG s) {
  DAG a = s[1], b = s[2];
  bool sum = isTag(a, SUM);
  if (!sum && !isFiniteNumber(a)) return;
  bool movable = isFiniteNumber(b) || (isTag(b, SUM) && numericTerm(b));
  if (!movable) return;
  if (!sum) {
    s[2] = difference(b, a);
    s[1] = isFloatNumber(a) ? consf0 : cons0;
    return;
  }
  while (isTag(a, SUM)) {
    DAG t = numericTerm(a);
    if (!t) break;
    a = difference(a, t);
    b = difference(b, t);
  }
  s[1] = a;
  s[2] = b;
}

DAG simplNot(DAG s) {
  DAG a = s[1];
  if (a == ini("true")) return ini("false");
  if (a == ini("false")) return ini("true");
  if (a == ini("FAIL")) return a;
  if (isTag(a, NOT)) return a[1];
  return makeUnique(s);
}

}  // namespace

DAG simplLessThan(DAG s) {
  simplifyFields(s);
  moveNumbers(s);
  if (DAG bound = operatorBinding(ini("<"))) return callBinding(bound, s[1], s[2]);
  if (DAG bound = operatorBinding(ini(">"))) return callBinding(bound, s[2], s[1]);
  return makeUnique(s);
}

DAG simplbool(DAG s) {
  Tag tag = tagOf(s);
  simplifyFields(s);
  DAG a = s[1], b = tag == NOT ? DAG() : s[2];
  DAG operatorName = tag == NOT ? ini("not") : tag == AND ? ini("and") : ini("or");
  if (DAG bound = operatorBinding(operatorName)) return tag == NOT ? callBinding(bound, a) : callBinding(bound, a, b);
  if (tag == NOT) return simplNot(s);
  if (a == b) return a;
  if (isTag(a, NOT) && isTag(b, NOT)) return simpl(new2(NOT, simpl(new3(tag == OR ? AND : OR, a[1], b[1]))));
  // For `or`, `true` decides and `false` steps aside; for `and` the other way round.
  DAG deciding = tag == OR ? ini("true") : ini("false");
  DAG neutral = tag == OR ? ini("false") : ini("true");
  if (a == deciding || b == deciding) return deciding;
  if (a == neutral) return b;
  if (b == neutral) return a;
  return makeUnique(s);
}

DAG simplset(DAG s) {
  if (hasTag(s, SET)) {
    DAG body = s[1];
    if (isImmediate(body) || !hasTag(body, EXPSEQ)) body = new2(EXPSEQ, body);
    s[1] = simplset(body);
    simplifyFields(s, 2);
    return makeUnique(s);
  }
  DAG members = simpl(s);
  DAG sorted = setsort(members);
  if (sorted == members) return members;
  DAG* first = &sorted[1];
  Word n = lengthOf(sorted);
  Word length = static_cast<Word>(std::unique(first, first + (n - 1)) - first) + 1;
  if (length != n) shorten(sorted, n, length);
  return simpl(sorted);
}

}  // namespace korel
