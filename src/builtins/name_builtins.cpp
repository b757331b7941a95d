#include "builtins/name_builtins.h"

#include "eval/evaluate/concatenation.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/name_lists.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify.h"
#include "eval/types/types.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

// ---- joined

namespace {

bool isJoinable(DAG sequence) {
  for (Word i = 1; i < lengthOf(sequence); ++i)
    if (!isText(sequence[i]) && !isInteger(sequence[i])) return false;
  return true;
}

}  // namespace

DAG builtin::cat(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (argumentCount(call) == 0) return naminstall("");
  if (isJoinable(args)) return korelCat(args);
  DAG joined = isTag(args[1], STRING) ? strinstall("") : naminstall("");
  for (Word i = 1; i < lengthOf(args); ++i) joined = concatenate(joined, args[i]);
  return joined;
}

DAG builtin::catenate(const BuiltinCall& call) {
  if (argumentCount(call) < 2) wrongParameters(call);
  DAG joined = call.arguments[1];
  for (Word i = 2; i < lengthOf(call.arguments); ++i) joined = concatenate(joined, call.arguments[i]);
  return joined;
}

// ---- listed

DAG builtin::anames(const BuiltinCall& call) {
  if (argumentCount(call) > 1) wrongParameters(call);
  if (argumentCount(call) == 0) return assignedNames();
  DAG kind = call.arguments[1];
  if (isName(kind) && hasText(kind, "environment")) return EnvNameSeq();
  return namesAssigned(kind);
}

DAG builtin::unames(const BuiltinCall& call) {
  if (argumentCount(call) != 0) wrongParameters(call);
  return unassignedNames();
}

// ---- bound

DAG builtin::bind(const BuiltinCall& call) { return AppendToWithBindings(call.arguments); }
DAG builtin::unbind(const BuiltinCall& call) { return RemoveFromWithBindings(call.arguments); }

// ---- sides and members

namespace {
constexpr TagSet tagsWithSides = relationTags | TagSet{RANGE, DCOLON};
}  // namespace

DAG builtin::lhs(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isAmong(call.arguments[1], tagsWithSides)) wrongParameters(call);
  return call.arguments[1][1];
}

DAG builtin::rhs(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isAmong(call.arguments[1], tagsWithSides)) wrongParameters(call);
  return call.arguments[1][2];
}

DAG builtin::exports(const BuiltinCall& call) {
  if (argumentCount(call) < 1) wrongParameters(call);
  DAG module = call.arguments[1];
  if (isTag(module, NAME)) module = valuenv(module, false);
  if (!isTag(module, MODULE)) wrongParameters(call);
  DAG instances = module[moduleExports];
  DAG names = CopyAlg(instances);
  for (Word i = 1; i < lengthOf(instances); ++i) names[i] = naminstall(textOf(declaredName(instances[i])));
  return simpl(names);
}

}  // namespace korel
