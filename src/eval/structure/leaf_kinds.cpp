// Numbers, texts, names, and what refers to the running frame: what a walk over operands doesn't enter.

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/select.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- an operand that is the object itself

std::int64_t one(DAG) { return 1; }
DAG itself(DAG x, std::int64_t) { return x; }
DAG asItIs(DAG x) { return x; }
void replaceAll(TakenApart& object, std::int64_t, DAG replacement) { object.parts = replacement; }

// ---- numbers

DAG quotientOf(const TakenApart& fraction) {
  return simpl(newObject(PROD, fraction.parts[1], cons1, fraction.parts[2], consm1));
}

void replaceInFloat(TakenApart& object, std::int64_t i, DAG replacement) {
  if (!isInteger(replacement)) KernelException("invalid substitution into float");
  object.parts[i] = replacement;
}
DAG floatOf(const TakenApart& number) { return simpl(newFLOAT(number.parts[1], number.parts[2])); }

bool isFinite(DAG x) { return isNumeric(x) && !isInfinite(x) && !isUndefined(x); }

// Parts that are no finite numbers make the sum that the number stood for.
DAG complexOf(const TakenApart& number) {
  DAG parts = number.parts;
  bool hasReal = lengthOf(parts) == 3;
  DAG imaginary = parts[lengthOf(parts) - 1], real = hasReal ? parts[1] : cons0;
  if (isFinite(imaginary) && isFinite(real)) return simpl(newCall(ini("Complex"), {real, imaginary}));
  DAG product = isFinite(imaginary) ? simpl(newCall(ini("Complex"), {cons0, imaginary}))
                                    : simpl(new5(PROD, imaginary, cons1, sqrtm1, cons1));
  return hasReal ? simpl(new5(SUM, real, cons1, product, cons1)) : product;
}

// ---- texts and names: the attribute is a field of its own

DAG textAttribute(DAG x) { return x[2]; }

DAG stringWithAttribute(DAG x, DAG attribute) {
  DAG result = CopyAlg(x);
  result[2] = attribute;
  return simpl(result);
}
DAG indexString(DAG string, DAG index) {
  return isSequence(index) && memberCount(index) == 1 ? select_string(string, index[1]) : DAG();
}

DAG nameOperand(DAG name, std::int64_t) { return valuenv(name, false); }
DAG nameWithAttribute(DAG name, DAG attribute) {
  RetrieveName(name);
  if (isEnvironmentName(name) && isProtected(attribute)) KernelException("an Environment variable cannot be protected");
  updategen(attribute);
  name[2] = attribute;
  return name;
}

// ---- members of modules, and references to a frame

DAG memberOperand(DAG, std::int64_t) { improperSelector(); }
DAG refuseMember(DAG) { KernelException("subsop cannot be applied to unevaluated module members"); }

DAG refuseOperand(DAG, std::int64_t) { KernelException("cannot take op of an unevaluated local object"); }
DAG refuseMap(const OperandWalk&, DAG) {
  KernelException("procs, params, locals, lexicals, and modules cannot be mapped");
}

}  // namespace

constexpr Kind integerKind = {
    .isSingle = true, .count = one, .operand = itself, .takeApart = asItIs, .replace = replaceAll};
constexpr Kind rationalKind = {.isSingle = true, .putTogether = quotientOf};
constexpr Kind floatKind = {.attributeField = 3, .isSingle = true, .replace = replaceInFloat, .putTogether = floatOf};
constexpr Kind hardwareFloatKind = {.isSingle = true, .operand = anyField};
constexpr Kind complexKind = {.isSingle = true, .putTogether = complexOf};

constexpr Kind stringKind = {
    .isSingle = true,
    .count = one,
    .operand = itself,
    .takeApart = asItIs,
    .replace = replaceAll,
    .index = indexString,
    .attribute = textAttribute,
    .withAttribute = stringWithAttribute,
};
constexpr Kind nameKind = {
    .isSingle = true,
    .count = one,
    .operand = nameOperand,
    .takeApart = asItIs,
    .replace = replaceAll,
    .attribute = textAttribute,
    .withAttribute = nameWithAttribute,
};

constexpr Kind memberKind = {.isSingle = true, .operand = memberOperand, .takeApart = refuseMember};
constexpr Kind frameReferenceKind = {.operand = refuseOperand, .map = refuseMap};

}  // namespace korel
