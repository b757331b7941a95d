#include "store/object_set.h"

#include <cstdlib>
#include <cstring>

namespace korel {

ObjectSet::Area* ObjectSet::newArea(Word number) {
  if (areas_ == nullptr) areas_ = static_cast<Area**>(std::calloc(areaCount, sizeof(Area*)));
  if (areas_ == nullptr) return nullptr;
  // A time of 0 is before every walk.
  areas_[number] = static_cast<Area*>(std::calloc(1, sizeof(Area)));
  return areas_[number];
}

void ObjectSet::clearLine(Area& area, Word page) {
  std::memset(area.bits[page], 0, sizeof area.bits[page]);
  area.clearedAt[page] = time_;
}

void ObjectSet::release() {
  for (Word i = 0; areas_ != nullptr && i < areaCount; ++i) std::free(areas_[i]);
  std::free(areas_);
  areas_ = nullptr;
}

}  // namespace korel
