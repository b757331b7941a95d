// Walks over the name table: the names with and without values.

#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/types/types.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

bool isKnownFromTheStart(DAG name) {
  return AllIniNames && search(name.word, AllIniNames) != notFound;
}

struct NameWalk {
  int mode;
  DAG type;  // for mode 3, or 0
  DAG names; // EXPSEQ being filled, or 0 while counting
  std::int64_t count;
};

bool isWanted(const NameWalk& walk, DAG name) {
  switch (walk.mode) {
    case 3:
      if (!name[1]) return false;
      if (!walk.type) return !isKnownFromTheStart(name);
      return name[1] != name && !isEnvironmentName(name) && type(name[1], walk.type);
    case 4: return !name[1] && !isKnownFromTheStart(name) && !isEnvironmentName(name);
    default: return false;
  }
}

bool visitName(void* arg, PairAddress pair) {
  auto& walk = *static_cast<NameWalk*>(arg);
  DAG name = pairValue(pair);
  if (walk.mode == 5) {
    if (!name[1] && name[2] == null) controlWord(name) |= deferredBit;
    return true;
  }
  if (!isWanted(walk, name)) return true;
  if (walk.names) walk.names[walk.count + 1] = name;
  ++walk.count;
  return true;
}

}  // namespace

DAG loopname(int mode, DAG argument) {
  NameWalk walk{mode, argument, DAG(), 0};
  hashforeach(nametab, visitName, &walk);
  if (mode == 5) return null;
  if (walk.count == 0) return null;
  walk.names = newl2(static_cast<Word>(walk.count + 1), EXPSEQ);
  walk.count = 0;
  hashforeach(nametab, visitName, &walk);
  return simpl(walk.names);
}

}  // namespace korel
