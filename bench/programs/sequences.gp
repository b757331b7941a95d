work(n) = { my(squares = vector(n, i, i^2), shifted = apply(x -> x + 1, squares));
  vecsum(squares) + vecsum(shifted); }
print(vector(5, i, work(10^5 + i)))
