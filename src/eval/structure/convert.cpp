#include "eval/structure/convert.h"

#include "eval/simplify/simplify.h"
#include "library/library_calls.h"
#include "store/objects.h"

namespace korel {

DAG builtin::convert(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (argumentCount(call) < 2 || isImmediate(args[2]) || !(hasTag(args[2], NAME) || hasTag(args[2], STRING)))
    wrongParameters(call);
  return evalsysf("convert/", textOf(args[2]), simpl(copydel(args, 1, 1)));
}

}  // namespace korel
