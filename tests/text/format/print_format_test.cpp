// Formats against those of the C library, and of MPFR where numbers are longer than its own.

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/float/float.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/format/print_format.h"
#include "text/format/scan_format.h"
#include "text/format/text_buffer.h"

#ifdef KOREL_HAVE_MPFR
#include <mpfr.h>
#endif

using namespace korel;
using namespace korel::test;

namespace {

void append(void* text, int c) { static_cast<std::string*>(text)->push_back(static_cast<char>(c)); }

std::string printed(const std::string& format, DAG x) {
  std::string text;
  DoPrintF(append, &text, format.c_str(), new2(EXPSEQ, x), 1);
  return text;
}

template <class... Values>
std::string byLibrary(const std::string& format, Values... values) {
  char text[2048];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  int n = std::snprintf(text, sizeof text, format.c_str(), values...);
#pragma GCC diagnostic pop
  return {text, static_cast<std::size_t>(n)};
}

struct Random {
  std::mt19937 engine;
  int below(int n) { return static_cast<int>(engine() % static_cast<unsigned>(n)); }
  bool maybe() { return below(2) == 0; }
};

// Flags, width and precision, each or not. A sign is asked for once.
std::string randomConversion(Random& random, int widest, int mostPrecise) {
  std::string text = "%";
  if (random.below(3) == 0) text += '-';
  if (random.below(3) == 0) text += random.maybe() ? '+' : ' ';
  if (random.below(3) == 0) text += '0';
  if (random.maybe()) text += std::to_string(1 + random.below(widest - 1));
  if (random.maybe()) text += "." + std::to_string(random.below(mostPrecise));
  return text;
}

// What the library's formats do otherwise: a precision of 0 prints no digit of 0.
bool isFixedPoint(const std::string& format, long value) {
  return value == 0 && format.find(".0") != std::string::npos;
}

}  // namespace

// Integers of a word in every base: a negative one in base 8 and 16 has sign and magnitude, where C shows bits.
TEST(PrintFormat, IntegersAgreeWithTheLibrary) {
  Random random{std::mt19937(20240607)};
  for (int k = 0; k < 50000; ++k) {
    const char code = "dixXo"[random.below(5)];
    std::string conversion = randomConversion(random, 40, 30);
    long value = static_cast<long>(random.engine() >> (2 + random.below(30)));
    if ((code == 'd' || code == 'i') && random.maybe()) value = -value;
    if (isFixedPoint(conversion, value)) continue;
    // A sign flag belongs to signed conversions in C.
    if (code != 'd' && code != 'i' && conversion.find_first_of("+ ") != std::string::npos) continue;
    const std::string expected = byLibrary(conversion + "l" + code, value);
    ASSERT_EQ(printed(conversion + code, NewInteger(value)), expected) << conversion << code << " of " << value;
  }
}

// Hardware floats are printed as the doubles they are. Widths and precisions of 60 and more leave the library.
TEST(PrintFormat, HardwareFloatsAgreeWithTheLibrary) {
  Random random{std::mt19937(20240608)};
  std::uniform_real_distribution<double> unit(-1, 1);
  for (int k = 0; k < 30000; ++k) {
    const std::string format = randomConversion(random, 60, 60) + "eEfgG"[random.below(5)];
    const double value = std::ldexp(unit(random.engine), random.below(400) - 200);
    ASSERT_EQ(printed(format, NewHFloat(value, false)), byLibrary(format, value)) << format << " of " << value;
  }
}

// Software floats of up to ten digits, of which the last is neither 0 nor 5: no rounding meets a tie, and a double is near
// enough to be rounded alike as long as no more than its own digits are asked for.
TEST(PrintFormat, ShortFloatsAgreeWithTheLibrary) {
  Random random{std::mt19937(20240609)};
  for (int k = 0; k < 20000; ++k) {
    const std::string format = randomConversion(random, 40, 11) + "eEfgG"[random.below(5)];
    std::string digits = random.maybe() ? "-" : "";
    for (int n = random.below(9); n > 0; --n) digits += static_cast<char>('0' + random.below(10));
    digits += "12346789"[random.below(8)];
    const int exponent = -random.below(14) - (digits.size() > 4 ? static_cast<int>(digits.size()) - 4 : 0);
    const double value = std::strtod((digits + "e" + std::to_string(exponent)).c_str(), nullptr);
    const bool negative = digits[0] == '-';
    DAG mantissa = integerOfDigits(digits.data() + negative, digits.size() - negative);
    DAG soft = simpl(newFLOAT(negative ? negateint(mantissa) : mantissa, NewInteger(exponent)));
    ASSERT_EQ(printed(format, soft), byLibrary(format, value)) << format << " of " << digits << "e" << exponent;
  }
}

#ifdef KOREL_HAVE_MPFR
// Floats of 100 digits. MPFR holds the decimal number to 800 bits, so that it rounds as the decimal digits tell, but for
// ties, which it sends to the even neighbour or the side of its own error: a 5 as the last digit isn't generated.
TEST(PrintFormat, LongFloatsAgreeWithMpfr) {
  Random random{std::mt19937(20240610)};
  mpfr_t number;
  mpfr_init2(number, 800);
  say("Digits := 100:");
  for (int k = 0; k < 5000; ++k) {
    std::string digits;
    for (int i = 0; i < 100; ++i) digits += static_cast<char>('0' + random.below(10));
    digits[0] = static_cast<char>('1' + random.below(9));
    digits[99] = "12346789"[random.below(8)];
    const int exponent = random.below(300) - 200;
    std::string text = (random.maybe() ? "-" : "") + digits + "e" + std::to_string(exponent);
    mpfr_set_str(number, text.c_str(), 10, MPFR_RNDN);
    std::string conversion = randomConversion(random, 150, 120);
    if (conversion.find('.') == std::string::npos) conversion += ".6";  // what MPFR takes for all digits
    const char code = "eEfgG"[random.below(5)];
    char* expected = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = mpfr_asprintf(&expected, (conversion + "R" + code).c_str(), number);
#pragma GCC diagnostic pop
    ASSERT_GE(length, 0);
    DAG x = evalf(simpl(newFLOAT(integerOfDigits(digits.data(), digits.size()), NewInteger(exponent))));
    if (text[0] == '-') x = simpl(newFLOAT(negateint(CopyAlg(mantissaOf(x))), exponentOf(x)));
    EXPECT_EQ(printed(conversion + code, x), expected) << conversion << code << " of " << text;
    mpfr_free_str(expected);
    if (HasFailure()) break;
  }
  mpfr_clear(number);
  say("Digits := 10:");
}
#endif

// What a format prints, the same format reads.
TEST(ScanFormat, ReadsBackWhatIsPrinted) {
  Random random{std::mt19937(20240611)};
  for (int k = 0; k < 5000; ++k) {
    std::string digits;
    for (int n = 1 + random.below(60); n > 0; --n) digits += static_cast<char>('0' + random.below(10));
    DAG x = integerOfDigits(digits.data(), digits.size());
    x = simpl(random.maybe() && x != cons0 ? complint(x) : x);
    const std::string text = printed(randomConversion(random, 80, 70) + "d", x);
    struct Cursor {
      const char *begin, *at;
    } cursor{text.c_str(), text.c_str()};
    ScanSource source{[](void* c) {
                        auto* cur = static_cast<Cursor*>(c);
                        return *cur->at == 0 ? -1 : static_cast<unsigned char>(*cur->at++);
                      },
                      [](void* c, int) { --static_cast<Cursor*>(c)->at; }, &cursor};
    ScanResult result = DoScanF(source, "%d", null, 1);
    ASSERT_EQ(lengthOf(result.values), 2u) << text;
    ASSERT_EQ(result.values[1], x) << text;
  }
}
