#pragma once
// Hardware floats as their 16 hexadecimal digits, the sign first.

namespace korel {

/// Writes the digits of the bits of `x` and a zero to `digits`, in capitals if asked for.
void HFloatToIEEEHex(double x, char* digits, bool capitals);
/// The double of 16 digits; false when they are none.
bool IEEEHexToHFloat(const char* digits, double& x);
/// Value of a hexadecimal digit, or -1.
int hexDigitValue(int c);

}  // namespace korel
