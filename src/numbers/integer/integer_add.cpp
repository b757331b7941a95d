// Sums and comparisons of magnitudes and of signed integers.
//
// Digits are added and subtracted two at a time in 64-bit words. A lane of 32 bits holds one digit
// plus a bias that makes a decimal carry a binary one: the carry of the lower digit enters the upper
// one by itself, and only the carry out of the pair links the steps of the loop.

#include "numbers/integer/integer.h"

#include <algorithm>
#include <cstring>

#include "numbers/integer/integer_space.h"

namespace korel {

namespace {

constexpr std::uint64_t laneBias = 0x100000000u - BASE;  // makes 10000 wrap a lane
constexpr std::uint64_t pairBias = laneBias << 32 | laneBias;
constexpr std::uint64_t laneOnes = 0x0000000100000001u;

std::uint64_t loadPair(const Word* digit) {
  std::uint64_t pair;
  std::memcpy(&pair, digit, 8);
  return pair;
}
void storePair(Word* digit, std::uint64_t pair) { std::memcpy(digit, &pair, 8); }

/// Takes the bias out of the lanes whose high bit is set: no wrap happened there.
std::uint64_t withoutBias(std::uint64_t pair) { return pair - ((pair >> 31) & laneOnes) * laneBias; }

/// r = a + b over `count` digits; gives the carry. r may be an operand.
Word addDigits(const Word* a, const Word* b, Word* r, Word count) {
  std::uint64_t carry = 0;
  Word i = 0;
  for (; i + 2 <= count; i += 2) {
    std::uint64_t sum = loadPair(a + i) + loadPair(b + i);
    std::uint64_t biased = sum + pairBias;
    std::uint64_t carried = biased + carry;
    carry = static_cast<std::uint64_t>(biased < sum) | static_cast<std::uint64_t>(carried < carry);
    storePair(r + i, withoutBias(carried));
  }
  if (i < count) {
    Word sum = a[i] + b[i] + static_cast<Word>(carry);
    carry = sum >= static_cast<Word>(BASE);
    r[i] = sum - (carry != 0 ? BASE : 0);
  }
  return static_cast<Word>(carry);
}

/// r = a - b over `count` digits; gives the borrow.
Word subtractDigits(const Word* a, const Word* b, Word* r, Word count) {
  std::uint64_t borrow = 0;
  Word i = 0;
  for (; i + 2 <= count; i += 2) {
    std::uint64_t x = loadPair(a + i), y = loadPair(b + i);
    std::uint64_t difference = x - y;
    std::uint64_t borrowed = difference - borrow;
    borrow = static_cast<std::uint64_t>(x < y) | static_cast<std::uint64_t>(difference < borrow);
    storePair(r + i, withoutBias(borrowed));
  }
  if (i < count) {
    auto difference = static_cast<std::int32_t>(a[i] - b[i] - static_cast<Word>(borrow));
    borrow = difference < 0;
    r[i] = static_cast<Word>(difference + (difference < 0 ? BASE : 0));
  }
  return static_cast<Word>(borrow);
}

/// r[from..count) = a[from..count) + carry; gives the carry out.
Word carryUp(const Word* a, Word* r, Word from, Word count, Word carry) {
  Word i = from;
  for (; i < count && carry != 0; ++i) {
    Word sum = a[i] + 1;
    carry = sum == static_cast<Word>(BASE);
    r[i] = carry != 0 ? 0 : sum;
  }
  if (r != a) std::memmove(r + i, a + i, std::size_t{count - i} * sizeof(Word));
  return carry;
}

void borrowUp(const Word* a, Word* r, Word from, Word count, Word borrow) {
  Word i = from;
  for (; i < count && borrow != 0; ++i) {
    borrow = a[i] == 0;
    r[i] = borrow != 0 ? BASE - 1 : a[i] - 1;
  }
  if (r != a) std::memmove(r + i, a + i, std::size_t{count - i} * sizeof(Word));
}

/// Sum of magnitudes, la >= lb, into r; gives the digit count.
Word addMagnitudes(const Word* a, Word la, const Word* b, Word lb, Word* r) {
  Word carry = addDigits(a, b, r, lb);
  carry = carryUp(a, r, lb, la, carry);
  if (carry == 0) return la;
  r[la] = 1;
  return la + 1;
}

/// Difference of magnitudes a > b into r; gives the digit count without leading zeros.
Word subtractMagnitudes(const Word* a, Word la, const Word* b, Word lb, Word* r) {
  Word borrow = subtractDigits(a, b, r, lb);
  borrowUp(a, r, lb, la, borrow);
  Word count = la;
  while (count > 1 && r[count - 1] == 0) --count;
  return count;
}

/// Order of the digit strings of the same length.
int compareDigits(const Word* a, const Word* b, Word count) {
  for (Word i = count; i-- > 0;)
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  return 0;
}

/// Copy of `x` in `r` when space was given.
DAG copied(DAG x, DAG r) {
  if (!r || isImmediate(x) || r == x) return x == consm0 ? immediate(0) : x;
  return CopyIntoSoftInt(r, x);
}

}  // namespace

namespace {

// Fresh results take the words that they need: a spare tail would go back as a piece that fits no
// further request of its kind, and the free lists are searched one by one.

/// Sum of heap integers of one sign; a word more than the longer only where the top digits may carry.
DAG freshSum(DAG a, DAG b) {
  Word la = digitCount(a), lb = digitCount(b), count = std::max(la, lb);
  Word top = (la == count ? digitsOf(a)[la - 1] : 0) + (lb == count ? digitsOf(b)[lb - 1] : 0);
  Word space = count + 1 + (top + 1 >= static_cast<Word>(BASE) ? 1 : 0);
  return settled(SoftIntAdd(a, b, news(space)), space);
}

/// Sum of heap integers of different signs: leading digits that agree cancel, however many.
DAG freshDifference(DAG a, DAG b) {
  Word la = digitCount(a), lb = digitCount(b);
  if (la == lb) {
    while (la > 0 && digitsOf(a)[la - 1] == digitsOf(b)[la - 1]) --la;
    if (la == 0) return immediate(0);
    lb = la;
  }
  if (la < lb || (la == lb && digitsOf(a)[la - 1] < digitsOf(b)[la - 1])) {
    std::swap(a, b);
    std::swap(la, lb);
  }
  DAG r = news(la + 1);
  Word count = subtractMagnitudes(digitsOf(a), la, digitsOf(b), lb, digitsOf(r));
  setHeader(r, tagOf(a), count + 1);
  return settled(r, la + 1);
}

}  // namespace

DAG addint(DAG a, DAG b, DAG r) {
  if (isZeroImmediate(a)) return copied(b, r);
  if (isZeroImmediate(b)) return copied(a, r);
  if (isImmediate(a) && isImmediate(b)) {
    std::int32_t sum = immediateValue(a) + immediateValue(b);  // below 2^31 in magnitude
    return r ? NewIntegerInPlace(sum, r) : Newint(sum);
  }
  if (isImmediate(a) != isImmediate(b)) return isImmediate(a) ? addMixed(a, b, r) : addMixed(b, a, r);

  if (r) return MakeImmediate(SoftIntAdd(a, b, r));
  return tagOf(a) == tagOf(b) ? freshSum(a, b) : freshDifference(a, b);
}

DAG addMixed(DAG small, DAG heap, DAG r) {
  std::int32_t value = immediateValue(small);
  Word magnitude = static_cast<Word>(value < 0 ? -value : value);
  Word digit[3] = {magnitude % BASE, magnitude / BASE % BASE, magnitude / (BASE * BASE)};
  Word count = digit[2] != 0 ? 3 : digit[1] != 0 ? 2 : 1;
  Word la = digitCount(heap);
  Tag sign = tagOf(heap);

  // Digits above the highest stay, unless a carry comes that far.
  bool carries = sign == tagOf(small) &&
                 digitsOf(heap)[la - 1] + (la == count ? digit[count - 1] : 0) + 1 >= static_cast<Word>(BASE);
  Word space = la + (carries ? 2 : 1);
  bool own = !r;
  if (own) r = news(space);
  Word length = sign == tagOf(small) ? addMagnitudes(digitsOf(heap), la, digit, count, digitsOf(r))
                                     : subtractMagnitudes(digitsOf(heap), la, digit, count, digitsOf(r));
  setHeader(r, sign, length + 1);
  controlWord(r) = genpat;
  return own ? settled(r, space) : MakeImmediate(r);
}

DAG SoftIntAdd(DAG a, DAG b, DAG r) {
  Word la = digitCount(a), lb = digitCount(b);
  Tag sign = tagOf(a);
  Word length;
  if (sign == tagOf(b)) {
    if (la < lb) {
      std::swap(a, b);
      std::swap(la, lb);
    }
    length = addMagnitudes(digitsOf(a), la, digitsOf(b), lb, digitsOf(r));
  } else {
    int order = SoftIntCompare(a, b);
    if (order == 0) {
      digitsOf(r)[0] = 0;
      sign = INTPOS;
      length = 1;
    } else {
      if (order < 0) {
        std::swap(a, b);
        std::swap(la, lb);
        sign = tagOf(a);
      }
      length = subtractMagnitudes(digitsOf(a), la, digitsOf(b), lb, digitsOf(r));
    }
  }
  setHeader(r, sign, length + 1);
  controlWord(r) = genpat;
  return r;
}

int compint(DAG a, DAG b) {
  if (!isImmediate(a)) return isImmediate(b) ? 1 : SoftIntCompare(a, b);
  if (!isImmediate(b)) return -1;
  std::int32_t x = immediateValue(a), y = immediateValue(b);
  x = x < 0 ? -x : x;
  y = y < 0 ? -y : y;
  return x < y ? -1 : x > y;
}

int SoftIntCompare(DAG a, DAG b) {
  Word la = digitCount(a), lb = digitCount(b);
  if (la != lb) return la < lb ? -1 : 1;
  return compareDigits(digitsOf(a), digitsOf(b), la);
}

}  // namespace korel
