# Memory that runs out ends the statement, also inside `try`, and what it has left is there for the next.
kernelopts(datalimit = 60000):
fill := proc() local t, i; t := table(); for i do t[i] := [i, f(i)] end do end proc:
fill(); 1 + 1; try fill() catch: "never" finally print(ended) end try; 2 + 2;
nops([seq(7, k = 1..300000)]);   # one block: the memory that was given back hangs together
l := [seq([k, g(k)], k = 1..100000)]: nops(l), evalb(kernelopts(bytesalloc) < 60*10^6);
s := "s": to 40 do s := cat(s, s) end do: evalb(length(s) < 10^8); 3 + 3;
