// Walks over expressions: searches, substitution and selection on large and heavily shared objects.

#include <random>
#include <unordered_set>
#include <vector>

#include "eval/simplify/simplify.h"
#include "eval/structure/map.h"
#include "eval/structure/select_elements.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "numbers/integer/integer.h"
#include "row.h"
#include "store/names.h"
#include "store/objects.h"

using namespace korel;
using namespace korel::bench;

namespace {

constexpr int nodes = 1000000;

// A call of two earlier calls each, so that the tree below is astronomically large.
std::vector<DAG> sharedCalls() {
  std::mt19937 random(1);
  std::vector<DAG> all{naminstall("leaf")};
  DAG f = naminstall("f");
  for (int i = 1; i < nodes; ++i) {
    auto pick = [&] { return all[i - 1 - random() % std::min(i, 1000)]; };
    all.push_back(simpl(newCall(f, {all[i - 1], pick()})));
  }
  return all;
}

bool referenceWalk(DAG x, DAG sought) {
  std::unordered_set<Word> seen;
  std::vector<DAG> pending{x};
  while (!pending.empty()) {
    DAG object = pending.back();
    pending.pop_back();
    if (object == sought) return true;
    if (isImmediate(object) || hasTag(object, NAME) || !seen.insert(object.word).second) continue;
    for (Word i = 1; i < lengthOf(object); ++i) pending.push_back(object[i]);
  }
  return false;
}

DAG rows() {
  static std::vector<DAG> calls = sharedCalls();
  static DAG top = calls.back(), other = naminstall("other");
  row(
      "has in 10^6 shared calls, without success", "ms", 1e3, "a walk with a standard set of words",
      [] { has(top, other); }, [] { referenceWalk(top, other); });

  static DAG list = newl2(nodes + 1, EXPSEQ);
  for (int i = 1; i <= nodes; ++i) list[i] = i % 3 == 0 ? calls[i - 1] : immediate(i);
  list = simpl(new2(LIST, list));
  static Predicate predicate = makePredicate(ini("type"), simpl(new2(EXPSEQ, ini("integer"))));
  row(
      "select by a type from 10^6", "ms", 1e3, "copying what has the tag",
      [] {
        MapFunction({mselect, &predicate, OperandWalk::selection}, list);
      },
      [] {
        std::vector<DAG> copied;
        for (int i = 1; i <= nodes; ++i)
          if (isInteger(list[1][i])) copied.push_back(list[1][i]);
        volatile std::size_t sink = copied.size();
        (void)sink;
      });

  static DAG sum = newl2(200001, SUM);
  for (int i = 0; i < 100000; ++i) {
    sum[2 * i + 1] = simpl(newCall(naminstall("g"), {immediate(i), i % 2 == 0 ? naminstall("x") : other}));
    sum[2 * i + 2] = immediate(i + 2);
  }
  sum = simpl(sum);
  static DAG equation = simpl(new3(EQUATION, naminstall("x"), naminstall("y")));
  row(
      "subs in a sum of 10^5 calls, half of them changed", "ms", 1e3, "simplifying the sum once more",
      [] { subs(equation, sum); },
      [] {
        DAG copy = CopyAlg(sum);
        copy[2] = immediate(1);
        simpl(copy);
      });
  return null;
}

}  // namespace

int main() {
  startKernel();
  runInKernel(rows);
}
