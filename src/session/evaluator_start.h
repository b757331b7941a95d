#pragma once
// What the evaluator needs done once the store is ready.

namespace korel {

/// Registers the evaluator's roots with the collector. Calling it again has no effect.
void initializeEvaluator();

}  // namespace korel
