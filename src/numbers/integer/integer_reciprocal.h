#pragma once
// Division of very long operands by a reciprocal of the divisor (Newton's method; Knuth, vol. 2, 4.3.3).
//
// The reciprocal of the divisor's leading part is found by steps that double its length, each two products.
// It gives the quotient in blocks of that length, two products each: with fast products that is less
// work than division by halves.

#include <cstddef>

#include "numbers/integer/integer_groups.h"

namespace korel {

/// q = a / b, na - nb groups, and the remainder in a's nb lowest groups, the rest of which becomes zero. a's
/// top nb groups are below b, b's top group is at least half the base, na - nb and nb are 4 or more.
void divideByReciprocal(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb);

}  // namespace korel
