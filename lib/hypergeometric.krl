# Hypergeometric series that the kernel doesn't sum by itself: on the unit circle, or with a denominator that becomes 0.

`evalf/hypergeom/converg` := proc(a::list, b::list, z)
  description "evalf/hypergeom/converg(a, b, z): the sum where it ends before a denominator becomes 0; the call where its value is left open";
  local last, zero, excess;
  last := min(op(map(n -> -n, select(type, a, nonposint))));
  zero := min(op(map(n -> -n, select(type, b, nonposint))));
  if last <= zero and last <> infinity then return `evalf/hypergeom/kernel`(a, b, z, last + 1) end if;
  if zero <> infinity then error "a term of the series has the denominator 0" end if;
  excess := `+`(op(b)) - `+`(op(a));
  if z = 1 and type(excess, numeric) and excess <= 0 then error "series is divergent" end if;
  subsop(0 = `hypergeom/kernel`, 'f'(a, b, z))
end proc:
