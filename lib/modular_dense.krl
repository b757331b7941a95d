# Dense polynomials modulo a prime, beyond what the kernel's selectors do: modp1(Factors(a), p).

`modp1/Factors` := proc(a::zppoly, p::integer)
  description "modp1(Factors(a), p): [leading coefficient, [[factor, multiplicity], ...]] of a polynomial over a prime field";
  `kernel/native`("modp1/Factors", args)
end proc:

`modp1/Sqrfree` := proc(a::zppoly, p::integer)
  description "modp1(Sqrfree(a), p): [leading coefficient, [[square-free factor, multiplicity], ...]]";
  `kernel/native`("modp1/Sqrfree", args)
end proc:

`modp1/DistDeg` := proc(a::zppoly, p::integer)
  description "modp1(DistDeg(a), p): [[product of the factors of degree d, d], ...] of a square-free polynomial";
  `kernel/native`("modp1/DistDeg", args)
end proc:

`modp1/Irreduc` := proc(a::zppoly, p::integer)
  description "modp1(Irreduc(a), p): whether the polynomial is irreducible over the prime field";
  `kernel/native`("modp1/Irreduc", args)
end proc:

`modp1/Roots` := proc(a::zppoly, p::integer)
  description "modp1(Roots(a), p): [[root, multiplicity], ...] in the prime field";
  `kernel/native`("modp1/Roots", args)
end proc:
