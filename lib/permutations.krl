# Rearrangements of lists.

permute := proc(l::list)
  description "permute(list): the list of all rearrangements of the list, equal ones once";
  `kernel/native`("permute", args)
end proc:
