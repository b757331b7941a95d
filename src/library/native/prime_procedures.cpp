// Native library procedures on primes and factors.

#include <cmath>

#include "eval/simplify/simplify.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/primes/factorization.h"
#include "numbers/primes/montgomery.h"
#include "numbers/primes/primality.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Vectors end before an error jumps: each work is done by a function that returns when the clock says so.

bool isOneInteger(const BuiltinCall& call) { return argumentCount(call) == 1 && isInteger(call.arguments[1]); }

bool isNegativeInteger(DAG x) { return isImmediate(x) ? immediateValue(x) < 0 : hasTag(x, INTNEG); }

using Neighbour = Answer (*)(const Natural&, Natural&);
/// The neighbour as an integer; 0 when stopped.
DAG neighbourOf(DAG n, Neighbour search) {
  Natural found;
  if (search(isNegativeInteger(n) ? Natural() : naturalOf(n), found) == Answer::stopped) return DAG();
  return integerOf(found);
}

DAG orEnd(DAG x) {
  if (!x) endOperation();
  return x;
}

/// Riemann's estimate of the count of primes up to x, by Gram's series.
double riemannCount(double x) {
  const double l = std::log(x);
  double term = 1, total = 1;
  for (int k = 1; k < 400; ++k) {
    term *= l / k;
    double zeta = 1;
    for (int j = 2; j < 40 && zeta > 0; ++j) {
      const double step = std::pow(j, -(k + 1));
      if (step < 1e-17) break;
      zeta += step;
    }
    if (k == 1) zeta = 1.6449340668482264;
    total += term / (k * zeta);
    if (term < 1e-14 * total) break;
  }
  return total;
}

/// A number near the n-th prime: riemannCount of it is n.
double estimatedPrime(double n) {
  double low = 2, high = 20 + 2 * n * std::log(n + 2);
  for (int i = 0; i < 200 && high - low > 0.5; ++i) {
    const double middle = (low + high) / 2;
    (riemannCount(middle) < n ? low : high) = middle;
  }
  return low;
}

/// The n-th prime, or 0 when stopped.
std::int64_t primeNumber(std::int64_t n) {
  constexpr std::uint32_t tabled = 1 << 20;
  const auto table = primesBelow(tabled);
  if (n <= static_cast<std::int64_t>(table.size())) return table[static_cast<std::size_t>(n) - 1];
  auto x = static_cast<std::int64_t>(estimatedPrime(static_cast<double>(n)));
  std::int64_t count = primeCount(x);
  if (count < 0) return 0;
  // Numbers beyond the estimate are few: to step over them is cheap beside the count.
  constexpr int testSteps = 2000;
  if (count >= n) {
    for (;; --x) {
      if (!isPrimeLimb(static_cast<Limb>(x))) continue;
      if (count-- == n) return x;
      if (isTimeUp(testSteps)) return 0;
    }
  }
  while (count < n) {
    if (isPrimeLimb(static_cast<Limb>(++x))) ++count;
    if (isTimeUp(testSteps / 10)) return 0;
  }
  return x;
}

/// A list [prime, exponent] for each; 0 when stopped.
DAG listOfFactors(DAG n) {
  std::vector<PrimePower> factors;
  if (!factorNatural(naturalOf(n), factors)) return DAG();
  const bool negative = isNegativeInteger(n);
  DAG all = newl2(static_cast<Word>(factors.size() + negative + 1), EXPSEQ);
  Word at = 1;
  auto add = [&all, &at](DAG prime, unsigned exponent) {
    all[at++] = new2(LIST, new3(EXPSEQ, prime, Newint(static_cast<std::int32_t>(exponent))));
  };
  if (negative) add(immediate(-1), 1);
  for (const PrimePower& factor : factors) add(integerOf(factor.prime), factor.exponent);
  return new2(LIST, all);
}

}  // namespace

// isprime(n): whether the integer is a prime (numbers/primes/primality.h).
DAG native::isprime(const BuiltinCall& call) {
  if (!isOneInteger(call)) return openIntegerCall(call, "integer");
  DAG n = call.arguments[1];
  if (isNegativeInteger(n)) return ini("false");
  const Answer answer = isPrimeNatural(naturalOf(n));
  if (answer == Answer::stopped) endOperation();
  return answer == Answer::yes ? ini("true") : ini("false");
}

// nextprime(n): the least prime above n; prevprime(n): the greatest one below n > 2.
DAG native::nextprime(const BuiltinCall& call) {
  if (!isOneInteger(call)) return openIntegerCall(call, "integer");
  return orEnd(neighbourOf(call.arguments[1], nextPrime));
}
DAG native::prevprime(const BuiltinCall& call) {
  if (!isOneInteger(call)) return openIntegerCall(call, "integer");
  DAG n = call.arguments[1];
  if (isNegativeInteger(n) || (isImmediate(n) && immediateValue(n) < 3))
    KernelException("there is no prime below %1", n);
  return orEnd(neighbourOf(n, previousPrime));
}

// primecount(n): how many primes are at most n. Time grows as n^(3/4), memory as its root.
DAG native::primecount(const BuiltinCall& call) {
  std::int64_t n = 0;
  constexpr std::int64_t limit = 100000000000000;
  if (!isOneInteger(call)) return openIntegerCall(call, "integer");
  if (!readLongLong(call.arguments[1], n) || n > limit)
    KernelException("integer up to 10^14 expected, but received %1", call.arguments[1]);
  const std::int64_t count = primeCount(n);
  if (count < 0) endOperation();
  return NewInteger(count);
}

// ithprime(n): the n-th prime.
DAG native::ithprime(const BuiltinCall& call) {
  std::int64_t n = 0;
  constexpr std::int64_t limit = 1000000000000;
  if (!isOneInteger(call) || !type(call.arguments[1], ini("posint"))) return openIntegerCall(call, "posint");
  if (!readLongLong(call.arguments[1], n) || n > limit)
    KernelException("integer from 1 to 10^12 expected, but received %1", call.arguments[1]);
  const std::int64_t prime = primeNumber(n);
  if (prime == 0) endOperation();
  return NewInteger(prime);
}

// factorint(n): the factors of an integer, not 0, as a list of lists [prime, exponent]; -1 comes first for n < 0.
DAG native::factorint(const BuiltinCall& call) {
  if (!isOneInteger(call)) return openIntegerCall(call, "integer");
  DAG n = call.arguments[1];
  if (isZeroImmediate(n)) KernelException("0 has no factors");
  return orEnd(listOfFactors(n));
}

// jacobi(a, n): Jacobi's symbol for 0 <= a < n, n odd.
DAG native::jacobi(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isInteger(call.arguments[1]) || !isInteger(call.arguments[2])) wrongParameters(call);
  DAG a = call.arguments[1], n = call.arguments[2];
  if (isNegativeInteger(a) || isNegativeInteger(n) || !isodd(n)) wrongParameters(call);
  return immediate(jacobiSymbol(naturalOf(a), naturalOf(n)));
}

}  // namespace korel
