local function logistic(r, n) local x = 0.5; for i = 1, n do x = r*x*(1 - x) end; return x end
print(string.format("%.16g", logistic(3.9, 20000000)))
