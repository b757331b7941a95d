#include "eval/structure/subsop.h"

#include "numbers/arithmetic.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "eval/structure/operands.h"

namespace korel {

namespace {

bool isFinite(DAG x) { return isNumeric(x) && !isInfinite(x) && !isUndefined(x); }

// ---- an object taken apart

// `parts` is raw and belongs to nobody else; `original` tells what it came from.
struct Parts {
  DAG original;
  DAG parts;
};

// The factors of a product in the view of `op`, as pairs of a PROD.
DAG factorPairs(DAG x) {
  if (hasTag(x, PROD)) return CopyAlg(x);
  DAG term = x[1];
  bool product = multiplication(term);
  DAG pairs = newl2(product ? lengthOf(term) + 2 : 5, PROD);
  pairs[1] = x[2];
  pairs[2] = cons1;
  if (!product) {
    pairs[3] = term;
    pairs[4] = cons1;
  } else {
    for (Word i = 1, n = lengthOf(term); i < n; ++i) pairs[i + 2] = term[i];
  }
  return pairs;
}

DAG takeApart(DAG x) {
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case STRING: case NAME: return x;
    case MODULE: KernelException("subsop cannot be applied to instantiated modules");
    case MEMBER: KernelException("subsop cannot be applied to unevaluated module members");
    case RTABLE: KernelException("subsop cannot be used for rtables; use indexing instead");
    case SUM: return lengthOf(x) == 3 ? factorPairs(x) : CopyAlg(x);
    case PROD: return lengthOf(x) == 3 ? new3(POWER, x[1], x[2]) : CopyAlg(x);
    case LIST: case SET: {
      DAG copy = CopyAlg(x);
      copy[1] = CopyAlg(x[1]);
      return copy;
    }
    case TABLEREF: case FUNCTION: {
      DAG copy = CopyAlg(x);
      copy[2] = CopyAlg(x[2]);
      return copy;
    }
    case TABLE: {
      DAG copy = CopyAlg(x);
      if (isTag(x[3], HASHTAB)) copy[3] = copyhashtab(x[3]);
      return copy;
    }
    case RATIONAL: case FLOAT: case COMPLEX: case HFLOAT: case DCOLON: case CATENATE: case POWER:
    case SERIES: case ZPPOLY: case UNEVAL: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN:
    case AND: case NOT: case OR: case EXPSEQ: case LOCAL: case PARAM: case LEXICAL: case PROC:
    case RANGE: case MODDEF:
      return CopyAlg(x);
    default: notimpl("subsop");
  }
}

// Coefficient `i` of a polynomial in one indeterminate.
void replaceCoefficient(DAG polynomial, std::int64_t i, DAG replacement) {
  if (isTag(polynomial[1], EXPSEQ))
    KernelException("the operation `%1` is not available", naminstall("m2ReplaceTerm"));
  if (!isInteger(replacement) || consneg(replacement) || compcon(replacement, polynomial[2]) >= 0)
    KernelException("modp1: invalid replacement term");
  if (hasRawCoefficients(polynomial))
    rawField(polynomial, i + 2) = static_cast<Word>(immediateValue(replacement));
  else
    polynomial[i + 2] = replacement;
}

// What may stand for the bounds of a table: none, a range, or a sequence of ranges.
bool isBounds(DAG x) {
  if (x == ini("false") || isTag(x, RANGE)) return true;
  if (!isTag(x, EXPSEQ) || lengthOf(x) == 1) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (!isTag(x[i], RANGE)) return false;
  return true;
}

void replaceWord(Parts& p, std::int64_t i, DAG replacement) {
  ReferenceFields fields = referenceFields(p.parts);
  if (static_cast<Word>(i) >= fields.first && static_cast<Word>(i) < fields.end) {
    p.parts[i] = replacement;
    return;
  }
  // A raw number is taken from an integer.
  if (!isInteger(replacement) || !FitIntoWord(replacement)) improperSelector();
  rawField(p.parts, i) = static_cast<Word>(static_cast<std::int32_t>(LongLongValue(replacement)));
}

void replaceHead(Parts& p, DAG replacement) {
  if (isImmediate(p.original)) improperSelector();
  switch (tagOf(p.original)) {
    case FUNCTION: case TABLEREF: case SERIES: p.parts[1] = replacement; return;
    default: improperSelector();
  }
}

// `i` is at least 0 and within the count of operands.
void replace(Parts& p, std::int64_t i, DAG replacement) {
  if (i == 0) return replaceHead(p, replacement);
  if (isImmediate(p.original)) {
    p.parts = replacement;
    return;
  }
  switch (tagOf(p.original)) {
    case INTNEG: case INTPOS: case STRING: case NAME: p.parts = replacement; return;
    case LIST: case SET: p.parts[1][i] = replacement; return;
    case TABLEREF: case FUNCTION: p.parts[2][i] = replacement; return;
    case SUM:
      p.parts[2 * i - 1] = replacement;
      p.parts[2 * i] = cons1;
      return;
    case PROD:
      if (hasTag(p.parts, POWER)) {
        p.parts[i] = replacement;
        return;
      }
      p.parts[2 * i - 1] = replacement;
      p.parts[2 * i] = cons1;
      return;
    case SERIES:
      if ((i & 1) == 0) KernelException("subsop cannot be applied to exponents of a series");
      p.parts[i + 1] = replacement;
      return;
    case ZPPOLY: replaceCoefficient(p.parts, i, replacement); return;
    case FLOAT:
      if (!isInteger(replacement)) KernelException("invalid substitution into float");
      p.parts[i] = replacement;
      return;
    case TABLE:
      if (i > 2 || (i == 2 && !isBounds(replacement))) improperSelector();
      p.parts[i] = replacement;
      return;
    case PROC: case MODDEF: replaceProcedureField(p.parts, p.original, i, replacement); return;
    default: replaceWord(p, i, replacement); return;
  }
}

// ---- together again

DAG finishComplex(DAG parts) {
  Word n = lengthOf(parts);
  DAG imaginary = parts[n - 1];
  DAG real = n == 3 ? parts[1] : cons0;
  if (isFinite(imaginary) && isFinite(real))
    return simpl(newCall(ini("Complex"), {real, imaginary}));
  DAG product = isFinite(imaginary) ? simpl(newCall(ini("Complex"), {cons0, imaginary}))
                                    : simpl(new5(PROD, imaginary, cons1, sqrtm1, cons1));
  return n == 3 ? simpl(new5(SUM, real, cons1, product, cons1)) : product;
}

// Leading zeros go.
DAG finishPolynomial(DAG parts) {
  Word n = lengthOf(parts), length = n;
  bool raw = hasRawCoefficients(parts);
  while (length > 3 && (raw ? rawField(parts, length - 1) == 0 : parts[length - 1] == cons0)) --length;
  if (length != n) shorten(parts, n, length);
  return simpl(parts);
}

DAG finish(const Parts& p) {
  if (isImmediate(p.original)) return simpl(p.parts);
  switch (tagOf(p.original)) {
    case PROC: case MODDEF: return makeUnique(p.parts);
    case COMPLEX: return finishComplex(p.parts);
    case FLOAT: return simpl(newFLOAT(p.parts[1], p.parts[2]));
    case ZPPOLY: return finishPolynomial(p.parts);
    case RATIONAL: return simpl(newObject(PROD, p.parts[1], cons1, p.parts[2], consm1));
    default: return simpl(p.parts);
  }
}

// ---- several replacements

// A replacement is EQUATION(positions as an EXPSEQ, new operand). `depth` positions have been walked.
DAG replaceAll(DAG replacements, Word depth, DAG x) {
  checkStack();
  Parts p{x, takeApart(x)};
  std::int64_t count = numterms(x);
  auto placeOf = [&](Word k) {
    DAG position = replacements[k][1][depth + 1];
    if (!isInteger(position)) KernelException("integer expected in op list");
    std::int64_t i = operandPosition(position);
    if (i < 0) i += count + 1;
    if (i < 0 || i > count) improperSelector();
    return i;
  };
  auto isLast = [&](Word k) { return lengthOf(replacements[k][1]) == depth + 2; };
  for (Word k = 1, n = lengthOf(replacements); k < n; ++k) {
    std::int64_t i = placeOf(k);
    if (isLast(k)) {
      replace(p, i, replacements[k][2]);
      continue;
    }
    // All that goes into the same operand goes there together, at the first of them.
    passWork(n);
    DAG inside = newl2(n, EXPSEQ);
    Word used = 1;
    bool first = true;
    for (Word m = 1; m < n; ++m) {
      if (isLast(m) || placeOf(m) != i) continue;
      if (m < k) first = false;
      inside[used++] = replacements[m];
    }
    if (!first) continue;
    if (used != n) shorten(inside, n, used);
    replace(p, i, replaceAll(inside, depth + 1, op1(i, x)));
  }
  return finish(p);
}

}  // namespace

DAG subsop(std::int64_t i, DAG replacement, DAG x) {
  DAG positions = new2(EXPSEQ, simpl(NewInteger(i)));
  return replaceAll(new2(EXPSEQ, new3(EQUATION, positions, replacement)), 0, x);
}

DAG subsoplist(DAG positions, DAG replacement, DAG x) {
  if (lengthOf(positions[1]) == 1) return replacement;
  return replaceAll(new2(EXPSEQ, new3(EQUATION, positions[1], replacement)), 0, x);
}

DAG builtin::subsop(const BuiltinCall& call) {
  DAG args = call.arguments;
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = args[n];
  DAG replacements = newl2(n, EXPSEQ);
  Word used = 1;
  for (Word k = 1; k < n; ++k) {
    if (!isTag(args[k], EQUATION)) wrongParameters(call);
    DAG position = args[k][1];
    if (isTag(position, LIST)) {
      if (position == emptylist) x = args[k][2];
      else replacements[used++] = new3(EQUATION, position[1], args[k][2]);
    } else if (isInteger(position)) {
      replacements[used++] = new3(EQUATION, new2(EXPSEQ, position), args[k][2]);
    } else {
      wrongParameters(call);
    }
  }
  if (used == 1) return x;
  if (used != n) shorten(replacements, n, used);
  return replaceAll(replacements, 0, x);
}

}  // namespace korel
