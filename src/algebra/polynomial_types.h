#pragma once
// Polynomials and rational functions as types.

#include "store/dag.h"
#include "store/tag_facts.h"

namespace korel {

/// Powers with negative exponents stand in rational functions only.
enum class PolynomialForm { polynomial, rationalFunction };
/// As `numbers` of `typol`: any constant may be a coefficient.
inline constexpr TagSet anyCoefficient{};

/// `x` has the form, in `vars`: 0 for all names, a NAME or TABLEREF, the imaginary unit, or a LIST, SET or
/// EXPSEQ of names. The tags of `numbers` may be coefficients, or whatever holds none of the variables.
bool typol(PolynomialForm form, DAG x, DAG vars, TagSet numbers);

/// Test of `x` against the type head(args...) for the heads `polynom` and `ratpoly`: (coefficients,
/// variables), or one of the two. Error: "invalid arguments".
bool matchesPolynomial(PolynomialForm form, DAG x, DAG args);

/// A NAME, a TABLEREF, or a PROD whose bases are all atoms.
bool monomial(DAG x);

}  // namespace korel
