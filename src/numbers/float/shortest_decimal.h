#pragma once
// The shortest decimal number that reads as a double.
//
// Of the decimal numbers that are nearer to a double than to any other it has the fewest digits, and of these it is the
// nearest: what `std::to_chars` writes, as two integers and without the text between (R. Giulietti, "The Schubfach way
// to render doubles", 2020).

#include <cstdint>

namespace korel {

struct ShortDecimal {
  std::int64_t digits;  // 17 at most, the last not 0
  std::int32_t exponent;
};
/// Of a finite double greater than 0.
ShortDecimal shortestDecimal(double x);

}  // namespace korel
