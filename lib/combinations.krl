# Choices of members of lists.

combinations := proc(a, k)
  description "combinations(a, k): the list of all choices of k places of the list, in order";
  if not type([args], [list, nonnegint]) then return `kernel/native`("opencall", [list, nonnegint], args) end if;
  `kernel/native`("combinations", a, k)
end proc:

sublists := proc(a)
  description "sublists(a): the list of all choices of places of the list, the shorter ones first";
  local k;
  if not type([args], [list]) then return `kernel/native`("opencall", [list], args) end if;
  [seq(op(combinations(a, k)), k = 0..nops(a))]
end proc:

tuples := proc()
  description "tuples(a, b, ...): the list of all lists of a member of a, a member of b, ...";
  local lists, x, rest;
  lists := [args];
  if not type(lists, list(list)) then return `kernel/native`("opencall", [list $ nargs], args) end if;
  if lists = [] then return [[]] end if;
  rest := procname(op(2..-1, lists));
  [seq(op(map2(`tuples/join`, x, rest)), x = lists[1])]
end proc:
`tuples/join` := proc(x, rest::list)
  description "tuples/join(x, rest): the list of x and the members of rest";
  [x, op(rest)]
end proc:
