// Products of integers: the cheap cases first, then the method by length.

#include "numbers/integer/integer.h"

#include "frame/errors.h"
#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_karatsuba.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"

namespace korel {

namespace {

/// Copy of `x` in `r` when space was given.
DAG copied(DAG x, DAG r) { return !r || isImmediate(x) || r == x ? x : CopyIntoSoftInt(r, x); }

/// Product in `r` by groups of digits: operands of one group in registers, longer ones packed.
DAG packedProduct(DAG a, DAG b, DAG r) {
  Word la = digitCount(a), lb = digitCount(b);
  Tag sign = tagOf(a) == tagOf(b) ? INTPOS : INTNEG;
  bool square = a == b;
  if (la <= digitsPerGroup && lb <= digitsPerGroup) {
    Group x, y;
    packGroups(digitsOf(a), la, &x);
    packGroups(digitsOf(b), lb, &y);
    GroupQuotient parts = splitGroup(Wide{x} * y);
    Group product[2] = {parts.rest, parts.quotient};
    unpackGroups(product, digitsOf(r), la + lb);
  } else {
    std::size_t na = groupsFor(la), nb = square ? 0 : groupsFor(lb);
    GroupSpace x(na + nb + na + (square ? na : nb), GroupSpace::optional);
    if (x.missing()) return KaratsubaProduct(a, b, r);
    Group *y = square ? x : x + na, *product = x + na + nb;
    packGroups(digitsOf(a), la, x);
    if (!square) packGroups(digitsOf(b), lb, y);
    multiplyGroups(product, x, na, y, square ? na : nb);
    unpackGroups(product, digitsOf(r), la + lb);
  }
  return withDigits(r, sign, la + lb);
}

}  // namespace

namespace {

/// Product as a fresh integer of just the words that it needs.
DAG freshProduct(DAG a, DAG b) {
  Tag sign = tagOf(a) == tagOf(b) ? INTPOS : INTNEG;
  std::size_t na = groupCount(a), nb = groupCount(b);
  if (na == 1 && nb == 1) {
    Group product[2];
    multiplySingles(a, b, product);
    return integerOfGroups(product, 2, sign);
  }
  if (digitsPerGroup * (na + nb) > std::size_t{maxLength}) KernelException("object too large");
  const bool square = a == b;
  GroupSpace x(na + (square ? 0 : nb) + na + nb, GroupSpace::optional);
  if (x.missing()) {
    DAG softA = isImmediate(a) ? NewSoftInt(a) : a, softB = isImmediate(b) ? NewSoftInt(b) : b;
    Word space = lengthOf(softA) + lengthOf(softB) - 1;
    return settled(KaratsubaProduct(softA, softB, news(space)), space);
  }
  Group *y = square ? x : x + na, *product = y + nb;
  packInteger(a, x);
  if (!square) packInteger(b, y);
  multiplyGroups(product, x, na, y, nb);
  return integerOfGroups(product, na + nb, sign);
}

}  // namespace

DAG mulint(DAG a, DAG b, DAG r) {
  if (isZeroImmediate(a) || isZeroImmediate(b)) return cons0;
  if (isImmediate(a) && isImmediate(b)) {
    std::int64_t product = std::int64_t{immediateValue(a)} * immediateValue(b);
    return r ? NewLongLongIntegerInPlace(product, r) : NewInteger(product);
  }
  if (a == cons1) return copied(b, r);
  if (b == cons1) return copied(a, r);
  if (!r) return freshProduct(a, b);
  DAG softA = isImmediate(a) ? NewSoftInt(a) : a, softB = isImmediate(b) ? NewSoftInt(b) : b;
  DAG result = MakeImmediate(SoftIntMultiply(softA, softB, r));
  if (softA != a) release(softA, lengthOf(softA));
  if (softB != b) release(softB, lengthOf(softB));
  return result;
}

DAG SoftIntMultiply(DAG a, DAG b, DAG r) {
  if (isHeapZero(a) || isHeapZero(b)) {
    setHeader(r, INTPOS, 2);
    rawField(r, 1) = 0;
    return r;
  }
  return KarMulInt(a, b, r);
}

DAG KarMulInt(DAG a, DAG b, DAG r) {
  // Packed groups are the faster way at every length (bench/integer_bench.cpp). When the system has no
  // scratch for them, the columns of Karatsuba's method need a third of it.
  return packedProduct(a, b, r);
}

}  // namespace korel
