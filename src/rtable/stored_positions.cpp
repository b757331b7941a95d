#include "rtable/stored_positions.h"

#include "eval/simplify/simplify.h"
#include "rtable/element_access.h"
#include "rtable/offsets.h"
#include "rtable/shapes.h"
#include "store/hash.h"
#include "store/objects.h"

namespace korel {

bool isStoredPosition(DAG r, const std::int32_t* index) {
  Access a{r, index, DAG()};
  if (functionCount(r) != 0 && !isOpenPosition(a)) return false;
  switch (storageOf(r)) {
    case storageSparse: return !isInMissingHalf(a);
    case storageEmpty: return false;
    case storageScalar: case storageRectangular: return true;
    default: return offsetOf(r, index) >= 0;
  }
}

Columns columnsOfRow(DAG r, std::int32_t i) {
  // Beside the diagonal, to the left and to the right; a triangle goes on to the edge.
  std::int64_t left = 0, right = 0;
  constexpr std::int64_t edge = INT32_MAX;
  switch (storageOf(r)) {
    case storageDiagonal: break;
    case storageBand: left = tailOf(r, 2), right = tailOf(r, 1); break;
    case storageUpper: right = edge; break;
    case storageStrictUpper: left = -1, right = edge; break;
    case storageUpperHessenberg: left = 1, right = edge; break;
    case storageLower: left = edge; break;
    case storageStrictLower: left = edge, right = -1; break;
    case storageLowerHessenberg: left = edge, right = 1; break;
    default: left = right = edge; break;
  }
  return {static_cast<std::int32_t>(std::max<std::int64_t>(lowerBound(r, 1), i - left)),
          static_cast<std::int32_t>(std::min<std::int64_t>(upperBound(r, 1), i + right))};
}

namespace {

struct Keys {
  DAG sequence;
  Word at;
};

}  // namespace

DAG sparseIndices(DAG r) {
  if (isKorelSparse(r)) {
    if (!r[rtableData]) return new1(EXPSEQ);
    Keys keys{newl2(static_cast<Word>(hashcount(r[rtableData])) + 1, EXPSEQ), 1};
    hashforeach(
        r[rtableData],
        [](void* arg, PairAddress pair) {
          auto& k = *static_cast<Keys*>(arg);
          k.sequence[k.at++] = pairKey(pair);
          return true;
        },
        &keys);
    return keys.sequence;
  }
  const Word n = dimensionsOf(r), count = static_cast<Word>(tailOf(r, 2));
  const auto* vectors = reinterpret_cast<const std::int32_t*>(dataOf(r));
  DAG sequence = newl2(count + 1, EXPSEQ);
  for (Word at = 0; at < count; ++at) {
    std::int32_t index[maxDimensions];
    for (Word k = 0; k < n; ++k) index[k] = vectors[std::uint64_t{k} * rawField(r, rtableCount) + at];
    sequence[at + 1] = IndexToEXPSEQ(n, index);
  }
  return sequence;
}

}  // namespace korel
