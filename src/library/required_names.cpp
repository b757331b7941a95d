// What a name needs to work elsewhere: the names that its value uses, theirs, and so on.

#include <vector>

#include "eval/evaluate/environment_variables.h"
#include "library/save.h"
#include "eval/simplify/simplify.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/word_map.h"
#include "eval/walk/has.h"

namespace korel {

namespace {

// Objects yet to be entered and those that have been; nothing raises an error while they are in use.
std::vector<DAG> waiting;
std::vector<DAG> required;
WordMap entered;

// Names of the kernel are there in every session.
bool isSessionName(DAG x) {
  return hasTag(x, NAME) && x[1] && !isEnvironmentName(x) &&
         search(x.word, AllIniNames) == notFound;
}

void enter(DAG x) {
  if (isImmediate(x) || entered.insert(x.word, 0) != WordMap::added) return;
  if (isSessionName(x)) {
    required.push_back(x);
    waiting.push_back(x[1]);
  } else if (!hasTag(x, NAME)) {
    waiting.push_back(x);
  }
}

}  // namespace

DAG BuildRequiredNameSeq(DAG name) {
  waiting.clear();
  required.clear();
  enter(name);
  while (!waiting.empty()) {
    DAG object = waiting.back();
    waiting.pop_back();
    if (!isImmediate(object)) forEachPart(object, enter);
  }
  entered.clear();
  // An unassigned name is saved all the same, with the warning that it deserves.
  if (required.empty()) required.push_back(name);
  DAG names = newl2(static_cast<Word>(required.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < required.size(); ++i) names[static_cast<Word>(i + 1)] = required[i];
  return simpl(names);
}

}  // namespace korel
