#include "hardware/compiled_cache.h"

#include <vector>

#include "store/collect/collector.h"

namespace korel {

std::uint32_t programGeneration = 0;

namespace {

constexpr Word placeCount = 1024;
CompiledProcedure* places[placeCount];
// Allocated once and never destroyed: programs may outlive static objects.
std::vector<CompiledProcedure*>& retired() {
  static auto* rows = new std::vector<CompiledProcedure*>;
  return *rows;
}

Word placeOf(DAG procedure) { return (procedure.word >> 3) * 2654435769u >> 22; }

void retire(Word place) {
  retired().push_back(places[place]);
  places[place] = nullptr;
  ++programGeneration;
}

void dropDead(bool (*isAlive)(DAG), Visitor) {
  for (Word i = 0; i < placeCount; ++i)
    if (places[i] != nullptr && !isAlive(places[i]->procedure)) retire(i);
}

}  // namespace

CompiledProcedure* compiledProcedure(DAG procedure) {
  const Word place = placeOf(procedure);
  if (places[place] != nullptr) {
    if (places[place]->procedure == procedure) return places[place];
    retire(place);
  }
  return places[place] = new CompiledProcedure{procedure, compileProcedure(procedure)};
}

void sweepPrograms() {
  for (CompiledProcedure* row : retired()) {
    if (row->program != nullptr) deleteProgram(row->program);
    delete row;
  }
  retired().clear();
}

void initializePrograms() {
  for (Word i = 0; i < placeCount; ++i)
    if (places[i] != nullptr) retire(i);
  registerLastWish(dropDead, [] {});
}

}  // namespace korel
