# Commands that fail, or that look like others: the dialogue stays where it is. Variables and parameters change; a
# procedure may change itself.
f := proc(n) local a; a := n; a := a + 1; a end proc:
setbreak(f, 2);
f(1);
where
list
info
next
break 1
a
break nosuch
break f x
break f 99
watch 3
watch
catch foo
catch "boom"
info everything
up 5
down
up x
list 99
list f
print
delete
delete 99
x + 
f(
"unfinished
print 1; 2
for i to 3 do print(i) end do
a, n := 5, 6
error "mine %1", a
RETURN(3)
quit(3) + 
gc()
c
stops();
self := proc(k) debugopts('stopat' = [self, 3]); k; k + 1 end proc: self(3);
k := 10
debugopts('stopat' = [self, -3])
c
deep := proc(n) if n = 0 then DEBUG("bottom"); 0 else deep(n - 1) + 1 end if end proc: deep(30);
up 30
print n
c
g := proc() local t; t := table([1 = 2]); t[1] end proc: setbreak(g, 2): g();
t[1] := t[1] + 40
c
h := proc(x::evaln) x := 3; 4 end proc: unassign('yy'): setbreak(h, 2): h(yy);
x
x := 8
c
yy;
clearstops();
# The register of stops, with names that have values or need quotes.
gg := 5: setwatch('gg'): setwatch([f, gg]): f := proc() global gg; gg := 6; 1 end proc: setbreak(f): setcatch(traperror["x"]): setcatch("yy"):
stops();
clearwatch('gg'); clearcatch("yy"); stops(); clearbreak(f); stops(); clearwatch(); clearcatch(); stops();
setbreak(f, 2): f := 7: stops();
T[1] := proc() 3 end proc: setbreak('T[1]'): stops();
clearstops(); `a b` := proc(`x y`) `x y` + 1 end proc: setbreak(`a b`, 1, `x y` > 3): stops(); `a b`(5);
`x y`
info
c
# A stop in a command, in a condition and in a procedure called by name; quitting leaves nothing behind.
inner := proc(v) v + 1 end proc: top := proc(w) if inner(w) > 2 then "large" else "small" end if end proc: clearstops(): setbreak(inner): setbreak(top, 2): top(5);
inner(40)
where
c
v
c
inner(6)
up
w
c
print %
c
top(5);
quit
%; stops(); clearstops(); top(1);
