#pragma once
// Expressions without variables.

#include "store/dag.h"

namespace korel {

/// `x` is a member of the sequence that the name `constants` stands for, or is what it stands for.
bool isConstantName(DAG x);
/// A variable: a NAME that isn't in `constants`, or a TABLEREF.
bool vname(DAG x);
/// `x` holds no variables: numbers, names in `constants`, and sums, products, powers and calls of such.
/// A float `undefined` is no constant, nor is a sum or product with such a coefficient or exponent.
bool onlyconst(DAG x);
/// `onlyconst`, and the name `undefined` doesn't occur either, even if it is in `constants`.
bool isDefinedConstant(DAG x);

}  // namespace korel
