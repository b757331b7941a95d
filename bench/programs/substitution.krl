# One name replaced in a sum of 100000 terms, twenty times there and back.
s := y + add(c||i*x^i, i = 1..100000):
to 20 do s := subs(y = z, s): s := subs(z = y, s) od:
has(s, y), nops(s);
