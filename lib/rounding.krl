# Integer parts and integer logarithms of what is no number, or no integer.

`simpl/trunc` := proc(x)
  description "simpl/trunc(x): the integer part of an expression, toward 0";
  local y, n, whole;
  if nargs <> 1 then return 'trunc'(args) end if;
  `kernel/native`("expectalgebraic", 'trunc', x);
  if type(x, function) and op(0, x) = 'trunc' and nops(x) = 1 or `kernel/native`("known", x, integer) then return x end if;
  if `simpl/signum`(x) <> FAIL then
    # Digits enough for the integer part; a value this close to an integer stays open.
    n := 20 + max(0, ilog10(evalf(x)));
    y := evalf(x, n);
    whole := trunc(y);
    if type(y, numeric) and abs(evalf(y - whole, n)) > 1/10^10 and abs(evalf(y - whole, n)) < 1 - 1/10^10 then return whole end if
  end if;
  if type(x, `*`) and type(op(1, x), negative) then -trunc(-x) else 'trunc'(x) end if
end proc:

`simpl/ilog10` := proc(x)
  description "simpl/ilog10(x): the exponent of the leading decimal digit of a rational number or constant";
  local n, d, k;
  if type(x, rational) then
    n, d := abs(op(1, x)), op(2, x);
    k := length(n) - length(d);
    if n < d*10^k then k - 1 else k end if
  elif `simpl/signum`(x) <> FAIL then ilog10(evalf(x))
  else 'ilog10'(x)
  end if
end proc:

ilog := proc(x)
  description "ilog[b](x): the largest integer k with b^k <= |x|; the base b is the index, or exp(1)";
  local b, y, k;
  b := `if`(type(procname, indexed), op(procname), exp(1));
  if nargs <> 1 then error "ilog expects one argument, but received %1", nargs end if;
  if not type(b, numeric) and b <> exp(1) or type(b, numeric) and b <= 1 then
    error "the base of ilog must be a number above 1, but received %1", b
  end if;
  if not type(x, numeric) and `simpl/signum`(x) = FAIL then return 'procname'(x) end if;
  if x = 0 then return -infinity end if;
  y := abs(x);
  if type(b, rational) then
    # An estimate that is off by one at most, and the exact comparison.
    if type(y, sfloat) then y := SFloatMantissa(y)*10^SFloatExponent(y) end if;
    if type(y, rational) then
      k := trunc(evalf('ln'(y)/'ln'(b), 20)) - 2;
      while b^(k + 1) <= y do k := k + 1 end do;
      return k
    end if
  end if;
  k := evalf('ln'(y)/'ln'(b), 20 + Digits);
  `if`(k < 0, -trunc(-k) - `if`(k = trunc(k), 0, 1), trunc(k))
end proc:

floor := proc(x)
  description "floor(x): the greatest integer that is at most x; of an expression whose value isn't known, the call";
  `rounding/apply`('floor', `rounding/down`, args)
end proc:
ceil := proc(x)
  description "ceil(x): the least integer that is at least x; of an expression whose value isn't known, the call";
  `rounding/apply`('ceil', proc(y, t) -`rounding/down`(-y, -t) end proc, args)
end proc:
round := proc(x)
  description "round(x): the integer nearest to x, halves away from 0; of an expression whose value isn't known, the call";
  `rounding/apply`('round', `rounding/nearest`, args)
end proc:
frac := proc(x)
  description "frac(x): what is left of x without its integer part, with the sign of x";
  `rounding/apply`('frac', proc(y, t) y - t end proc, args)
end proc:

# Each works on a number, or a real constant, and its integer part.
`rounding/apply` := proc(f, rule, x)
  description "rounding/apply(f, rule, x): rule(x, trunc(x)) where x is real and known, else the call f(x)";
  local t;
  if nargs <> 3 then `kernel/native`("refuse", f, "%1 expects one argument, but received %2", f, nargs - 2) end if;
  `kernel/native`("expectalgebraic", f, x);
  if not type(x, numeric) and `simpl/signum`(x) = FAIL then return `rounding/symbolic`(f, x) end if;
  t := trunc(x);
  if type(t, integer) then rule(x, t)
  elif f = 'frac' then 'f'(x)
  elif t = x then t
  else 'f'(x)
  end if
end proc:
# What assumptions about names tell.
`rounding/symbolic` := proc(f, x)
  description "rounding/symbolic(f, x): f(x) for an expression x whose value isn't known: integers in it come out";
  local t, whole, rest, n;
  if `kernel/native`("known", x, integer) then return `if`(f = 'frac', 0, x) end if;
  if f = 'floor' or f = 'ceil' then
    if type(x, `+`) then
      whole, rest := selectremove(t -> `kernel/native`("known", t, integer), x);
      if whole <> 0 then return whole + f(rest) end if
    end if;
    n := `kernel/native`("knownfloor", `if`(f = 'floor', x, -x));
    if n <> FAIL then return `if`(f = 'floor', n, -n) end if
  end if;
  'f'(x)
end proc:
`rounding/down` := proc(x, t)
  description "rounding/down(x, t): the integer below x, whose integer part is t";
  if `simpl/signum`(x) = -1 and not (type(x, numeric) and `evalf/aid/exact`(x) = t) then t - 1 else t end if
end proc:
`rounding/nearest` := proc(x, t)
  description "rounding/nearest(x, t): the integer nearest to x, whose integer part is t";
  local rest;
  rest := abs(`if`(type(x, numeric), `evalf/aid/exact`(x) - t, evalf(x - t, Digits + 10)));
  if rest < 1/2 then t else t + `simpl/signum`(x) end if
end proc:
