# Assumptions about names.
#
# A name x under assumption has a value: a name x~ of its own, which carries what is assumed. What is made of it before
# the assumption ends keeps x~ and stays true. A restriction is a list
#
#   [flags, low, lowOpen, high, highOpen]
#
# whose flags are those of the native part (known.h), and whose bounds are real constants or infinities.

assume := proc()
  description "assume(x > 0), assume(n, integer), assume(x::real), assume(x, a..b), assume([x, y], real), ...: from now on the names have these properties, and no others";
  `assumptions/set`("assume", true, args);
  NULL
end proc:

additionally := proc()
  description "additionally(x < 1), additionally(n, even), ...: the names have these properties besides those assumed before";
  `assumptions/set`("additionally", false, args);
  NULL
end proc:

unassume := proc()
  description "unassume(x, ...), unassume(): takes back what is assumed about the names, or about all names";
  local x, names;
  names := `if`(nargs = 0, `kernel/native`("assumednames"), [args]);
  for x in names do
    if not type(x, symbol) then error "unassume expects names, but received %1", x end if;
    `kernel/native`("unassume", x)
  end do;
  NULL
end proc:

assumptions := proc()
  description "assumptions(x, ...), assumptions(): the list of what is assumed about the names, or about all names";
  local x;
  map(op, [seq(`assumptions/list`(x), x = `if`(nargs = 0, `kernel/native`("assumednames"), [args]))])
end proc:

about := proc()
  description "about(x, ...), about(): shows what is assumed about the names, or about all names, or known of an expression";
  local x, facts, names;
  names := `if`(nargs = 0, `kernel/native`("assumednames"), [args]);
  if names = [] then INTERFACE_CHAR("nothing is assumed about any name\n") end if;
  for x in names do
    facts := `assumptions/texts`(x);
    INTERFACE_CHAR(cat(convert(x, string), ": ", `if`(facts = [], "nothing is known", jointext(facts, ", ")), "\n"))
  end do;
  NULL
end proc:

is := proc(p, property)
  description "is(x > 0), is(n, integer), is(x::real), is(x, a..b): true or false if that follows from what is assumed, else FAIL";
  local t, u;
  if nargs = 2 then return `is/property`(p, property) end if;
  if nargs <> 1 then error "is expects a relation, or an expression and a property, but received %1 arguments", nargs end if;
  if member(p, [true, false, FAIL]) then p
  elif type(p, `<`) then `is/property`(op(2, p) - op(1, p), positive)
  elif type(p, `<=`) then `is/property`(op(2, p) - op(1, p), nonnegative)
  elif type(p, `=`) then `is/not`(`is/property`(op(1, p) - op(2, p), nonzero))
  elif type(p, `<>`) then `is/property`(op(1, p) - op(2, p), nonzero)
  elif type(p, `::`) then `is/property`(op(p))
  elif type(p, `not`) then `is/not`(is(op(1, p)))
  elif type(p, `and`) then
    t, u := is(op(1, p)), is(op(2, p));
    if t = false or u = false then false elif t = true and u = true then true else FAIL end if
  elif type(p, `or`) then
    t, u := is(op(1, p)), is(op(2, p));
    if t = true or u = true then true elif t = false and u = false then false else FAIL end if
  else error "is expects a relation, or an expression and a property, but received %1", p
  end if
end proc:

coulditbe := proc(p)
  description "coulditbe(x > 0), coulditbe(n, even): true or false if the assumptions leave it open or exclude it, else FAIL";
  local answer, fact, old;
  answer := is(args);
  if answer <> FAIL then return answer end if;
  fact := [traperror(`assumptions/facts`("coulditbe", args))];
  if fact = [lasterror] or nops(fact) <> 1 then return FAIL end if;
  old := `assumptions/old`(fact[1][1]);
  `assumptions/agree`(`assumptions/merge`(old, fact[1][2]))
end proc:

assuming := proc(e::uneval)
  description "assuming(e, x > 0, ...): the value of e while the names have these properties, written in the names without them";
  local facts, fact, names, x, old, there, back, origin, fresh, r, value;
  if nargs < 2 then error "assuming expects an expression and what is assumed meanwhile" end if;
  facts := [`assumptions/facts`("assuming", args[2..nargs])];
  names := {seq(fact[1], fact = facts)};
  there := NULL;
  back := NULL;
  for x in names do
    r := `assumptions/old`(x);
    for fact in facts do if fact[1] = x then r := `assumptions/merge`(r, fact[2]) end if end do;
    origin := `assumptions/origin`(x);
    `assumptions/check`("assuming", origin, r);
    fresh := `assumptions/make`(origin, r, 1);
    there := there, x = fresh, `if`(origin = x, NULL, origin = fresh);
    back := back, fresh = x
  end do;
  value := eval(subs(there, e));
  value := eval(subs(there, value));
  subs(back, value)
end proc:

# ---- facts as they are given

`assumptions/facts` := proc(who)
  description "assumptions/facts(who, fact, ...): the sequence of lists [name, restriction] that facts mean";
  local all, a, i;
  all := NULL;
  i := 2;
  while i <= nargs do
    a := args[i];
    i := i + 1;
    if type(a, `::`) then all := all, `assumptions/each`(who, op(a))
    elif type(a, {`<`, `<=`, `=`, `<>`}) then all := all, `assumptions/relation`(who, a)
    elif type(a, `and`) then all := all, `assumptions/facts`(who, op(a))
    elif i <= nargs then
      all := all, `assumptions/each`(who, a, args[i]);
      i := i + 1
    else `assumptions/refuse`(who, "%1 expects relations such as x > 0, or names with properties, but received %2", a)
    end if
  end do;
  all
end proc:

`assumptions/each` := proc(who, x, p)
  description "assumptions/each(who, x, p): the list [x, restriction] for the property p of a name, or one for each name of a list or set";
  local r, y;
  r := `assumptions/property`(who, p);
  seq([`assumptions/name`(who, y), r], y = `if`(type(x, {list, set}), x, [x]))
end proc:

`assumptions/refuse` := proc(who, message)
  description "assumptions/refuse(who, message, x, ...): the error of the procedure `who` whose message begins with its name";
  `kernel/native`("refuse", convert(who, name), message, who, args[3..nargs])
end proc:

`assumptions/name` := proc(who, x)
  description "assumptions/name(who, x): x, if it is a name about which something can be assumed";
  if not type(x, symbol) or member(x, [constants]) then
    `assumptions/refuse`(who, "%1 expects assumptions about names without values, but received %2", x)
  end if;
  x
end proc:

`assumptions/origin` := proc(x)
  description "assumptions/origin(x): the name that is typed for a name under assumption";
  local a;
  a := `kernel/native`("assumption", x);
  `if`(a = FAIL, x, a[1])
end proc:

`assumptions/relation` := proc(who, r)
  description "assumptions/relation(who, r): the list [name, restriction] of a relation of a name and a bound";
  local a, b, open;
  a, b := op(r);
  if type(r, `<>`) then
    if b <> 0 then a, b := b, a end if;
    if b <> 0 then `assumptions/refuse`(who, "%1 knows of <> only that a name isn't 0, but received %2", r) end if;
    return [`assumptions/name`(who, a), [32, -infinity, 0, infinity, 0]]
  end if;
  open := `if`(type(r, `<`), 1, 0);
  if type(r, `=`) and `assumptions/isbound`(a) then a, b := b, a end if;
  if `assumptions/isbound`(b) then
    [`assumptions/name`(who, a), [1, `if`(type(r, `=`), b, -infinity), 0, b, open]]
  elif `assumptions/isbound`(a) then [`assumptions/name`(who, b), [1, a, open, infinity, 0]]
  elif type(a, symbol) and type(b, symbol) then
    `assumptions/refuse`(who, "%1 knows of no relations between names: it expects a name and a real constant, but received %2", r)
  else `assumptions/refuse`(who, "%1 expects a name and a real constant in a relation, but received %2", r)
  end if
end proc:

`assumptions/isbound` := proc(x)
  description "assumptions/isbound(x): whether x is a real constant, or an infinity";
  type(x, numeric) and x = x or x = infinity or x = -infinity or `simpl/signum`(x) <> FAIL
end proc:

`assumptions/property` := proc(who, p)
  description "assumptions/property(who, p): the restriction that a property, a range or a set of them is";
  local row, r, t;
  if type(p, range) and `assumptions/isbound`(op(1, p)) and `assumptions/isbound`(op(2, p)) then
    return [1, op(1, p), 0, op(2, p), 0]
  end if;
  if type(p, {set, list}) and p <> {} and p <> [] then
    r := [0, -infinity, 0, infinity, 0];
    for t in p do r := `assumptions/merge`(r, `assumptions/property`(who, t)) end do;
    return r
  end if;
  for row in `assumptions/properties` do if row[1] = p then return row[2] end if end do;
  `assumptions/refuse`(who, "%1 knows of no property %2; properties are %3, and ranges", p,
    jointext([seq(convert(row[1], string), row = `assumptions/properties`)], ", "))
end proc:

`assumptions/properties` := [
  # name           flags      bounds
  ['complex',     [0,         -infinity, 0, infinity, 0]],
  ['real',        [1,         -infinity, 0, infinity, 0]],
  ['rational',    [1 + 2,     -infinity, 0, infinity, 0]],
  ['integer',     [1 + 2 + 4, -infinity, 0, infinity, 0]],
  ['even',        [7 + 8,     -infinity, 0, infinity, 0]],
  ['odd',         [7 + 16,    -infinity, 0, infinity, 0]],
  ['prime',       [7 + 128,   2, 0, infinity, 0]],
  ['positive',    [1,         0, 1, infinity, 0]],
  ['negative',    [1,         -infinity, 0, 0, 1]],
  ['nonnegative', [1,         0, 0, infinity, 0]],
  ['nonpositive', [1,         -infinity, 0, 0, 0]],
  ['nonzero',     [32,        -infinity, 0, infinity, 0]],
  ['posint',      [7,         1, 0, infinity, 0]],
  ['negint',      [7,         -infinity, 0, -1, 0]],
  ['nonnegint',   [7,         0, 0, infinity, 0]],
  ['nonposint',   [7,         -infinity, 0, 0, 0]],
  ['imaginary',   [64,        -infinity, 0, infinity, 0]]
]:

# ---- restrictions

`assumptions/old` := proc(x)
  description "assumptions/old(x): the restriction of a name";
  local a;
  a := `kernel/native`("assumption", x);
  `if`(a = FAIL, [0, -infinity, 0, infinity, 0], a[2..6])
end proc:

`assumptions/below` := proc(a, b)
  description "assumptions/below(a, b): whether the bound a is less than the bound b";
  if a = b then false
  elif a = -infinity or b = infinity then true
  elif a = infinity or b = -infinity then false
  else `simpl/signum`(b - a) = 1
  end if
end proc:

`assumptions/flags` := proc(a, b)
  description "assumptions/flags(a, b): the flags of either of two numbers";
  local bit, r;
  r := 0;
  for bit in [1, 2, 4, 8, 16, 32, 64, 128] do
    if irem(iquo(a, bit), 2) = 1 or irem(iquo(b, bit), 2) = 1 then r := r + bit end if
  end do;
  r
end proc:

`assumptions/merge` := proc(r, s)
  description "assumptions/merge(r, s): the restriction that both restrictions are";
  local flags, low, lowOpen, high, highOpen;
  flags := `assumptions/flags`(r[1], s[1]);
  if `assumptions/below`(r[2], s[2]) then low, lowOpen := s[2], s[3]
  elif r[2] = s[2] then low, lowOpen := r[2], max(r[3], s[3])
  else low, lowOpen := r[2], r[3]
  end if;
  if `assumptions/below`(s[4], r[4]) then high, highOpen := s[4], s[5]
  elif r[4] = s[4] then high, highOpen := r[4], max(r[5], s[5])
  else high, highOpen := r[4], r[5]
  end if;
  if irem(iquo(flags, 4), 2) = 1 then
    # Integers reach their bounds.
    if low <> -infinity then low, lowOpen := `if`(lowOpen = 1, floor(low) + 1, ceil(low)), 0 end if;
    if high <> infinity then high, highOpen := `if`(highOpen = 1, ceil(high) - 1, floor(high)), 0 end if
  end if;
  [flags, low, lowOpen, high, highOpen]
end proc:

`assumptions/agree` := proc(r)
  description "assumptions/agree(r): whether there can be a number under the restriction";
  local bit;
  bit := proc(k) irem(iquo(r[1], k), 2) = 1 end proc;
  not (`assumptions/below`(r[4], r[2]) or r[2] = r[4] and (r[3] = 1 or r[5] = 1 or bit(32) and r[2] = 0) or
    r[2] = infinity or r[4] = -infinity or bit(8) and bit(16) or bit(64) and bit(1) and bit(32) or
    bit(64) and (`assumptions/below`(0, r[2]) or `assumptions/below`(r[4], 0)))
end proc:

`assumptions/check` := proc(who, x, r)
  description "assumptions/check(who, x, r): raises an error of `who` when no number is left for x under the restriction";
  if not `assumptions/agree`(r) then
    `kernel/native`("refuse", convert(who, name), "the assumptions on %1 contradict each other", x)
  end if
end proc:

`assumptions/make` := proc(x, r, how)
  description "assumptions/make(x, r, how): the name x~ under the restriction, as how tells: 0 a new one, the value of x; 1 a new one; or the name there is";
  local below, above;
  below, above := r[2], r[4];
  if not type(below, numeric) and below <> -infinity then
    below := evalf(below, 15);
    below := below - abs(below)/10^13
  end if;
  if not type(above, numeric) and above <> infinity then
    above := evalf(above, 15);
    above := above + abs(above)/10^13
  end if;
  `kernel/native`("assumed", x, op(r), below, above, how)
end proc:

`assumptions/set` := proc(who, anew)
  description "assumptions/set(who, anew, fact, ...): puts the names in facts under assumption, anew or besides the old ones";
  local facts, fact, x, r, all;
  if nargs = 2 then `assumptions/refuse`(who, "%1 expects relations such as x > 0, or names with properties") end if;
  facts := [`assumptions/facts`(who, args[3..nargs])];
  all := NULL;
  for x in {seq(fact[1], fact = facts)} do
    r := `if`(anew, [0, -infinity, 0, infinity, 0], `assumptions/old`(x));
    for fact in facts do if fact[1] = x then r := `assumptions/merge`(r, fact[2]) end if end do;
    `assumptions/check`(who, `assumptions/origin`(x), r);
    all := all, [x, r]
  end do;
  # Nothing is assumed before all has been looked at.
  for fact in [all] do
    x, r := op(fact);
    `assumptions/make`(`assumptions/origin`(x), r, `if`(anew or `assumptions/origin`(x) = x, 0, x))
  end do
end proc:

# ---- answers

`assumptions/list` := proc(x)
  description "assumptions/list(x): the list of what is assumed about x";
  local r, all, row;
  r := `assumptions/old`(x);
  all := NULL;
  for row in [[128, 'prime'], [16, 'odd'], [8, 'even'], [4, 'integer'], [2, 'rational'], [1, 'real']] do
    if irem(iquo(r[1], row[1]), 2) = 1 then all := x::(row[2]); break end if
  end do;
  if irem(iquo(r[1], 64), 2) = 1 then all := all, x::'imaginary' end if;
  if irem(iquo(r[1], 32), 2) = 1 then all := all, x <> 0 end if;
  if r[2] = r[4] then all := all, x = r[2]
  else
    if r[2] <> -infinity then all := all, `if`(r[3] = 1, r[2] < x, r[2] <= x) end if;
    if r[4] <> infinity then all := all, `if`(r[5] = 1, x < r[4], x <= r[4]) end if
  end if;
  [all]
end proc:

`assumptions/texts` := proc(x)
  description "assumptions/texts(x): what is assumed about x, or known of it, as a list of texts";
  local p, all;
  if type(x, symbol) then
    return [seq(`if`(type(p, `::`), convert(op(2, p), string), convert(p, string)), p = `assumptions/list`(x))]
  end if;
  all := NULL;
  for p in ['odd', 'even', 'integer', 'rational', 'real', 'imaginary'] do
    if `kernel/native`("known", x, p) then all := convert(p, string); break end if
  end do;
  for p in ['positive', 'negative', 'nonnegative', 'nonpositive', 'nonzero'] do
    if `kernel/native`("known", x, p) then all := all, convert(p, string); break end if
  end do;
  [all]
end proc:

`is/not` := proc(answer)
  description "is/not(answer): the opposite of an answer; FAIL stays";
  `if`(answer = FAIL, FAIL, not answer)
end proc:

`is/property` := proc(x, p)
  description "is/property(x, p): whether x has the property: true, false or FAIL";
  local answer, y;
  if type(p, range) then return is(op(1, p) <= x and x <= op(2, p)) end if;
  if type(p, {set, list}) then
    answer := {seq(`is/property`(x, y), y = p)};
    return `if`(member(false, answer), false, `if`(answer = {true}, true, FAIL))
  end if;
  `assumptions/property`("is", p);  # the error of an unknown one
  if p = 'complex' then return `if`(type(x, complex(numeric)) or `kernel/native`("known", x, real), true, FAIL) end if;
  if member(p, ['posint', 'negint', 'nonnegint', 'nonposint']) then
    return `is/property`(x, ['integer', `if`(p = 'posint', 'positive', `if`(p = 'negint', 'negative',
      `if`(p = 'nonnegint', 'nonnegative', 'nonpositive')))])
  end if;
  answer := `is/known`(x, p);
  if answer = FAIL and type(x, {`+`, `*`, `^`}) then
    # Another form may tell more.
    y := expand(x);
    if y <> x then answer := `is/known`(y, p) end if
  end if;
  answer
end proc:

`is/known` := proc(x, p)
  description "is/known(x, p): whether x has the property of that name, from its form as it stands";
  local sign;
  if p = 'prime' and type(x, integer) then return isprime(x) end if;
  if `kernel/native`("known", x, p) then return true end if;
  if `kernel/native`("excluded", x, p) then return false end if;
  if type(x, complex(rational)) then return false end if;
  if member(p, ['positive', 'negative', 'nonnegative', 'nonpositive', 'nonzero', 'real']) then
    # The value of a constant tells.
    sign := `simpl/signum`(x);
    if sign = FAIL then FAIL
    elif p = 'positive' then evalb(sign = 1)
    elif p = 'negative' then evalb(sign = -1)
    elif p = 'nonnegative' then evalb(sign >= 0)
    elif p = 'nonpositive' then evalb(sign <= 0)
    elif p = 'nonzero' then evalb(sign <> 0)
    else true
    end if
  else FAIL
  end if
end proc:
