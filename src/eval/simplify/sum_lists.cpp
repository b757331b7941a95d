// Lists in sums: they take in their coefficients and add element by element.

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/sum_steps.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// True for a list that takes its coefficient in as soon as it has one.
bool isPlainList(DAG x) {
  return isTag(x, LIST) && !(lengthOf(x[1]) > 1 && isObject(x[1][1]) && hasTag(x[1][1], FUNCTION));
}

void checkListsAdd(DAG a, DAG b) {
  if (lengthOf(a[1]) != lengthOf(b[1])) KernelException("adding lists of different length");
  auto has = [](DAG list, DAG attribute) { return lengthOf(list) == 3 && isMember(attribute, list[2]); };
  const DAG row = ini("row"), column = ini("column");
  if ((has(a, row) && has(b, column)) || (has(a, column) && has(b, row)))
    KernelException("adding a row list to a column list");
}

// Sum of the elements at one place of all LIST terms.
DAG sumOfElements(const Pair* p, Word n, Word place, Word lists) {
  DAG total, terms = newl2(2 * lists + 1, SUM);
  Pair* out = pairsOf(terms);
  bool numeric = true;
  for (Word i = 0; i < n; ++i) {
    if (!isTag(p[i].term, LIST)) continue;
    DAG element = p[i].term[1][place];
    *out++ = {element, cons1};
    numeric = numeric && isNumeric(element);
    if (numeric) total = total ? add(total, element) : element;
  }
  return simpl(numeric ? total : terms);
}

// What may evaluate to a sequence of any length.
constexpr TagSet sequenceSources = {NAME, MEMBER, TABLEREF, CATENATE, FUNCTION, UNEVAL, LOCAL, PARAM, LEXICAL};

bool holdsAny(DAG list, TagSet tags) {
  DAG body = list[1];
  for (Word i = 1; i < lengthOf(body); ++i)
    if (isAmong(body[i], tags)) return true;
  return false;
}

// Lists that are still calls add once they are evaluated, and so do lists of different length that may yet agree.
bool isListSumOpen(const Pair* p, Word n, Word first) {
  bool mayGrow = false, agree = true;
  for (Word i = first; i < n; ++i) {
    DAG list = p[i].term;
    if (!isTag(list, LIST)) continue;
    if (holdsAny(list, {FUNCTION})) return true;
    mayGrow = mayGrow || holdsAny(list, sequenceSources);
    agree = agree && lengthOf(list[1]) == lengthOf(p[first].term[1]);
  }
  return mayGrow && !agree;
}

// Lists add element by element into the first, coefficients taken in. All at once: sums of the first two, three,
// four lists would each be as long as what they hold.
void addLists(DAG s, Word first, Word lists) {
  Word n = pairCount(s);
  Pair* p = pairsOf(s);
  for (Word i = first; i < n; ++i) {
    if (!isTag(p[i].term, LIST)) continue;
    if (p[i].coefficient != cons1) p[i] = {mapToList(p[i].term, p[i].coefficient), cons1};
    if (i != first) checkListsAdd(p[first].term, p[i].term);
  }
  DAG sum = CopyAlg(p[first].term), body = CopyAlg(sum[1]);
  for (Word place = 1; place < lengthOf(body); ++place) {
    passWork(objectSteps);
    body[place] = sumOfElements(p, n, place, lists);
  }
  sum[1] = simpl(body);
  for (Word i = first + 1; i < n; ++i)
    if (isTag(p[i].term, LIST)) p[i] = {cons0, cons0};
  p[first].term = simpl(sum);
}

struct ListTerms {
  Word first = 0, count = 0;
};
ListTerms listTerms(DAG s) {
  ListTerms lists;
  for (Word i = pairCount(s); i-- > 0;)
    if (isTag(pairsOf(s)[i].term, LIST)) lists = {i, lists.count + 1};
  return lists;
}

}  // namespace

void settleLists(DAG s) {
  const ListTerms lists = listTerms(s);
  Word n = pairCount(s);
  Pair* p = pairsOf(s);
  if (lists.count > 1 && !isListSumOpen(p, n, lists.first)) return addLists(s, lists.first, lists.count);
  for (Word i = lists.first; i < n; ++i)
    if (isPlainList(p[i].term) && p[i].coefficient != cons1) p[i] = {mapToList(p[i].term, p[i].coefficient), cons1};
}

DAG mapToList(DAG list, DAG factor) {
  passWork(objectSteps);
  DAG body = CopyAlg(list[1]);
  for (Word i = 1; i < lengthOf(body); ++i)
    body[i] = simpl(isNumeric(body[i]) ? mul(body[i], factor) : new3(SUM, body[i], factor));
  DAG scaled = CopyAlg(list);
  scaled[1] = simpl(body);
  return simpl(scaled);
}

DAG withListsAdded(DAG sum) {
  if (!isTag(sum, SUM)) return sum;
  const ListTerms lists = listTerms(sum);
  if (lists.count < 2) return sum;
  DAG result = CopyAlg(sum);
  for (Word i = lists.first; i < pairCount(result); ++i) {
    DAG& term = pairsOf(result)[i].term;
    if (isTag(term, LIST)) term = simpl(term);
  }
  addLists(result, lists.first, lists.count);
  return result;
}

}  // namespace korel
