#pragma once
// The everyday words: what code asks of an object most often, each under one name.
//
// The tests take any word; 0 is never what they ask for. Sequences are the kernel's general record, so
// that a single member and the sequence of one are told apart here and nowhere else.

#include <cstring>

#include "store/constants.h"
#include "store/dag.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel {

// ---- kinds

inline bool isName(DAG x) { return isTag(x, NAME); }
/// A NAME or STRING.
inline bool isText(DAG x) { return isTag(x, NAME) || isTag(x, STRING); }
/// A name or an indexed name: what can be assigned to.
inline bool isNameOrIndexed(DAG x) { return isTag(x, NAME) || isTag(x, TABLEREF); }
inline bool isFloatNumber(DAG x) { return isTag(x, FLOAT) || isTag(x, HFLOAT); }
/// Any number, a COMPLEX included; `x` is not 0.
inline bool isNumber(DAG x) { return isNumeric(x) || hasTag(x, COMPLEX); }
/// A call of `head`.
inline bool isCallOf(DAG x, DAG head) { return isTag(x, FUNCTION) && x[1] == head; }
/// A name or string of one character (a byte).
inline bool isCharacter(DAG x) { return isText(x) && textOf(x)[0] != 0 && textOf(x)[1] == 0; }
inline bool hasText(DAG nameOrString, const char* text) { return std::strcmp(textOf(nameOrString), text) == 0; }

// ---- sequences

inline bool isSequence(DAG x) { return isTag(x, EXPSEQ); }
inline bool isEmptySequence(DAG x) { return isSequence(x) && lengthOf(x) == 1; }
inline Word memberCount(DAG sequence) { return lengthOf(sequence) - 1; }
/// `x` as a sequence: itself, or a fresh one of which it is the only member.
inline DAG asSequence(DAG x) { return isSequence(x) ? x : new2(EXPSEQ, x); }
/// The one member of a sequence of one; anything else as it is.
inline DAG singleMember(DAG x) { return isSequence(x) && lengthOf(x) == 2 ? x[1] : x; }
/// Position of `x` in `sequence`, from 1, or 0; in what is no sequence, 1 when it is `x`.
inline Word memberPosition(DAG x, DAG sequence) {
  if (!isSequence(sequence)) return sequence == x ? 1 : 0;
  for (Word i = 1, n = lengthOf(sequence); i < n; ++i)
    if (sequence[i] == x) return i;
  return 0;
}
inline bool isMember(DAG x, DAG sequence) { return memberPosition(x, sequence) != 0; }
/// `test` holds for each member of the EXPSEQ.
template <class Test>
bool everyMember(DAG sequence, Test test) {
  for (Word i = 1, n = lengthOf(sequence); i < n; ++i)
    if (!test(sequence[i])) return false;
  return true;
}

// ---- truth

inline DAG truth(bool value) { return value ? ini("true") : ini("false"); }

}  // namespace korel
