import numpy
