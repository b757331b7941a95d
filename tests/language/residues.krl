# Powers and inverses modulo odd, even and unit moduli; negative bases and exponents.
powermod(3, 10^20, 10^9 + 7), powermod(3, 100, 1024), powermod(3, 101, 1000), powermod(-2, 3, 7), powermod(3, -1, 7), powermod(5, 0, 1), powermod(0, 0, 5);
{seq(seq(seq(powermod(b, e, m) - irem(b^e, m), b = 0 .. 5), e = 0 .. 5), m = 1 .. 12)};
invmod(3, 10), chinese([2, 3, 2], [3, 5, 7]), chinese([1, 3], [4, 6]), chinese([], []), gcdex(240, 46), gcdex(-12, 18), gcdex(0, 0), gcdex(0, -5), ilcm(4, 6, 10), ilcm(), ilcm(3, 0);
# Roots: of all squares, and of nothing else.
bad := NULL: for n to 27 do
  squares := {seq(irem(x^2, n), x = 0 .. n - 1)};
  for a from 0 to n - 1 do
    r := sqrtmod(a, n);
    if `if`(r = FAIL, member(a, squares), irem(r^2 - a, n) <> 0 or r > n/2) then bad := bad, [a, n] end if
  end do
end do: [bad];
irem(sqrtmod(7, nextprime(10^30))^2 - 7, nextprime(10^30));
jacobi(5, 21), jacobi(-1, 7), jacobi(0, 9), {seq(jacobi(a, 10007) - `if`(powermod(a, 5003, 10007) = 1, 1, -1), a = 1 .. 200)};
ordermod(2, 101), ordermod(10, 7), ordermod(1, 1), primitiveroot(41), primitiveroot(8), primitiveroot(4), primitiveroot(2*3^5), primitiveroot(10^9 + 7);
discretelog(powermod(3, 1234, 10007), 3, 10007), discretelog(2, 4, 7), discretelog(3, 2, 7), discretelog(1, 5, 12);
invmod(2, 4); chinese([1, 2], [4, 6]); chinese([1], []); jacobi(2, 8); ordermod(2, 4); ilcm(x); powermod(2, -1, 4);
