# Operands that may become integers leave the call as it is, also in lists; it is worked out when they have.
isprime(x), fibonacci(n + 1), bernoulli(f(2)), binomial(n, 3), stirling2(n, 2), chinese([a], [3]), permute(L), jacobi(a, 7), factorint(n), ilcm(4, x), multinomial(2, k), iroot(n, 2), contfrac(y), convergents([a0, 1]), basetext(n, 2), divisorsum(n), tuples(L, [1]);
{isprime(x), fibonacci(x), partitioncount(x)}: eval(subs(x = 7, %));
# What can never be one is refused, with what is expected.
isprime(2.5); isprime("7"); isprime(I); isprime(Pi); bernoulli(-1); fibonacci(1/2); binomial("a", 2); stirling2(3, 1.5); powermod(2, 3, 0); chinese([1, 2], [3, "a"]); combinations([a, b], -1); contfrac(I); contfrac(infinity); ilcm(2, 3.5); multinomial(2, -1); totient(0); nextprime({}); ithprime(0); tuples(1); map(isprime, [2, w, [3]]);
# Too many operands and too few.
isprime(); isprime(3, 4); binomial(3); binomial(1, 2, 3); powermod(2, 3); sublists();
