# Sums, products and powers of expressions that hold rtables. The kernel calls the first three by name: it hands over the
# terms of a sum or the factors of a product, those without an rtable in one piece each.

`rtable/Sum` := proc()
  description "rtable/Sum(a, b, ...): the sum; a scalar is added to each element of an Array, and to the diagonal of a square Matrix";
  local x, scalars, total, n;
  scalars := add(`if`(type(x, 'rtable'), 0, x), x = [args]);
  total := NULL;
  for x in [args] do
    if type(x, 'rtable') then
      if total = NULL then total := x
      else
        `rtable/checkalike`(total, x);
        total := `rtable/combine`(total, 1, x, 1)
      end if
    end if
  end do;
  if scalars = 0 then return total end if;
  if op(0, total) = 'Array' then return map(x -> x + scalars, total) end if;
  if op(0, total) <> 'Matrix' then error "cannot add a scalar to a Vector" end if;
  n := op(1, total);
  if n[1] <> n[2] then error "cannot add a scalar to a Matrix that is not square" end if;
  `rtable/combine`(total, 1, rtable('scalar'[scalars], 1..n[1], 1..n[2], subtype = 'Matrix'), 1)
end proc:

`rtable/checkalike` := proc(a, b)
  description "rtable/checkalike(a, b): refuses two rtables of different kinds or sizes";
  if op(0, a) <> op(0, b) then error "the terms of a sum must be alike, but are %1 and %2", op(0, a), op(0, b) end if;
  if [op(`if`(op(0, a) = 'Array', 2, 1), a)] <> [op(`if`(op(0, a) = 'Array', 2, 1), b)] then
    error "the terms of a sum must be of one size, but are %1 and %2", `rtable/sizetext`(a), `rtable/sizetext`(b)
  end if
end proc:
`rtable/sizetext` := proc(a)
  description "rtable/sizetext(a): the size of an rtable as a message tells it";
  local k, sizes, text;
  sizes := [op(`if`(op(0, a) = 'Array', 2, 1), a)];
  text := "";
  for k to nops(sizes) do text := cat(text, `if`(k > 1, " x ", ""), convert(sizes[k], 'string')) end do;
  text
end proc:

`rtable/combine` := proc(a, p, b, q)
  description "rtable/combine(a, p), rtable/combine(a, p, b, q): p*a, or p*a + q*b, element by element";
  `kernel/native`("rtable/combine", args)
end proc:

`rtable/Product` := proc()
  description "rtable/Product(a, b, ...): the product of scalars and one rtable, or of Arrays element by element";
  local x, scalars, arrays, total;
  scalars := mul(`if`(type(x, 'rtable'), 1, x), x = [args]);
  arrays := select(type, [args], 'rtable');
  total := arrays[1];
  for x in arrays[2..-1] do
    if op(0, total) <> 'Array' or op(0, x) <> 'Array' then
      error "the factors of `*` have no order: a %1 and a %2 are multiplied by `.`", op(0, total), op(0, x)
    end if;
    `rtable/checkalike`(total, x);
    total := `kernel/native`("rtable/multiply", total, x)
  end do;
  if scalars = 1 then total else `rtable/combine`(total, scalars) end if
end proc:

`rtable/Power` := proc(a, n)
  description "rtable/Power(a, n): an integer power of a square Matrix, or of each element of an Array";
  local result, square, k, size;
  if not type(a, 'rtable') then error "a power with the exponent %1 is not defined", op(0, n) end if;
  if op(0, a) = 'Array' then return map(x -> x^n, a) end if;
  if op(0, a) <> 'Matrix' then error "a Vector has no powers" end if;
  size := op(1, a);
  if size[1] <> size[2] then error "powers of a %1 x %2 Matrix are not defined", size end if;
  if not type(n, 'integer') then error "an integer exponent of a Matrix expected, but received %1", n end if;
  square := `if`(n < 0, Inverse(a), a);
  k := abs(n);
  result := NULL;
  while k > 0 do
    if irem(k, 2) = 1 then result := `if`(result = NULL, square, `rtable/times`(result, square)) end if;
    k := iquo(k, 2);
    if k > 0 then square := `rtable/times`(square, square) end if
  end do;
  if result = NULL then IdentityMatrix(size[1]) else result end if
end proc:

# Hardware floats are multiplied as such; everything else exactly, or with `Digits` digits.
`rtable/times` := proc(a, b)
  description "rtable/times(a, b): the product of two Matrices or Vectors";
  `kernel/native`("rtable/times", a, b)
end proc:

`.` := proc()
  description "a . b . ...: the product of Matrices and Vectors from the left, with scalars among them; without any of these it stays as it is";
  local x, total;
  if select(type, [args], 'rtable') = [] then return 'procname'(args) end if;
  total := args[1];
  for x in [args[2..-1]] do
    if type(total, 'rtable') and type(x, 'rtable') then total := `rtable/times`(total, x) else total := total*x end if
  end do;
  total
end proc:

`linalg/matmult` := proc(a, b)
  description "linalg/matmult(a, b): the product of two Matrices or Vectors; of anything else it stays as it is";
  if type(a, 'rtable') and type(b, 'rtable') then `rtable/times`(a, b) else 'procname'(a, b) end if
end proc:

Transpose := proc(a::rtable)
  description "Transpose(a): rows as columns; a column Vector as a row Vector";
  local r;
  if op(0, a) <> 'Vector'['row'] and op(0, a) <> 'Vector'['column'] then return `kernel/transpose`(a) end if;
  r := rtable(a);
  rtable_options(r, 'subtype' = `if`(op(0, a) = 'Vector'['row'], 'Vector'['column'], 'Vector'['row']));
  r
end proc:
HermitianTranspose := proc(a::rtable)
  description "HermitianTranspose(a): the transposed array with the conjugate of each element";
  map(conjugate, Transpose(a))
end proc:
