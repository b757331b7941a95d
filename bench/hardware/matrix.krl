# The product of two 200 by 200 matrices, in loops.
fill := proc(A, n, p) local i, j; for i to n do for j to n do A[i, j] := 1/(i + p*j) end do end do end:
product3 := proc(A, B, C, n) local i, j, k, s;
  fill(A, n, 1); fill(B, n, 2);
  for i to n do for j to n do
    s := 0; for k to n do s := s + A[i, k]*B[k, j] end do; C[i, j] := s
  end do end do;
  C[n, n] end:
evalhf(product3(hfarray(1 .. 200, 1 .. 200), hfarray(1 .. 200, 1 .. 200), hfarray(1 .. 200, 1 .. 200), 200));
