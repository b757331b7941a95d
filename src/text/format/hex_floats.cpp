#include "text/format/hex_floats.h"

#include <cstdint>
#include <cstring>

namespace korel {

namespace {
constexpr int hexDigits = 16;
}

int hexDigitValue(int c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

void HFloatToIEEEHex(double x, char* digits, bool capitals) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  const char* alphabet = capitals ? "0123456789ABCDEF" : "0123456789abcdef";
  for (int i = 0; i < hexDigits; ++i) digits[i] = alphabet[bits >> (60 - 4 * i) & 15];
  digits[hexDigits] = 0;
}

bool IEEEHexToHFloat(const char* digits, double& x) {
  std::uint64_t bits = 0;
  for (int i = 0; i < hexDigits; ++i) {
    const int value = hexDigitValue(static_cast<unsigned char>(digits[i]));
    if (value < 0) return false;
    bits = bits << 4 | static_cast<std::uint64_t>(value);
  }
  std::memcpy(&x, &bits, sizeof x);
  return true;
}

}  // namespace korel
