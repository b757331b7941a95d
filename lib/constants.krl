# The names that stand for numbers and truth values: no variables of polynomials, and constants to `type`.

constants := false, gamma, infinity, true, Catalan, FAIL, Pi:
