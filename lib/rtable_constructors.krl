# Matrices and Vectors: constructors, the forms <a, b> and <a | b>, and what is shown of large ones.

# The sizes come first, then at most one initializer, then options.
`rtable/build` := proc(kind, rank)
  description "rtable/build(kind, rank, sizes, initializer, options): the rtable that a call of Matrix or Vector asks for";
  local k, x, bounds, start, settings, name;
  bounds := NULL;
  settings := NULL;
  start := [];
  for k from 3 to nargs while nops([bounds]) < rank do
    if type(args[k], nonnegint) then bounds := bounds, 1..args[k]
    elif type(args[k], range) then bounds := bounds, args[k]
    else break end if
  end do;
  if rank = 2 and nops([bounds]) = 1 then bounds := bounds, bounds end if;
  for k from k to nargs do
    x := args[k];
    if type(x, `=`) and lhs(x) = 'symbol' then
      name := rhs(x);
      start := [`if`(rank = 1, i -> name[i], (i, j) -> name[i, j])]
    elif type(x, `=`) or x = 'readonly' or x = 'transpose' then settings := settings, x
    elif start = [] then start := [x]
    else error "`%1` is one argument too many, or stands in the wrong place", x end if
  end do;
  `rtable/start`(kind, rank, [bounds], start, settings)
end proc:

# What a Matrix takes beyond an rtable: a flat list, rows of several lengths, a symbol as the value of each element.
`rtable/start` := proc(kind, rank, bounds, start)
  description "rtable/start(kind, rank, bounds, start, options): the rtable for an initializer in a list, or none";
  local x, i, n, settings, given;
  settings := 'subtype' = kind, args[5..-1];
  if start = [] then return rtable(op(bounds), settings) end if;
  x := start[1];
  if type(x, 'rtable') and rank = 2 and rtable_num_dims(x) = 1 then x := convert(x, 'list') end if;
  if type(x, list) and rank = 2 then
    if `rtable/isdiagonal`(args[5..-1]) and not type(x, list(list)) then
      n := nops(x);
      given := {seq((i, i) = x[i], i = 1..n)};
      return rtable(`if`(bounds = [], 1..n, NULL), `if`(bounds = [], 1..n, op(bounds)), given, settings)
    end if;
    if not type(x, list(list)) then
      if bounds = [] then x := [x]
      elif nops(x) > 0 then n := rhs(bounds[2]); x := chunks(x, max(n, 1)) end if
    end if;
    if bounds = [] and x <> [] then
      return rtable(1..nops(x), 1..max(0, seq(nops(i), i = x)), x, settings)
    end if
  elif type(x, algebraic) and not type(x, {'numeric', 'procedure', 'rtable', 'table'}) and not type(x, 'function') then
    return rtable(op(bounds), fill = x, settings)
  end if;
  rtable(op(bounds), x, settings)
end proc:

`rtable/isdiagonal` := proc()
  description "rtable/isdiagonal(options): whether one of the options is shape = diagonal";
  member('shape' = 'diagonal', {args}) or member('shape' = ['diagonal'], {args})
end proc:

Matrix := proc()
  description "Matrix(n), Matrix(m, n), Matrix(m, n, start), Matrix(start), each with options: a Matrix; start is a list of rows, a list of all elements, a procedure of two indices, a set or table of entries, another array, or the value of each element; options are those of rtable, shape = s and symbol = a";
  `rtable/build`('Matrix', 2, args)
end proc:

Vector := proc()
  description "Vector(n), Vector(n, start), Vector(start), each with options, and Vector[row](...): a Vector, a column unless it is said otherwise; start and options are as for Matrix, with one index";
  `rtable/build`(`if`(type(procname, 'indexed'), 'Vector'[op(1, procname)], 'Vector'['column']), 1, args)
end proc:

`type/Matrix` := proc(x)
  description "type/Matrix(x): whether x is a Matrix";
  type(x, 'rtable') and op(0, eval(x)) = 'Matrix'
end proc:
`type/Vector` := proc(x)
  description "type/Vector(x): whether x is a Vector, row or column";
  type(x, 'rtable') and op(0, op(0, eval(x))) = 'Vector'
end proc:

IdentityMatrix := proc(n::nonnegint)
  description "IdentityMatrix(n): the n by n identity, which takes no storage and can't be changed";
  rtable('identity', 1..n, 1..n, subtype = 'Matrix')
end proc:
ZeroMatrix := proc(m::nonnegint, n::nonnegint)
  description "ZeroMatrix(n), ZeroMatrix(m, n): the zero Matrix, which takes no storage and can't be changed";
  rtable('zero', 1..m, 1..args[nargs], subtype = 'Matrix')
end proc:
ZeroVector := proc(n::nonnegint)
  description "ZeroVector(n): the zero Vector, which takes no storage and can't be changed";
  rtable('zero', 1..n, subtype = 'Vector'['column'])
end proc:
DiagonalMatrix := proc(d::{list, rtable})
  description "DiagonalMatrix(d): the square Matrix with the elements of a list or Vector on its diagonal";
  Matrix(convert(d, 'list'), shape = 'diagonal')
end proc:

# ---- <a, b> and <a | b>

# Rows and columns of an operand; a scalar is 1 by 1.
`rtable/extents` := proc(x)
  description "rtable/extents(x): the numbers of rows and columns of a Matrix, a Vector or a scalar";
  if not type(x, 'rtable') then 1, 1
  elif op(0, x) = 'Matrix' then op(1, x)
  elif op(0, x) = 'Vector'['row'] then 1, op(1, x)
  elif op(0, x) = 'Vector'['column'] then op(1, x), 1
  else error "a Matrix, a Vector or a scalar expected, but received an Array" end if
end proc:
`rtable/elementat` := proc(x, i, j)
  description "rtable/elementat(x, i, j): the element of a Matrix, Vector or scalar, seen as a matrix";
  if not type(x, 'rtable') then x elif op(0, x) = 'Matrix' then x[i, j] elif op(0, x) = 'Vector'['row'] then x[j] else x[i] end if
end proc:

# One above the other when `down`, else side by side.
`rtable/join` := proc(down, parts)
  description "rtable/join(down, parts): the parts of a list in one Matrix, or, where all are Vectors of that direction or scalars, in one Vector";
  local sizes, vectors, n, r, x, i, j, k, along, across, direction;
  sizes := [seq([`rtable/extents`(x)], x = parts)];
  direction := `if`(down, 'Vector'['column'], 'Vector'['row']);
  vectors := true;
  for x in parts do if type(x, 'rtable') and op(0, x) <> direction then vectors := false end if end do;
  if down then along, across := 1, 2 else along, across := 2, 1 end if;
  for x in sizes do
    if x[across] <> sizes[1][across] then
      error "parts of %1 and %2 %3 do not fit together", sizes[1][across], x[across], `if`(down, columns, rows)
    end if
  end do;
  n := add(x[along], x = sizes);
  if vectors then r := rtable(1..n, subtype = direction)
  else r := rtable(1..`if`(down, n, sizes[1][1]), 1..`if`(down, sizes[1][2], n), subtype = 'Matrix') end if;
  n := 0;
  for k to nops(parts) do
    for i to sizes[k][1] do
      for j to sizes[k][2] do
        if vectors then r[n + i + j - 1] := `rtable/elementat`(parts[k], i, j)
        elif down then r[n + i, j] := `rtable/elementat`(parts[k], i, j)
        else r[i, n + j] := `rtable/elementat`(parts[k], i, j) end if
      end do
    end do;
    n := n + sizes[k][along]
  end do;
  r
end proc:

`rtable/ConstructColumn` := proc()
  description "rtable/ConstructColumn(a, b, ...): the value of <a, b, ...>: scalars and columns as a column Vector, rows and Matrices one above the other as a Matrix";
  `rtable/join`(true, [args])
end proc:
`rtable/ConstructRow` := proc()
  description "rtable/ConstructRow(a, b, ...): the value of <a | b | ...>: scalars and rows as a row Vector, columns and Matrices side by side as a Matrix";
  `rtable/join`(false, [args])
end proc:

`rtable/ranges` := proc(a)
  description "rtable/ranges(a): the ranges of the indices of an rtable";
  local n;
  if op(0, a) = 'Array' then op(2, a) else seq(1..n, n = [op(1, a)]) end if
end proc:

# ---- display

# Text of any length can be read by nobody: beyond this the call that makes the array stands for it.
`print/rtable` := proc(r, name)
  description "print/rtable(r, name): what is shown of an rtable: itself, or, when it has more than 10^5 elements, the call that makes its shape";
  local head, size, settings;
  if rtable_num_elems(r, 'All') <= 100000 then return r end if;
  head := op(0, r);
  if head = 'Array' then size := rtable_indfns(r), op(2, r) else size := op(1, r) end if;
  settings := op(`if`(head = 'Array', 4, 3), r);
  if rtable_indfns(r) = NULL and rtable_num_elems(r) <= 100 and rtable_options(r, 'storage') <> 'scalar' then size := size, op(`if`(head = 'Array', 3, 2), r) end if;
  subs('f' = head, 'f'(size, settings))
end proc:
