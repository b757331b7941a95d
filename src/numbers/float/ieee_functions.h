#pragma once
// The functions that IEEE 754 recommends, on exact and float numbers.
//
// Operands are any objects. What is no number leaves the call unevaluated or goes to the library; results may be
// fresh and unsimplified.

#include "store/dag.h"

namespace korel {

/// `true`, `false`, or the unevaluated call.
DAG Unordered(DAG a, DAG b);
DAG OrderedNE(DAG a, DAG b);
/// `a` with the sign of `b`.
DAG CopySign(DAG a, DAG b);
/// The neighbour of `x` towards `y` at the present `Digits`.
DAG NextAfter(DAG x, DAG y);
/// A type expression that tells what kind of number `x` is.
DAG NumericClass(DAG x);
/// a times 10^b, a times 2^b; what is no number is left to `simpl`.
DAG Scale10(DAG a, DAG b);
DAG Scale2(DAG a, DAG b);
/// x - n*y with n the integer nearest x/y, a tie going to even.
DAG frem(DAG x, DAG y);
DAG conjugate(DAG x);
/// Integer part of the logarithm of |x|.
DAG ilog10(DAG x);
DAG ilog2(DAG x);

}  // namespace korel
