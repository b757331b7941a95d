#pragma once
// Coefficients of an expression seen as a polynomial.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Coefficient of x^n in `p`: as it stands for sums and products of powers, by a series for x inside of an unexpanded
/// form. `x` may be any expression. Elementwise on an RTABLE. Errors: "unable to compute coeff", "degree overflow in
/// coeff", those of the series.
DAG coeff(DAG p, DAG x, DAG n);

enum class PolynomialEnd { leading, trailing };
/// Coefficient at that end of `p` in the EXPSEQ `variables`, one variable after the other; its product of powers
/// through `term` unless null. Error: "invalid argument for sign, lcoeff or tcoeff".
DAG lcoeff(DAG p, DAG variables, PolynomialEnd end, DAG* term = nullptr);
/// 1 or -1: the sign of the leading coefficient in `variables`, and of its own leading coefficient as long as that is
/// no number. The same error.
DAG signOf(DAG p, DAG variables);

/// An expanded divisor, as division needs it: over its leading coefficient where that is a COMPLEX, since the division
/// of coefficients knows integers only.
DAG withoutComplexLead(DAG p);

/// The coefficients of `p` in the EXPSEQ `variables`, and the products of variables that they belong to: two EXPSEQs
/// of one length, without zeros. Error: "invalid arguments to coeffs".
struct CoefficientLists {
  DAG coefficients, terms;
};
CoefficientLists coeffs(DAG p, DAG variables);

namespace builtin {
/// coeff(p, x), coeff(p, x^n), coeff(p, x, n).
DAG coeff(const BuiltinCall& call);
/// lcoeff(p [, x [, 't']]): x a variable, a list or a set of them; all indeterminates by default.
DAG lcoeff(const BuiltinCall& call);
DAG tcoeff(const BuiltinCall& call);
DAG coeffs(const BuiltinCall& call);
/// sign(p [, x]).
DAG sign(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
