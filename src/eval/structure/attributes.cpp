#include "eval/structure/attributes.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/procedures.h"
#include "library/repository/lookup.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel {

namespace {

// How an object keeps its attribute.
enum class Place {
  none,        // it has none
  name,        // field 2, set in place
  text,        // field 2, set in a copy
  collection,  // field 2 behind the body, when there is one
  pair,        // field 3 behind two fields, when there is one
  options,     // the options, field 3
  module,      // the options of the definition
  rtable,      // field 4, set in place
};

Place placeOf(DAG x) {
  if (isImmediate(x)) return Place::none;
  switch (tagOf(x)) {
    case NAME: return Place::name;
    case STRING: return Place::text;
    case LIST: case SET: return Place::collection;
    case FLOAT: case TABLEREF: case FUNCTION: return Place::pair;
    case PROC: case MODDEF: return Place::options;
    case MODULE: return Place::module;
    case RTABLE: return Place::rtable;
    default: return Place::none;
  }
}

DAG singleMember(DAG x) {
  return isObject(x) && hasTag(x, EXPSEQ) && lengthOf(x) == 2 ? x[1] : x;
}

// `x` with `attribute` as its field `at`, the last; without that field when the attribute is empty.
DAG withLastField(DAG x, Word at, DAG attribute) {
  DAG result = newl2(attribute == null ? at : at + 1, tagOf(x));
  for (Word i = 1; i < at; ++i) result[i] = x[i];
  if (attribute != null) result[at] = attribute;
  return result;
}

DAG withField(DAG x, Word at, DAG value) {
  DAG result = CopyAlg(x);
  result[at] = value;
  return result;
}

bool holdsProtected(DAG attribute) {
  return attribute == ini("protected") ||
         (isObject(attribute) && hasTag(attribute, EXPSEQ) && hasMember(attribute, ini("protected")));
}

void setInPlace(DAG x, Word at, DAG attribute) {
  updategen(attribute);
  x[at] = attribute;
}

DAG setNameAttribute(DAG name, DAG attribute) {
  RetrieveName(name);
  if (isEnvironmentName(name) && holdsProtected(attribute))
    KernelException("an Environment variable cannot be protected");
  setInPlace(name, 2, attribute);
  return name;
}

}  // namespace

DAG AttributesOf(DAG x) {
  switch (placeOf(x)) {
    case Place::none: return null;
    case Place::name: case Place::text: return x[2];
    case Place::collection: return lengthOf(x) == 3 ? x[2] : null;
    case Place::pair: return lengthOf(x) == 4 ? x[3] : null;
    case Place::options: return singleMember(x[3]);
    case Place::module: return AttributesOf(x[2]);
    case Place::rtable: return x[4];
  }
  return null;
}

DAG builtin::attributes(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (isObject(x) && hasTag(x, NAME)) RetrieveName(x);
  return AttributesOf(x);
}

DAG builtin::setattribute(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = call.arguments[1];
  DAG attribute = n == 1   ? null
                  : n == 2 ? call.arguments[2]
                           : simpl(copysub(call.arguments, 1, n - 1));
  switch (placeOf(x)) {
    case Place::name: return setNameAttribute(x, attribute);
    case Place::text: return simpl(withField(x, 2, attribute));
    case Place::collection: return simpl(withLastField(x, 2, attribute));
    case Place::pair: return simpl(withLastField(x, 3, attribute));
    case Place::options: {
      bool isSequence = isObject(attribute) && hasTag(attribute, EXPSEQ);
      return simpl(withField(x, 3, simpl(isSequence ? attribute : new2(EXPSEQ, attribute))));
    }
    case Place::module: KernelException("module attributes can only be queried");
    case Place::rtable:
      setInPlace(x, 4, attribute);
      return x;
    case Place::none: break;
  }
  notimpl("eval:setattribute");
}

}  // namespace korel
