#include "eval/structure/sets.h"

#include <algorithm>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "eval/types/type_names.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {


std::int32_t signedWord(DAG x) { return static_cast<std::int32_t>(x.word); }
bool before(DAG x, DAG y) { return signedWord(x) < signedWord(y); }

// The members of a SET, sorted.
struct Members {
  const DAG* at;
  const DAG* end;

  explicit Members(DAG set) : at(&set[1][1]), end(at + (lengthOf(set[1]) - 1)) {}
  Word count() const { return static_cast<Word>(end - at); }
};

DAG setOf(DAG body) { return simpl(new2(SET, body)); }

// Appends the rest of `from`; gives the new end.
DAG* appendRest(DAG* out, const Members& from) {
  if (from.at == from.end) return out;
  std::memcpy(static_cast<void*>(out), from.at, sizeof(DAG) * (from.end - from.at));
  return out + (from.end - from.at);
}

// How many members two sets have in common.
Word commonCount(Members x, Members y) {
  Word common = 0;
  while (x.at != x.end && y.at != y.end) {
    std::int32_t p = signedWord(*x.at), q = signedWord(*y.at);
    // No branch on the order of two addresses, which nothing predicts.
    x.at += p <= q;
    y.at += q <= p;
    common += p == q;
  }
  return common;
}

}  // namespace

DAG setunion(DAG a, DAG b) {
  if (a == b) return a;
  Members x(a), y(b);
  Word common = commonCount(x, y);
  if (common == y.count()) return setOf(a[1]);
  if (common == x.count()) return setOf(b[1]);
  std::uint64_t total = std::uint64_t{x.count()} + y.count() - common + 1;
  if (total > maxLength) KernelException("object too large");
  DAG merged = news(static_cast<Word>(total));
  setHeader(merged, EXPSEQ, static_cast<Word>(total));
  DAG* out = &merged[1];
  while (x.at != x.end && y.at != y.end) {
    DAG p = *x.at, q = *y.at;
    bool fromX = signedWord(p) <= signedWord(q), fromY = signedWord(q) <= signedWord(p);
    *out++ = fromX ? p : q;
    x.at += fromX;
    y.at += fromY;
  }
  appendRest(appendRest(out, x), y);
  return setOf(merged);
}

DAG setinters(DAG a, DAG b) {
  if (a == b) return a;
  Members x(a), y(b);
  Word common = commonCount(x, y);
  if (common == 0) return emptyset;
  if (common == x.count()) return setOf(a[1]);
  if (common == y.count()) return setOf(b[1]);
  DAG shared = newl2(common + 1, EXPSEQ);
  DAG* out = &shared[1];
  while (common != 0) {
    std::int32_t p = signedWord(*x.at), q = signedWord(*y.at);
    *out = *x.at;
    out += p == q;
    common -= p == q;
    x.at += p <= q;
    y.at += q <= p;
  }
  return setOf(shared);
}

DAG setdiff(DAG a, DAG b) {
  Members x(a), y(b);
  Word common = commonCount(x, y);
  if (common == 0) return a;
  if (common == x.count()) return emptyset;
  DAG kept = CopyAlg(a[1]);
  DAG* out = &kept[1];
  while (x.at != x.end && y.at != y.end) {
    std::int32_t p = signedWord(*x.at), q = signedWord(*y.at);
    *out = *x.at;
    out += p < q;
    x.at += p <= q;
    y.at += q <= p;
  }
  out = appendRest(out, x);
  shorten(kept, lengthOf(kept), static_cast<Word>(out - &kept[0]));
  return setOf(kept);
}

Word setPosition(DAG members, DAG x) {
  const DAG* first = &members[1];
  const DAG* last = first + (lengthOf(members) - 1);
  const DAG* at = std::lower_bound(first, last, x, before);
  return at != last && *at == x ? static_cast<Word>(at - first) + 1 : 0;
}

bool setmember(DAG s, DAG x) { return setPosition(s[1], x) != 0; }

DAG setsort(DAG s) {
  if (!isTag(s, EXPSEQ)) notimpl("set sort: EXPSEQ expected");
  Word n = lengthOf(s);
  Word ascending = 2;
  while (ascending < n && before(s[ascending - 1], s[ascending])) ++ascending;
  if (ascending >= n) return s;
  DAG sorted = CopyAlg(s);
  std::sort(&sorted[1], &sorted[1] + (n - 1), before);
  return sorted;
}

// ---- the operators

namespace {

// The sets `first` to before `end` of the arguments. By halves: one after the other, many sets would be
// copied as often as there are further ones.
DAG combined(DAG sets, Word first, Word end, DAG (*operation)(DAG a, DAG b)) {
  if (end - first == 1) return sets[first];
  Word middle = first + (end - first) / 2;
  DAG left = combined(sets, first, middle, operation);
  return operation(left, combined(sets, middle, end, operation));
}

DAG combineSets(const BuiltinCall& call, DAG (*operation)(DAG a, DAG b)) {
  Word n = argumentCount(call);
  bool sets = true;
  for (Word i = 1; i <= n; ++i) {
    if (IsNotSet(call.arguments[i])) wrongParameters(call);
    sets = sets && isTag(call.arguments[i], SET);
  }
  if (!sets) return unevaluatedCall(call);
  return n == 0 ? emptyset : combined(call.arguments, 1, n + 1, operation);
}

}  // namespace

DAG builtin::unionOperator(const BuiltinCall& call) { return combineSets(call, setunion); }
DAG builtin::intersectOperator(const BuiltinCall& call) { return combineSets(call, setinters); }
DAG builtin::minusOperator(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return combineSets(call, setdiff);
}

}  // namespace korel
