1 + ;
a := := 2;
f(1, 2;
[1, 2);
if then fi;
x y;
3 4;
"a" b;
a^b^c;
a < b < c;
a * -b;
2..3..4;
proc(x) local a; local b; end;
proc(x : integer) end;
for i from 1 from 2 do od;
&1;
%1;
end;
$;
	1 +	*;
a ? b;
`unterminated
name`;
"runs over
the line";
# after each error the next line is read
ok;
parse("1+"), 2;
parse("x := 3"); parse("x := 3", statement); x; parse("a b"); parse("1 2"); parse(""); parse("a; b"); parse(3);
parse("y^2"); parse("(1");
