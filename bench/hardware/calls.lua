local function f(x, y) return x/2 + y end
local s = 0.0
for i = 1, 1000000 do s = f(s, i) end
print(string.format("%.16g", s))
