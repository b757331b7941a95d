# What `expand` asks for by name: long products, powers with symbolic exponents, operators and repeated calls.

`expand/bigprod` := proc(a, b)
  description "expand/bigprod(a, b): the product of two expanded sums, multiplied out";
  `kernel/native`("expand/bigprod", args)
end proc:

`expand/bigpow` := proc(a, n::nonnegint)
  description "expand/bigpow(a, n): the power of an expanded sum, multiplied out";
  `kernel/native`("expand/bigpow", args)
end proc:

`expand/bigdiv` := proc(a, b, q)
  description "expand/bigdiv(a, b, 'q'): true when the polynomial b divides a over the integers, with the quotient in q";
  `kernel/native`("expand/bigdiv", args)
end proc:

`expand/operator` := proc(f::procedure)
  description "expand/operator(f): the operator with its expression expanded";
  `kernel/native`("expand/operator", args)
end proc:

`expand/power` := proc(b, e)
  description "expand/power(b, e): b^e as a product of powers: over the terms of e, and over positive factors of b";
  local base, exponent, positive, factor, n;
  base, exponent := expand(b), expand(e);
  if type(exponent, `+`) then return expand(mul(base^n, n = [op(exponent)])) end if;
  if type(exponent, `*`) and type(op(1, exponent), integer) and op(1, exponent) <> 1 then
    n := op(1, exponent);
    return expand(base^(exponent/n))^n
  end if;
  if type(base, `*`) then
    positive := 1;
    for factor in [op(base)] do
      if `simpl/signum`(factor) = 1 then positive := positive*factor end if
    end do;
    if positive <> 1 then return positive^exponent*(base/positive)^exponent end if
  end if;
  base^exponent
end proc:

`expand/@@_call` := proc(f, n)
  description "expand/@@_call(f, n, a, ...): f applied n times, as far as n is a number";
  local y, k, rest;
  k := n;
  if type(n, `+`) then k := select(type, n, integer) end if;
  if not type(k, posint) or k > 1000 then return subsop(0 = '`@@`'(f, n), 'f'(args[3..-1])) end if;
  rest := n - k;
  y := args[3..-1];
  if rest <> 0 then y := subsop(0 = '`@@`'(f, rest), 'f'(y)) end if;
  to k do y := f(y) end do;
  expand(y)
end proc:
