# Sums of relations are sums of their sides; `<` is stricter than `<=`, and a negative factor turns the sides round.
(x = 1) + (y = 2), 2*(x < y), -(x < y), (a < b) + (c <= d), (a <= b) + (c <= d), (a <= b) + 3, 3 - (a <= b), (a <> b) + 1, (a <> b) + (c = d), (x = 1) - (x = 1), I*(a = b), (a > b) - (c > d);
(a <> b) - (c < d); (a <> b) + (c <> d); I*(a < b) + 1; (a < b) + I*(a <= b);
# Products and powers of equations; other relations take a factor of known sign.
(a = b)^2, (a = b)/(c = d), x*(a = b), x*(a <> b), 3*(a < b)/2, -3/2*(a <= b), 2.5*(a < b), x*y^2*(a = b);
x*(a < b); (a < b)*(c = d); (a < b)^2; Pi*(a < b); I*(a < b); (a < b)*(c < d);
# In a procedure they wait for its parameters.
f := proc(x) local y; y := 2; 2*(x = 1) + (x = y) end proc: f(3), f(z); g := proc(x, y) x*(1 < y) end proc: g(3, z), g(-3, z); g(w, z);
