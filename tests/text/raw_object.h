#pragma once
// Objects as the parser leaves them, in a compact notation: SUM(PROD(a,2),-1).
//
// Names stand as they are, strings in double quotes, the empty sequence as NULL. Nothing is simplified
// on the way, and shared or moved parts show by what they hold.

#include <string>

#include "store/check/verify.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel::test {

inline std::string rawInteger(DAG x) {
  if (isImmediate(x)) return std::to_string(immediateValue(x));
  std::string digits = tagOf(x) == INTNEG ? "-" : "";
  for (Word i = lengthOf(x) - 1; i >= 1; --i) {
    std::string part = std::to_string(rawField(x, i));
    if (i != lengthOf(x) - 1) part.insert(0, 4 - part.size(), '0');
    digits += part;
  }
  return digits;
}

inline std::string raw(DAG x) {
  if (!x) return "0 word";
  if (x == null) return "NULL";
  switch (tagOf(x)) {
    case INTPOS: case INTNEG: return rawInteger(x);
    case NAME: return textOf(x);
    case STRING: return std::string("\"") + textOf(x) + "\"";
    default: break;
  }
  std::string result = DagIDToName(tagOf(x));
  result += "(";
  for (Word i = 1; i < lengthOf(x); ++i) {
    if (i > 1) result += ",";
    result += raw(x[i]);
  }
  return result + ")";
}

}  // namespace korel::test
