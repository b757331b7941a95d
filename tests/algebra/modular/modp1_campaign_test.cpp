// Every selector of `modp1` against a plain model, on random cases.

#include "algebra/modular/selector_campaign.h"

namespace korel::test {

namespace {

template <class Case>
using ListOf = typename Case::List;

// ---- making and showing

template <class C>
void constant(C& c) {
  const auto value = c.residue();
  DAG any = simpl(add(c.integer(value), mul(c.m, c.small(static_cast<std::int64_t>(c.below(5)) - 2))));
  if (c.chance(20)) return c.expectInvalid({any, c.small(3)});
  c.expect({any, c.x}, c.dense(c.plain.constant(value)));
}
template <class C>
void one(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.small(3)});
  c.expect({c.x}, c.dense({c.plain.one()}));
}
template <class C>
void zero(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.dense({})});
  c.expect({c.x}, c.dense({}));
}
// The expression with these coefficients, lowest first.
template <class C>
DAG expression(C& c, const std::vector<DAG>& coefficients, DAG variable) {
  DAG sum = newl2(static_cast<Word>(2 * coefficients.size() + 1), SUM);
  for (std::size_t i = 0; i < coefficients.size(); ++i) {
    const auto at = static_cast<Word>(2 * i + 1);
    sum[at] = i == 0 ? coefficients[i] : simpl(new3(PROD, variable, c.small(static_cast<std::int64_t>(i))));
    sum[at + 1] = i == 0 ? cons1 : coefficients[i];
  }
  return simpl(sum);
}
// The expression, with coefficients that aren't reduced; or the list of them.
template <class C>
void convertIn(C& c) {
  const ListOf<C> a = c.list();
  std::vector<DAG> coefficients;
  for (const auto& number : a)
    coefficients.push_back(simpl(add(c.integer(number), mul(c.m, c.small(static_cast<std::int64_t>(c.below(7)) - 3)))));
  if (c.chance(20)) return c.expect({parsed("x/2"), c.x}, Answer{DAG(), "modp1: invalid arguments"});
  c.expect({c.chance(2) ? expression(c, coefficients, c.x) : listOf(coefficients), c.x}, c.dense(a));
}
template <class C>
void convertOut(C& c) {
  const ListOf<C> a = c.list();
  std::vector<DAG> coefficients;
  for (const auto& number : a) coefficients.push_back(c.integer(number));
  if (c.chance(2)) return c.expect({c.dense(a)}, expression(c, coefficients, c.x));
  c.expect({c.dense(a), c.y}, expression(c, coefficients, c.y));
}
// Drawn from the top, the leading coefficient last: by the generator that a small modulus has, or by what the library's
// `rand` gives, here a counter.
template <class C>
void randpoly(C& c) {
  const long degree = static_cast<long>(c.below(20));
  if (c.chance(20)) return c.expectInvalid({c.x, c.small(-1)});
  ResetModRand();
  if (valueOf("rand") == naminstall("rand"))
    say("rand := proc(n) proc() global drawn; drawn := drawn + 1; modp(drawn, n) end end:");
  say("drawn := 0:");
  DAG a = c.run({c.x, c.small(degree)});
  EXPECT_EQ(denseDegree(a), degree);
  EXPECT_TRUE(a[1] == c.x && a[2] == c.m);
  const bool isRaw = isImmediate(c.m) && immediateValue(c.m) <= largestRawModulus;
  std::uint64_t seed = 1, drawn = 0;
  auto draw = [&] {
    if (!isRaw) return ++drawn;
    return (seed = seed * 21216 % 46337) % static_cast<std::uint64_t>(immediateValue(c.m));
  };
  for (long i = degree - 1; i >= 0; --i) EXPECT_EQ(denseCoefficient(a, i), c.small(static_cast<std::int64_t>(draw())));
  std::uint64_t top;
  while ((top = draw()) == 0) {
  }
  EXPECT_EQ(denseCoefficient(a, degree), c.small(static_cast<std::int64_t>(top)));
}

// ---- queries

template <class C>
void coefficient(C& c) {
  const ListOf<C> a = c.list();
  const long i = static_cast<long>(c.below(a.size() + 4)) - 2;
  c.expect({c.dense(a), c.small(i)}, c.integer(c.plain.at(a, i)));
}
template <class C>
void degreeOf(C& c) {
  const ListOf<C> a = c.list();
  c.expect({c.dense(a)}, c.small(c.plain.degree(a)));
}
template <class C>
void indeterminateOf(C& c) {
  DAG variable = c.chance(2) ? c.x : c.y;
  c.expect({c.dense(c.list(), variable)}, variable);
}
template <class C>
void modulusOf(C& c) {
  c.expect({c.dense(c.list())}, c.m);
}
template <class C>
void isConstant(C& c) {
  const ListOf<C> a = c.list(1);
  const auto value = c.residue();
  c.expect({c.dense(a), c.integer(value)}, truth(a.size() == 1 && a[0] == value));
}
template <class C>
void isOne(C& c) {
  const ListOf<C> a = c.list(1);
  c.expect({c.dense(a)}, truth(a.size() == 1 && a[0] == c.plain.one()));
}
template <class C>
void isZero(C& c) {
  const ListOf<C> a = c.list(1);
  c.expect({c.dense(a)}, truth(a.empty()));
}
template <class C>
void maxHardware(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.x});
  c.expect({}, c.small(46327));
}

// ---- arithmetic

template <class C>
void sum(C& c) {
  std::vector<DAG> operands;
  ListOf<C> total;
  for (std::uint64_t k = c.below(4) + 1; k > 0; --k) {
    const ListOf<C> a = c.list();
    operands.push_back(c.dense(a));
    total = c.plain.sum(total, a);
  }
  if (c.chance(20)) {
    operands.push_back(c.dense({}, c.y));
    return c.expectInvalid(operands);
  }
  c.expect(operands, c.dense(total));
}
template <class C>
void difference(C& c) {
  const ListOf<C> a = c.list(), b = c.list();
  if (c.chance(3)) return c.expect({c.dense(a)}, c.dense(c.plain.negative(a)));
  if (c.chance(20)) return c.expectInvalid({c.dense(a), c.dense(b, c.y)});
  c.expect({c.dense(a), c.dense(b)}, c.dense(c.plain.difference(a, b)));
}
template <class C>
void product(C& c) {
  const ListOf<C> a = c.list(), b = c.chance(6) ? a : c.list();
  if (c.chance(20)) return c.expectInvalid({c.dense(a), c.x});
  // A call among the arguments is run first.
  DAG second = c.chance(4) ? c.callOf("Shift", {c.dense(c.plain.shifted(b, 1)), consm1}) : c.dense(b);
  c.expect({c.dense(a), second}, c.dense(c.plain.product(a, b)));
}
template <class C, class Choose>
void divided(C& c, Choose choose) {
  const ListOf<C> a = c.list(), b = c.list();
  DAG target = naminstall("quotientOrRest");
  if (b.empty()) return c.expect({c.dense(a), c.dense(b)}, Answer{DAG(), "division by zero"});
  const auto result = c.plain.divided(a, b);
  if (!result) return c.expect({c.dense(a), c.dense(b)}, missingInverse());
  auto [value, other] = choose(*result);
  if (c.chance(2)) return c.expect({c.dense(a), c.dense(b)}, c.dense(value));
  DAG wanted = c.dense(other);
  c.expect({c.dense(a), c.dense(b), target}, Answer{c.dense(value)},
           [&] { EXPECT_EQ(valueOf("quotientOrRest"), wanted); });
}
template <class C>
void quotient(C& c) {
  divided(c, [](const auto& d) { return std::pair(d.q, d.r); });
}
template <class C>
void remainder(C& c) {
  divided(c, [](const auto& d) { return std::pair(d.r, d.q); });
}
// Operands with a common factor, most of the time.
template <class C>
std::pair<ListOf<C>, ListOf<C>> related(C& c, long most) {
  const ListOf<C> common = c.list(most / 4);
  if (c.chance(8)) return {c.list(most), c.list(most)};
  return {c.plain.product(c.list(most), common), c.plain.product(c.list(most), common)};
}
template <class C>
void gcd(C& c) {
  const auto [a, b] = related(c, 120);
  const auto g = c.plain.gcd(a, b);
  if (!g) return c.expect({c.dense(a), c.dense(b)}, missingInverse());
  if (c.chance(2)) return c.expect({c.dense(a), c.dense(b)}, c.dense(*g));
  const DAG first = c.dense(g->empty() ? a : c.plain.divided(a, *g)->q);
  const DAG second = c.dense(g->empty() ? b : c.plain.divided(b, *g)->q);
  c.expect({c.dense(a), c.dense(b), naminstall("cofactorA"), naminstall("cofactorB")}, Answer{c.dense(*g)}, [&] {
    EXPECT_EQ(valueOf("cofactorA"), first);
    EXPECT_EQ(valueOf("cofactorB"), second);
  });
}
template <class C>
void gcdex(C& c) {
  const auto [a, b] = related(c, 60);
  const auto result = c.plain.gcdex(a, b);
  if (!result) return c.expect({c.dense(a), c.dense(b)}, missingInverse());
  DAG s = c.dense(result->s);
  if (c.chance(2))
    return c.expect({c.dense(a), c.dense(b), naminstall("cofactorS")}, Answer{c.dense(result->g)},
                    [&] { EXPECT_EQ(valueOf("cofactorS"), s); });
  ListOf<C> t;
  if (!b.empty()) {
    const auto quotient = c.plain.divided(c.plain.difference(result->g, c.plain.product(result->s, a)), b);
    if (!quotient)
      return c.expect({c.dense(a), c.dense(b), naminstall("cofactorS"), naminstall("cofactorT")}, missingInverse());
    t = quotient->q;
    EXPECT_TRUE(quotient->r.empty());
  }
  DAG last = c.dense(t);
  c.expect({c.dense(a), c.dense(b), naminstall("cofactorS"), naminstall("cofactorT")}, Answer{c.dense(result->g)}, [&] {
    EXPECT_EQ(valueOf("cofactorS"), s);
    EXPECT_EQ(valueOf("cofactorT"), last);
  });
}
template <class C>
void powmod(C& c) {
  const ListOf<C> a = c.list(60), b = c.list(60);
  const int n = static_cast<int>(c.below(9));
  if (c.chance(20)) return c.expectInvalid({c.dense(a), consm1, c.dense(b)});
  const std::vector<DAG> arguments = {c.dense(a), c.small(n), c.dense(b)};
  if (b.empty()) return c.expect(arguments, Answer{DAG(), "division by zero"});
  const auto base = c.plain.divided(a, b);
  if (!base) return c.expect(arguments, missingInverse());
  if (n == 0 && base->r.empty()) return c.expect(arguments, Answer{DAG(), "0^0 generated"});
  // From n = 2 on the inverse of the divisor's top coefficient is there before a product is reduced.
  if (n > 1 && !base->r.empty() && !c.plain.n.inverse(b.back())) return c.expect(arguments, missingInverse());
  c.expect(arguments, c.dense(*c.plain.powmod(a, n, b)));
}
template <class C>
void resultant(C& c) {
  const ListOf<C> a = c.list(60), b = c.list(60);
  const auto r = c.plain.resultant(a, b);
  if (!r) return c.expect({c.dense(a), c.dense(b)}, missingInverse());
  c.expect({c.dense(a), c.dense(b)}, c.integer(*r));
}
template <class C>
void derivative(C& c) {
  const ListOf<C> a = c.list();
  c.expect({c.dense(a)}, c.dense(c.plain.derivative(a)));
}
template <class C>
void shift(C& c) {
  const ListOf<C> a = c.list();
  const long by = static_cast<long>(c.below(30)) - 15;
  c.expect({c.dense(a), c.small(by)}, c.dense(c.plain.shifted(a, by)));
}
template <class C>
void translate(C& c) {
  const ListOf<C> a = c.list(60);
  const auto by = c.residue();
  DAG any = simpl(add(c.integer(by), c.chance(3) ? consm1 : cons0));
  const auto moved = c.plain.n.of(any);
  c.expect({c.dense(a), any}, c.dense(c.plain.translated(a, moved)));
}
template <class C>
void embed(C& c) {
  const ListOf<C> a = c.list();
  const char* other = campaignModuli[c.below(std::size(campaignModuli))].text;
  DAG m = simpl(valueOf(other)), from = c.dense(a);
  DAG wanted = newDense(c.x, m, static_cast<std::int64_t>(a.size()) - 1);
  for (std::size_t i = 0; i < a.size(); ++i)
    setDenseCoefficient(wanted, static_cast<std::int64_t>(i), simpl(imod(c.integer(a[i]), m, false)));
  c.expect({from, m}, finishedDense(wanted));
}

// ---- points and numbers

template <class C>
void value(C& c) {
  const ListOf<C> a = c.list();
  if (c.chance(2)) {
    const auto point = c.residue();
    return c.expect({c.dense(a), c.integer(point)}, c.integer(c.plain.value(a, point)));
  }
  std::vector<DAG> points, values;
  for (std::uint64_t k = c.below(c.chance(20) ? 100 : 6); k > 0; --k) {
    const auto point = c.residue();
    points.push_back(c.integer(point));
    values.push_back(c.integer(c.plain.value(a, point)));
  }
  c.expect({c.dense(a), listOf(points)}, listOf(values));
}
// Newton's differences tell which pair of points has no inverse first; the result takes the values.
template <class C>
void interpolate(C& c) {
  using Number = typename C::Number;
  std::vector<Number> points, values;
  std::vector<DAG> pointList, valueList;
  for (std::uint64_t k = c.below(8); k > 0; --k) {
    points.push_back(c.residue());
    values.push_back(c.residue());
    pointList.push_back(c.integer(points.back()));
    valueList.push_back(c.integer(values.back()));
  }
  Answer answer;
  for (std::size_t j = 1; j < points.size() && answer.error.empty(); ++j)
    for (std::size_t i = points.size() - 1; i >= j && answer.error.empty(); --i) {
      const Number d = c.plain.n.add(points[i], c.plain.n.negate(points[i - j]));
      if (d == c.plain.zero()) answer.error = "the same point has been entered twice";
      else if (!c.plain.n.inverse(d)) answer = missingInverse();
    }
  const std::vector<DAG> arguments = {listOf(pointList), listOf(valueList), c.x};
  if (!answer.error.empty()) return c.expect(arguments, answer);
  // The sum of Lagrange's polynomials.
  ListOf<C> wanted;
  for (std::size_t j = 0; j < points.size(); ++j) {
    ListOf<C> term = c.plain.constant(values[j]);
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (i == j) continue;
      const auto inverse = c.plain.n.inverse(c.plain.n.add(points[j], c.plain.n.negate(points[i])));
      term = c.plain.scaled(c.plain.product(term, {c.plain.n.negate(points[i]), c.plain.one()}), *inverse);
    }
    wanted = c.plain.sum(wanted, term);
  }
  c.expect(arguments, c.dense(wanted));
}
template <class C>
void chrem(C& c) {
  std::vector<DAG> residues, moduli;
  DAG product = cons1;
  const bool large = c.chance(2);
  bool coprime = true;
  const std::uint64_t n = c.below(5);
  for (std::uint64_t k = 0; k < n; ++k) {
    DAG m = c.small(static_cast<std::int64_t>(c.below(large ? 100000000 : 40)) + 2);
    coprime = coprime && igcd(product, m) == cons1;
    moduli.push_back(m);
    product = simpl(mul(product, m));
  }
  DAG number = simpl(imod(mul(c.small(static_cast<std::int64_t>(c.below(100000000))),
                              c.small(static_cast<std::int64_t>(c.below(100000000)))),
                          product, false));
  for (DAG m : moduli) residues.push_back(simpl(imod(number, m, false)));
  Answer answer = {number};
  if (!coprime) answer = {DAG(), "moduli are not relatively prime"};
  if (c.chance(20)) {
    residues.push_back(cons1);
    answer = {DAG(), "list of moduli and residues must be the same length"};
  }
  c.expect({listOf(residues), listOf(moduli)}, answer);
}
template <class C>
void prime(C& c) {
  const auto n = static_cast<std::int64_t>(c.below(c.chance(4) ? 1100 : 60000));
  std::int64_t p = 46327;
  if (n >= 1010) {
    auto isPrime = [](std::int64_t k) {
      for (std::int64_t d = 3; d * d <= k; d += 2)
        if (k % d == 0) return false;
      return true;
    };
    for (p = n % 2 == 0 ? n - 1 : n - 2; !isPrime(p);) p -= 2;
  } else if (n >= 2) {
    p = 99999989;
  }
  c.expect({c.small(n)}, c.small(p));
}

constexpr SelectorModel models[] = {
    KOREL_MODEL("Add", sum),
    KOREL_MODEL("Chrem", chrem),
    KOREL_MODEL("Coeff", coefficient),
    KOREL_MODEL("Constant", constant),
    KOREL_MODEL("ConvertIn", convertIn),
    KOREL_MODEL("ConvertOut", convertOut),
    KOREL_MODEL("Degree", degreeOf),
    KOREL_MODEL("Diff", derivative),
    KOREL_MODEL("Embed", embed),
    KOREL_MODEL("Eval", value),
    KOREL_MODEL("Gcd", gcd),
    KOREL_MODEL("Gcdex", gcdex),
    KOREL_MODEL("Indeterminate", indeterminateOf),
    KOREL_MODEL("Interp", interpolate),
    KOREL_MODEL("IsConstant", isConstant),
    KOREL_MODEL("IsOne", isOne),
    KOREL_MODEL("IsZero", isZero),
    KOREL_MODEL("MaxHardware", maxHardware),
    KOREL_MODEL("Modulus", modulusOf),
    KOREL_MODEL("Multiply", product),
    KOREL_MODEL("One", one),
    KOREL_MODEL("Powmod", powmod),
    KOREL_MODEL("Prime", prime),
    KOREL_MODEL("Quo", quotient),
    KOREL_MODEL("Randpoly", randpoly),
    KOREL_MODEL("Rem", remainder),
    KOREL_MODEL("Resultant", resultant),
    KOREL_MODEL("Shift", shift),
    KOREL_MODEL("Subtract", difference),
    KOREL_MODEL("Translate", translate),
    KOREL_MODEL("Zero", zero),
};

}  // namespace

TEST(Modp1Campaign, EverySelectorFollowsItsModel) { runCampaign(modp1Family, models, 70); }

// Degree 5,000: both sides of each identity at random points, and products against the plain ones.
TEST(Modp1Campaign, LongOperandsKeepTheIdentities) {
  const int cases = casesOfSelector(1);
  for (int k = 0; k < std::max(cases / 500, 1); ++k)
    for (const char* modulus : {"2", "101", "46327", "46337"}) {
      SCOPED_TRACE(std::string(modulus) + ", case " + std::to_string(k));
      DAG m = simpl(valueOf(modulus));
      SelectorCase<MachineNumbers> c = {{{m}},       modp1Family, "", std::mt19937_64(static_cast<std::uint64_t>(k)),
                                        parsed("x"), parsed("y"), m};
      ListOf<SelectorCase<MachineNumbers>> a, b, g;
      for (int i = 0; i < 5000; ++i) {
        a.push_back(c.residue());
        if (i < 4000) b.push_back(c.residue());
        if (i < 900) g.push_back(c.residue());
      }
      a.back() = b.back() = g.back() = c.plain.one();
      DAG da = c.dense(a), db = c.dense(b), dg = c.dense(g), q, r, s;
      DAG product = mMultiply(da, db, m);
      ASSERT_EQ(product, c.dense(c.plain.product(a, b)));
      mDivide(mAdd(newSequence({product, dg}), m), db, &q, &r, m);
      EXPECT_TRUE(q == da && r == dg);
      DAG divisor = mGcd(mMultiply(da, dg, m), mMultiply(db, dg, m), m);
      EXPECT_EQ(divisor, mMultiply(mGcd(da, db, m), dg, m));
      DAG common = mGcdex(db, dg, &s, m);
      EXPECT_EQ(common, mGcd(db, dg, m));
      mDivide(mSubtract(common, mMultiply(s, db, m), m), dg, nullptr, &r, m);
      EXPECT_LT(denseDegree(r), 0);
      DAG ninth = mPowmod(da, immediate(9), dg, m), cube = mPowmod(da, immediate(3), dg, m);
      EXPECT_EQ(mPowmod(cube, immediate(3), dg, m), ninth);
      if (testing::Test::HasFailure()) return;
      say("gc():");
    }
}

}  // namespace korel::test
