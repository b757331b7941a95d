// The simplifier: fresh sums of 10, 100 and 1,000 terms, half of them equal in pairs.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "row.h"
#include "store/names.h"
#include "store/objects.h"

using namespace korel;
using namespace korel::bench;

namespace {

std::vector<DAG> names;
int terms;

DAG rows() {
  for (int i = 0; i < 1000; ++i) names.push_back(naminstall(("v" + std::to_string(i)).c_str()));
  for (int n : {10, 100, 1000}) {
    terms = n;
    const int rounds = 200000 / n;
    char name[64];
    std::snprintf(name, sizeof name, "simpl of %d sums of %d terms", rounds, n);
    row(
        name, "ms", 1e3, "std::sort and merge of the same pairs",
        [rounds] {
          for (int round = 0; round < rounds; ++round) {
            DAG sum = newl2(static_cast<Word>(2 * terms + 1), SUM);
            for (int i = 0; i < terms; ++i) {
              sum[2 * i + 1] = names[static_cast<std::size_t>((i * 7 + round) % (terms / 2 + 1))];
              sum[2 * i + 2] = immediate(round + i);
            }
            simpl(sum);
          }
        },
        [rounds] {
          std::vector<std::pair<Word, long>> pairs(static_cast<std::size_t>(terms));
          for (int round = 0; round < rounds; ++round) {
            for (int i = 0; i < terms; ++i)
              pairs[static_cast<std::size_t>(i)] = {
                  names[static_cast<std::size_t>((i * 7 + round) % (terms / 2 + 1))].word, round + i};
            std::sort(pairs.begin(), pairs.end());
            std::size_t kept = 0;
            for (std::size_t i = 1; i < pairs.size(); ++i)
              if (pairs[i].first == pairs[kept].first) pairs[kept].second += pairs[i].second;
              else pairs[++kept] = pairs[i];
            volatile long sink = pairs[kept].second;
            (void)sink;
          }
        });
  }
  return null;
}

}  // namespace

int main() {
  startKernel();
  runInKernel(rows);
}
