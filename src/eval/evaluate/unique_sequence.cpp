#include "eval/evaluate/unique_sequence.h"

#include <algorithm>
#include <cassert>

#include "eval/evaluate/operand.h"
#include "eval/simplify/simplify.h"
#include "store/chain_scan.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr Word fewMembers = 8;

// The key that `hashalg` gives the sequence.
Word keyOf(const DAG* members, Word count) {
  Word h = static_cast<Word>(tagNumber(EXPSEQ));
  for (Word i = 0; i < count; ++i) h = members[i].word + 1027 * h;
  return h == 0 ? 1 : h;
}

DAG findSequence(Word key, const DAG* members, Word count) {
  DAG chain = simpltab[bucketIndex(key, lengthOf(simpltab))];
  if (!chain) return DAG();
  const DAG found = pairValue(findInChain(chain, key, [=](DAG member) {
    return headerWord(member) == (EXPSEQ | (count + 1)) && std::equal(members, members + count, &member[1]);
  }));
  updategen(found);
  return found;
}

}  // namespace

DAG evaluatedSequence(DAG s) {
  const Word count = lengthOf(s) - 1;
  if (count == 0 || count > fewMembers) return simpl(eval(s));
  DAG members[fewMembers];
  for (Word i = 0; i < count; ++i) members[i] = evalOperand(s[i + 1]);
  bool nested = count == 1;  // a sequence of one may stand for its member
  for (Word i = 0; i < count; ++i) {
    members[i] = simpl(members[i]);
    nested |= isObject(members[i]) && hasTag(members[i], EXPSEQ);
  }
  if (!nested)
    if (DAG found = findSequence(keyOf(members, count), members, count)) return found;
  DAG made = newl2(count + 1, EXPSEQ);
  for (Word i = 0; i < count; ++i) made[i + 1] = members[i];
  if (nested) return simpl(made);
  assert(hashalg(made) == keyOf(members, count));
  return makeUnique(made);
}

}  // namespace korel
