# Talks to other programs over pipes: `sort` puts words in order, `bc` computes, and its digits are held against ours.

words := ["pear", "fig", "apple", "quince", "date"]:
f := popen("sort > sorted.txt", WRITE):
writeline(f, op(words)):
pclose(f);
readlines("sorted.txt");
removefile("sorted.txt");

# Factorials to 40, computed over there; the arithmetic here divides each by the one before.
f := popen("echo 'f=1; for (k=1; k<=40; k++) { f=f*k; f }' | BC_LINE_LENGTH=0 bc", READ):
values := []:
line := readline(f):
while line <> 0 do
  values := [op(values), op(sscanf(line, "%d"))];
  line := readline(f)
end do:
pclose(f);
[seq(values[k + 1]/values[k], k = 1..nops(values) - 1)];
values[-1];
