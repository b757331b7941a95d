# Every name that writer `me` has saved reads back whole. Prints how many there are, or what is wrong.

count := 0:
for i to 20 do
  value := eval(cat(me, "w", i)):
  if type(value, list) then
    if value[1] <> i or nops({op(2 .. -1, value)}) <> 1 then print(bad, i, value) end if;
    count := count + 1
  end if
end do:
c := cat(me, "c"):
if type(eval(c), procedure) then
  if not type(c(), integer) then print(bad, c()) end if;
  count := count + 1
end if:
if target <> "" and not type([iolib(31, "list", target)], list) then print(bad, archive) end if:
print(whole, count);
