# The library knows the names that stand for numbers; who takes them back has no constants.
type(Pi, constant), type(2*Catalan + sin(1), constant), type(x, constant), type(Pi*x, polynom(anything, x));
constants := constants, g: type(g^2, constant), type(Pi, constant);
constants := 'constants': type(Pi, constant), constants;
