#pragma once
// What integers and polynomials over them have in common: contents, norms, digits.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The integer n in base b as a polynomial in x, with symmetric digits; of a polynomial n each coefficient.
DAG genpoly(DAG n, DAG b, DAG x);
/// The largest absolute value of a coefficient. Error: "unable to compute maxnorm of %1".
DAG maxnorm(DAG p);
/// `p` without the power x^n that all its terms have in common, n through `exponent`.
DAG removeldeg(DAG p, DAG x, DAG& exponent);
/// The integer content times the lowest power of each indeterminate, with the sign of the leading coefficient.
DAG icontsign(DAG p);

namespace builtin {
/// genpoly(n, b, x).
DAG genpoly(const BuiltinCall& call);
/// maxnorm(p).
DAG maxnorm(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
