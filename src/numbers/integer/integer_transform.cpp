#include "numbers/integer/integer_transform.h"

#include <algorithm>
#include <cstring>

#include "numbers/integer/integer.h"

namespace korel {

namespace {

/// A prime below 2^62 with roots of unity of order 2^40, and its transform tables.
///
/// `roots[j]` is exp(pi i rev(j)) in the field, where rev(j) reads the bits of j behind a binary point
/// from the lowest: the root that splits x^2m - s into x^m - w and x^m + w in block j of any level, so
/// that one table serves all lengths. Beside each root stands floor(root * 2^64 / p), with which a
/// product by the root takes no division (Shoup).
struct Field {
  Group prime;
  Group root;     // of order 2^40
  Group inverse;  // -1 / prime modulo 2^64
  Group square;   // 2^128 modulo prime
  Group *roots, *rootQuotients;
  Group *backRoots, *backQuotients;
};

constexpr int rootOrderBits = 40;

constexpr Group multiplyModulo(Group a, Group b, Group p) { return static_cast<Group>(Wide{a} * b % p); }
constexpr Group powerModulo(Group a, Group n, Group p) {
  Group r = 1;
  for (; n != 0; n >>= 1, a = multiplyModulo(a, a, p))
    if ((n & 1) != 0) r = multiplyModulo(r, a, p);
  return r;
}
constexpr Group negativeInverse(Group p) {
  Group x = p;  // right to 3 bits; each step doubles them
  for (int i = 0; i < 5; ++i) x *= 2 - p * x;
  return 0 - x;
}
constexpr Field makeField(Group prime, Group root) {
  Group r = static_cast<Group>((Wide{1} << 64) % prime);
  return {prime, root, negativeInverse(prime), multiplyModulo(r, r, prime), nullptr, nullptr, nullptr, nullptr};
}

Field fields[2] = {
    makeField((Group{4194240} << 40) + 1, 611971507056309289u),
    makeField((Group{4194238} << 40) + 1, 291604889638457747u),
};
std::size_t tableLength = 0;  // entries of each table: half the longest length

Group shoup(Group w, Group p) { return static_cast<Group>((Wide{w} << 64) / p); }

/// x * w modulo p in [0, 2p), for any x.
inline Group timesRoot(Group x, Group w, Group quotient, Group p) {
  return x * w - static_cast<Group>(Wide{x} * quotient >> 64) * p;
}
/// a * b / 2^64 modulo p in [0, 2p), for a * b below p * 2^64 (Montgomery).
inline Group montgomery(Group a, Group b, const Field& f) {
  Wide product = Wide{a} * b;
  Group m = static_cast<Group>(product) * f.inverse;
  return static_cast<Group>((product + Wide{m} * f.prime) >> 64);
}
inline Group below(Group x, Group bound) { return x >= bound ? x - bound : x; }

// Entries of the tables between two looks for an interrupt, and what one costs in steps.
constexpr std::size_t tableRun = 4096, tableSteps = 40;
// Blocks that fit in the cache pass their work at once.
constexpr std::size_t largestUncounted = 4096;
void passTransformWork(std::size_t n) {
  if (n > largestUncounted) passGroupWork(3 * n);
  else if (n > largestUncounted / 4) passGroupWork(20 * n);
}

/// Tables for transforms of `length` and shorter. They grow by doubling and stay.
bool prepareTables(std::size_t length) {
  std::size_t half = length / 2;
  if (half <= tableLength) return true;
  for (Field& f : fields) {
    for (Group** table : {&f.roots, &f.rootQuotients, &f.backRoots, &f.backQuotients}) {
      auto* grown = static_cast<Group*>(std::realloc(*table, half * sizeof(Group)));
      if (grown == nullptr) return false;
      *table = grown;
    }
    std::size_t done = tableLength;
    if (done == 0) {
      f.roots[0] = f.backRoots[0] = 1;
      f.rootQuotients[0] = f.backQuotients[0] = shoup(1, f.prime);
      done = 1;
    }
    // Entry done + j is entry j times the root of the next finer order.
    for (std::size_t level = done; level < half; level *= 2) {
      int bits = __builtin_ctzll(level);
      Group w = powerModulo(f.root, Group{1} << (rootOrderBits - bits - 2), f.prime);
      Group back = powerModulo(w, f.prime - 2, f.prime);
      for (std::size_t j = 0; j < level; ++j) {
        if (j % tableRun == 0) passGroupWork(tableRun * tableSteps);
        f.roots[level + j] = multiplyModulo(f.roots[j], w, f.prime);
        f.backRoots[level + j] = multiplyModulo(f.backRoots[j], back, f.prime);
        f.rootQuotients[level + j] = shoup(f.roots[level + j], f.prime);
        f.backQuotients[level + j] = shoup(f.backRoots[level + j], f.prime);
      }
    }
  }
  tableLength = half;
  return true;
}

// ---- the transform of one block: x modulo x^n - s, where block j's s is given by its position.
//
// Depth first, so that the lower levels work in the cache; two levels a pass. Values stay in [0, 4p) on
// the way in and in [0, 2p) on the way back (Harvey, "Faster arithmetic for number-theoretic
// transforms").

void forward(Group* x, std::size_t n, std::size_t j, const Field& f) {
  const Group p = f.prime, p2 = 2 * p;
  if (n == 1) return;
  passTransformWork(n);
  if (n == 2) {
    Group a = below(x[0], p2), b = timesRoot(x[1], f.roots[j], f.rootQuotients[j], p);
    x[0] = a + b;
    x[1] = a - b + p2;
    return;
  }
  std::size_t m = n / 4;
  const Group w1 = f.roots[j], q1 = f.rootQuotients[j];
  const Group w2 = f.roots[2 * j], q2 = f.rootQuotients[2 * j];
  const Group w3 = f.roots[2 * j + 1], q3 = f.rootQuotients[2 * j + 1];
  for (std::size_t i = 0; i < m; ++i) {
    Group a = below(x[i], p2), b = below(x[i + m], p2);
    Group c = timesRoot(x[i + 2 * m], w1, q1, p), d = timesRoot(x[i + 3 * m], w1, q1, p);
    Group e = below(a + c, p2), g = below(a - c + p2, p2);
    Group s = timesRoot(b + d, w2, q2, p), t = timesRoot(b - d + p2, w3, q3, p);
    x[i] = e + s;
    x[i + m] = e - s + p2;
    x[i + 2 * m] = g + t;
    x[i + 3 * m] = g - t + p2;
  }
  if (m == 1) return;
  for (std::size_t k = 0; k < 4; ++k) forward(x + k * m, m, 4 * j + k, f);
}

void backward(Group* x, std::size_t n, std::size_t j, const Field& f) {
  const Group p = f.prime, p2 = 2 * p;
  if (n == 1) return;
  passTransformWork(n);
  if (n == 2) {
    Group a = x[0], b = x[1];
    x[0] = below(a + b, p2);
    x[1] = timesRoot(a - b + p2, f.backRoots[j], f.backQuotients[j], p);
    return;
  }
  std::size_t m = n / 4;
  if (m > 1)
    for (std::size_t k = 0; k < 4; ++k) backward(x + k * m, m, 4 * j + k, f);
  const Group w1 = f.backRoots[j], q1 = f.backQuotients[j];
  const Group w2 = f.backRoots[2 * j], q2 = f.backQuotients[2 * j];
  const Group w3 = f.backRoots[2 * j + 1], q3 = f.backQuotients[2 * j + 1];
  for (std::size_t i = 0; i < m; ++i) {
    Group e = x[i], s = x[i + m], g = x[i + 2 * m], t = x[i + 3 * m];
    Group a = below(e + s, p2), b = timesRoot(e - s + p2, w2, q2, p);
    Group c = below(g + t, p2), d = timesRoot(g - t + p2, w3, q3, p);
    x[i] = below(a + c, p2);
    x[i + m] = below(b + d, p2);
    x[i + 2 * m] = timesRoot(a - c + p2, w1, q1, p);
    x[i + 3 * m] = timesRoot(b - d + p2, w1, q1, p);
  }
}

/// Length of the transform for `count` coefficients: 2^k, or 3 * 2^k, which is a transform of 2^(k+2)
/// without its last quarter.
std::size_t transformLength(std::size_t count) {
  std::size_t length = 4;
  while (length < count) length *= 2;
  return length >= 16 && count <= length / 4 * 3 ? length / 4 * 3 : length;
}
bool isPowerOfTwo(std::size_t n) { return (n & (n - 1)) == 0; }

/// The factors of x^4m - 1 that are kept: x^2m - 1 and, with 3m values, x^m - i.
void transform(Group* x, std::size_t length, const Field& f) {
  if (isPowerOfTwo(length)) {
    forward(x, length, 0, f);
    return;
  }
  const Group p = f.prime, p2 = 2 * p;
  std::size_t m = length / 3;
  const Group w = f.roots[1], q = f.rootQuotients[1];
  for (std::size_t i = 0; i < m; ++i) {
    Group a = below(x[i], p2), b = below(x[i + m], p2), c = below(x[i + 2 * m], p2);
    x[i] = a + c;
    Group turned = timesRoot(b, w, q, p);
    x[i + 2 * m] = below(a - c + p2, p2) + turned;
    x[i + m] = b;
  }
  forward(x, 2 * m, 0, f);
  forward(x + 2 * m, m, 2, f);
}

/// The way back; the values come out times the scale factors that `finish` takes off.
void transformBack(Group* x, std::size_t length, const Field& f) {
  if (isPowerOfTwo(length)) {
    backward(x, length, 0, f);
    return;
  }
  std::size_t m = length / 3;
  backward(x, 2 * m, 0, f);
  backward(x + 2 * m, m, 2, f);
}

/// Takes the scale factors off, including that of the Montgomery products, and leaves values below p.
void finish(Group* x, std::size_t length, const Field& f) {
  const Group p = f.prime, p2 = 2 * p;
  // 2^64 / n modulo p, for the power of two n that a block's way back has multiplied by.
  auto scale = [&](std::size_t n) {
    Group r = static_cast<Group>((Wide{1} << 64) % p);
    return multiplyModulo(r, powerModulo(n % p, p - 2, p), p);
  };
  if (isPowerOfTwo(length)) {
    Group w = scale(length), q = shoup(w, p);
    for (std::size_t i = 0; i < length; ++i) x[i] = below(timesRoot(x[i], w, q, p), p);
    return;
  }
  // With x = x0 + x1 X + x2 X^2, X = x^m: the first block holds x0 + x2 and x1, the second
  // x0 - x2 + i x1.
  std::size_t m = length / 3;
  Group half = (p + 1) / 2;
  Group w2 = scale(2 * m), q2 = shoup(w2, p);
  Group h2 = multiplyModulo(w2, half, p), hq2 = shoup(h2, p);
  Group h1 = multiplyModulo(scale(m), half, p), hq1 = shoup(h1, p);
  Group turn = multiplyModulo(f.roots[1], half, p), turnQuotient = shoup(turn, p);
  for (std::size_t i = 0; i < m; ++i) {
    Group sum = timesRoot(x[i], h2, hq2, p);  // (x0 + x2) / 2
    Group x1 = below(timesRoot(x[i + m], w2, q2, p), p);
    Group difference = timesRoot(x[i + 2 * m], h1, hq1, p);  // (x0 - x2 + i x1) / 2
    difference = below(difference - timesRoot(x1, turn, turnQuotient, p) + p2, p2);
    x[i] = below(below(sum + difference, p2), p);
    x[i + m] = x1;
    x[i + 2 * m] = below(below(sum - difference + p2, p2), p);
  }
}

// ---- coefficients

// With groups of 16 decimals as coefficients, a sum of n products is below n * 10^32, which has to be
// below the product of the primes, 2.1 * 10^37. Longer operands take coefficients of 12 decimals.
constexpr std::size_t longestOfGroups = 200000;
constexpr Group shortBase = 1000000000000u;
constexpr std::size_t shortCount(std::size_t groups) { return (4 * groups + 2) / 3; }

/// Regroups n groups of 16 decimals into `shortCount(n)` of 12.
void toShort(const Group* a, std::size_t n, Group* x) {
  Group rest = 0, unit = 1;  // decimals left over from the group before: 0, 4 or 8, and 10 to that
  for (std::size_t i = 0; i < n; ++i) {
    Group room = shortBase / unit;
    *x++ = rest + a[i] % room * unit;
    rest = a[i] / room;
    unit *= BASE;
    if (unit == shortBase) {
      *x++ = rest;
      rest = 0;
      unit = 1;
    }
  }
  if (unit != 1) *x = rest;
}

/// Takes the lowest group of 16 decimals off a stream of 12: how the carried coefficients are written.
class GroupWriter {
 public:
  explicit GroupWriter(Group* out, std::size_t count) : out_(out), end_(out + count) {}
  void put(Group twelve) {
    Group room = groupBase / unit_;
    if (room > shortBase) {  // only the first of four: no group is full yet
      rest_ = twelve;
      unit_ = shortBase;
      return;
    }
    if (out_ < end_) *out_++ = rest_ + twelve % room * unit_;
    rest_ = twelve / room;
    unit_ = unit_ == BASE ? 1 : unit_ / BASE;
  }
  void close() {
    while (out_ < end_) {
      *out_++ = rest_;
      rest_ = 0;
    }
  }

 private:
  Group *out_, *end_;
  Group rest_ = 0, unit_ = 1;
};

// Binary limbs are read in pieces of 48 bits, three limbs as four: sums of 2^27 products stay below the bound.
constexpr int pieceBits = 48;
constexpr Group pieceMask = (Group{1} << pieceBits) - 1;
constexpr std::size_t pieceCount(std::size_t limbs) { return (limbs * 64 + pieceBits - 1) / pieceBits; }

void toPieces(const Group* a, std::size_t n, Group* x) {
  const std::size_t count = pieceCount(n);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t limb = i * pieceBits / 64, shift = i * pieceBits % 64;
    Group piece = a[limb] >> shift;
    if (shift > 64 - pieceBits && limb + 1 < n) piece |= a[limb + 1] << (64 - shift);
    x[i] = piece & pieceMask;
  }
}

// How operands are read as coefficients and the coefficients of the product written.
enum Coefficients { wholeGroups, shortGroups, binaryPieces };

/// r = the coefficients' sum, put together from their residues and carried.
void assemble(Group* r, std::size_t groups, const Group* first, const Group* second, std::size_t count,
              Coefficients kind) {
  const Group p1 = fields[0].prime, p2 = fields[1].prime;
  const Group inverse = powerModulo(p1 % p2, p2 - 2, p2), quotient = shoup(inverse, p2);
  auto coefficient = [&](std::size_t i) {
    Group t = below(timesRoot(second[i] + 2 * p2 - first[i], inverse, quotient, p2), p2);
    return first[i] + Wide{p1} * t;
  };
  Wide carry = 0;
  if (kind == binaryPieces) {
    std::memset(r, 0, groups * sizeof(Group));
    for (std::size_t i = 0; i < count || carry != 0; ++i) {
      if (i < count) carry += coefficient(i);
      const Group piece = static_cast<Group>(carry) & pieceMask;
      carry >>= pieceBits;
      const std::size_t limb = i * pieceBits / 64, shift = i * pieceBits % 64;
      if (limb < groups) r[limb] |= piece << shift;
      if (shift > 64 - pieceBits && limb + 1 < groups) r[limb + 1] |= piece >> (64 - shift);
    }
    return;
  }
  if (kind == wholeGroups) {
    for (std::size_t i = 0; i < groups; ++i) {
      if (i < count) carry += coefficient(i);
      r[i] = takeLowest<groupBase>(carry);
    }
    return;
  }
  GroupWriter writer(r, groups);
  for (std::size_t i = 0; i < count || carry != 0; ++i) {
    if (i < count) carry += coefficient(i);
    writer.put(takeLowest<shortBase>(carry));
  }
  writer.close();
}

bool productByTransform(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb, Coefficients kind) {
  const bool square = a == b && na == nb;
  auto countFor = [&](std::size_t n) {
    return kind == wholeGroups ? n : kind == shortGroups ? shortCount(n) : pieceCount(n);
  };
  const std::size_t ca = countFor(na), cb = countFor(nb);
  const std::size_t count = ca + cb - 1;
  const std::size_t length = transformLength(count);
  if (!prepareTables(isPowerOfTwo(length) ? length : length / 3 * 4)) return false;
  GroupSpace space((square ? 2 : 3) * length, GroupSpace::optional);
  if (space.missing()) return false;

  auto load = [&](Group* x, const Group* from, std::size_t n, std::size_t coefficients) {
    if (kind == shortGroups) toShort(from, n, x);
    else if (kind == binaryPieces) toPieces(from, n, x);
    else std::memcpy(x, from, n * sizeof(Group));
    std::memset(x + coefficients, 0, (length - coefficients) * sizeof(Group));
  };
  for (int k = 0; k < 2; ++k) {
    const Field& f = fields[k];
    Group *x = space + k * length, *y = square ? x : space + 2 * length;
    load(x, a, na, ca);
    transform(x, length, f);
    if (!square) {
      load(y, b, nb, cb);
      transform(y, length, f);
    }
    for (std::size_t i = 0; i < length; ++i) x[i] = montgomery(below(x[i], 2 * f.prime), below(y[i], 2 * f.prime), f);
    transformBack(x, length, f);
    finish(x, length, f);
  }
  assemble(r, na + nb, space, space + length, count, kind);
  return true;
}

}  // namespace

bool transformProduct(Group* r, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  return productByTransform(r, a, na, b, nb, std::min(na, nb) > longestOfGroups ? shortGroups : wholeGroups);
}

bool binaryTransformProduct(std::uint64_t* r, const std::uint64_t* a, std::size_t na, const std::uint64_t* b,
                            std::size_t nb) {
  return productByTransform(r, a, na, b, nb, binaryPieces);
}

}  // namespace korel
