import numpy
print(numpy.sin(numpy.arange(1, 1000001)).sum())
