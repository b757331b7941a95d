# A parser of arithmetic on strings: text to a syntax tree, and an interpreter of the tree.
#
#   sum     := product { (+|-) product }
#   product := power { (*|/) power }
#   power   := atom [ ^ power ]
#   atom    := number | name | ( sum ) | - atom

digits := table([seq(cat("", d) = d, d = 0..9)]):
isDigit := c -> assigned(digits[c]):
isLetter := proc(c) evalb(c >= "a") and evalb(c <= "z") end proc:

# The text as a list of tokens: integers, names as strings, operators as one-character strings.
tokens := proc(text::string)
  local chars, i, n, found, value, word;
  chars := [seq(c, c = text)];
  n := nops(chars); i := 1; found := NULL;
  while i <= n do
    if chars[i] = " " then i := i + 1
    elif isDigit(chars[i]) then
      value := 0;
      while i <= n and isDigit(chars[i]) do value := 10*value + digits[chars[i]]; i := i + 1 end do;
      found := found, value
    elif isLetter(chars[i]) then
      word := "";
      while i <= n and isLetter(chars[i]) do word := cat(word, chars[i]); i := i + 1 end do;
      found := found, word
    elif member(chars[i], ["+", "-", "*", "/", "^", "(", ")"]) then
      found := found, chars[i]; i := i + 1
    else error "unexpected character %1 at position %2", chars[i], i
    end if
  end do;
  [found]
end proc:

tokens("12 + x*(3 - yy)^2");

# A parser is a closure over its tokens and the place it has reached.
parseText := proc(text::string)
  local input, at, peek, take, sum, product, power, atom, tree;
  input := tokens(text); at := 1;
  peek := () -> `if`(at <= nops(input), input[at], "end"):
  take := proc() at := at + 1; input[at - 1] end proc;
  sum := proc() local left, o;
    left := product();
    while member(peek(), ["+", "-"]) do o := take(); left := [o, left, product()] end do;
    left
  end proc;
  product := proc() local left, o;
    left := power();
    while member(peek(), ["*", "/"]) do o := take(); left := [o, left, power()] end do;
    left
  end proc;
  power := proc() local base;
    base := atom();
    if peek() = "^" then take(); ["^", base, power()] else base end if
  end proc;
  atom := proc() local t, inner;
    t := peek();
    if t = "-" then take(); ["neg", atom()]
    elif t = "(" then
      take(); inner := sum();
      if peek() <> ")" then error "`)` expected, but found %1", peek() end if;
      take(); inner
    elif type(t, integer) then take()
    elif type(t, string) and isLetter(t[1]) and t <> "end" then take()
    else error "operand expected, but found %1", t
    end if
  end proc;
  tree := sum();
  if peek() <> "end" then error "operator expected, but found %1", peek() end if;
  tree
end proc:

parseText("1 + 2*3");
parseText("(1 + 2)*3 - -x^2^y");

# Trees evaluate over an environment, a table from names to values. What is not there stays a symbol.
evaluate := proc(tree, environment)
  local o, a, b;
  if type(tree, integer) then return tree end if;
  if type(tree, string) then
    return `if`(assigned(environment[tree]), environment[tree], cat(``, tree))
  end if;
  o := tree[1]; a := evaluate(tree[2], environment);
  if o = "neg" then return -a end if;
  b := evaluate(tree[3], environment);
  if o = "+" then a + b elif o = "-" then a - b elif o = "*" then a*b
  elif o = "/" then a/b else a^b end if
end proc:

calculate := text -> evaluate(parseText(text), table([args[2..-1]])):
calculate("1 + 2*3"), calculate("(1 + 2)*3"), calculate("2^3^2"), calculate("7 - 4 - 2");
calculate("100/7/2"), calculate("-2^2"), calculate("2*(3 + 4)*5");
calculate("a*x^2 + b*x + c");
calculate("a*x^2 + b*x + c", "a" = 1, "b" = -3, "c" = 2, "x" = 5);

# What is wrong is told with its place or its token.
calculate("1 + ");
calculate("(1 + 2");
calculate("1 2");
calculate("3 $ 4");
calculate("1/(2 - 2)");
