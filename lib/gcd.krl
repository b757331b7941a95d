# Greatest common divisors, and the quotients in lowest terms that `normal` asks for.

gcd := proc(a, b, ca, cb)
  description "gcd(a, b), gcd(a, b, 'ca', 'cb'): the greatest common divisor of two polynomials; a and b divided by it";
  `kernel/native`("gcd", args)
end proc:

lcm := proc()
  description "lcm(a, b, ...): the least common multiple of polynomials";
  `kernel/native`("lcm", args)
end proc:

`normal/gcd` := proc(n, d)
  description "normal/gcd(n, d): the greatest common divisor of two polynomials";
  `kernel/native`("normal/gcd", args)
end proc:

`normal/expanded` := proc(n, d)
  description "normal/expanded(n, d): the quotient of two polynomials in lowest terms, both parts multiplied out";
  `kernel/native`("normal/expanded", args)
end proc:
