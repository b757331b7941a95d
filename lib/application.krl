# Calls of what is no procedure, as (f + g)(x), and of what is composed.

evalapply := proc(f, a::list)
  description "evalapply(f, [a, ...]): f(a, ...) for a sum, product, power, list, set, number or composition f";
  local t, n, y;
  if type(f, {numeric, complex(numeric)}) then f
  elif type(f, {`+`, `*`, list, set, relation}) then map(`evalapply/call`, f, a)
  elif type(f, `^`) then `evalapply/call`(op(1, f), a)^`evalapply/call`(op(2, f), a)
  elif type(f, function) and op(0, f) = `@` then
    y := op(a);
    for n from nops(f) to 1 by -1 do y := `evalapply/call`(op(n, f), [y]) end do;
    y
  elif type(f, function) and op(0, f) = `@@` and nops(f) = 2 and type(op(2, f), nonnegint) then
    y := op(a);
    for n to op(2, f) do y := `evalapply/call`(op(1, f), [y]) end do;
    y
  elif type(f, {string, range, table}) then error "cannot call %1", f
  else subsop(0 = f, 'f'(op(a)))
  end if
end proc:

`evalapply/call` := proc(f, a::list)
  description "evalapply/call(f, [a, ...]): the value of the call f(a, ...)";
  f(op(a))
end proc:

`evalf/@@` := proc(f, n::integer)
  description "evalf/@@(f, n, a, ...): the numeric value of f applied n times";
  local y, k;
  if n < 0 then return subsop(0 = '`@@`'(f, n), 'f'(op(map(evalf, [args[3..-1]])))) end if;
  y := op(map(evalf, [args[3..-1]]));
  for k to n do y := evalf(f(y)) end do;
  y
end proc:
