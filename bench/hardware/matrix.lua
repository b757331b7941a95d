local n = 200
local function fill(p) local A = {}; for i = 1, n do A[i] = {}; for j = 1, n do A[i][j] = 1/(i + p*j) end end; return A end
local A, B, C = fill(1), fill(2), {}
for i = 1, n do
  local row, out = A[i], {}
  for j = 1, n do local s = 0.0; for k = 1, n do s = s + row[k]*B[k][j] end; out[j] = s end
  C[i] = out
end
print(string.format("%.16g", C[n][n]))
