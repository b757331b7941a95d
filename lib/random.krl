# Random integers.

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
