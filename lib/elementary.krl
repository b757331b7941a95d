# The elementary functions: exact values at special points, floats at once, everything else as it stands. The kernel does the
# work (src/library/native/elementary_calls.cpp); a call of such a procedure takes no frame.

exp := proc(x) description "exp(x): the exponential function"; `kernel/native`("exp", args) end proc:
ln := proc(x) description "ln(x): the natural logarithm; below 0 its principal value, with the imaginary part Pi"; `kernel/native`("ln", args) end proc:
sqrt := proc(x) description "sqrt(x): the square root, square factors of numbers and of what is known to be real taken out"; `kernel/native`("sqrt", args) end proc:
sin := proc(x) description "sin(x): the sine"; `kernel/native`("sin", args) end proc:
cos := proc(x) description "cos(x): the cosine"; `kernel/native`("cos", args) end proc:
tan := proc(x) description "tan(x): the tangent"; `kernel/native`("tan", args) end proc:
cot := proc(x) description "cot(x): the cotangent"; `kernel/native`("cot", args) end proc:
sec := proc(x) description "sec(x): the secant, 1/cos(x)"; `kernel/native`("sec", args) end proc:
csc := proc(x) description "csc(x): the cosecant, 1/sin(x)"; `kernel/native`("csc", args) end proc:
sinh := proc(x) description "sinh(x): the hyperbolic sine"; `kernel/native`("sinh", args) end proc:
cosh := proc(x) description "cosh(x): the hyperbolic cosine"; `kernel/native`("cosh", args) end proc:
tanh := proc(x) description "tanh(x): the hyperbolic tangent"; `kernel/native`("tanh", args) end proc:
coth := proc(x) description "coth(x): the hyperbolic cotangent"; `kernel/native`("coth", args) end proc:
sech := proc(x) description "sech(x): the hyperbolic secant, 1/cosh(x)"; `kernel/native`("sech", args) end proc:
csch := proc(x) description "csch(x): the hyperbolic cosecant, 1/sinh(x)"; `kernel/native`("csch", args) end proc:
arcsin := proc(x) description "arcsin(x): the arc sine, in -Pi/2 .. Pi/2 for real x"; `kernel/native`("arcsin", args) end proc:
arccos := proc(x) description "arccos(x): the arc cosine, in 0 .. Pi for real x"; `kernel/native`("arccos", args) end proc:
arctan := proc(y, x) description "arctan(x), arctan(y, x): the arc tangent, or the angle of the point (x, y) in -Pi .. Pi"; `kernel/native`("arctan", args) end proc:
arccot := proc(x) description "arccot(x): the arc cotangent, Pi/2 - arctan(x)"; `kernel/native`("arccot", args) end proc:
arcsec := proc(x) description "arcsec(x): the arc secant, arccos(1/x)"; `kernel/native`("arcsec", args) end proc:
arccsc := proc(x) description "arccsc(x): the arc cosecant, arcsin(1/x)"; `kernel/native`("arccsc", args) end proc:
arcsinh := proc(x) description "arcsinh(x): the inverse of sinh"; `kernel/native`("arcsinh", args) end proc:
arccosh := proc(x) description "arccosh(x): the inverse of cosh, 0 or above for x >= 1"; `kernel/native`("arccosh", args) end proc:
arctanh := proc(x) description "arctanh(x): the inverse of tanh"; `kernel/native`("arctanh", args) end proc:
arccoth := proc(x) description "arccoth(x): the inverse of coth, arctanh(1/x)"; `kernel/native`("arccoth", args) end proc:
arcsech := proc(x) description "arcsech(x): the inverse of sech, arccosh(1/x)"; `kernel/native`("arcsech", args) end proc:
arccsch := proc(x) description "arccsch(x): the inverse of csch, arcsinh(1/x)"; `kernel/native`("arccsch", args) end proc:

log := proc(x) description "log(x), log[b](x): the natural logarithm, or that to the base b"; `kernel/native`("log", args) end proc:
log10 := proc(x) description "log10(x): the common logarithm"; `kernel/native`("log10", args) end proc:
root := proc(x, n) description "root(x, n), root[n](x): the principal n-th root x^(1/n)"; `kernel/native`("root", args) end proc:
surd := proc(x, n) description "surd(x, n): the n-th root of x; for odd n and x below 0 the real one"; `kernel/native`("surd", args) end proc:

signum := proc(x) description "signum(x): the sign -1, 0 or 1 of a real number, x/abs(x) of a complex one"; `kernel/native`("signum", args) end proc:
csgn := proc(x) description "csgn(x): 1 in the right half of the plane and on the positive imaginary axis, -1 in the left one, 0 at 0"; `kernel/native`("csgn", args) end proc:
argument := proc(z) description "argument(z): the angle of a complex number, above -Pi and at most Pi"; `kernel/native`("argument", args) end proc:
Heaviside := proc(x) description "Heaviside(x): 0 below 0, 1 above, undefined at 0"; `kernel/native`("Heaviside", args) end proc:
Dirac := proc(n, x) description "Dirac(x), Dirac(n, x): 0 away from 0; the integral over 0 is 1; its n-th derivative"; `kernel/native`("Dirac", args) end proc:

# Conditions that are decided leave: a false one with its value, a true one with all behind it.
piecewise := proc()
  description "piecewise(condition, value, ..., otherwise): the value behind the first condition that holds; 0 where none does";
  local i, kept, truth, n;
  if nargs = 0 then error "piecewise expects a condition and a value, but received no arguments" end if;
  n := 2*iquo(nargs, 2);
  kept := NULL;
  for i to n by 2 do
    truth := `piecewise/truth`(args[i]);
    if truth = true then
      return `if`(nops([kept]) = 0, args[i + 1], 'piecewise'(kept, args[i + 1]))
    elif truth = FAIL then kept := kept, args[i], args[i + 1]
    end if
  end do;
  if nops([kept]) = 0 then return `if`(n < nargs, args[nargs], 0) end if;
  'piecewise'(kept, `if`(n < nargs, args[nargs], NULL))
end proc:
`piecewise/truth` := proc(condition)
  description "piecewise/truth(condition): true, false, or FAIL where a condition isn't decided";
  local sign, d;
  if type(condition, boolean) and member(condition, {true, false, FAIL}) then return condition end if;
  if type(condition, {`and`, `or`, `not`}) then
    d := map(`piecewise/truth`, [op(condition)]);
    if type(condition, `not`) then return `if`(d[1] = FAIL, FAIL, not d[1]) end if;
    if type(condition, `and`) then return `if`(member(false, d), false, `if`(member(FAIL, d), FAIL, true)) end if;
    return `if`(member(true, d), true, `if`(member(FAIL, d), FAIL, false))
  end if;
  if not type(condition, {`=`, `<>`, `<`, `<=`}) then
    `kernel/native`("refuse", 'piecewise', "piecewise expects a condition, but received %1", condition)
  end if;
  d := op(1, condition) - op(2, condition);
  sign := signum(d);
  if not type(sign, integer) then
    if type(condition, `=`) and d = 0 then return true end if;
    return FAIL
  end if;
  if type(condition, `=`) then evalb(sign = 0) elif type(condition, `<>`) then evalb(sign <> 0)
  elif type(condition, `<`) then evalb(sign < 0) else evalb(sign <= 0) end if
end proc:
`evalf/piecewise` := proc()
  description "evalf/piecewise(condition, value, ...): piecewise of the values as floats";
  piecewise(op(map(evalf, [args])))
end proc:
