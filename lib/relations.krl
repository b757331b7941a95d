# Sums and products of relations, side by side. The kernel hands over pairs: of terms and coefficients in a sum, of
# bases and exponents in a product.

# An equation leaves the other relation as it is, and `<` is stricter than `<=`.
`simpl/relation` := proc(a, b)
  description "simpl/relation(a, b): the operator of the sum of a relation with operator a and one with operator b";
  if a = `=` then return b end if;
  if b = `=` or a = b and a <> `<>` then return a end if;
  if a = `<>` or b = `<>` then error "a relation with `<>` and one with `%1` have no sum", `if`(a = `<>`, b, a) end if;
  `<`
end proc:

# One side of c*t. A negative factor exchanges the sides of an inequality.
`simpl/relationside` := proc(t, c, side)
  description "simpl/relationside(t, c, side): left side (1) or right side (2) of the relation or expression t times c";
  if not type(t, relation) then return c*t end if;
  if (op(0, t) = `<` or op(0, t) = `<=`) and type(c, negative) then c*op(3 - side, t) else c*op(side, t) end if
end proc:

`simpl/factorof` := proc(t, c)
  description "simpl/factorof(t, c): checks that the relation t can be multiplied by c";
  if (op(0, t) = `<` or op(0, t) = `<=`) and not type(c, numeric) then
    error "cannot multiply %1 by %2, the sign of which is unknown", t, c
  end if
end proc:

`simpl/relopsum` := proc()
  description "simpl/relopsum(t1, c1, t2, c2, ...): the relation that c1*t1 + c2*t2 + ... comes to";
  local i, operation;
  operation := `=`;
  for i by 2 to nargs do
    if type(args[i], relation) then
      `simpl/factorof`(args[i], args[i + 1]);
      operation := `simpl/relation`(operation, op(0, args[i]))
    end if
  end do;
  operation(add(`simpl/relationside`(args[2*i - 1], args[2*i], 1), i = 1..nargs/2),
            add(`simpl/relationside`(args[2*i - 1], args[2*i], 2), i = 1..nargs/2))
end proc:

# Equations multiply and have powers side by side; any other relation has one factor, beside expressions.
`simpl/reloprod` := proc()
  description "simpl/reloprod(b1, e1, b2, e2, ...): the relation that b1^e1 * b2^e2 * ... comes to";
  local i, factor, other;
  other := 0;
  for i by 2 to nargs do
    if type(args[i], relation) and op(0, args[i]) <> `=` then
      if other <> 0 or args[i + 1] <> 1 then error "cannot multiply %1 by a relation or raise it to a power", args[i] end if;
      other := i
    end if
  end do;
  if other = 0 then
    return mul(`if`(type(args[2*i - 1], relation), lhs(args[2*i - 1]), args[2*i - 1])^args[2*i], i = 1..nargs/2) =
           mul(`if`(type(args[2*i - 1], relation), rhs(args[2*i - 1]), args[2*i - 1])^args[2*i], i = 1..nargs/2)
  end if;
  factor := 1;
  for i by 2 to nargs do
    if i = other then next end if;
    if type(args[i], relation) then error "cannot multiply %1 by a relation or raise it to a power", args[other] end if;
    factor := factor*args[i]^args[i + 1]
  end do;
  `simpl/factorof`(args[other], factor);
  op(0, args[other])(`simpl/relationside`(args[other], factor, 1), `simpl/relationside`(args[other], factor, 2))
end proc:
