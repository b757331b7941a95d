# The number of partitions of n, remembered. Euler's pentagonal numbers give the recurrence
#   p(n) = p(n - 1) + p(n - 2) - p(n - 5) - p(n - 7) + ...

p := proc(n::integer)
  option remember;
  local k, total, pair;
  if n < 0 then return 0 end if;
  total := 0;
  for k while k*(3*k - 1)/2 <= n do
    pair := p(n - k*(3*k - 1)/2) + p(n - k*(3*k + 1)/2);
    if irem(k, 2) = 1 then total := total + pair else total := total - pair end if
  end do;
  total
end proc:
p(0) := 1:                          # an entry of the remember table ends the recursion

seq(p(n), n = 1..15);
p(100);                             # 190569292, MacMahon's by hand
for n from 100 by 100 to 1000 do p(n) end do:   # small steps keep the recursion shallow
p(1000);                            # 24061467864032622473692149727991
irem(p(999), 5);                    # Ramanujan: p(5k + 4) is a multiple of 5

# The same numbers by counting: parts of at most m, a table for each pair.
atMost := proc(n, m)
  option remember;
  if n = 0 then 1 elif n < 0 or m = 0 then 0 else atMost(n, m - 1) + atMost(n - m, m) end if
end proc:
evalb([seq(p(n), n = 1..30)] = [seq(atMost(n, n), n = 1..30)]);

# And by listing them, the parts of each in falling order.
list := proc(n, largest)
  local part;
  if n = 0 then return [] end if;
  seq(seq([part, op(rest)], rest = [list(n - part, part)]), part = 1..`if`(largest < n, largest, n))
end proc:
list(5, 5);
nops([list(12, 12)]), p(12);

# Partitions into distinct parts are as many as those into odd parts.
distinct := proc(n, m) option remember;
  if n = 0 then 1 elif n < 0 or m = 0 then 0 else distinct(n, m - 1) + distinct(n - m, m - 1) end if
end proc:
odd := proc(n, m) option remember;
  if n = 0 then 1 elif n < 0 or m < 1 then 0 else odd(n, m - 2) + odd(n - m, m) end if
end proc:
seq(distinct(n, n) - odd(n, 2*n + 1), n = 1..40);
