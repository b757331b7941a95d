#include "eval/structure/convert.h"

#include "eval/simplify/simplify.h"
#include "library/library_calls.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

DAG builtin::convert(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (argumentCount(call) < 2 || !isText(args[2])) wrongParameters(call);
  return evalsysf("convert/", textOf(args[2]), simpl(copydel(args, 1, 1)));
}

}  // namespace korel
