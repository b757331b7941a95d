#include "eval/structure/attributes.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "library/retrieve.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// `x` with `attribute` as its field `at`, the last; without that field when the attribute is empty.
DAG withLastField(DAG x, Word at, DAG attribute) {
  DAG result = newl2(attribute == null ? at : at + 1, tagOf(x));
  for (Word i = 1; i < at; ++i) result[i] = x[i];
  if (attribute != null) result[at] = attribute;
  return result;
}

}  // namespace

DAG AttributesOf(DAG x) {
  const Kind& kind = kindOf(x);
  if (kind.attribute != nullptr) return kind.attribute(x);
  Word at = kind.attributeField;
  return at != 0 && lengthOf(x) == at + 1 ? x[at] : null;
}

DAG builtin::attributes(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (isName(x)) RetrieveName(x);
  return AttributesOf(x);
}

DAG builtin::setattribute(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG x = call.arguments[1];
  DAG attribute = n == 1 ? null : n == 2 ? call.arguments[2] : simpl(copysub(call.arguments, 1, n - 1));
  const Kind& kind = kindOf(x);
  if (kind.withAttribute != nullptr) return kind.withAttribute(x, attribute);
  if (kind.attributeField == 0) notimpl("eval:setattribute");
  return simpl(withLastField(x, kind.attributeField, attribute));
}

}  // namespace korel
