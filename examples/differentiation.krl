# Symbolic differentiation written in the language, on the structure of expressions.

# The derivatives of known functions, as procedures of the argument.
chain := table([
  sin = (u -> cos(u)),
  cos = (u -> -sin(u)),
  exp = (u -> exp(u)),
  ln  = (u -> 1/u),
  arctan = (u -> 1/(1 + u^2))
]):

# Whether x occurs in e.
depends := proc(e, x)
  local part;
  if e = x then return true elif type(e, {numeric, name}) then return false end if;
  for part in e do if depends(part, x) then return true end if end do;
  false
end proc:

derivative := proc(e, x::name)
  local i, f, u;
  if e = x then 1
  elif type(e, {numeric, name}) then 0
  elif type(e, `+`) then add(derivative(op(i, e), x), i = 1..nops(e))
  elif type(e, `*`) then add(derivative(op(i, e), x)*e/op(i, e), i = 1..nops(e))
  elif type(e, `^`) then
    u := op(1, e); i := op(2, e);
    if not depends(i, x) then i*u^(i - 1)*derivative(u, x)
    else e*(derivative(i, x)*ln(u) + i*derivative(u, x)/u)
    end if
  elif type(e, function) and nops(e) = 1 then
    f := op(0, e); u := op(1, e);
    if assigned(chain[f]) then chain[f](u)*derivative(u, x)
    elif depends(u, x) then error "no rule for the derivative of %1", f
    else 0
    end if
  else error "cannot differentiate %1", e
  end if
end proc:

derivative(x^3 - 2*x + 7, x);
derivative(a*x^2 + b*x + c, x);
derivative(sin(x)*exp(x), x);
derivative(sin(x^2), x);
derivative(ln(x), x);
derivative(x^x, x);
derivative(exp(-y^2), x);
derivative(1/(1 + x^2), x);

# Errors carry what went wrong.
derivative(zeta(x), x);
derivative([x], x);

# Higher derivatives, and Taylor polynomials from them.
nth := (e, x, n) -> `if`(n = 0, e, nth(derivative(e, x), x, n - 1)):
nth(x^5, x, 5);
at := (e, x, v) -> eval(e, x = v):
# The values at 0 of the functions that occur.
sin(0) := 0: cos(0) := 1: exp(0) := 1:
taylorPolynomial := proc(e, x, n) local k; add(eval(at(nth(e, x, k), x, 0))/k!*x^k, k = 0..n) end proc:
taylorPolynomial(exp(x), x, 5);
taylorPolynomial(sin(x), x, 7);
taylorPolynomial(1/(1 - x), x, 4);
taylorPolynomial(exp(x)*cos(x), x, 5);

# A check by difference quotients in exact rationals: the error of (f(v + h) - f(v - h))/(2h) is small.
quotient := (e, x, v, h) -> (at(e, x, v + h) - at(e, x, v - h))/(2*h):
f := (x^3 + 1)/(x^2 + 3):
evalb(abs(quotient(f, x, 2, 1/10^6) - at(derivative(f, x), x, 2)) < 1/10^10);
