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

# The function itself: exact values, and floats at once.
hypergeom := proc(a, b, z)
  description "hypergeom([a, ...], [b, ...], z): the generalized hypergeometric function, the sum of the products of rising factorials (a)_k/(b)_k times z^k/k!";
  local common, p, q;
  if nargs <> 3 then error "hypergeom expects three arguments, but received %1", nargs
  elif not type(a, list) or not type(b, list) then
    error "hypergeom expects two lists of parameters, but received %1", `if`(type(a, list), b, a)
  elif `special/isfloat`([op(a), op(b), z]) then return `evalf/hypergeom`(a, b, z)
  elif z = 0 then return 1
  end if;
  `special/check`('hypergeom', [op(a), op(b), z]);
  p, q := `hypergeom/reduced`(a, b);
  if member(0, p) then return 1
  elif `hypergeom/any`(q, nonposint) and not `hypergeom/ends`(p, q) then return NumericEvent(division_by_zero, 'hypergeom', [a, b, z], infinity)
  elif nops(q) = 0 and nops(p) = 0 then return exp(z)
  elif nops(q) = 0 and nops(p) = 1 then return (1 - z)^(-p[1])
  elif type([op(p), op(q), z], list(rational)) and `hypergeom/any`(p, negint) then return `hypergeom/sum`(p, q, z)
  elif z = 1 and nops(p) = nops(q) + 1 and type([op(p), op(q)], list(complex(numeric))) and not `hypergeom/any`(p, nonposint) then
    if `hypergeom/excess`(p, q) <= 0 then
      return NumericEvent(division_by_zero, 'hypergeom', [a, b, z], `hypergeom/sign`(p, q)*infinity)
    elif nops(p) = 2 then return `hypergeom/gauss`(p[1], p[2], q[1])
    end if
  end if;
  subsop(0 = 'hypergeom', 'f'(sort(p), sort(q), z))
end proc:
# Of numbers only. At 1 the terms fall like 1/k^(1 + excess).
`hypergeom/excess` := proc(p::list, q::list)
  description "hypergeom/excess(p, q): the real part of the sum of the lower parameters without that of the upper ones";
  local x;
  add(`special/exact`(Re(x)), x = q) - add(`special/exact`(Re(x)), x = p)
end proc:
`hypergeom/sign` := proc(p::list, q::list)
  description "hypergeom/sign(p, q): the sign of a sum that grows beyond all bounds at 1: that of its late terms; 1 for complex parameters";
  local x;
  if type([op(p), op(q)], list(numeric)) then
    mul(`if`(type(x, negative) and type(floor(`special/exact`(x)), odd), -1, 1), x = [op(p), op(q)])
  else 1
  end if
end proc:
`hypergeom/gauss` := proc(a, b, c)
  description "hypergeom/gauss(a, b, c): hypergeom([a, b], [c], 1) where the series converges";
  if type(c - a, nonposint) or type(c - b, nonposint) then 0
  else GAMMA(c)*GAMMA(c - a - b)/(GAMMA(c - a)*GAMMA(c - b))
  end if
end proc:
`hypergeom/any` := proc(p::list, t)
  description "hypergeom/any(p, t): whether a parameter is of the type t";
  nops(select(type, p, t)) > 0
end proc:
`hypergeom/reduced` := proc(a, b)
  description "hypergeom/reduced(a, b): the two lists without what stands in both";
  local x, p, q, k;
  p, q := a, b;
  for x in a do
    if member(x, q, 'k') then
      q := subsop(k = NULL, q);
      member(x, p, 'k');
      p := subsop(k = NULL, p)
    end if
  end do;
  p, q
end proc:
`hypergeom/ends` := proc(p, q)
  description "hypergeom/ends(p, q): whether the sum ends before a denominator becomes 0";
  max(op(select(type, p, nonposint)), -infinity) > max(op(select(type, q, nonposint)))
end proc:
`hypergeom/sum` := proc(p, q, z)
  description "hypergeom/sum(p, q, z): the exact sum of a series that ends";
  local k, x, term, s;
  term, s := 1, 1;
  for k from 0 to -max(op(select(type, p, negint))) - 1 do
    term := term*`*`(seq(x + k, x = p))/`*`(seq(x + k, x = q))*z/(k + 1);
    s := s + term
  end do;
  s
end proc:
`evalf/hypergeom` := proc(a, b, z)
  description "evalf/hypergeom(a, b, z): the hypergeometric function as a float; the call where it has no value";
  local p, q, y, r;
  p, q := `hypergeom/reduced`(map(`special/argument`, a), map(`special/argument`, b));
  y := `special/argument`(z);
  if type([op(p), op(q), y], list(complex(numeric))) then
    if y = 0 then return 1. end if;
    if `hypergeom/any`(`hypergeom/whole`(q), nonposint) and not `hypergeom/ends`(`hypergeom/whole`(p), `hypergeom/whole`(q)) then
      return NumericEvent(division_by_zero, 'hypergeom', [a, b, z], Float(infinity))
    end if;
    if type(y, numeric) and `special/exact`(y) = 1 and nops(p) = nops(q) + 1 and not `hypergeom/any`(`hypergeom/whole`(p), nonposint) and `hypergeom/excess`(p, q) <= 0 then
      return NumericEvent(division_by_zero, 'hypergeom', [a, b, z], `hypergeom/sign`(p, q)*Float(infinity))
    end if;
    r := `kernel/native`("special/hypergeom", p, q, y);
    if r <> FAIL then return r end if
  end if;
  subsop(0 = 'hypergeom', 'f'(p, q, y))
end proc:
`hypergeom/whole` := proc(a::list)
  description "hypergeom/whole(a): the list with integers in the place of floats that are whole numbers";
  local x;
  [seq(`if`(type(x, float) and type(`special/exact`(x), integer), `special/exact`(x), x), x = a)]
end proc:
