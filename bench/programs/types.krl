# 10^6 elements, half of them integers: each tested by itself, three times over, and lists of them as a
# whole.
work := proc(n) local elements, numbers, x, i, k, answers;
  elements := [seq(`if`(irem(i, 2) = 0, i, "s"), i = 1..n)];
  numbers := [seq(i, i = 1..n)];
  for k to 3 do answers := [seq(type(x, integer), x = elements)] end do;
  answers[1], answers[2], nops(answers), seq(type(numbers, list(posint)), k = 1..3), type(elements, list({integer, string}))
end proc:
lprint(work(10^6));
