# Largest and least of expressions that are not all numbers.

# A list or set alone stands for its members. Numbers and real constants leave the extreme of them
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
  description "simpl/flatarguments(f, a, ...): the arguments, or the members of a list or set alone, with those of calls of f in the place of each";
  local t, a;
  a := `if`(nargs = 2 and type(args[2], {list, set}), op(args[2]), args[2..-1]);
  `kernel/native`("expectalgebraic", f, a);
  [seq(`if`(type(t, function) and op(0, t) = f, op(`simpl/flatarguments`(f, op(t))), t), t = [a])]
end proc:

`simpl/max` := proc()
  description "simpl/max(a, ...): the largest of expressions, or of the members of one list or set";
  `simpl/extreme`('max', 1, `simpl/flatarguments`('max', args))
end proc:

`simpl/min` := proc()
  description "simpl/min(a, ...): the least of expressions, or of the members of one list or set";
  `simpl/extreme`('min', -1, `simpl/flatarguments`('min', args))
end proc:
