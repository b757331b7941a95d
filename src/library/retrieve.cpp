#include "library/retrieve.h"

namespace korel {

void RetrieveName(DAG name) { controlWord(name) &= ~deferredBit; }

}  // namespace korel
