// Errors that helpers of the library raise in the name of the procedure that a person called.

#include "frame/errors.h"
#include "library/native/native.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

// refuse(name, message, parameter, ...): the error `message` as raised by the procedure of that name.
DAG native::refuse(const BuiltinCall& call) {
  if (argumentCount(call) < 2 || !isName(call.arguments[1])) wrongParameters(call);
  KorelExceptionOf(call.arguments[1], copydel(call.arguments, 0, 1));
}

}  // namespace korel
