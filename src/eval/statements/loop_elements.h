#pragma once
// What loops run over: the characters between two others, the characters of a string, or the operands of
// anything else.

#include <cstdint>
#include <cstring>

#include "eval/structure/operands.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

/// A bound of a loop over characters: a STRING of one.
inline bool isCharacterString(DAG x) { return isTag(x, STRING) && isCharacter(x); }
inline int codeOf(DAG string) { return static_cast<unsigned char>(textOf(string)[0]); }

inline std::int64_t elementCount(DAG container) {
  return isTag(container, STRING) ? static_cast<std::int64_t>(std::strlen(textOf(container))) : numterms(container);
}
/// Element `k`, from 1 to the count.
inline DAG element(DAG container, std::int64_t k) {
  switch (tagOf(container)) {
    case LIST: case SET: return container[1][k];
    case STRING: return charinstall(textOf(container)[k - 1]);
    default: return op(k, k, container);
  }
}

}  // namespace korel
