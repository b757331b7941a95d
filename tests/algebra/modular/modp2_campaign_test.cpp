// Every selector of `modp2` and `evalgf1` against a plain model, on random cases.
//
// A polynomial in two indeterminates is a list of lists: by powers of x, each coefficient a polynomial in y.

#include <algorithm>

#include "algebra/modular/bivariate_polynomials.h"
#include "algebra/modular/selector_campaign.h"

namespace korel::test {

namespace {

template <class C>
using Rows = std::vector<typename C::List>;

template <class C>
Rows<C> trimmed(Rows<C> a) {
  while (!a.empty() && a.back().empty()) a.pop_back();
  return a;
}
// Mostly a few short rows; sometimes long ones, or many.
template <class C>
Rows<C> rows(C& c) {
  Rows<C> a;
  const std::uint64_t kind = c.below(30), n = c.below(kind == 0 ? 100 : 6);
  for (std::uint64_t i = 0; i < n; ++i) a.push_back(c.chance(5) ? typename C::List() : c.list(kind == 0 ? 5 : 300));
  return trimmed<C>(a);
}
template <class C>
DAG names(C& c, bool swapped = false) {
  return simpl(swapped ? newSequence({c.y, c.x}) : newSequence({c.x, c.y}));
}
template <class C>
DAG dense(C& c, const Rows<C>& a, bool swapped = false) {
  DAG result = newDense(names(c, swapped), c.m, static_cast<std::int64_t>(a.size()) - 1);
  for (std::size_t i = 0; i < a.size(); ++i)
    result[firstCoefficient + static_cast<Word>(i)] = c.dense(a[i], swapped ? c.x : c.y);
  return finishedDense(result);
}
template <class C>
typename C::List at(const Rows<C>& a, long i) {
  return i < 0 || i >= static_cast<long>(a.size()) ? typename C::List() : a[static_cast<std::size_t>(i)];
}
template <class C>
long degree2(const Rows<C>& a) {
  long degree = -1;
  for (const auto& row : a) degree = std::max(degree, C::Plain::degree(row));
  return degree;
}
template <class C>
Rows<C> swap(C& c, const Rows<C>& a) {
  Rows<C> result;
  for (long j = 0; j <= degree2<C>(a); ++j) {
    typename C::List row;
    for (const auto& old : a) row.push_back(c.plain.at(old, j));
    result.push_back(c.plain.trimmed(row));
  }
  return trimmed<C>(result);
}
// Some of the rows are no longer than a constant, so that the answers of the tests differ.
template <class C>
Rows<C> nearlyConstant(C& c) {
  Rows<C> a;
  for (std::uint64_t i = c.below(3); i > 0; --i) a.push_back(c.list(2));
  return trimmed<C>(a);
}

// ---- making and showing

template <class C>
void build(C& c) {
  const Rows<C> a = rows(c);
  std::vector<DAG> members;
  for (const auto& row : a) {
    const bool asInteger = row.size() < 2 && c.chance(2);
    members.push_back(asInteger ? simpl(add(c.integer(c.plain.at(row, 0)), mul(c.m, consm1))) : c.dense(row, c.y));
  }
  if (c.chance(20)) {
    members.push_back(c.dense({}, c.x));
    return c.expect({listOf(members), c.x, c.y}, Answer{DAG(), "modp2: invalid arguments to Build"});
  }
  c.expect({listOf(members), c.x, c.y}, dense(c, a));
}
template <class C>
void constant(C& c) {
  const typename C::List value = c.list(6);
  auto refused = [&](const std::vector<DAG>& arguments, const char* message) {
    c.expect(arguments, Answer{DAG(), message});
  };
  DAG polynomial = c.dense(value, c.y), wanted = dense(c, trimmed<C>({value}));
  switch (c.below(12)) {
    case 0: return refused({cons1}, "too few arguments to Constant");
    case 1: return refused({cons1, c.x, c.y, c.x}, "too many arguments to Constant");
    case 2: return refused({cons1, c.x}, "incorrect number of arguments to Constant");
    case 3: return refused({cons1, c.x, c.x}, "invalid indeterminate in Constant");
    case 4: return refused({polynomial, c.y}, "invalid indeterminate in Constant");
    case 5:
      return refused({constantDense(cons1, c.y, simpl(mul(c.m, immediate(46400)))), c.x},
                     "invalid modulus in Constant");
    case 6: case 7: return c.expect({polynomial, c.x}, wanted);
    case 8: return c.expect({polynomial, c.x, c.y}, wanted);
    default: break;
  }
  const typename C::Number number = c.residue();
  DAG any = simpl(add(c.integer(number), c.m));
  c.expect({any, c.x, c.y}, dense(c, trimmed<C>({c.plain.constant(number)})));
}
template <class C>
void one(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.x, c.x});
  c.expect({c.x, c.y}, dense(c, Rows<C>{{c.plain.one()}}));
}
template <class C>
void zero(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.x, cons1});
  c.expect({c.x, c.y}, dense(c, Rows<C>{}));
}

// The expression of the rows; their coefficients are changed by multiples of m.
template <class C>
DAG expression(C& c, const Rows<C>& a, bool reduced, DAG x, DAG y) {
  std::vector<DAG> pairs;
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = 0; j < a[i].size(); ++j) {
      DAG number = c.integer(a[i][j]);
      if (number == cons0) continue;
      if (!reduced) number = simpl(add(number, mul(c.m, c.small(static_cast<std::int64_t>(c.below(5)) - 2))));
      const bool isNumber = i == 0 && j == 0;
      DAG term = simpl(new5(PROD, x, c.small(static_cast<std::int64_t>(i)), y, c.small(static_cast<std::int64_t>(j))));
      pairs.push_back(isNumber ? number : term);
      pairs.push_back(isNumber ? cons1 : number);
    }
  DAG sum = newl2(static_cast<Word>(pairs.size() + 1), SUM);
  for (std::size_t i = 0; i < pairs.size(); ++i) sum[static_cast<Word>(i) + 1] = pairs[i];
  return simpl(sum);
}
template <class C>
void convertIn(C& c) {
  const Rows<C> a = rows(c);
  const std::string prefix = &c.family == &evalgf1Family ? "evalgf1" : "modp2";
  DAG f = expression(c, a, false, c.x, c.y);
  auto refused = [&](const std::vector<DAG>& arguments, const std::string& message) {
    c.expect(arguments, Answer{DAG(), message});
  };
  switch (c.below(24)) {
    case 0: return refused({parsed("x*y/2"), c.x, c.y}, prefix + ": polynomial does not have integer coefficients");
    case 1: return refused({parsed("x/y"), c.x, c.y}, prefix + ": invalid arguments");
    case 2: return refused({parsed("x^(10^12)"), c.x, c.y}, prefix + ": degree too large");
    case 3: return refused({f, c.x, c.x}, "cannot specify the same indeterminate twice");
    case 4: return refused({f, c.x, c.y, c.x}, "incorrect number of arguments");
    case 5: return refused({parsed("x*y*z"), c.x, c.y}, "polynomial has more than 2 indeterminates");
    case 6: return refused({parsed("z + 1"), c.x, c.y}, "polynomial is in variable z");
    case 7: return refused({parsed("x + 1")}, "cannot infer indeterminates from polynomial");
    case 8: return refused({parsed("x + 1"), c.x}, "cannot infer second indeterminate from polynomial");
    case 9: return refused({parsed("z + 1"), c.x}, "polynomial not in variable x");
    default: break;
  }
  // Where both are in it, they need not be told.
  const std::string shown = text(f);
  if (shown.find('x') != std::string::npos && shown.find('y') != std::string::npos && c.chance(2)) {
    if (c.chance(2)) return c.expect({f}, dense(c, a));
    return c.expect({f, c.x}, dense(c, a));
  }
  c.expect({f, c.x, c.y}, dense(c, a));
}
template <class C>
void convertInAndSwap(C& c) {
  const Rows<C> a = rows(c);
  c.expect({expression(c, a, false, c.x, c.y), c.x, c.y}, dense(c, swap(c, a), true));
}
template <class C>
void convertOut(C& c) {
  const Rows<C> a = rows(c);
  DAG z = parsed("z");
  if (c.chance(20)) return c.expectInvalid({dense(c, a), c.x});
  if (c.chance(2)) return c.expect({dense(c, a)}, expression(c, a, true, c.x, c.y));
  c.expect({dense(c, a), z, c.x}, expression(c, a, true, z, c.x));
}

// ---- queries

template <class C>
void coefficient1(C& c) {
  const Rows<C> a = rows(c);
  const long i = static_cast<long>(c.below(8)) - 1;
  c.expect({dense(c, a), c.small(i)}, c.dense(at<C>(a, i), c.y));
}
template <class C>
void coefficient2(C& c) {
  const Rows<C> a = rows(c);
  const long j = static_cast<long>(c.below(15)) - 1;
  typename C::List column;
  for (const auto& row : a) column.push_back(c.plain.at(row, j));
  c.expect({dense(c, a), c.small(j)}, c.dense(c.plain.trimmed(column), c.x));
}
template <class C>
void degreeIn1(C& c) {
  const Rows<C> a = rows(c);
  c.expect({dense(c, a)}, c.small(static_cast<std::int64_t>(a.size()) - 1));
}
template <class C>
void degreeIn2(C& c) {
  const Rows<C> a = rows(c);
  c.expect({dense(c, a)}, c.small(degree2<C>(a)));
}
template <class C>
void indeterminatesOf(C& c) {
  const bool swapped = c.chance(2);
  c.expect({dense(c, rows(c), swapped)}, names(c, swapped));
}
template <class C>
void modulusOf(C& c) {
  if (c.chance(20)) return c.expectInvalid({c.dense({}, c.x)});
  c.expect({dense(c, rows(c))}, c.m);
}
template <class C>
void isConstant(C& c) {
  const Rows<C> a = nearlyConstant(c);
  const bool constant = a.size() < 2 && degree2<C>(a) < 1;
  if (c.chance(2)) return c.expect({dense(c, a)}, truth(constant));
  const typename C::Number value = c.residue();
  c.expect({dense(c, a), c.integer(value)}, truth(constant && !a.empty() && a[0][0] == value));
}
template <class C>
void isOne(C& c) {
  const Rows<C> a = nearlyConstant(c);
  c.expect({dense(c, a)}, truth(a.size() == 1 && a[0].size() == 1 && a[0][0] == c.plain.one()));
}
template <class C>
void isZero(C& c) {
  const Rows<C> a = nearlyConstant(c);
  c.expect({dense(c, a)}, truth(a.empty()));
}

// ---- other polynomials

template <class C>
void evaluated2(C& c) {
  const Rows<C> a = rows(c);
  const typename C::Number point = c.residue();
  typename C::List values;
  for (const auto& row : a) values.push_back(c.plain.value(row, point));
  c.expect({dense(c, a), c.integer(point)}, c.dense(c.plain.trimmed(values), c.x));
}
template <class C>
void replaceTerm(C& c) {
  Rows<C> a = rows(c);
  const typename C::List row = c.list(10);
  DAG before = dense(c, a);
  const auto place = static_cast<std::size_t>(c.below(10));
  if (place == 0)
    return c.expect({before, cons0, c.dense(row, c.y)}, Answer{DAG(), "modp2: invalid replacement term number"});
  if (c.chance(20))
    return c.expect({before, cons1, c.dense(row, c.x)}, Answer{DAG(), "modp2: invalid replacement term"});
  if (a.size() < place) a.resize(place);
  a[place - 1] = row;
  c.expect({before, c.small(static_cast<std::int64_t>(place)), c.dense(row, c.y)}, dense(c, trimmed<C>(a)));
}
template <class C>
void shift(C& c) {
  const Rows<C> a = rows(c);
  const long by = static_cast<long>(c.below(12)) - 6;
  Rows<C> moved;
  for (long i = 0; !a.empty() && i < static_cast<long>(a.size()) + by; ++i) moved.push_back(at<C>(a, i - by));
  c.expect({dense(c, a), c.small(by)}, dense(c, trimmed<C>(moved)));
}
template <class C>
void subPolynomial(C& c) {
  const Rows<C> a = rows(c);
  const long i = static_cast<long>(c.below(8)) - 1, j = static_cast<long>(c.below(8)) - 1;
  if (i < 0 || j < i)
    return c.expect({dense(c, a), c.small(i), c.small(j)}, Answer{DAG(), "modp2: invalid range in SubPoly"});
  Rows<C> part;
  for (long k = i; k <= j; ++k) part.push_back(at<C>(a, k));
  c.expect({dense(c, a), c.small(i), c.small(j)}, dense(c, trimmed<C>(part)));
}
template <class C>
void varSwap(C& c) {
  const Rows<C> a = rows(c);
  c.expect({dense(c, a)}, dense(c, swap(c, a), true));
}
template <class C>
void varSwapSwap(C& c) {
  const Rows<C> a = rows(c);
  c.expect({dense(c, a)}, dense(c, swap(c, a)));
}
// A procedure that adds what it is given, place by place.
template <class C>
void zip(C& c) {
  if (valueOf("addRows") == naminstall("addRows")) say("addRows := proc() modp1(Add(args), zipModulus) end:");
  say(("zipModulus := " + text(c.m) + ":").c_str());
  std::vector<DAG> arguments = {valueOf("addRows")};
  Rows<C> total;
  for (std::uint64_t k = c.below(3) + 1; k > 0; --k) {
    const Rows<C> a = rows(c);
    if (total.size() < a.size()) total.resize(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) total[i] = c.plain.sum(total[i], a[i]);
    arguments.push_back(dense(c, a));
  }
  c.expect(arguments, dense(c, trimmed<C>(total)));
}

// What both families have, which is all of `evalgf1`, and what `modp2` has besides.
constexpr SelectorModel evalgf1Models[] = {
    KOREL_MODEL("Build", build),
    KOREL_MODEL("Constant", constant),
    KOREL_MODEL("ConvertIn", convertIn),
    KOREL_MODEL("ConvertOut", convertOut),
    KOREL_MODEL("Indeterminates", indeterminatesOf),
    KOREL_MODEL("IsConstant", isConstant),
    KOREL_MODEL("IsOne", isOne),
    KOREL_MODEL("IsZero", isZero),
    KOREL_MODEL("Modulus", modulusOf),
    KOREL_MODEL("One", one),
    KOREL_MODEL("ReplaceTerm", replaceTerm),
    KOREL_MODEL("Shift", shift),
    KOREL_MODEL("SubPoly", subPolynomial),
    KOREL_MODEL("VarSwap", varSwap),
    KOREL_MODEL("VarSwapSwap", varSwapSwap),
    KOREL_MODEL("Zero", zero),
    KOREL_MODEL("Zip", zip),
};
constexpr SelectorModel modp2OwnModels[] = {
    KOREL_MODEL("Coeff1", coefficient1),
    KOREL_MODEL("Coeff2", coefficient2),
    KOREL_MODEL("ConvertInAndSwapIndets", convertInAndSwap),
    KOREL_MODEL("Degree1", degreeIn1),
    KOREL_MODEL("Degree2", degreeIn2),
    KOREL_MODEL("Eval2", evaluated2),
};

std::vector<SelectorModel> modp2Models() {
  std::vector<SelectorModel> all(std::begin(evalgf1Models), std::end(evalgf1Models));
  all.insert(all.end(), std::begin(modp2OwnModels), std::end(modp2OwnModels));
  std::sort(all.begin(), all.end(),
            [](const SelectorModel& a, const SelectorModel& b) { return std::string(a.name) < b.name; });
  return all;
}

}  // namespace

TEST(Modp2Campaign, EverySelectorFollowsItsModel) { runCampaign(modp2Family, modp2Models(), 70); }
TEST(Evalgf1Campaign, EverySelectorFollowsItsModel) { runCampaign(evalgf1Family, evalgf1Models, 70); }

}  // namespace korel::test
