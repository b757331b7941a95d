# Saves the names w1 to w20 of writer `me` again and again into `target`, each a list that tells its number and round,
# with a closure whose local is saved as an object of its own, and rebuilds the archive now and then.

closure := proc(k) local hidden; hidden := k; proc() hidden end proc end proc:
saveAll := proc(k)
  local i, names;
  names := "";
  for i to 20 do
    assign_(cat(me, "w", i), [i, seq(k, j = 1 .. 50 + 10*irem(k, 7))]);
    names := cat(names, me, "w", i, ", ")
  end do;
  assign_(cat(me, "c"), closure(k));
  parse(cat("save ", names, me, "c, target:"), statement)
end proc:
assign_ := proc(name, value) global passed; passed := value; parse(cat(name, " := eval(passed):"), statement) end proc:
for k from first to last do
  saveAll(k);
  if irem(k, 4) = 0 then iolib(31, "pack", target) end if;
  if irem(k, 5) = 0 then iolib(31, "reindex", target) end if
end do:
