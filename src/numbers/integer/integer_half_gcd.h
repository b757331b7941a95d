#pragma once
// Euclid's algorithm by halves, for long operands (Moeller, "On Schoenhage's algorithm and subquadratic
// integer gcd computation"; Knuth, vol. 2, 4.5.3).
//
// The quotients of the first half of Euclid's algorithm depend on the leading half of the operands only,
// and make a matrix of half their length. It is found from two such matrices of half that length, each
// from a leading part, and applied to the operands by long products: the work is that of a few products
// at each halving.

#include <cstddef>

#include "numbers/integer/integer_groups.h"

namespace korel {

/// Replaces a and b, n groups each, the top group of one of them not zero, by a pair with the same gcd that
/// is shorter by about a sixth: the quotients come from the leading third. Gives the count of the longer,
/// to which both are filled with zeros, or 0 when one is too short beside the other, with both unchanged.
std::size_t takeThirdOff(Group* a, Group* b, std::size_t n);

}  // namespace korel
