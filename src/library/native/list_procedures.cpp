// Native library procedures on lists.

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "eval/simplify/unique_pairs.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG listOf(DAG sequence) { return new2(LIST, simpl(sequence)); }

// The members of the list that is argument `i`.
DAG membersOf(const BuiltinCall& call, Word i) {
  if (argumentCount(call) < i || !isTag(call.arguments[i], LIST)) wrongParameters(call);
  return asSequence(call.arguments[i][1]);
}

// The result of `count` members, where that fits an object.
DAG sequenceOf(std::int64_t count) {
  if (count > std::int64_t{maxLength} - 1) KernelException("object too large");
  return newl2(static_cast<Word>(count + 1), EXPSEQ);
}

// Members of `list`, lists inside it opened `depth` levels down: counted, or stored behind `*at`.
void openLists(DAG list, std::int64_t depth, std::int64_t& count, DAG* at) {
  checkStack();
  DAG members = asSequence(list[1]);
  passWork(memberCount(members) + 1);
  for (Word i = 1; i <= memberCount(members); ++i) {
    if (depth > 0 && isTag(members[i], LIST)) {
      openLists(members[i], depth - 1, count, at);
    } else {
      if (at != nullptr) at[count] = members[i];
      ++count;
    }
  }
}

}  // namespace

// permute(list): the list of all its rearrangements, equal ones once, in the order in which the members stand in the
// list. The next one in lexicographic order of positions (Knuth, vol. 4A, 7.2.1.2, algorithm L).
DAG native::permute(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isTag(call.arguments[1], LIST)) wrongParameters(call);
  DAG members = call.arguments[1][1];
  const Word n = memberCount(members);
  // Each member by the place of its first occurrence.
  DAG places = newl2(n + 1, EXPSEQ);
  for (Word i = 1; i <= n; ++i) rawField(places, i) = memberPosition(members[i], members);
  auto* first = &rawField(places, 1);
  std::sort(first, first + n);
  std::int64_t count = 1, repeated = 0;
  for (Word i = 1; i <= n; ++i) {
    repeated = i > 1 && first[i - 1] == first[i - 2] ? repeated + 1 : 1;
    count = count * i / repeated;
    if (count > maxLength - 1) KernelException("object too large");
  }
  DAG all = newl2(static_cast<Word>(count + 1), EXPSEQ);
  for (std::int64_t k = 1; k <= count; ++k) {
    passWork(n + 20);
    DAG one = newl2(n + 1, EXPSEQ);
    for (Word i = 1; i <= n; ++i) one[i] = members[first[i - 1]];
    all[k] = simpl(new2(LIST, simpl(one)));
    std::next_permutation(first, first + n);
  }
  for (Word i = 1; i <= n; ++i) places[i] = immediate(0);
  return new2(LIST, simpl(all));
}

// combinations(list, k): all choices of k places, in the order of the places: the next one moves the last place that
// can still move (Knuth, vol. 4A, 7.2.1.3, algorithm L, read from the left).
DAG native::combinations(const BuiltinCall& call) {
  DAG members = membersOf(call, 1);
  if (argumentCount(call) != 2 || !isImmediate(call.arguments[2]) || immediateValue(call.arguments[2]) < 0)
    wrongParameters(call);
  const Word n = memberCount(members), k = static_cast<Word>(immediateValue(call.arguments[2]));
  if (k > n) return listOf(newl2(1, EXPSEQ));
  std::int64_t count = 1;
  for (Word i = 1; i <= std::min(k, n - k); ++i) {
    count = count * (n - i + 1) / i;
    if (count > maxLength) KernelException("object too large");
  }
  DAG all = sequenceOf(count);
  // The places stand as immediates, so that the object is a sequence at all times.
  DAG places = newl2(k + 1, EXPSEQ);
  auto placeOf = [&](Word i) { return static_cast<Word>(immediateValue(places[i])); };
  for (Word i = 1; i <= k; ++i) places[i] = immediate(static_cast<std::int32_t>(i));
  for (std::int64_t c = 1; c <= count; ++c) {
    passWork(k + 20);
    DAG one = newl2(k + 1, EXPSEQ);
    for (Word i = 1; i <= k; ++i) one[i] = members[placeOf(i)];
    all[static_cast<Word>(c)] = simpl(listOf(one));
    Word i = k;
    while (i > 0 && placeOf(i) == n - k + i) --i;
    if (i == 0) break;
    for (Word next = placeOf(i) + 1; i <= k; ++i) places[i] = immediate(static_cast<std::int32_t>(next++));
  }
  return listOf(all);
}

// distinct(list): its members, each where it stands first.
DAG native::distinct(const BuiltinCall& call) {
  DAG members = membersOf(call, 1);
  const Word n = memberCount(members);
  if (n == 0) return call.arguments[1];
  DAG firsts = firstOccurrences(&members[1], n, 1);
  DAG kept = newl2(n + 1, EXPSEQ);
  Word count = 0;
  for (Word i = 1; i <= n; ++i)
    if (immediateValue(firsts[i]) == static_cast<std::int32_t>(i - 1)) kept[++count] = members[i];
  return listOf(copysub(kept, 0, count));
}

// flatten(list, depth): lists inside it opened, all of them without `depth`.
DAG native::flatten(const BuiltinCall& call) {
  membersOf(call, 1);
  std::int64_t depth = maxImmediate, count = 0;
  if (argumentCount(call) > 1) {
    if (!isImmediate(call.arguments[2])) wrongParameters(call);
    depth = immediateValue(call.arguments[2]);
  }
  openLists(call.arguments[1], depth, count, nullptr);
  DAG flat = sequenceOf(count);
  count = 0;
  openLists(call.arguments[1], depth, count, &flat[1]);
  return listOf(flat);
}

}  // namespace korel
