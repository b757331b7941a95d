# Names: protection and assignment. Names that have values are given in quotes.

protect := proc()
  description "protect('a', ...): protects the names from assignment";
  local a;
  for a in [args] do
    if not type(a, symbol) then error "protect expects names, in quotes when they have values, but received %1", a end if;
    if not type(a, protected) then setattribute(a, attributes(a), protected) end if
  end do;
  NULL
end proc:

unprotect := proc()
  description "unprotect('a', ...): takes the protection of names away";
  local a;
  for a in [args] do
    if not type(a, symbol) then error "unprotect expects names, in quotes when they have values, but received %1", a end if;
    if type(a, protected) then setattribute(a, op(remove(`=`, [attributes(a)], 'protected'))) end if
  end do;
  NULL
end proc:

assign := proc(a)
  description "assign('a', value), assign(a = value), assign([a = value, ...]): assigns a value to a name, or the right sides of equations to the left sides";
  if nargs = 0 then error "assign expects a name and a value, or equations" end if;
  if nargs = 1 then `assign/equations`(a) else `assign/one`(args) end if
end proc:
`assign/equations` := proc(a)
  description "assign/equations(a): assigns the right side of an equation, or of the equations in a list or set, to the left side";
  local equation;
  if type(a, {list, set}) then for equation in a do procname(equation) end do
  elif type(a, `=`) then `assign/one`(lhs(a), rhs(a))
  else error "equation or name and value expected, but received %1", a
  end if;
  NULL
end proc:
`assign/one` := proc(a)
  description "assign/one('a', value): assigns the value, which may be a sequence, to a";
  if not type(a, {symbol, indexed, function}) then error "cannot assign to %1", a end if;
  a := args[2..-1];
  NULL
end proc:

unassign := proc()
  description "unassign('a', ...): takes the values of names and of entries of tables away";
  local a;
  for a in [args] do `unassign/one`(a) end do;
  NULL
end proc:
`unassign/one` := proc(a)
  description "unassign/one('a'): takes the value of a away";
  if not type(a, {symbol, indexed, function}) then error "unassign expects names in quotes, but received %1", a end if;
  a := evaln(a)
end proc:
