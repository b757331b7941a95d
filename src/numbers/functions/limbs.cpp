#include "numbers/functions/limbs.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer_transform.h"

namespace korel {

namespace {

// ---- space: chunks that grow, the first of which stays

struct Chunk {
  Limb* limbs;
  std::size_t size, used;
};
constexpr std::size_t mostChunks = 48;
constexpr std::size_t firstChunk = 32768;
// Beyond this the system gets chunks back once the stack is empty.
constexpr std::size_t keptLimbs = 4 << 20;
Chunk chunks[mostChunks];
std::size_t chunkCount = 0, current = 0;

}  // namespace

Limb* limbSpace(std::size_t count) {
  for (;;) {
    if (current < chunkCount) {
      Chunk& c = chunks[current];
      if (c.size - c.used >= count) {
        Limb* space = c.limbs + c.used;
        c.used += count;
        return space;
      }
      if (current + 1 < chunkCount) {
        chunks[++current].used = 0;
        continue;
      }
    }
    const std::size_t size = std::max(chunkCount == 0 ? firstChunk : 2 * chunks[chunkCount - 1].size, count);
    auto* limbs = chunkCount < mostChunks ? static_cast<Limb*>(std::malloc(size * sizeof(Limb))) : nullptr;
    if (limbs == nullptr) {
      releaseAllLimbs();
      KernelException("object too large");
    }
    chunks[chunkCount] = {limbs, size, 0};
    current = chunkCount++;
  }
}

LimbPlace limbPlace() { return {current, current < chunkCount ? chunks[current].used : 0}; }
void returnToPlace(const LimbPlace& place) {
  current = place.chunk;
  if (current < chunkCount) chunks[current].used = place.used;
}

LimbMark::LimbMark() : chunk_(current), used_(current < chunkCount ? chunks[current].used : 0) {}
void LimbMark::release() {
  if (released_) return;
  released_ = true;
  current = chunk_;
  if (current < chunkCount) chunks[current].used = used_;
}

void releaseAllLimbs() {
  while (chunkCount > 1 && chunks[chunkCount - 1].size > keptLimbs) std::free(chunks[--chunkCount].limbs);
  current = 0;
  if (chunkCount > 0) chunks[0].used = 0;
}

void passLimbWork(std::size_t steps) {
  if (!isTimeUp(static_cast<std::int64_t>(steps))) return;
  releaseAllLimbs();
  endOperation();
}

// ---- products

namespace {

// From here on Karatsuba's three half products and the transform pay.
constexpr std::size_t karatsubaFrom = 30, transformFrom = 1500;
// Short enough for the columns below the result to be worth leaving out.
constexpr std::size_t longestShortProduct = 90;

// na >= nb; by rows where the columns would be short.
void plainProduct(Limb* r, const Limb* a, std::size_t na, const Limb* b, std::size_t nb) {
  if (nb > 2) return multiplyColumns(r, a, na, b, nb);
  r[na] = scaleLimbs(r, a, na, b[0]);
  if (nb == 2) r[na + 1] = addScaled(r + 1, a, na, b[1]);
}

// r = |a - b| for n limbs against m <= n; tells whether a < b.
bool distance(Limb* r, const Limb* a, std::size_t n, const Limb* b, std::size_t m) {
  bool below = true;
  for (std::size_t i = m; i < n && below; ++i) below = a[i] == 0;
  below = below && compareLimbs(a, b, m) < 0;
  if (below) {
    subtractLimbs(r, b, a, m);
    clearLimbs(r + m, n - m);
    return true;
  }
  const Limb borrow = subtractLimbs(r, a, b, m);
  copyLimbs(r + m, a + m, n - m);
  subtractLimb(r + m, n - m, borrow);
  return false;
}

void multiplyEqual(Limb* r, const Limb* a, const Limb* b, std::size_t n);

// a0 b0 + x (a0 b0 + a1 b1 - (a0 - a1)(b0 - b1)) + x^2 a1 b1 with the longer halves low.
void karatsuba(Limb* r, const Limb* a, const Limb* b, std::size_t n) {
  const std::size_t low = (n + 1) / 2, high = n - low;
  LimbMark mark;
  Limb *da = limbSpace(low), *db = limbSpace(low), *middle = limbSpace(2 * low + 1), *across = limbSpace(2 * low);
  const bool square = a == b;
  bool negative = distance(da, a, low, a + low, high);
  if (!square) negative ^= distance(db, b, low, b + low, high);
  multiplyEqual(across, da, square ? da : db, low);
  multiplyEqual(r, a, b, low);
  multiplyEqual(r + 2 * low, a + low, b + low, high);
  copyLimbs(middle, r, 2 * low);
  middle[2 * low] = addLimbs(middle, middle, r + 2 * low, 2 * high);
  if (high < low) middle[2 * low] = addLimb(middle + 2 * high, 2 * low - 2 * high, middle[2 * low]);
  if (negative && !square) middle[2 * low] += addLimbs(middle, middle, across, 2 * low);
  else middle[2 * low] -= subtractLimbs(middle, middle, across, 2 * low);
  const std::size_t room = 2 * n - low, length = std::min(2 * low + 1, room);
  const Limb carry = addLimbs(r + low, r + low, middle, length);
  if (room > length) addLimb(r + low + length, room - length, carry);
}

void multiplyEqual(Limb* r, const Limb* a, const Limb* b, std::size_t n) {
  if (n >= transformFrom && binaryTransformProduct(r, a, n, b, n)) return;
  if (n >= karatsubaFrom) {
    if (n >= 200) passLimbWork(n * 20);
    karatsuba(r, a, b, n);
  } else if (a == b) {
    squareLimbs(r, a, n);
  } else {
    plainProduct(r, a, n, b, n);
  }
}

}  // namespace

void multiplyLimbs(Limb* r, const Limb* a, std::size_t na, const Limb* b, std::size_t nb) {
  if (na < nb) {
    std::swap(a, b);
    std::swap(na, nb);
  }
  if (na == nb) return multiplyEqual(r, a, b, na);
  if (nb < karatsubaFrom) return plainProduct(r, a, na, b, nb);
  if (nb >= transformFrom && binaryTransformProduct(r, a, na, b, nb)) return;
  // The longer operand in pieces of the shorter one's length.
  LimbMark mark;
  Limb* part = limbSpace(2 * nb);
  clearLimbs(r, na + nb);
  for (std::size_t i = 0; i < na; i += nb) {
    const std::size_t length = std::min(nb, na - i);
    multiplyLimbs(part, b, nb, a + i, length);
    const Limb carry = addLimbs(r + i, r + i, part, nb + length);
    if (i + nb + length < na + nb) addLimb(r + i + nb + length, na - i - length, carry);
  }
}

void multiplyHigh(Limb* r, const Limb* a, const Limb* b, std::size_t n) {
  LimbMark mark;
  if (n > longestShortProduct || a == b || n < 4) {
    Limb* whole = limbSpace(2 * n);
    multiplyEqual(whole, a, b, n);
    copyLimbs(r, whole + n, n);
    return;
  }
  // Columns n - 2 and up: what lies below carries at most n units into column n - 1.
  Limb* columns = limbSpace(n + 2);
  multiplyColumns(columns, a, n, b, n, n - 2);
  copyLimbs(r, columns + 2, n);
}

Limb quotientOfLimbs(Limb* q, Limb* a, std::size_t na, const Limb* b, std::size_t nb) {
  const LimbDivisor top(b[nb - 1]);
  Limb above = 0;
  if (compareLimbs(a + na - nb, b, nb) >= 0) {
    subtractLimbs(a + na - nb, a + na - nb, b, nb);
    above = 1;
  }
  for (std::size_t i = na - nb; i-- > 0;) {
    passLimbWork(nb);
    q[i] = quotientLimb(a + i, b, nb, top);
  }
  return above;
}

}  // namespace korel
