# A series that ends before its denominator becomes 0, ones that don't, and the unit circle.
hyper := `evalf/hypergeom/kernel`: hyper([-2, 1], [-3], 2), hyper([-2], [-2], 1/2); hyper([-3], [-2], 1); hyper([1], [-2], 1);
hyper([1, 2], [3], 1); hyper([1, 2], [7/2], 1), hyper([1, 2], [3], -1), evalf(`hypergeom/kernel`([1, 2], [7/2], 1));
