# Random values. All come from one sequence of numbers, whose state is `_randomseed`: the same seed gives the same values.

randomize := proc(seed::posint)
  description "randomize(seed), randomize(): begins the sequence of random numbers anew, with this seed or one taken from the clock; the seed";
  global _randomseed;
  _randomseed := `if`(nargs = 1, args[1], 1 + irem(1000003*iolib(25), 999999999988));
  _randomseed
end proc:

rand := proc(n)
  description "rand(), rand(n), rand(a .. b): a random number of 12 digits; a procedure of random integers from 0 to n - 1, or from a to b";
  local low, count, digits;
  global _randomseed;
  if nargs = 0 then return rand(10^12)() end if;
  if type(n, range) then low := op(1, n); count := op(2, n) - low + 1 else low := 0; count := n end if;
  if not type(low, integer) or not type(count, posint) then error "positive integer or range of integers expected, but received %1", n end if;
  digits := length(count) + 3;
  proc()
    local r, k;
    global _randomseed;
    if not type(_randomseed, posint) then _randomseed := 1 end if;
    r := 0;
    for k to iquo(digits, 10) + 1 do
      _randomseed := irem(427419669081*_randomseed, 999999999989);
      r := r*10^11 + irem(_randomseed, 10^11)
    end do;
    low + irem(r, count)
  end proc
end proc:

randomfloat := proc(r)
  description "randomfloat(), randomfloat(a .. b): a random float of Digits digits between 0 and 1, or between a and b";
  local a, b;
  a, b := 0, 1;
  if nargs > 0 then
    if not type(r, range) then error "range expected, but received %1", r end if;
    a, b := op(r)
  end if;
  if not type(evalf([a, b]), list(numeric)) then error "range of real numbers expected, but received %1", r end if;
  evalf(a + (b - a)*Float(rand(10^Digits)(), -Digits))
end proc:

# The procedure that makes the values: of integers from a range, or one that was given.
`random/maker` := proc(r)
  description "random/maker(r): the procedure of random integers of a range, -99 .. 99 for none, or r, if it is a procedure";
  if nargs = 0 then rand(-99 .. 99) elif type(r, procedure) then r else rand(r) end if
end proc:

randomlist := proc(n::nonnegint)
  description "randomlist(n), randomlist(n, a .. b), randomlist(n, f): a list of n random integers from -99 to 99 or from a to b, or of n values of f()";
  local r, i;
  r := `random/maker`(args[2..nargs]);
  [seq(r(), i = 1..n)]
end proc:

randompolynomial := proc(x::{name, list(name)}, d::nonnegint)
  description "randompolynomial(x, d), randompolynomial(x, d, a .. b): a polynomial of degree d in x, or in the names of a list, with random coefficients from -99 to 99 or from a to b";
  local r, all, lead, i, t, rest, e;
  r := `random/maker`(args[3..nargs]);
  if type(x, name) then
    lead := 0;
    for i to 1000 while lead = 0 do lead := r() end do;
    return lead*x^d + add(r()*x^i, i = 0..d - 1)
  end if;
  # As many terms as a dense polynomial in one name has, each of degree d at most, the first one of degree d.
  all := 0;
  for i to d + 1 do
    rest := `if`(i = 1, d, rand(d + 1)());
    lead := 0;
    for e to 1000 while lead = 0 do lead := r() end do;
    for t in x do
      e := `if`(t = x[-1], rest, rand(rest + 1)());
      lead := lead*t^e;
      rest := rest - e
    end do;
    all := all + lead
  end do;
  all
end proc:

randommatrix := proc(m::posint, n::posint)
  description "randommatrix(m, n), randommatrix(m, n, a .. b), randommatrix(m, n, f): an m by n Matrix of random integers from -99 to 99 or from a to b, or of values of f()";
  local r;
  r := `random/maker`(args[3..nargs]);
  Matrix(m, n, proc() r() end proc)
end proc:

randomchoice := proc(a::{list, set})
  description "randomchoice(a): a random member of a list or set";
  if nops(a) = 0 then error "a list or set with members expected" end if;
  op(1 + rand(nops(a))(), a)
end proc:

# Each place from the last down is exchanged with one at or below it (Knuth, vol. 2, 3.4.2, algorithm P).
shuffle := proc(a::list)
  description "shuffle(a): the members of the list in a random order";
  local b, i, j;
  b := array(1..max(1, nops(a)), a);
  for i from nops(a) by -1 to 2 do
    j := 1 + rand(i)();
    b[i], b[j] := b[j], b[i]
  end do;
  [seq(b[i], i = 1..nops(a))]
end proc:
