# An expression of 10^6 calls that share their parts, searched ten times for what it doesn't hold.
work := proc(n) local x, y, i, k;
  x := a; y := b; for i to n do x, y := f(x, y), x end do;
  k := 0; to 10 do if not has(x, z) then k := k + 1 end if end do; k
end proc:
lprint(work(10^6));
