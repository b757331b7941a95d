#pragma once
// Dense polynomials in two indeterminates x and y: coefficients by ascending powers of x, each a dense polynomial in y
// with the same modulus. Results carry the modulus m.

#include "algebra/modular/modular_polynomials.h"
#include "store/dag.h"

namespace korel {

/// The words of one family's messages.
struct BivariateMessages {
  const char* invalidArguments;
  const char* degreeTooLarge;
  const char* notInteger;
};

/// A polynomial of a raw EXPSEQ of indeterminates (x, y) and coefficients, which is trimmed.
DAG newBivariate(DAG indeterminates, DAG m, DAG coefficients);

/// The indeterminates (x, y) of `f`, of which the EXPSEQ `given` names none, the first, or both. Errors: "cannot infer
/// indeterminates from polynomial", "cannot infer second indeterminate from polynomial", "cannot specify the same
/// indeterminate twice", "incorrect number of arguments", "polynomial has more than 2 indeterminates", "polynomial is
/// in variable %1", "polynomial is in variables %1", "polynomial not in variable %1".
DAG m2ResolveIndets(DAG f, DAG given);
/// The polynomial f in x and y. Errors: those of the messages.
DAG m2ConvertIn(DAG f, DAG indeterminates, DAG m, const BivariateMessages& messages);
/// The expression, with x and y in the places of the indeterminates.
DAG m2ConvertOut(DAG a, DAG x, DAG y);
/// From a LIST of integers and polynomials in y. Error: "modp2: invalid arguments to Build".
DAG m2Build(DAG list, DAG indeterminates, DAG m);
/// Largest degree of a coefficient.
long m2Degree2(DAG a);
/// The polynomial in x that stands with y^i.
DAG m2Coeff2(DAG a, std::int64_t i, DAG m);
/// a at y = c, a polynomial in x.
DAG m2Eval2(DAG a, DAG c, DAG m);
/// The same polynomial by powers of y, the indeterminates (y, x).
DAG m2VarSwap(DAG a, DAG m);
/// The coefficients from i to j as a polynomial; `j` may lie above the degree.
DAG m2SubPoly(DAG a, std::int64_t i, std::int64_t j, DAG m);
/// Coefficient i, at least 1, becomes c; those in between are zero. Errors: "modp2: invalid replacement term number",
/// "modp2: invalid replacement term".
DAG m2ReplaceTerm(DAG a, DAG i, DAG c);
/// All coefficients become those of the EXPSEQ. Error: "invalid substitution into zppoly".
DAG m2ReplaceCoeffs(DAG a, DAG coefficients);
/// The same two for one indeterminate. Errors: "modp2: invalid replacement term number", "modp1: invalid replacement
/// term"; "invalid substitution into zppoly".
DAG mReplaceTerm(DAG a, DAG i, DAG c);
DAG mReplaceCoeffs(DAG a, DAG coefficients);

}  // namespace korel
