#include "algebra/modular/selectors.h"

#include <cstring>

#include "algebra/modular/modular_polynomials.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "store/objects.h"

namespace korel {

void Selection::invalid() const { KernelException(family.invalidArguments, name); }

namespace {

const Selector* findSelector(const SelectorFamily& family, const char* name) {
  std::size_t low = 0, high = family.selectorCount;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    const int order = std::strcmp(name, family.selectors[middle].name);
    if (order == 0) return &family.selectors[middle];
    if (order < 0) high = middle;
    else low = middle + 1;
  }
  return nullptr;
}

DAG nested(const SelectorFamily& family, DAG x, DAG m) {
  const bool runs = isTag(x, FUNCTION) || (family.mapsLists && isTag(x, LIST));
  return runs ? runSelector(family, x, m) : x;
}

DAG runMembers(const SelectorFamily& family, DAG sequence, DAG m) {
  DAG result = CopyAlg(sequence);
  for (Word i = 1; i < lengthOf(result); ++i) result[i] = nested(family, result[i], m);
  return simpl(result);
}

}  // namespace

DAG runSelector(const SelectorFamily& family, DAG expression, DAG m) {
  checkStack();
  if (isDense(expression)) return expression;
  if (family.mapsLists && isTag(expression, LIST)) {
    DAG list = CopyAlg(expression);
    list[1] = runMembers(family, expression[1], m);
    return simpl(list);
  }
  if (!isTag(expression, FUNCTION)) {
    if (family.mapsLists) return expression;
    KernelException(family.badName);
  }
  DAG name = expression[1];
  if (isDense(name)) return name;
  if (!isName(name)) KernelException(family.badName);
  Selection call = {family, name, runMembers(family, expression[2], m), m};
  const Selector* selector = findSelector(family, textOf(name));
  if (selector == nullptr) return simpl(evalsysf(family.library, textOf(name), libraryArguments(call.arguments, m)));
  const auto count = static_cast<int>(call.count());
  if (count < selector->least || (selector->most >= 0 && count > selector->most)) call.invalid();
  return selector->run(call);
}

namespace {

DAG runBuiltin(const SelectorFamily& family, const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG m = call.arguments[2];
  if (isNameOrIndexed(m)) return unevaluatedCall(call);
  if (!isInteger(m) || compcon(m, cons1) <= 0) wrongParameters(call);
  return runSelector(family, call.arguments[1], m);
}

}  // namespace

DAG builtin::modp1(const BuiltinCall& call) { return runBuiltin(modp1Family, call); }
DAG builtin::modp2(const BuiltinCall& call) { return runBuiltin(modp2Family, call); }
DAG builtin::evalgf1(const BuiltinCall& call) { return runBuiltin(evalgf1Family, call); }

}  // namespace korel
