# Absolute values, parts and conjugates of expressions that are no numbers. Names without a value may stand for any
# complex number that the assumptions about them allow.

# The sign is read off two evaluations of different precision that agree.
`simpl/signum` := proc(x)
  description "simpl/signum(x): the sign -1, 0 or 1 of a real constant; FAIL for anything else";
  local coarse, fine;
  if type(x, numeric) then return `if`(x = 0, 0, `if`(type(x, negative), -1, 1)) end if;
  if not type(x, algebraic) then return FAIL end if;
  coarse := evalf(x, 20);
  if not type(coarse, float) then return FAIL end if;
  fine := evalf(x, 40);
  if not type(fine, float) or fine = 0 or abs(coarse - fine) > abs(fine)/1000 then return FAIL end if;
  `if`(type(fine, negative), -1, 1)
end proc:

`simpl/parts` := proc(x)
  description "simpl/parts(x): real and imaginary part of the expression x, a list of two";
  local t, p, u, v, rest;
  if type(x, numeric) then [x, 0]
  elif type(x, complex(numeric)) then [Re(x), Im(x)]
  elif `kernel/native`("known", x, real) then [x, 0]
  elif `kernel/native`("known", x, imaginary) then [0, -I*x]
  elif type(x, `+`) then
    p := map(`simpl/parts`, [op(x)]);
    [add(t[1], t = p), add(t[2], t = p)]
  elif type(x, `*`) then
    # Numbers and what is real come out of the product; the rest stays together.
    u, v, rest := 1, 0, 1;
    for t in op(x) do
      p := `simpl/parts`(t);
      if p[2] <> 0 and not type(t, complex(numeric)) then rest := rest*t; next end if;
      u, v := u*p[1] - v*p[2], u*p[2] + v*p[1]
    end do;
    if rest = 1 then return [u, v] end if;
    p := `if`(type(rest, `*`), ['Re'(rest), 'Im'(rest)], `simpl/parts`(rest));
    [u*p[1] - v*p[2], u*p[2] + v*p[1]]
  elif type(x, `^`) and type(op(2, x), integer) and `simpl/parts`(op(1, x))[2] = 0 then [x, 0]
  elif type(x, function) and nops(x) = 1 and member(op(0, x), ['Re', 'Im', 'abs']) then [x, 0]
  elif type(x, function) and nops(x) = 1 and op(0, x) = 'conjugate' then [Re(op(x)), -Im(op(x))]
  elif `simpl/signum`(x) <> FAIL then [x, 0]
  else ['Re'(x), 'Im'(x)]
  end if
end proc:

`simpl/Re` := proc(x)
  description "simpl/Re(x): the real part of an expression";
  if nargs <> 1 then return 'Re'(args) end if;
  `kernel/native`("expectalgebraic", 'Re', x);
  `simpl/parts`(x)[1]
end proc:

`simpl/Im` := proc(x)
  description "simpl/Im(x): the imaginary part of an expression";
  if nargs <> 1 then return 'Im'(args) end if;
  `kernel/native`("expectalgebraic", 'Im', x);
  `simpl/parts`(x)[2]
end proc:

`simpl/conjugate` := proc(x)
  description "simpl/conjugate(x): the complex conjugate of an expression";
  if nargs <> 1 then return 'conjugate'(args) end if;
  `kernel/native`("expectalgebraic", 'conjugate', x);
  if type(x, {`+`, `*`}) then map(conjugate, x)
  elif type(x, `^`) and type(op(2, x), integer) then conjugate(op(1, x))^op(2, x)
  elif type(x, function) and nops(x) = 1 and op(0, x) = 'conjugate' then op(x)
  elif `simpl/parts`(x)[2] = 0 then x
  else 'conjugate'(x)
  end if
end proc:

`simpl/abs` := proc(x)
  description "simpl/abs(x): the absolute value of an expression";
  local sign, inside, outside, t;
  if nargs <> 1 then return 'abs'(args) end if;
  `kernel/native`("expectalgebraic", 'abs', x);
  if not type(x, algebraic) then return 'abs'(x) end if;
  sign := `simpl/signum`(x);
  if sign <> FAIL then sign*x
  elif `kernel/native`("known", x, nonnegative) then x
  elif `kernel/native`("known", x, nonpositive) then -x
  elif type(x, complex(rational)) then (Re(x)^2 + Im(x)^2)^(1/2)
  elif type(x, `*`) then
    # Constants come out.
    inside, outside := 1, 1;
    for t in op(x) do
      if type(t, complex(numeric)) or `simpl/signum`(t) <> FAIL or `kernel/native`("known", t, nonnegative) or
        `kernel/native`("known", t, nonpositive) then outside := outside*abs(t) else inside := inside*t end if
    end do;
    `if`(type(inside, `*`), outside*'abs'(inside), outside*abs(inside))
  elif type(x, `+`) and type([seq(op(1, t), t = x)], list(negative)) then 'abs'(-x)
  elif type(x, function) and nops(x) = 1 and op(0, x) = 'abs' then x
  elif type(x, function) and nops(x) = 1 and op(0, x) = 'conjugate' then abs(op(x))
  else 'abs'(x)
  end if
end proc:
