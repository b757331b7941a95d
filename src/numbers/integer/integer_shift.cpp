// Decimal shifts, the rounding that goes with them, and factors of ten.

#include "numbers/integer/integer.h"

#include <cstring>

#include "numbers/arithmetic.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float_groups.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_space.h"
#include "store/names.h"

namespace korel {

namespace {

/// Digits of x * 10^k into r, k not 0, for a result of `count` digits; higher digits of x are lost
/// upward never, lower ones downward when k is negative.
void shiftDigits(const Word* x, Word length, std::int64_t k, Word* r, Word count) {
  if (k >= 0) {
    auto whole = static_cast<Word>(k / 4);
    Word unit = static_cast<Word>(pow10[k % 4]), split = BASE / unit;
    std::memset(r, 0, std::size_t{whole} * sizeof(Word));
    Word carry = 0, i = 0;
    for (; i < length; ++i) {
      r[whole + i] = x[i] % split * unit + carry;
      carry = x[i] / split;
    }
    for (i += whole; i < count; ++i, carry = 0) r[i] = carry;
    assert(carry == 0);
    return;
  }
  auto whole = static_cast<Word>(-k / 4);
  Word split = static_cast<Word>(pow10[-k % 4]), unit = BASE / split;
  for (Word i = 0; i < count; ++i) {
    Word low = whole + i < length ? x[whole + i] / split : 0;
    Word high = whole + i + 1 < length ? x[whole + i + 1] % split * unit : 0;
    r[i] = low + high;
  }
}

/// Decimal digit at `place`, counted from 0 at the right.
Word decimalDigit(DAG x, std::int64_t place) {
  std::int64_t at = place / 4;
  if (at >= digitCount(x)) return 0;
  return digitsOf(x)[at] / static_cast<Word>(pow10[place % 4]) % 10;
}

/// Whether the magnitude grows by one when the `dropped` lowest decimal digits of x go.
bool growsWithout(DAG x, std::int64_t dropped) {
  return roundsAway(tagOf(x), decimalDigit(x, dropped - 1), SoftIntTrailingNonZeroes(x, dropped - 1),
                    decimalDigit(x, dropped) % 2 != 0);
}

DAG shifted(DAG x, std::int64_t k, bool rounding) {
  if (k == 0) return isImmediate(x) ? (x == consm0 ? immediate(0) : x) : CopyAlg(x);
  if (isZeroImmediate(x)) return immediate(0);
  std::int64_t words = (ilength(x) + k + 3) / 4;
  if (words < 1) return immediate(0);
  if (words + 1 > maxLength)
    return TriggerNumericEvent(overflowEvent, naminstall(rounding ? "round" : "shift"), x, NewInteger(k),
                               ini("undefined"), true);
  if (k > 0 && words < 3) return mulint(x, immediate(pow10[k]));

  DAG heap = isImmediate(x) ? NewSoftInt(x) : x;
  auto count = static_cast<Word>(words);
  Word space = count + 1;
  DAG r = news(space);
  Word* digit = digitsOf(r);
  shiftDigits(digitsOf(heap), digitCount(heap), k, digit, count);
  if (k < 0 && rounding && growsWithout(heap, -k)) {
    Word i = 0;
    while (i < count && digit[i] == static_cast<Word>(BASE) - 1) digit[i++] = 0;
    if (i < count) {
      ++digit[i];
    } else {
      // A carry out of the top, which is rare: a digit more.
      release(r, space);
      r = news(++space);
      std::memset(digitsOf(r), 0, std::size_t{count} * sizeof(Word));
      digitsOf(r)[count++] = 1;
    }
  }
  withDigits(r, tagOf(heap), count);
  if (heap != x) release(heap, lengthOf(heap));
  return settled(r, space);
}

}  // namespace

DAG times10p(DAG x, std::int64_t k) { return shifted(x, k, true); }

DAG shift10p(DAG x, std::int64_t k) { return shifted(x, k, false); }

bool SoftIntTrailingNonZeroes(DAG x, std::int64_t k) {
  if (k < 0) return false;
  const Word* digit = digitsOf(x);
  std::int64_t whole = k / 4, count = digitCount(x);
  for (std::int64_t i = 0; i < whole && i < count; ++i)
    if (digit[i] != 0) return true;
  return whole < count && digit[whole] % static_cast<Word>(pow10[k % 4]) != 0;
}

std::int64_t pow10Elim(DAG* x, DAG* y) {
  if (isZeroImmediate(*x)) return 0;
  std::int64_t places = 0;
  if (!isImmediate(*x)) {
    const Word* digit = digitsOf(*x);
    Word zeros = 0;
    while (digit[zeros] == 0) ++zeros;
    places = 4 * std::int64_t{zeros};
    for (Word d = digit[zeros]; d % 10 == 0; d /= 10) ++places;
    if (places != 0) *x = times10p(*x, -places);
  }
  if (isImmediate(*x)) {
    std::int32_t value = immediateValue(*x);
    for (; value % 10 == 0; value /= 10) ++places;
    *x = immediate(value);
  }
  // Each factor of 5 pairs with a 2 on the other side.
  const DAG five = immediate(5), two = immediate(2);
  for (;;) {
    DAG q;
    if (rem(*x, five, &q) != immediate(0)) return places;
    *x = q;
    *y = mul(*y, two);
    ++places;
  }
}

}  // namespace korel
