# Protection, beside other attributes.
protect('aa', 'bb'); aa := 3; type(aa, protected); unprotect('aa'); aa := 4; protect(aa); protect('aa'); protect('aa'); aa := 5; unprotect('aa'); unprotect('aa'); aa := 6; [attributes(aa)], [attributes(bb)];
unprotect('cat'); protect('cat'); cat(a, b); cat := 3; unprotect("s"); protect(3);
setattribute('cc', blue); protect('cc'); attributes(cc); unprotect('cc'); attributes(cc); protect(); cc := 3;
# Assignment to names that are computed.
assign('x', 3); x; assign(y = 4); y; assign([u = 1, {v = 2}]); u, v; assign({w[1] = 5}); w[1]; assign(f(2) = 7); f(2); assign(zz = NULL); [zz]; assign('s', (1, 2)); s; assign('x', 5); x; for i to 2 do assign(cat(q, i), i) end do: q1, q2;
assign(3, 4); assign(3 = 4); assign(x); assign(); assign(bb, 3); assign(bb = 3); assign([u]); assign(a + b = 3);
# Values taken away, entries of tables too.
unassign('x', 'y', 'w[1]', 'f(2)'); x, y, w[1], f(2); unassign(u); unassign('bb'); unassign(); a := table([1 = b, 2 = c]): unassign('a[1]'): op(eval(a));
f := proc() local l; assign('l', 3); [l, assigned(l)], unassign('l'), assigned(l) end proc: f();
