# Parts, conjugates and sizes of expressions: names may stand for any complex number.
Re(x), Im(x), Re(2*x + 3), Im(I*x), Re((1 + I)*x), Re(x*y), Re(2*I*x*y), Im(x/2), Re(abs(x)), Im(abs(x)), Re(Re(x)), Re(conjugate(x)), Im(conjugate(x)), Re(I*abs(x)), Re(abs(x)^2), Re(x^2), Re(2^(1/2)), Im(2^(1/2)), Re(x + I*Re(y));
conjugate(x), conjugate(2*I + x), conjugate(conjugate(x)), conjugate(x^2*y), conjugate(abs(x)), conjugate(f(x)), conjugate(x^(1/2)), conjugate(2^(1/2)), conjugate(1/x);
abs(x), abs(-x), abs(2*x), abs(I*x), abs(-2*x*y), abs(abs(x)), abs(1 + I), abs(3 + 4*I), abs(conjugate(x)), abs(-x - y), abs(x - y), abs(1/x), abs((1 + I)*x), abs(-3*2^(1/2)*x), abs(2^(1/2)), abs(1 - 2^(1/2)), abs(-x - 1), abs(Pi), abs(exp(1) - 3), abs(sin(5));
# What is no number, and what they say nothing about.
traperror(abs([1])), traperror(abs("a")), traperror(abs(x = 1)), traperror(Re([1, 2])), traperror(Im("s")), traperror(conjugate({x})), traperror(abs(Matrix(1)));
abs(x, 1), Re(infinity), abs(infinity), abs(-infinity); abs();
