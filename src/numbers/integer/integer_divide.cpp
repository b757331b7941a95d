// Division of integers in their two forms, truncated toward zero, and residues.

#include "numbers/integer/integer.h"

#include <cstring>

#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"

namespace korel {

namespace {

std::int32_t magnitude(std::int32_t value) { return value < 0 ? -value : value; }

DAG heapZero(DAG s) {
  setHeader(s, INTPOS, 2);
  rawField(s, 1) = 0;
  controlWord(s) = genpat;
  return s;
}

/// Divides digits in place by d below 214748, whose running remainder times the base fits a word.
Word divideDigits(const Word* a, Word* q, Word count, Word d) {
  Word rest = 0;
  for (Word i = count; i-- > 0;) {
    Word value = rest * BASE + a[i];
    q[i] = value / d;
    rest = value - q[i] * d;
  }
  return rest;
}

Word remainderOfDigits(const Word* a, Word count, Word d) {
  Word rest = 0;
  for (Word i = count; i-- > 0;) rest = (rest * BASE + a[i]) % d;
  return rest;
}

constexpr std::int32_t wordDivisorLimit = 214748;  // 214748 * 10000 stays below 2^31

}  // namespace

DAG SoftIntDivide(DAG a, DAG b, DAG q) {
  Word la = digitCount(a), lb = digitCount(b);
  Tag quotientSign = tagOf(a) == tagOf(b) ? INTPOS : INTNEG, restSign = tagOf(a);
  if (SoftIntCompare(a, b) < 0) {
    if (isHeapZero(a)) setHeader(a, INTPOS, 2);
    return q ? heapZero(q) : q;
  }
  Word *digits = digitsOf(a), *quotient = q ? digitsOf(q) : nullptr;
  Word quotientLength = la - lb + 1;
  if (lb == 1) {
    Word d = digitsOf(b)[0];
    Word rest = q ? divideDigits(digits, quotient, la, d) : remainderOfDigits(digits, la, d);
    digits[0] = rest;
    withDigits(a, restSign, 1);
    return q ? withDigits(q, quotientSign, quotientLength) : q;
  }
  if (la <= digitsPerGroup) {
    Group x, y;
    packGroups(digits, la, &x);
    packGroups(digitsOf(b), lb, &y);
    Group z = x / y;
    x -= z * y;
    if (q) unpackGroups(&z, quotient, quotientLength);
    unpackGroups(&x, digits, lb);
  } else {
    std::size_t na = groupsFor(la), nb = groupsFor(lb), nq = na - nb + 1;
    GroupSpace x(na + nb + nq);
    Group *y = x + na, *z = y + nb;
    packGroups(digits, la, x);
    packGroups(digitsOf(b), lb, y);
    divideGroups(z, x, na, y, nb);
    if (q) unpackGroups(z, quotient, quotientLength);
    unpackGroups(x, digits, lb);
  }
  withDigits(a, restSign, lb);
  return q ? withDigits(q, quotientSign, quotientLength) : q;
}

DAG MixedDivide(DAG a, DAG b, DAG q, DAG* r) {
  std::int32_t divisor = IntegerValue(b);
  Word length = lengthOf(a);
  bool own = !q;
  if (own) q = news(length);
  // A divisor of 2^31 in magnitude has no positive word.
  if (divisor != INT32_MIN && magnitude(divisor) < wordDivisorLimit) {
    Tag sign = (divisor < 0) == hasTag(a, INTNEG) ? INTPOS : INTNEG;
    Word rest = divideDigits(digitsOf(a), digitsOf(q), length - 1, static_cast<Word>(magnitude(divisor)));
    *r = Newint(hasTag(a, INTNEG) ? -static_cast<std::int32_t>(rest) : static_cast<std::int32_t>(rest));
    withDigits(q, sign, length - 1);
  } else {
    DAG softB = isImmediate(b) ? NewSoftInt(b) : b;
    bool ownRest = !*r || isImmediate(*r);
    DAG rest = CopyIntoSoftInt(ownRest ? news(length) : *r, a);
    // The quotient needs a word more than it has digits.
    SoftIntDivide(rest, softB, q);
    *r = ownRest ? settled(rest, length) : MakeImmediate(rest);
    if (softB != b) release(softB, lengthOf(softB));
  }
  return own ? settled(q, length) : MakeImmediate(q);
}

DAG ImmediateDivide(DAG a, DAG b, DAG* r) {
  if (!isImmediate(b)) {
    // A canonical heap integer of a word may be divided by one; an immediate never reaches it.
    if (isImmediate(a) || SoftIntCompare(a, b) < 0) {
      *r = a;
      return cons0;
    }
  }
  std::int64_t x = IntegerValue(a), y = IntegerValue(b);
  *r = NewInteger(x % y);
  return NewInteger(x / y);
}

DAG IntegerDivide(DAG a, DAG b, DAG* r) {
  if (isImmediate(a)) return ImmediateDivide(a, b, r);
  if (compint(a, b) < 0) {
    *r = CopyAlg(a);
    return cons0;
  }
  Tag sign = tagOf(a) == tagOf(b) ? INTPOS : INTNEG, restSign = tagOf(a);
  std::size_t na = groupCount(a), nb = groupCount(b), nq = na - nb + 1;
  if (na == 1) {
    Group x, y;
    packInteger(a, &x);
    packInteger(b, &y);
    Group q = x / y;
    x -= q * y;
    *r = integerOfGroups(&x, 1, restSign);
    return integerOfGroups(&q, 1, sign);
  }
  GroupSpace x(na + nb + nq);
  Group *y = x + na, *q = y + nb;
  packInteger(a, x);
  packInteger(b, y);
  divideGroups(q, x, na, y, nb);
  *r = integerOfGroups(x, nb, restSign);
  return integerOfGroups(q, nq, sign);
}

DAG IntegerDiv(DAG a, DAG b, DAG q, DAG* r) {
  if (isImmediate(a)) return ImmediateDivide(a, b, r);
  if (isImmediate(b) && magnitude(immediateValue(b)) < wordDivisorLimit) {
    DAG rest;
    DAG quotient = MixedDivide(a, b, q, &rest);
    *r = rest;
    return quotient;
  }
  DAG softB = isImmediate(b) ? NewSoftInt(b) : b;
  if (*r != a) CopyIntoSoftInt(*r, a);
  DAG quotient = MakeImmediate(SoftIntDivide(*r, softB, q));
  *r = MakeImmediate(*r);
  if (softB != b) release(softB, lengthOf(softB));
  return quotient;
}

DAG IntegerDivideByTwo(DAG a) {
  if (isImmediate(a)) return immediate(immediateValue(a) / 2);
  Word* digit = digitsOf(a);
  Word odd = 0;
  for (Word i = digitCount(a); i-- > 0;) {
    Word value = digit[i] + odd * BASE;
    odd = value & 1;
    digit[i] = value >> 1;
  }
  Word count = digitCount(a);
  if (count > 1 && digit[count - 1] == 0) setHeader(a, tagOf(a), count);
  return MakeImmediate(a);
}

bool isodd(DAG x) { return ((isImmediate(x) ? x.word >> 1 : digitsOf(x)[0]) & 1) != 0; }

// ---- residues

namespace {

/// Brings a remainder of `x`'s sign, below d in magnitude, into the range asked for.
std::int64_t inRange(std::int64_t r, std::int64_t d, bool symmetric) {
  if (!symmetric) return r < 0 ? r + d : r;
  if (r > 0) return 2 * r > d ? r - d : r;
  return 2 * r <= -d ? r + d : r;
}

}  // namespace

DAG imod(DAG x, DAG m, bool symmetric) {
  if (isImmediate(x) && isImmediate(m)) {
    std::int32_t d = magnitude(immediateValue(m));
    return Newint(static_cast<std::int32_t>(inRange(immediateValue(x) % d, d, symmetric)));
  }
  if (isImmediate(m) && magnitude(immediateValue(m)) <= wordDivisorLimit) {
    std::int32_t d = magnitude(immediateValue(m));
    auto r = static_cast<std::int32_t>(remainderOfDigits(digitsOf(x), digitCount(x), static_cast<Word>(d)));
    return Newint(static_cast<std::int32_t>(inRange(hasTag(x, INTNEG) ? -r : r, d, symmetric)));
  }
  if (!symmetric && !isImmediate(x) && hasTag(x, INTPOS) && compint(x, m) < 0) return CopyAlg(x);

  DAG r;
  DAG q = IntegerDivide(x, m, &r);
  if (!isImmediate(q)) release(q, lengthOf(q));
  bool negative = hasTag(r, INTNEG);
  bool adjust = !symmetric ? negative : false;
  if (symmetric) {
    DAG doubled = addint(r, r);
    int order = compint(doubled, m);
    adjust = negative ? order >= 0 : order > 0;
    if (!isImmediate(doubled)) release(doubled, lengthOf(doubled));
  }
  if (!adjust) return r;
  // Towards the other side of zero by |m|.
  DAG step = negative == hasTag(m, INTNEG) ? complint(m) : m;
  DAG result = addint(r, step);
  if (step != m && !isImmediate(step)) release(step, lengthOf(step));
  if (r != x && !isImmediate(r)) release(r, lengthOf(r));
  return result;
}

}  // namespace korel
