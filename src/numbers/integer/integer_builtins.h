#pragma once
// Built-in procedures on integers: greatest common divisors, quotients, remainders, roots, contents.

#include "frame/builtin_call.h"

namespace korel {

namespace builtin {
/// igcd(n1, n2, ...): the greatest common divisor, 0 of none; the call stays for what is no number.
DAG igcd(const BuiltinCall& call);
/// iquo(m, n), iquo(m, n, 'r'): truncated quotient, the remainder stored in r. A zero n is
/// an invalid operation named `remainder`, with the quotient `infinity` and the remainder `undefined`.
DAG iquo(const BuiltinCall& call);
/// irem(m, n), irem(m, n, 'q'): remainder with the sign of m, the quotient stored in q.
DAG irem(const BuiltinCall& call);
/// isqrt(n): the integer nearest the square root; 0 of a negative number.
DAG isqrt(const BuiltinCall& call);
/// icontent(e): the integer content of an expression.
DAG icontent(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
