import numpy
n = 400
steps = numpy.arange(1, n + 1)
cx, cy = numpy.meshgrid(-2 + 3*steps/n, -1.5 + 3*steps/n, indexing='ij')
x, y, k = numpy.zeros((n, n)), numpy.zeros((n, n)), numpy.ones((n, n))
with numpy.errstate(all='ignore'):
    for round in range(100):
        inside = x*x + y*y <= 4
        x, y = numpy.where(inside, x*x - y*y + cx, x), numpy.where(inside, 2*x*y + cy, y)
        k += inside
print(k.sum())
