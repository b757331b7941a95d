# N queens by backtracking, in two styles.

# A search with the board in three tables of attacked lines. `place` is a closure: the tables belong to
# the call of `queens` around it.
queens := proc(n::posint)
  local column, rising, falling, position, solutions, first, place;
  solutions := 0; first := NULL;
  place := proc(row)
    local c;
    if row > n then
      solutions := solutions + 1;
      if solutions = 1 then first := [seq(position[c], c = 1..n)] end if;
      return
    end if;
    for c to n do
      if column[c] <> 1 and rising[row + c] <> 1 and falling[row - c] <> 1 then
        position[row] := c;
        column[c] := 1; rising[row + c] := 1; falling[row - c] := 1;
        place(row + 1);
        column[c] := 0; rising[row + c] := 0; falling[row - c] := 0
      end if
    end do
  end proc;
  place(1);
  [solutions, first]
end proc:

# The known counts are 1, 0, 0, 2, 10, 4, 40, 92.
seq(queens(n)[1], n = 1..8);
board := queens(8)[2];

# The same count without anything that changes: the sets of attacked lines are integers, a bit a line,
# and go down as arguments.
bitAnd := proc(a, b)
  option remember;
  if a = 0 or b = 0 then 0
  else 2*bitAnd(iquo(a, 2), iquo(b, 2)) + irem(a, 2)*irem(b, 2)
  end if
end proc:
bitOr := (a, b) -> a + b - bitAnd(a, b):

count := proc(n, row, columns, left, right)
  local c, taken, total, all;
  if row > n then return 1 end if;
  all := 2^n - 1;
  taken := bitOr(columns, bitOr(bitAnd(left, all), right));
  total := 0;
  for c from 0 to n - 1 do
    if irem(iquo(taken, 2^c), 2) = 0 then
      total := total + count(n, row + 1, columns + 2^c, 2*bitOr(left, 2^c), iquo(bitOr(right, 2^c), 2))
    end if
  end do;
  total
end proc:
seq(count(n, 1, 0, 0, 0), n = 1..6);

# A board as text, a line a row.
for row to 8 do
  lprint(cat(seq(`if`(board[row] = c, "Q ", ". "), c = 1..8)))
end do;

# No two of them attack each other.
attacks := proc(b, i, j) b[i] = b[j] or abs(b[i] - b[j]) = j - i end proc:
evalb({seq(seq(evalb(attacks(board, i, j)), j = i + 1..8), i = 1..8)} = {false});
