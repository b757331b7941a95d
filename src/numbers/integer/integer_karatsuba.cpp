#include "numbers/integer/integer_karatsuba.h"

#include <algorithm>
#include <cstring>

#include "numbers/integer/integer.h"
#include "store/objects.h"

namespace korel {

DAG KaraBuffer;

namespace {

constexpr std::int32_t columnCarry = KaraColMax / BASE;  // 107363: what a full column passes on
constexpr std::int32_t twoColumns = 2 * KaraColMax;      // 2147260000
constexpr std::int32_t uncheckedRows = 9;                // products that fit on a settled column

std::int32_t column(const Word* r, Word i) { return static_cast<std::int32_t>(r[i]); }
void setColumn(Word* r, Word i, std::int32_t value) { r[i] = static_cast<Word>(value); }

void clearColumns(Word* r, Word count) { std::memset(r, 0, std::size_t{count} * sizeof(Word)); }

/// r[0..la) += a * digit without a test.
void addRow(const Word* a, Word digit, Word* r, Word la) {
  for (Word j = 0; j < la; ++j) r[j] += a[j] * digit;
}

/// Column i gains `product` and the carry; gives the new carry.
std::int32_t settle(Word* r, Word i, Word product, std::int32_t carry) {
  std::int32_t value = column(r, i) + static_cast<std::int32_t>(product) + carry;
  bool full = value >= KaraColMax;
  setColumn(r, i, full ? value - KaraColMax : value);
  return full ? columnCarry : 0;
}

/// r[0..la) += a * digit with the ceiling test; then settles the `group` columns behind, which the rows
/// above this one have filled, and further while a carry remains.
void addCheckedRow(const Word* a, Word digit, Word* r, Word la, Word group) {
  std::int32_t carry = 0;
  for (Word j = 0; j < la; ++j) carry = settle(r, j, a[j] * digit, carry);
  for (Word j = la; j < la + group || carry != 0; ++j) carry = settle(r, j, 0, carry);
}

}  // namespace

// ---- the school method
//
// Rows run from b's top digit down, so that r may be b: row i touches columns i and above only. In a
// group the unchecked rows come first, then the checking row below them, whose columns begin one lower:
// what the group has filled above the checking row's own end is settled behind it. The lowest row is
// always a checking row: the columns are settled in the end.

void KaraStdMulOver(const Word* a, const Word* b, Word* r, Word la, Word lb) {
  if (la == 0) {
    clearColumns(r, lb);
    return;
  }
  Word i = lb - 1;
  Word digit = b[i];
  for (Word j = 0; j < la; ++j) r[i + j] = a[j] * digit;  // the top row writes all its columns
  Word unchecked = 1;                                     // rows since the last check
  while (i > 0) {
    --i;
    digit = b[i];
    r[i] = 0;  // consumed
    if (unchecked < uncheckedRows && i > 0) {
      addRow(a, digit, r + i, la);
      ++unchecked;
    } else {
      addCheckedRow(a, digit, r + i, la, unchecked);
      unchecked = 0;
    }
  }
}

void KarStdMulAdd(const Word* a, const Word* b, Word* r, Word la, Word lb) {
  if (la == 0) return;
  Word unchecked = 0;
  for (Word i = lb; i-- > 0;) {
    if (unchecked < uncheckedRows && i > 0) {
      addRow(a, b[i], r + i, la);
      ++unchecked;
    } else {
      addCheckedRow(a, b[i], r + i, la, unchecked);
      unchecked = 0;
    }
  }
}

// ---- steps of the split

Word KaraAdd(const Word* a, const Word* b, Word* r, Word la, Word lb) {
  if (la < lb) {
    std::swap(a, b);
    std::swap(la, lb);
  }
  Word carry = 0;
  for (Word i = 0; i < la; ++i) {
    Word sum = a[i] + (i < lb ? b[i] : 0) + carry;
    carry = sum >= static_cast<Word>(BASE);
    r[i] = sum - (carry != 0 ? BASE : 0);
  }
  if (carry == 0) return la;
  r[la] = 1;
  return la + 1;
}

void KarExtAdd(const Word* x, Word* y, Word n) {
  std::int64_t carry = 0;
  for (Word i = 0; i < n; ++i) {
    std::int64_t value = std::int64_t{column(y, i)} + column(x, i) + carry;
    carry = 0;
    if (value >= twoColumns) {
      value -= twoColumns;
      carry = 2 * columnCarry;
    } else if (value >= KaraColMax) {
      value -= KaraColMax;
      carry = columnCarry;
    }
    setColumn(y, i, static_cast<std::int32_t>(value));
  }
  for (Word i = n; carry != 0; ++i) {
    std::int64_t value = column(y, i) + carry;
    carry = value >= KaraColMax ? columnCarry : 0;
    setColumn(y, i, static_cast<std::int32_t>(value - (carry != 0 ? KaraColMax : 0)));
  }
}

namespace {

/// Pays `debt` units of column n out of the columns from n on, of which y has m in all. What they can't
/// pay is folded into the columns below, where a unit is worth 10000.
void payDebt(Word* y, Word n, Word m, std::int64_t debt) {
  // Upward: first in a large coin, which leaves little to borrow, then as a plain borrow.
  std::int64_t coin = 220000, price = coin / BASE;
  Word i = n;
  while (i < m && debt != 0) {
    std::int64_t value = column(y, i) - debt;
    debt = 0;
    if (value < 0) {
      value += coin;
      debt = price;
      coin = BASE;
      price = 1;
    }
    setColumn(y, i++, static_cast<std::int32_t>(value));
  }
  // The columns ran out. They aren't negative as a whole, so the columns below hold more than the debt;
  // as each of them is under the ceiling, the debt is at most 107374 at every step down.
  while (debt != 0) {
    assert(i > 0 && debt <= columnCarry + 11);
    std::int64_t value = column(y, --i) - debt * BASE;
    debt = value < 0 ? -value : 0;
    setColumn(y, i, static_cast<std::int32_t>(value < 0 ? 0 : value));
  }
}

}  // namespace

void KarExtSub(const Word* x, Word* y, Word n, Word m) {
  std::int64_t debt = 0;
  for (Word i = 0; i < n; ++i) {
    std::int64_t value = std::int64_t{column(y, i)} - column(x, i) - debt;
    debt = 0;
    if (value < -KaraColMax) {
      value += twoColumns;
      debt = 2 * columnCarry;
    } else if (value < 0) {
      value += KaraColMax;
      debt = columnCarry;
    }
    setColumn(y, i, static_cast<std::int32_t>(value));
  }
  if (debt != 0) payDebt(y, n, m, debt);
}

// ---- Karatsuba

void KarMulAdd(const Word* a, const Word* b, Word* r, Word la, Word lb, Word* buffer, bool clear, Word room) {
  if (la < lb) {
    std::swap(a, b);
    std::swap(la, lb);
  }
  if (lb < KaraCutoff) {
    if (clear) {
      clearColumns(r + lb, la - 1);
      KaraStdMulOver(a, b, r, la, lb);
    } else {
      KarStdMulAdd(a, b, r, la, lb);
    }
    return;
  }
  Word h = (la + 1) / 2;
  if (h + 3 < lb) {
    const Word *a1 = a + h, *b1 = b + h;
    Word la1 = la - h, lb1 = lb - h;
    Word highColumns = la1 + lb1 - 1;  // of a1 * b1
    Word above = room - h;             // columns of r from h on
    Word* next = buffer + 2 * h + 2;
    KarMulAdd(a1, b1, clear ? r + 2 * h : buffer, la1, lb1, next, true, highColumns);
    if (clear) {
      clearColumns(r + h, h);
      KarExtSub(r + 2 * h, r + h, highColumns, above);
    } else {
      KarExtAdd(buffer, r + 2 * h, highColumns);
      KarExtSub(buffer, r + h, highColumns, above);
    }
    // The order keeps r from h on at or above zero as a value: subtracting a1*b1 once leaves
    // a1*b1*(10000^h - 1) there.
    Word* sumA = buffer;
    Word* sumB = buffer + h + 1;
    Word lengthA = KaraAdd(a, a1, sumA, h, la1), lengthB = KaraAdd(b, b1, sumB, h, lb1);
    KarMulAdd(sumA, sumB, r + h, lengthA, lengthB, next, false, above);
    KarMulAdd(a, b, buffer, h, h, next, true, 2 * h - 1);
    if (clear) {
      std::memcpy(r, buffer, std::size_t{h} * sizeof(Word));
      KarExtAdd(buffer + h, r + h, h - 1);
    } else {
      KarExtAdd(buffer, r, 2 * h - 1);
    }
    KarExtSub(buffer, r + h, 2 * h - 1, above);
    return;
  }
  // Too unbalanced to split: blocks of the longer operand, the top one first.
  if (clear) clearColumns(r, la + lb - 1);
  Word blocks = la / lb;
  Word done = blocks * lb;
  if (done < la) KarMulAdd(a + done, b, r + done, la - done, lb, buffer, false, room - done);
  for (Word i = blocks; i-- > 0;) KarMulAdd(a + i * lb, b, r + i * lb, lb, lb, buffer, false, room - i * lb);
}

std::int64_t CalcBufSize(Word x, Word y) {
  Word small = std::min(x, y), large = std::max(x, y);
  if (small < KaraCutoff) return 0;
  Word h = (large + 1) / 2;
  if (h + 3 >= small) h = (small + 1) / 2;
  std::int64_t words = 0;
  for (;;) {
    words += 2 * std::int64_t{h} + 2;
    if (h + 1 < KaraCutoff) return words;
    h = (h + 2) / 2;
  }
}

DAG KaraBufAlloc(Word n) {
  if (KaraBuffer) {
    if (lengthOf(KaraBuffer) >= n) return KaraBuffer;
    release(KaraBuffer, lengthOf(KaraBuffer));
    KaraBuffer = DAG();
  }
  Word length = static_cast<Word>(std::min<std::uint64_t>(std::uint64_t{n} + 1024, maxLength));
  KaraBuffer = news(length);
  setHeader(KaraBuffer, BINARY, length);
  return KaraBuffer;
}

DAG KaratsubaProduct(DAG a, DAG b, DAG r) {
  if (r == a) std::swap(a, b);
  if (r == a) a = CopyAlg(a);  // a square in place
  Word lengthA = lengthOf(a), lengthB = lengthOf(b);
  Word la = lengthA - 1, lb = lengthB - 1;
  Tag sign = tagOf(a) == tagOf(b) ? INTPOS : INTNEG;
  Word* columns = digitsOf(r);
  if (lengthA < karatsubaEntryLength || lengthB < karatsubaEntryLength) {
    clearColumns(columns + lb, la - 1);
    KaraStdMulOver(digitsOf(a), digitsOf(b), columns, la, lb);
  } else {
    std::int64_t scratch = CalcBufSize(la, lb);
    std::int64_t copy = r == b ? lengthB : 0;
    const Word* factor = digitsOf(b);
    if (scratch < maxLength && scratch + copy < maxLength) {
      DAG buffer = KaraBufAlloc(static_cast<Word>(scratch + 1 + copy));
      Word* space = digitsOf(buffer);
      if (copy != 0) {
        std::memcpy(space, factor, std::size_t{lb} * sizeof(Word));
        factor = space;
        space += copy;
      }
      KarMulAdd(digitsOf(a), factor, columns, la, lb, space, true, la + lb - 1);
    } else {
      // The scratch would exceed an object: pieces of a that need less.
      if (r == b) factor = digitsOf(CopyAlg(b));
      Word pieces = 1, piece = la;
      while (CalcBufSize(piece, lb) >= maxLength) {
        ++pieces;
        piece = (la + pieces - 1) / pieces;
      }
      Word* space = digitsOf(KaraBufAlloc(static_cast<Word>(CalcBufSize(piece, lb) + 1)));
      const Word* digits = digitsOf(a);
      clearColumns(columns, la + lb - 1);
      for (Word at = 0; at < la; at += piece)
        KarMulAdd(digits + at, factor, columns + at, std::min(piece, la - at), lb, space, false, la + lb - 1 - at);
    }
  }
  setHeader(r, sign, la + lb);
  controlWord(r) = genpat;
  return SoftIntNormalize(r);
}

// ---- columns to digits

DAG SoftIntNormalize(DAG heap) {
  Word* digit = digitsOf(heap);
  Word count = digitCount(heap);
  std::int64_t carry = 0;
  for (Word i = 0; i < count; ++i) {
    // A division by a constant, which is a multiplication.
    std::int64_t value = static_cast<std::int32_t>(digit[i]) + carry;
    std::int64_t quotient = value / BASE;
    std::int64_t rest = value - quotient * BASE;
    if (rest < 0) {
      rest += BASE;
      --quotient;
    }
    digit[i] = static_cast<Word>(rest);
    carry = quotient;
  }
  assert(carry >= 0);
  while (carry > 0) {
    digit[count++] = static_cast<Word>(carry % BASE);
    carry /= BASE;
  }
  while (count > 1 && digit[count - 1] == 0) --count;
  Tag sign = count == 1 && digit[0] == 0 ? INTPOS : tagOf(heap);
  setHeader(heap, sign, count + 1);
  controlWord(heap) = genpat;
  return heap;
}

DAG normalmpi(DAG x) { return isImmediate(x) ? x : MakeImmediate(SoftIntNormalize(x)); }

}  // namespace korel
