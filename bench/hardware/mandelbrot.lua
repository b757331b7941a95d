local function mandelbrot(n)
  local total = 0
  for i = 1, n do for j = 1, n do
    local cx, cy, x, y, k = -2 + 3*i/n, -1.5 + 3*j/n, 0.0, 0.0, 1
    while k <= 100 and x*x + y*y <= 4 do x, y = x*x - y*y + cx, 2*x*y + cy; k = k + 1 end
    total = total + k
  end end
  return total
end
print(string.format("%.16g", mandelbrot(400)))
