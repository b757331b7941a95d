#pragma once
// Which fields of an object hold references.
//
// One place for all traversals: the marker, the copier, the check of the heap, the dump. A field that
// is not named here is raw. Rtables keep references outside their words as well; who follows those
// asks the rtable floor (collector.h).

#include "store/dag.h"
#include "store/tag_facts.h"

namespace korel {

/// Coefficients of a ZPPOLY in one indeterminate are raw up to this modulus.
constexpr std::int32_t largestRawModulus = 46327;

/// Fields `first`, `first + step`, ... below `end`; and field `extra`, unless that is 0.
struct ReferenceFields {
  Word first;
  Word end;
  Word step = 1;
  Word extra = 0;
};

/// A ZPPOLY whose coefficients are raw numbers.
inline bool hasRawCoefficients(DAG zppoly) {
  DAG modulus = zppoly[2];
  return !(isObject(zppoly[1]) && hasTag(zppoly[1], EXPSEQ)) && isImmediate(modulus) &&
         immediateValue(modulus) <= largestRawModulus;
}

/// The fields of `s` that hold references, each of which may be 0 or an immediate.
inline ReferenceFields referenceFields(DAG s) {
  Word length = lengthOf(s);
  switch (tagOf(s)) {
    case NOTAG:  // under construction
    case INTNEG: case INTPOS: case HFLOAT: case LOCAL: case PARAM: case LEXICAL: case BINARY: case GARBAGE:
    case FOREIGN:
      return {0, 0};
    case NAME: return {1, 3};
    case STRING: return {2, 3};
    case SERIES: return {2, length, 2, 1};  // the variable, then coefficients between raw exponents
    case ZPPOLY: return {1, hasRawCoefficients(s) ? 3 : length};
    case RTABLE: return {2, 5};
    case HASH:
      if (controlWord(s) & tableBit) return {2, length, 2};  // raw keys
      return {1, length};
    default: return {1, length};
  }
}

/// Whether the fields of simplified objects with this tag stay as they are: values and relations without
/// state of their own. Those that hold no references count among them.
constexpr bool isUnchanging(Tag tag) { return lastingTags.contains(tag); }

/// Calls `visit(DAG& field)` on each of them.
template <class Visit>
inline void forEachReferenceField(DAG s, Visit visit) {
  ReferenceFields fields = referenceFields(s);
  if (fields.extra != 0) visit(s[fields.extra]);
  for (Word i = fields.first; i < fields.end; i += fields.step) visit(s[i]);
}

}  // namespace korel
