#include "algebra/polynomial_types.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/types/constant_expressions.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/integer_cache.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What one traversal asks.
struct PolynomialWalk {
  PolynomialForm form;
  DAG vars;                       // 0 for all names, a name or the imaginary unit, or an EXPSEQ of names
  TagSet numbers;                 // that may be coefficients
  bool (*test)(DAG e) = nullptr;  // in place of the tags: a test of coefficients,
  DAG type{};                     // or a type that they must match
  Word clock = 0;                 // of the integer cache

  bool allowsAnyCoefficient() const { return numbers == anyCoefficient && test == nullptr && !type; }
};

bool isVariable(const PolynomialWalk& walk, DAG x) { return isMember(x, walk.vars); }

/// `x`, which holds none of the variables, may be a coefficient.
bool isCoefficient(const PolynomialWalk& walk, DAG x) {
  if (walk.test != nullptr) return walk.test(x);
  if (walk.type) return type(x, walk.type);
  return walk.numbers == anyCoefficient || isAmong(x, walk.numbers);
}

/// `x` stands for a coefficient as a whole.
bool isConstantPart(const PolynomialWalk& walk, DAG x) {
  bool free = walk.vars ? !hasany(x, walk.vars) : onlyconst(x);
  return free && isCoefficient(walk, x);
}

bool isPolynomial(const PolynomialWalk& walk, DAG x);

bool isPolynomialName(const PolynomialWalk& walk, DAG x) {
  if (walk.vars) return isConstantPart(walk, x);
  if (walk.allowsAnyCoefficient()) return true;
  if (x == ini("undefined")) return false;
  return isConstantName(x) ? isCoefficient(walk, x) : true;
}

bool isPolynomialSum(const PolynomialWalk& walk, DAG x) {
  for (Word i = 1; i < lengthOf(x); i += 2) {
    DAG term = x[i], coefficient = x[i + 1];
    if (isNumber(term) && isNumber(coefficient)) {
      if (!isCoefficient(walk, coefficient == cons1 ? term : simpl(mul(term, coefficient)))) return false;
      continue;
    }
    if (!isPolynomial(walk, term)) return false;
    // A coefficient 1 is no more than the absence of another.
    if (coefficient == cons1) continue;
    if (!(isNumber(coefficient) ? isCoefficient(walk, coefficient) : isConstantPart(walk, coefficient))) return false;
  }
  return true;
}

bool isPolynomialProduct(const PolynomialWalk& walk, DAG x) {
  for (Word i = 1; i < lengthOf(x); i += 2) {
    DAG base = x[i], exponent = x[i + 1];
    bool power = isInteger(exponent) && (walk.form == PolynomialForm::rationalFunction || !consneg(exponent));
    if (power && isPolynomial(walk, base)) continue;
    if (power && !consneg(exponent)) return false;
    DAG factor = lengthOf(x) == 3 ? x : simpl(new3(PROD, base, exponent));
    if (walk.vars && isVariable(walk, factor)) continue;
    if (!isConstantPart(walk, factor)) return false;
  }
  return true;
}

bool computePolynomial(const PolynomialWalk& walk, DAG x) {
  switch (tagOf(x)) {
    case NAME: return isPolynomialName(walk, x);
    case TABLEREF: return walk.vars ? isConstantPart(walk, x) : true;
    case MEMBER: {
      DAG name = evalname(x);
      return !isTag(name, MEMBER) && isPolynomial(walk, name);
    }
    case DCOLON: return isPolynomial(walk, x[1]);
    case SUM: return isPolynomialSum(walk, x);
    case PROD: return isPolynomialProduct(walk, x);
    default: return isConstantPart(walk, x);
  }
}

bool isPolynomial(const PolynomialWalk& walk, DAG x) {
  if (walk.vars && isVariable(walk, x)) return true;
  if (isNumber(x)) return isCoefficient(walk, x);
  if (tagOf(x) <= TABLEREF) return computePolynomial(walk, x);
  // Shared parts are asked once.
  if (const Word* known = cachedInteger(x, walk.clock)) return *known != 0;
  checkStack();
  bool result = computePolynomial(walk, x);
  cacheInteger(x, result, walk.clock);
  return result;
}

bool walkPolynomial(PolynomialWalk walk, DAG x) {
  walk.clock = beginIntegerTraversal();
  return isPolynomial(walk, x);
}

// ---- polynom(c, vars)

bool isNumericCoefficient(DAG e) { return isNumeric(e) && !isInfinite(e) && !isUndefined(e); }
bool isComplexCoefficient(DAG e) { return isNumber(e) && !isInfinite(e) && !isUndefined(e); }

// The words that tell what coefficients are. Alone in a type they are no variable.
struct CoefficientRow {
  StandardName word;
  TagSet numbers;
  bool (*test)(DAG e);
};
constexpr CoefficientRow coefficientRows[] = {
    // word       numbers         test
    {"integer",  integerTags,    nullptr},
    {"rational", rationalTags,   nullptr},
    {"numeric",  anyCoefficient, isNumericCoefficient},
    {"complex",  anyCoefficient, isComplexCoefficient},
    {"constant", anyCoefficient, isDefinedConstant},
    {"anything", anyCoefficient, nullptr},
};

bool isCoefficientWord(DAG x) {
  for (const CoefficientRow& row : coefficientRows)
    if (x == ini(row.word)) return true;
  return false;
}

void setCoefficients(PolynomialWalk& walk, DAG word) {
  for (const CoefficientRow& row : coefficientRows)
    if (word == ini(row.word)) {
      walk.numbers = row.numbers;
      walk.test = row.test;
      return;
    }
  walk.type = word;
}

// The variables as the walk takes them, or 0 when `x` is none.
DAG variablesOf(DAG x) {
  if (isNameOrIndexed(x) || x == sqrtm1) return x;
  if (!isTag(x, LIST) && !isTag(x, SET)) return DAG();
  return everyMember(x[1], isNameOrIndexed) ? x[1] : DAG();
}

}  // namespace

bool typol(PolynomialForm form, DAG x, DAG vars, TagSet numbers) {
  if (isTag(vars, LIST) || isTag(vars, SET)) vars = vars[1];
  return walkPolynomial({form, vars, numbers}, x);
}

bool matchesPolynomial(PolynomialForm form, DAG x, DAG args) {
  PolynomialWalk walk{form, DAG(), anyCoefficient};
  Word n = lengthOf(args) - 1;
  bool wordAlone = n == 1 && isCoefficientWord(args[1]);
  if (!wordAlone) {
    walk.vars = variablesOf(args[n]);
    if (!walk.vars) KernelException("invalid arguments");
  }
  if (wordAlone || n == 2) setCoefficients(walk, args[1]);
  return walkPolynomial(walk, x);
}

bool monomial(DAG x) {
  if (isNameOrIndexed(x)) return true;
  if (!isTag(x, PROD)) return false;
  for (Word i = 1; i < lengthOf(x); i += 2)
    if (!isImmediate(x[i]) && tagOf(x[i]) > TABLEREF) return false;
  return true;
}

}  // namespace korel
