import numpy
steps = numpy.arange(1, 201)
i, j = numpy.meshgrid(steps, steps, indexing='ij')
print((1/(i + j) @ (1/(i + 2*j)))[-1, -1])
