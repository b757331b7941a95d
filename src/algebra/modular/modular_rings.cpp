#include "algebra/modular/modular_rings.h"

#include "algebra/modular/vector_words.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"

namespace korel {

// In words of 32 bits, whose division is the faster one. Cofactors have alternating signs: their magnitudes are kept.
std::int64_t mInverseHW(std::int64_t a, std::int64_t m) {
  auto before = static_cast<Word>(m), now = static_cast<Word>(a);
  Word cofactorBefore = 0, cofactor = 1;
  bool isNegative = false;
  while (now > 1) {
    const Word q = before / now, rest = before - q * now, next = cofactorBefore + q * cofactor;
    before = now;
    now = rest;
    cofactorBefore = cofactor;
    cofactor = next;
    isNegative = !isNegative;
  }
  if (now == 0) return 0;
  return isNegative ? m - cofactor : cofactor;
}

// ---- words

void HardwareRing::setInteger(Unit* r, DAG integer) const {
  *r = static_cast<Word>(immediateValue(imod(integer, immediate(static_cast<std::int32_t>(m)), false)));
}

namespace {

constexpr long shortDot = 16;

inline std::uint64_t plainDot(const Word* x, const Word* y, long n) {
  std::uint64_t sum = 0;
  for (long i = 0; i < n; ++i) sum += static_cast<std::uint64_t>(x[i]) * y[i];
  return sum;
}

}  // namespace

void HardwareRing::dot(Unit* r, const Unit* x, const Unit* y, long n) const {
  *r = reduced(n < shortDot || !hasVectorInstructions() ? plainDot(x, y, n) : vectorDot(x, y, n));
}

// ---- limbs

namespace {

// sum += x * y, of k limbs each; the sum has 2k + 1.
template <long fixed>
inline void addProduct(Limb* sum, const Limb* x, const Limb* y, long variable) {
  const long k = fixed != 0 ? fixed : variable;
  for (long i = 0; i < k; ++i) {
    const Limb carry = addScaled(sum + i, y, static_cast<std::size_t>(k), x[i]);
    addLimb(sum + i + k, static_cast<std::size_t>(k + 1 - i), carry);
  }
}
template <long fixed>
void sumProducts(Limb* sum, const Limb* x, const Limb* y, long n, long k) {
  for (long i = 0; i < n; ++i) addProduct<fixed>(sum, x + i * k, y + i * k, k);
}

}  // namespace

void WideRing::add(Unit* r, const Unit* a, const Unit* b) const {
  const auto n = static_cast<std::size_t>(width);
  if (addLimbs(r, a, b, n) != 0 || compareLimbs(r, modulus.modulus, n) >= 0) subtractLimbs(r, r, modulus.modulus, n);
}
void WideRing::subtract(Unit* r, const Unit* a, const Unit* b) const {
  const auto n = static_cast<std::size_t>(width);
  if (subtractLimbs(r, a, b, n) != 0) addLimbs(r, r, modulus.modulus, n);
}
void WideRing::negate(Unit* r, const Unit* a) const {
  if (isZero(a)) clear(r, 1);
  else subtractLimbs(r, modulus.modulus, a, static_cast<std::size_t>(width));
}

void WideRing::dot(Unit* r, const Unit* x, const Unit* y, long n) const {
  if (width == 1) {
    // The sum in 192 bits.
    DoubleLimb sum = 0;
    Limb over = 0;
    for (long i = 0; i < n; ++i) {
      DoubleLimb product = DoubleLimb{x[i]} * y[i];
      sum += product;
      over += static_cast<Limb>(sum < product);
    }
    Limb all[4] = {static_cast<Limb>(sum), static_cast<Limb>(sum >> 64), over, 0};
    modulus.reduce(r, all, 3);
    return;
  }
  constexpr long mostOnStack = 16;
  Limb own[2 * mostOnStack + 2];
  Workspace space;
  Limb* sum = width <= mostOnStack ? own : space.take<Limb>(static_cast<std::size_t>(2 * width + 2));
  std::memset(sum, 0, static_cast<std::size_t>(2 * width + 2) * sizeof(Limb));
  switch (width) {
    case 2: sumProducts<2>(sum, x, y, n, 2); break;
    case 3: sumProducts<3>(sum, x, y, n, 3); break;
    case 4: sumProducts<4>(sum, x, y, n, 4); break;
    case 5: sumProducts<5>(sum, x, y, n, 5); break;
    case 6: sumProducts<6>(sum, x, y, n, 6); break;
    default: sumProducts<0>(sum, x, y, n, width);
  }
  modulus.reduce(r, sum, 2 * width + 1);
}

}  // namespace korel
