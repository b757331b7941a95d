#pragma once
// Expansion of expressions into truncated power series.
//
// The kernel expands sums, products and small integer powers itself. Each function, and every other power, is
// the library's: `series/NAME` is given the arguments and the variable, and reads the number of terms from the
// environment variable `Order`.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The ascending series of `p` in `x`, truncated at degree `d`, simplified; or the name FAIL, when something in `p` has
/// no such series. Results are remembered by (p, x) and good for all lower degrees. Errors: "invalid expression
/// for series", "polyn did not return a series", "series/power must return a series", "division by zero series".
DAG polyn(DAG p, DAG x, std::int32_t d);

/// Where `x` stands in the PROD `t`: the index of the one pair whose base it is, 0 when it is in none, -1 when it
/// stands elsewhere, too. -1 for what is no PROD.
std::int32_t exppolx(DAG t, DAG x);

/// The degree that the environment variable `Order` asks for. Error: "Order can only be assigned an integer".
std::int32_t degreeOfOrder();

/// The series of `p` at x = a with `Order` terms; where there is none in integral powers, what the library's
/// `series/fracpower` gives.
DAG series(DAG p, DAG x, DAG a);

/// The integral of the series `s` by `x`, term by term: a series, a sum with a logarithm when there is a term in 1/x;
/// where that is not possible, the value of the call of the library's `int`.
DAG intseries(DAG s, DAG x);

namespace builtin {
/// series(p, x), series(p, x = a), series(p, x = a, n): a series, or the library's sum of fractional powers.
/// Errors: those of `polyn`, "Order can only be assigned an integer".
DAG series(const BuiltinCall& call);
/// taylor: as series, for expansions in powers 0, 1, 2, ... Error: "does not have a taylor expansion, try series()".
DAG taylor(const BuiltinCall& call);
/// order(s): the exponent of the order term of a series, `infinity` for an exact one.
DAG order(const BuiltinCall& call);
/// int/series(s, x): the integral of a series.
DAG intSeries(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
