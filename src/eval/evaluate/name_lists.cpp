#include "eval/evaluate/name_lists.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "eval/types/types.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

bool isKnownFromTheStart(DAG name) { return AllIniNames && search(name.word, AllIniNames) != notFound; }

// The names that satisfy `isWanted`, as an EXPSEQ in the order of the name table.
template <class Test>
DAG namesWith(Test isWanted) {
  struct Walk {
    Test& isWanted;
    DAG names;  // 0 while counting
    Word count;
  } walk{isWanted, DAG(), 0};
  auto visit = [](void* arg, PairAddress pair) {
    auto& w = *static_cast<Walk*>(arg);
    DAG name = pairValue(pair);
    if (!w.isWanted(name)) return true;
    // A type that runs procedures may make names meanwhile.
    if (w.names && w.count + 1 == lengthOf(w.names)) return false;
    ++w.count;
    if (w.names) w.names[w.count] = name;
    return true;
  };
  hashforeach(nametab, visit, &walk);
  if (walk.count == 0) return null;
  walk.names = newl2(walk.count + 1, EXPSEQ);
  walk.count = 0;
  hashforeach(nametab, visit, &walk);
  return simpl(walk.names);
}

}  // namespace

DAG assignedNames() {
  return namesWith([](DAG name) { return name[1] && !isKnownFromTheStart(name); });
}

DAG namesAssigned(DAG kind) {
  return namesWith(
      [kind](DAG name) { return name[1] && name[1] != name && !isEnvironmentName(name) && type(name[1], kind); });
}

DAG unassignedNames() {
  return namesWith([](DAG name) { return !name[1] && !isKnownFromTheStart(name) && !isEnvironmentName(name); });
}

}  // namespace korel
