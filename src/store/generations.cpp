#include "store/generations.h"

#include "store/collect/collector_phases.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel {

std::int32_t evaluationLevel = 1;
std::int32_t gcgen = 1;
Word genpat = Word{1} << generationShift;
std::int32_t genc[generationCount] = {0, noLevel};
std::int32_t gene[generationCount] = {0, noLevel};
std::int64_t nextgc = 250000;
std::int64_t incrgc = 250000;
std::int64_t nextgcgen = 0;
std::int64_t incrgen = 366;

void updategens(DAG x) {
  if (!isObject(x)) return;
  updategen(x);
  if (hasTag(x, RTABLE)) walkRtable(x, updategen);
  else forEachReferenceField(x, [](DAG field) { updategen(field); });
}

void ProtectFromGC(DAG s) { controlWord(s) |= protectedBit; }

bool AllowGC(DAG s) {
  bool was = (controlWord(s) & protectedBit) != 0;
  controlWord(s) &= ~protectedBit;
  return was;
}

bool DisposeProtected(DAG s) {
  bool was = AllowGC(s);
  release(s, lengthOf(s));
  return was;
}

}  // namespace korel
