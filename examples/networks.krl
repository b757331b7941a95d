# Networks of unit resistors, by their matrices.
#
# The matrix of a network (Kirchhoff 1847) has the number of neighbours of each node on its diagonal and -1 for each
# wire. What a current of 1 from one node to another costs in voltage is the resistance between them; a minor counts the
# spanning trees.

network := proc(n, wires)
  local k, w;
  k := Matrix(n, shape = symmetric);
  for w in wires do
    k[op(w)] := k[op(w)] - 1;
    k[w[1], w[1]] := k[w[1], w[1]] + 1;
    k[w[2], w[2]] := k[w[2], w[2]] + 1
  end do;
  k
end proc:

# The last node is earth: its voltage is 0, and the equations of the others have one solution.
resistance := proc(k, a, b)
  local n, current, v;
  n := RowCount(k);
  current := Vector(n, {a = 1, b = -1});
  v := <LinearSolve(k[1..n - 1, 1..n - 1], current[1..n - 1]), 0>;
  v[a] - v[b]
end proc:

trees := k -> Minor(k, 1, 1):

# A square, as a picture: one symmetric half is stored.
square := network(4, [[1, 2], [2, 3], [3, 4], [4, 1]]):
convert(square, `list(list)`), rtable_num_elems(square, Stored), square[4, 1];

# The cube: along an edge, a face and through the middle 7/12, 3/4 and 5/6; 384 spanning trees.
corners := [seq(seq(seq([x, y, z], x = 0..1), y = 0..1), z = 0..1)]:
distance := (p, q) -> add(abs(p[i] - q[i]), i = 1..3):
cube := network(8, [seq(seq(`if`(distance(corners[i], corners[j]) = 1, [i, j], NULL), j = i + 1..8), i = 1..8)]):
resistance(cube, 1, 2), resistance(cube, 1, 4), resistance(cube, 1, 8), trees(cube);

# All pairs of n nodes wired: n^(n - 2) trees (Cayley 1889), 2/n between any two.
whole := n -> network(n, [seq(seq([i, j], j = i + 1..n), i = 1..n)]):
seq(trees(whole(n)), n = 2..7); resistance(whole(10), 3, 7);

# A ladder of n rungs is never better than sqrt(3) - 1 between the ends of the first rung.
ladder := n -> network(2*n, [seq([i, n + i], i = 1..n), seq(op([[i, i + 1], [n + i, n + i + 1]]), i = 1..n - 1)]):
seq(resistance(ladder(n), 1, n + 1), n = 1..5), evalf(resistance(ladder(12), 1, 13)), evalf(3^(1/2) - 1);

# Where a walk along the wires of the cube ends: everywhere alike, in the long run and at even steps.
step := Matrix(8, 8, (i, j) -> `if`(i <> j and cube[i, j] <> 0, 1/3, 0)):
convert(Row(step^2, 1), list), evalb(abs(Row(step^20, 1)[1] - 1/4) < 10^(-9));
