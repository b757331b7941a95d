# Largest and least of expressions that are not all numbers.

# Lists and sets among the arguments stand for their members. Numbers and real constants leave the extreme of them
# behind, in front of what can't be compared.
`simpl/extreme` := proc(f, wanted, a::list)
  description "simpl/extreme(f, sign, a): f, which is max (sign 1) or min (sign -1), of the members of a";
  local t, best, rest, open, sign;
  best, rest, open := -wanted*infinity, table([]), 0;
  for t in a do
    # `undefined` isn't even equal to itself.
    if type(t, identical(undefined)) then return t end if;
    if t = best or t = wanted*infinity then sign := wanted
    elif t = -wanted*infinity or best = wanted*infinity and `simpl/signum`(t) <> FAIL then sign := -wanted
    elif best = -wanted*infinity then sign := `if`(`simpl/signum`(t) = FAIL, FAIL, wanted)
    else sign := `simpl/signum`(t - best)
    end if;
    if sign = wanted then best := t
    elif sign = FAIL then
      open := open + 1;
      rest[open] := t
    end if
  end do;
  if open = 0 then return best end if;
  rest := distinct([seq(rest[t], t = 1..open)]);
  t := `if`(best = -wanted*infinity, NULL, best);
  if t <> NULL then
    # What is known of names under assumption.
    rest := remove(`simpl/beyond`, rest, best, -wanted);
    if rest = [] then return best end if;
    if select(`simpl/beyond`, rest, best, wanted) <> [] then t := NULL end if
  end if;
  if nops([t, op(rest)]) = 1 and type(op(rest), algebraic) then op(rest) else 'f'(t, op(rest)) end if
end proc:

`simpl/beyond` := proc(x, y, sign)
  description "simpl/beyond(x, y, sign): whether x is known to be at least y for the sign 1, at most y for -1";
  type(x, algebraic) and `kernel/native`("known", sign*(x - y), nonnegative)
end proc:

`simpl/flatarguments` := proc(f)
  description "simpl/flatarguments(f, a, ...): the arguments, with the members of lists, sets and calls of f in the place of each";
  local t;
  [seq(`if`(type(t, {list, set}) or type(t, function) and op(0, t) = f, op(`simpl/flatarguments`(f, op(t))), t), t = [args[2..-1]])]
end proc:

`simpl/max` := proc()
  description "simpl/max(a, ...): the largest of expressions";
  `simpl/extreme`('max', 1, `simpl/flatarguments`('max', args))
end proc:

`simpl/min` := proc()
  description "simpl/min(a, ...): the least of expressions";
  `simpl/extreme`('min', -1, `simpl/flatarguments`('min', args))
end proc:
