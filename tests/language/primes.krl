# Primes and their neighbours: small ones, the largest below 2^64, powers of strong pseudoprimes, products of two.
isprime(2), isprime(1), isprime(0), isprime(-7), isprime(2^61 - 1), isprime(2^64 - 59), isprime(2^127 - 1), isprime(10^50 + 151);
isprime(3215031751), isprime(3825123056546413051), isprime(318665857834031151167461), isprime((10^25 + 13)*(10^25 + 297)), isprime(1194649), isprime((10^20 + 39)^2);
nextprime(-5), nextprime(2), nextprime(13), nextprime(2^64), nextprime(10^50), prevprime(3), prevprime(4), prevprime(2^64), prevprime(10^20);
ithprime(1), ithprime(100), ithprime(10^6), ithprime(10^8), primecount(10), primecount(10^9), primecount(-1);
add(`if`(isprime(i), 1, 0), i = 1 .. 5000) = primecount(5000), evalb([seq(ithprime(i), i = 81990 .. 82030)] = sort([seq(ithprime(i), i = 81990 .. 82030)]));
# Factors: by division, by rho, by curves, by the sieve; powers.
factorint(360), factorint(-360), factorint(1), factorint(-1), factorint(10007^3*10009^2), factorint(2^64 + 1);
factorint(2^101 - 1); factorint(nextprime(10^14 + 12345)*nextprime(10^15 + 777)); factorint(nextprime(3*10^24 + 12345)*nextprime(7*10^24 + 777)); factorint((10^12 + 39)^3);
product := proc(n) local f; mul(f[1]^f[2], f = factorint(n)) end proc: bad := [seq(`if`(product(10^15 + i) = 10^15 + i, NULL, i), i = 1 .. 200), seq(`if`(product(7^i - 3) = 7^i - 3, NULL, i), i = 20 .. 35)];
divisors(60), divisors(1), divisorsum(60), divisorsum(60, 0), divisorsum(10, 2), totient(10^10), totient(1), moebius(1), moebius(30), moebius(4);
carmichael(561), carmichael(8), squarefree(30), squarefree(12), omega(12), bigomega(12);
# Sums over divisors that are known.
{seq(add(totient(d), d = divisors(n)) - n, n = 1 .. 100)}, {seq(add(moebius(d), d = divisors(n)), n = 2 .. 100)};
prevprime(2); isprime(x); factorint(0); ithprime(0); primecount(10^20); timelimit(.2, factorint(nextprime(10^60)*nextprime(2*10^60)));
# Powers of primes of all sizes, by roots whose order is a prime, one after the other.
{seq(evalb(factorint(nextprime(10^k)^(2 + irem(k, 7))) = [[nextprime(10^k), 2 + irem(k, 7)]]), k = 1..45)}, factorint(16411^37*nextprime(2^70)^4);
