#pragma once
// Values of the hardware-float evaluator: doubles, two kinds of which refer to an object.
//
// A double whose high word is one of the marks below carries an object in its low word, when that is an object of
// the mark's tag. The marks belong to huge finite numbers that no ordinary computation meets. A reference is an
// array (an rtable of doubles, rectangular, without indexing functions) or a procedure.

#include <bit>
#include <cstdint>

#include "store/dag.h"

namespace korel {

enum ReferenceMark : Word { procedureMark = 0x43b051af, arrayMark = 0x43b05596 };

inline Word highWordOf(double v) { return static_cast<Word>(std::bit_cast<std::uint64_t>(v) >> 32); }
/// The object in the low word; for references.
inline DAG referredObject(double v) { return DAG(static_cast<Word>(std::bit_cast<std::uint64_t>(v))); }
inline double referenceTo(DAG object, ReferenceMark mark) {
  return std::bit_cast<double>(std::uint64_t{mark} << 32 | object.word);
}

/// Whether a double with that mark is a reference.
bool isMarkedArray(double v);
bool isMarkedProcedure(double v);

inline bool isArrayValue(double v) { return highWordOf(v) == arrayMark && isMarkedArray(v); }
inline bool isProcedureValue(double v) { return highWordOf(v) == procedureMark && isMarkedProcedure(v); }
inline bool isReferenceValue(double v) { return isArrayValue(v) || isProcedureValue(v); }

/// The reference to an array of doubles.
inline double hfarraytohf(DAG array) { return referenceTo(array, arrayMark); }
/// The array that `v` refers to. Error: "evalhf: a variable not assigned an array is indexed".
DAG hfarraydes(double v);
/// The procedure. Error: "cannot evaluate procedure in evalhf".
DAG procedureOf(double v);
/// `v` itself. Error: "non-numeric expression in evalhf".
[[noreturn]] void refuseReference();
inline double requireNumber(double v) {
  if (isReferenceValue(v)) refuseReference();
  return v;
}

/// What `v` is as an expression: the array, the procedure, or the float, simplified.
DAG expressionOf(double v);

}  // namespace korel
