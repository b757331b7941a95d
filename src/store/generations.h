#pragma once
// Generations: the age labels of objects and the write barrier.
//
// Evaluation nests; objects made at a deep level mostly die when that level ends. Each object carries
// the label of the generation that was current when it was made; the evaluator releases whole
// generations when control falls back below the level that made them. Whoever stores an object where
// it outlives its level passes it through `updategen` first.

#include "store/dag.h"

namespace korel {

constexpr int generationCount = 1024;
constexpr int firstMarkLabel = 1022;
constexpr std::int32_t noLevel = 999999;

/// Current evaluation level: the depth of the current environment block, kept here because every
/// allocation reads it. `frame/environment.h` saves and restores it with the block.
extern std::int32_t evaluationLevel;

extern std::int32_t gcgen;                  // current generation number
extern Word genpat;                         // gcgen as a label word: the control word of new objects
extern std::int32_t genc[generationCount];  // lowest level at which it allocated; 0: released
extern std::int32_t gene[generationCount];  // lowest level any statement ended at meanwhile

extern std::int64_t nextgc;     // words: value of `cused` that triggers a collection
extern std::int64_t incrgc;     // words: the collection interval
extern std::int64_t nextgcgen;  // words: value of `cused` that opens a new generation
extern std::int64_t incrgen;    // words between generations

/// Write barrier: `x` is about to be stored where it outlives its level. Nothing for an immediate.
inline void updategen(DAG x) {
  if (!isObject(x)) return;
  Word g = generationOf(x);
  if (g < firstMarkLabel && genc[g] != 0 && genc[g] <= evaluationLevel) return;
  if (evaluationLevel < genc[gcgen]) genc[gcgen] = evaluationLevel;
  constexpr Word flags = (Word{1} << generationShift) - 1;
  controlWord(x) = genpat | (controlWord(x) & flags);
}
/// The barrier on `x` and on its direct components: of an rtable, all that its walk visits.
void updategens(DAG x);

/// Keeps `s`, and what it refers to, over every collection until `AllowGC`.
void ProtectFromGC(DAG s);
/// Ends the protection; true when there was one.
bool AllowGC(DAG s);
/// `AllowGC`, then gives the object back. The caller holds the only reference.
bool DisposeProtected(DAG s);

}  // namespace korel
