#pragma once
// Forms of COMPLEX numbers, for the routines that compute with them.

#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/vocabulary.h"

namespace korel {

/// A real or complex float.
inline bool isFloating(DAG x) { return isFloatNumber(x) || isFloatComplex(x); }

/// Infinite or undefined, in any form.
bool hasNoFiniteValue(DAG x);
/// A part is infinite, undefined; `x` is COMPLEX.
bool hasInfinitePart(DAG x);
bool hasUndefinedPart(DAG x);

/// Sum and product of two parts, and the negative of one; simplified. A part need not be a number: the powers of
/// -1 oscillate, and all that is known of (-1)^infinity is that `bdd_undefined` is bounded.
DAG sumOfParts(DAG a, DAG b);
DAG productOfParts(DAG a, DAG b);
DAG negativeOfPart(DAG a);
/// All parts of the COMPLEX `x` are numbers, infinite or undefined.
bool hasNumericParts(DAG x);
/// A fresh COMPLEX without exact zero parts: the real part alone, length 2, or 0; simplified. Other
/// objects are simplified as they are.
DAG complexNormalForm(DAG x);
/// Each part, or the real number, at the present `Digits`; simplified.
DAG evalfParts(DAG x);

}  // namespace korel
