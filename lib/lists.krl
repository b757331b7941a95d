# Lists, whole: order, shape, sums, counts.

reverse := proc(a::list)
  description "reverse(a): the members of the list in the opposite order";
  local i;
  [seq(a[-i], i = 1..nops(a))]
end proc:

rotate := proc(a::list, n::integer)
  description "rotate(a, n): the list with its first n members moved to its end, or its last -n to its front";
  local k;
  if a = [] then return a end if;
  k := irem(n, nops(a));
  if k < 0 then k := k + nops(a) end if;
  [op(k + 1..-1, a), op(1..k, a)]
end proc:

distinct := proc(a::list)
  description "distinct(a): the members of the list, each where it stands first";
  `kernel/native`("distinct", a)
end proc:

flatten := proc(a::list, depth::nonnegint)
  description "flatten(a), flatten(a, depth): the list with the lists inside it opened, all of them or depth levels";
  `kernel/native`("flatten", args)
end proc:

chunks := proc(a::list, n::posint)
  description "chunks(a, n): the list cut into lists of n members; the last may be shorter";
  local i;
  [seq(a[i*n + 1..min((i + 1)*n, nops(a))], i = 0..iquo(nops(a) - 1 + n, n) - 1)]
end proc:

windows := proc(a::list, n::posint)
  description "windows(a, n): the list of all runs of n neighbours";
  local i;
  [seq(a[i..i + n - 1], i = 1..nops(a) - n + 1)]
end proc:

columns := proc(a::list(list))
  description "columns(a): the columns of a list of rows of one length, as a list of lists";
  local row, i;
  if a = [] then return [] end if;
  for row in a do
    if nops(row) <> nops(a[1]) then error "rows of one length expected, but received lengths %1 and %2", nops(a[1]), nops(row) end if
  end do;
  [seq([seq(row[i], row = a)], i = 1..nops(a[1]))]
end proc:

zip := proc(f, a::list, b::list, filler)
  description "zip(f, a, b), zip(f, a, b, filler): the list of f(a[i], b[i]), as long as the shorter list, or as the longer one filled up";
  local i, n, m;
  n, m := nops(a), nops(b);
  if nargs < 4 then return [seq(f(a[i], b[i]), i = 1..min(n, m))] end if;
  [seq(f(a[i], b[i]), i = 1..min(n, m)), seq(f(a[i], filler), i = m + 1..n), seq(f(filler, b[i]), i = n + 1..m)]
end proc:

partialsums := proc(a::list)
  description "partialsums(a): the list of the sums of the first 1, 2, ... members";
  local x, total;
  total := 0;
  [seq(`partialsums/next`('total', x), x = a)]
end proc:
`partialsums/next` := proc(total, x)
  description "partialsums/next('total', x): adds x to the value of total";
  total := eval(total) + x
end proc:

differences := proc(a::list)
  description "differences(a): the list of the differences of neighbours";
  local i;
  [seq(a[i + 1] - a[i], i = 1..nops(a) - 1)]
end proc:

positions := proc(x, a::list)
  description "positions(x, a): the list of the places at which x stands in the list";
  local i;
  [seq(`if`(a[i] = x, i, NULL), i = 1..nops(a))]
end proc:

tally := proc(a::list)
  description "tally(a): the list of equations member = count, in the order in which the members come first";
  local x, count;
  count := table([]);
  for x in a do count[x] := `if`(assigned(count[x]), count[x], 0) + 1 end do;
  [seq(x = count[x], x = distinct(a))]
end proc:

groupby := proc(f, a::list)
  description "groupby(f, a): the list of lists of members with equal f(x), in the order in which they come first";
  local i, k, keys, first, groups, size;
  keys := map(f, a);
  if nops(keys) <> nops(a) then error "groupby expects one value for each member" end if;
  groups, size := table([]), table([]);
  for i to nops(a) do
    k := keys[i];
    size[k] := `if`(assigned(size[k]), size[k], 0) + 1;
    groups[k, size[k]] := a[i]
  end do;
  [seq([seq(groups[k, i], i = 1..size[k])], k = distinct(keys))]
end proc:

foldl := proc(f, start, a::list)
  description "foldl(f, start, [a, b, ..., z]): f(...f(f(start, a), b)..., z)";
  local value, x;
  value := start;
  for x in a do value := f(value, x) end do;
  value
end proc:

foldr := proc(f, start, a::list)
  description "foldr(f, start, [a, ..., y, z]): f(a, ... f(y, f(z, start))...)";
  local value, i;
  value := start;
  for i from nops(a) to 1 by -1 do value := f(a[i], value) end do;
  value
end proc:
