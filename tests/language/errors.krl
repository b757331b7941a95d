# How a message takes its parameters.
error "no %1 here", 7; error "x", 3; error 3, 4; error "all: %0", 1, b, "c"; error "%2 before %1", a, b;
error "the %-1, %-2, %-3, %-4", 1, 2, 11, 23; error "100%% of %1", x; error "%1", a, b; error "sequence %1 and %2", (1, 2);
error; error "text %1 is missing";
# The last error stays to be looked at.
lasterror; lastexception;
f := proc(x) error "bad %1", x end proc: f(3); traperror(f(4)); lasterror; traperror(5); lasterror;
g := proc(x) f(x) end proc: g(1);
# `try` takes what its texts begin.
try f(1) catch "bad": "caught" end try; try f(1) catch "good": "no" end try; try f(1) catch "x", "ba": 1 catch: 2 end try;
try 1 catch: 2 finally 3 end try; try f(2) finally "done" end try;
try f(1) catch: error "again %1", 9 finally "cleaned" end try;
try try f(1) catch "other": 1 end try catch "bad": "outer" end try;
h := proc() try return 1 finally print("left") end try; 2 end proc: h();
# The value to return outlives what `finally` calls; what an error noted outlives what `finally` collects.
k := proc() return 7 end proc: h := proc() try return [h, 5] finally k() end try end proc: h();
f := proc(x) local y; y := [x, 1]; error "bad %1", y end proc:
h := proc() try f(3) finally gc(); seq([i, k()], i = 1..5) end try end proc:
printlevel := 3: h(); printlevel := 1:
for i to 3 do try if i = 2 then next fi; i catch: end try od;
# What no trap takes.
r := proc(n) r(n + 1) end proc: r(1); try r(1) catch: "never" end try; 1 + 1;
ASSERT(false); timelimit(0.05, proc() do od end proc()); timelimit(-2, 1);
return 3; goto(here);
try 1 catch: 2 catch "a": 3 end try;
quit(300); quit("a");
