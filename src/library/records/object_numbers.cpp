#include "library/records/object_numbers.h"

#include <cstdlib>
#include <initializer_list>

namespace korel {

ObjectNumbers::Page** ObjectNumbers::newPage(DAG x, Word place) {
  rare_.reserve();
  Page**& pages = isImmediate(x) ? smallPages_ : heapPages_;
  const Word count = isImmediate(x) ? smallPageCount : heapPageCount;
  if (pages == nullptr) pages = static_cast<Page**>(std::calloc(count, sizeof(Page*)));
  if (pages == nullptr) return nullptr;
  auto* page = static_cast<Page*>(std::calloc(1, sizeof(Page)));
  if (page == nullptr) return nullptr;
  pages[place / pageLength] = page;
  ++pageCount_;
  if (isImmediate(x)) ++smallPagesUsed_;
  return pages;
}

WordMap::Outcome ObjectNumbers::insertRare(DAG x, std::int32_t& number) {
  std::int32_t* known = nullptr;
  WordMap::Outcome outcome = rare_.insert(x.word, number, &known);
  if (outcome == WordMap::present) number = *known;
  return outcome;
}

void ObjectNumbers::release() {
  for (Page** pages : {heapPages_, smallPages_}) {
    if (pages == nullptr) continue;
    for (Word i = 0, n = pages == heapPages_ ? heapPageCount : smallPageCount; i < n; ++i) std::free(pages[i]);
    std::free(pages);
  }
  heapPages_ = smallPages_ = nullptr;
  pageCount_ = smallPagesUsed_ = 0;
}

void ObjectNumbers::clear() {
  rare_.clear();
  pagesRanOut_ = false;
  // Times that come round again would bring old numbers back.
  if (++time_ == 0 || pageCount_ > keptPages) {
    release();
    time_ = 1;
  }
}

}  // namespace korel
