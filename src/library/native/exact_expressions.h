#pragma once
// Exact expressions put together in C++: sums, products and powers in their canonical form, roots of numbers with
// their perfect powers taken out, and what exp and ln make of an exact argument.
//
// Operands are simplified, and so are results.

#include "store/dag.h"

namespace korel {

/// n / d.
DAG quotientOf(int n, int d);
DAG sumOf(DAG a, DAG b);
DAG productOf(DAG a, DAG b);
DAG negativeOf(DAG x);
DAG powerOf(DAG base, DAG exponent);
/// The square root of an integer n >= 0, as the table of surds writes it: sqrt(n) without a look at its factors.
DAG rootOf(DAG n);

/// The greatest integer not above a rational number, and an integer modulo m in 0 .. m - 1.
DAG floorOfNumber(DAG x);
int moduloOf(DAG integer, int m);

/// The principal n-th root of an exact expression, n > 1: x^(1/n) with what is known taken out of it.
DAG exactRoot(DAG x, unsigned n);
/// Of an integer m > 1, the largest k and the b with b^k = m.
DAG perfectPower(DAG m, int& k);

/// exp(x) and ln(x), or 0 where the call stands. x isn't 0, 1 or infinite.
DAG exactExp(DAG x);
DAG exactLn(DAG x);

/// The whole number nearest to value / period, where a double tells it for sure: how many periods a number lies from 0.
bool periodsIn(double value, double period, std::int32_t& count);

}  // namespace korel
