# Structures and texts in other forms: convert(x, form). Tables and arrays are given by their names or as values.

`convert/list` := proc(x)
  description "convert(x, list): the members of a set, the entries of a table or array, the characters of a text, or the operands, as a list";
  local t, keys, key;
  t := eval(x);
  if type(t, list) then t
  elif type(t, rtable) then
    if rtable_num_dims(t) <> 1 then error "the array has %1 dimensions: convert it to `list(list)`", rtable_num_dims(t) end if;
    [seq(t[key], key = `rtable/ranges`(t))]
  elif type(t, array) then
    if nops([op(2, eval(t))]) <> 1 then error "the array has %1 dimensions: convert it to `list(list)`", nops([op(2, eval(t))]) end if;
    [seq(t[key], key = op(2, eval(t)))]
  elif type(t, table) then
    # Integers in their order, other indices as they come.
    keys := [indices(t)];
    if type(keys, list([integer])) then keys := map(list, sort(map(op, keys))) end if;
    [seq(t[op(key)], key = keys)]
  elif type(t, {string, symbol}) then splittext(t, "")
  else [op(t)]
  end if
end proc:

`convert/set` := proc(x)
  description "convert(x, set): the members of a list, the entries of a table or array, the characters of a text, or the operands, as a set";
  {op(`convert/list`(x))}
end proc:

`convert/list(list)` := proc(x)
  description "convert(x, `list(list)`): the rows of an array of two dimensions, or the members of x, as lists";
  local t, i, k, row, ranges;
  t := eval(x);
  if type(t, {array, rtable}) then
    ranges := [`if`(type(t, rtable), `rtable/ranges`(t), op(2, eval(t)))];
    if nops(ranges) <> 2 then error "array of two dimensions expected, but received one of %1", nops(ranges) end if;
    return [seq([seq(t[i, k], k = ranges[2])], i = ranges[1])]
  end if;
  [seq(`convert/list`(row), row = `convert/list`(t))]
end proc:

`convert/listlist` := proc(x)
  description "convert(x, listlist): as convert(x, `list(list)`)";
  `convert/list(list)`(x)
end proc:

# The elements of an array come along with their bounds, or from 1 on where these have none.
`convert/Array` := proc(x)
  description "convert(x, Array): the elements of a list, table, array, Matrix or Vector as an Array of the same bounds";
  Array(eval(x), args[2..-1])
end proc:

`convert/Matrix` := proc(x)
  description "convert(x, Matrix): the elements of a list of rows or an array of two dimensions as a Matrix";
  `convert/linear`('Matrix', 2, args)
end proc:

`convert/Vector` := proc(x)
  description "convert(x, Vector): the elements of a list, or of an array of one dimension, as a column Vector";
  `convert/linear`('Vector'['column'], 1, args)
end proc:

`convert/linear` := proc(kind, rank, x)
  description "convert/linear(kind, rank, x, options): the elements of x, whatever its bounds, as a Matrix or Vector";
  local t, n, range;
  t := eval(x);
  if not type(t, {array, rtable}) then return kind(t, args[4..-1]) end if;
  n := [`if`(type(t, rtable), `rtable/ranges`(t), op(2, eval(t)))];
  if nops(n) <> rank then error "array of %1 dimensions expected, but received one of %2", rank, nops(n) end if;
  kind(seq(op(2, range) - op(1, range) + 1, range = n), `if`(rank = 1, `convert/list`(t), `convert/list(list)`(t)), args[4..-1])
end proc:

`convert/array` := proc(x)
  description "convert(x, array): the elements of a list, Array, Matrix or Vector as an array that is a table";
  local t, i, k, n, result;
  t := eval(x);
  if not type(t, rtable) then return `if`(type(t, array), eval(t), array(t)) end if;
  n := [`rtable/ranges`(t)];
  if nops(n) > 2 then error "array of one or two dimensions expected, but received one of %1", nops(n) end if;
  result := array(op(n));
  if nops(n) = 1 then for i in seq(i, i = n[1]) do result[i] := t[i] end do
  else for i in seq(i, i = n[1]) do for k in seq(k, k = n[2]) do result[i, k] := t[i, k] end do end do end if;
  eval(result)
end proc:

`convert/string` := proc(x)
  description "convert(x, string): the text of a name, or of an expression as it prints";
  `kernel/native`("objecttext", x)
end proc:

`convert/symbol` := proc(x)
  description "convert(x, symbol): the name with the text of a string, or of an expression as it prints";
  if type(x, symbol) then x else cat(``, `kernel/native`("objecttext", x)) end if
end proc:

`convert/name` := proc(x)
  description "convert(x, name): the name with the text of a string, or of an expression as it prints";
  if type(x, name) then x else `convert/symbol`(x) end if
end proc:

`convert/+` := proc(x)
  description "convert(x, `+`): the sum of the members, entries or operands";
  `+`(op(`convert/operands`(x)))
end proc:

`convert/*` := proc(x)
  description "convert(x, `*`): the product of the members, entries or operands";
  `*`(op(`convert/operands`(x)))
end proc:

`convert/operands` := proc(x)
  description "convert/operands(x): the list of what a sum or product is taken of";
  local t, y;
  y := eval(x);
  if type(eval(y), {string, symbol}) then error "expression with operands expected, but received %1", x end if;
  if type(y, array) and nops([op(2, eval(y))]) > 1 then [seq(op(t), t = [entries(y)])] else `convert/list`(y) end if
end proc:
