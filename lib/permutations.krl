# Rearrangements of lists.

permute := proc(l)
  description "permute(list): the list of all rearrangements of the list, equal ones once";
  if not type([args], [list]) then return `kernel/native`("opencall", [list], args) end if;
  `kernel/native`("permute", args)
end proc:
