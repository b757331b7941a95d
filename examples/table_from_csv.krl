# Reads comma-separated values, groups them by a column, and prints a table. The file, of 10^5 rows, is made first; the
# sums come out as the closed forms below say.

cities := ["Basel", "Turin", "Gent", "Lund", "Porto, Norte"]:
rows := [["city", "day", "amount"], seq([cities[irem(k, 5) + 1], irem(k, 365) + 1, k/4.], k = 1..10^5)]:
writecsv("sales.csv", rows);

# ---- the report

report := proc(name)
  local sales, total, count, row, city;
  sales := readcsv(name)[2..-1];
  for row in sales do
    city := row[1];
    if assigned(total[city]) then
      total[city] := total[city] + row[3];
      count[city] := count[city] + 1
    else
      total[city] := row[3];
      count[city] := 1
    end if
  end do;
  printf("%-14s %8s %14s %10s\n%s\n", "city", "rows", "total", "mean", repeattext("-", 49));
  for city in sort(map(op, [indices(total)])) do
    printf("%-14s %8d %14.2f %10.2f\n", city, count[city], total[city], total[city]/count[city])
  end do
end proc:

Digits := 15:
report("sales.csv");
# Each city has every fifth k: the sum of k/4 over k = r, r + 5, ... .
for r from 0 to 4 do printf("%.2f ", add(5*j + r, j = `if`(r = 0, 1..20000, 0..19999))/4) end do;
printf("\n"):
removefile("sales.csv");
