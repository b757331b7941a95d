def mandelbrot(n):
    total = 0
    for i in range(1, n + 1):
        for j in range(1, n + 1):
            cx, cy, x, y, k = -2 + 3*i/n, -1.5 + 3*j/n, 0.0, 0.0, 1
            while k <= 100 and x*x + y*y <= 4: x, y, k = x*x - y*y + cx, 2*x*y + cy, k + 1
            total += k
    return total
print(mandelbrot(400))
