// Native library procedures on lists.

#include <algorithm>
#include <vector>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "library/native/native.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

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

}  // namespace korel
