#pragma once
// Built-in procedures on numbers: floats and their parts, real and imaginary part, the functions that
// IEEE 754 recommends, numeric events.

#include "frame/builtin_call.h"

namespace korel {

namespace builtin {
DAG abs(const BuiltinCall& call);
DAG max(const BuiltinCall& call);
DAG min(const BuiltinCall& call);
DAG trunc(const BuiltinCall& call);
DAG Re(const BuiltinCall& call);
DAG Im(const BuiltinCall& call);
DAG conjugate(const BuiltinCall& call);
DAG frem(const BuiltinCall& call);
DAG ilog10(const BuiltinCall& call);
DAG ilog2(const BuiltinCall& call);

DAG CopySign(const BuiltinCall& call);
DAG NextAfter(const BuiltinCall& call);
DAG NumericClass(const BuiltinCall& call);
DAG Unordered(const BuiltinCall& call);
DAG OrderedNE(const BuiltinCall& call);
DAG Scale2(const BuiltinCall& call);
DAG Scale10(const BuiltinCall& call);
DAG SFloatMantissa(const BuiltinCall& call);
DAG SFloatExponent(const BuiltinCall& call);

DAG NumericEvent(const BuiltinCall& call);
DAG NumericEventHandler(const BuiltinCall& call);
DAG NumericStatus(const BuiltinCall& call);
DAG Default0(const BuiltinCall& call);
DAG DefaultOverflow(const BuiltinCall& call);
DAG DefaultUnderflow(const BuiltinCall& call);

DAG MorrBrilCull(const BuiltinCall& call);
DAG hypergeomKernel(const BuiltinCall& call);  // `evalf/hypergeom/kernel`
/// Raw arguments: `evalf(x)`, `evalf(x, n)`, `evalf[n](x)`.
DAG evalf(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
