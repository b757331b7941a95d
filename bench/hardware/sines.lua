local sin, s = math.sin, 0.0
for i = 1, 1000000 do s = s + sin(i) end
print(string.format("%.16g", s))
