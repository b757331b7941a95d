#include "eval/evaluate/known_values.h"

#include "eval/simplify/simplify.h"
#include "store/collect/collector.h"
#include "store/object_set.h"
#include "store/word_map.h"

namespace korel {

std::uint64_t evaluationClock = 1;
std::uint64_t rememberingSince = 0;

namespace {

// Fewer objects are walked again: most evaluations are short, and what is remembered costs more than it saves.
constexpr std::int64_t unremembered = 4096;

ObjectSet unchanged;
WordMap values;              // of the objects that do change
std::int64_t inARow = 0;     // objects noted
std::uint64_t rowSince = 0;  // at this time

void remember(DAG x, DAG value) {
  if (value == x) unchanged.insert(x);
  else values.insert(x.word, static_cast<std::int32_t>(value.word));
}

}  // namespace

DAG rememberedValue(DAG x) {
  if (unchanged.contains(x)) return x;
  const std::int32_t* value = values.find(x.word);
  return value == nullptr ? DAG() : DAG(static_cast<Word>(*value));
}

DAG noteValue(DAG x, DAG value, std::uint64_t since) {
  if (since != evaluationClock || !isSimplified(x)) return value;
  if (rowSince != since) {
    rowSince = since;
    inARow = 0;
  }
  if (++inARow < unremembered) return value;
  if (inARow == unremembered) {
    unchanged.clear();
    values.clear();
    rememberingSince = since;
  }
  value = simpl(value);
  // The simplifier may have run procedures.
  if (since == evaluationClock) remember(x, value);
  return value;
}

void initializeKnownValues() {
  // Addresses are used again after a collection.
  registerCollectionHook(stepEvaluationClock, nullptr);
}

}  // namespace korel
