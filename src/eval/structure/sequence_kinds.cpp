// Lists, sets and sequences, calls and indexed names: objects whose operands are the members of a sequence.

#include "eval/evaluate/select.h"
#include "eval/structure/kinds.h"
#include "eval/structure/sort.h"

namespace korel {

constexpr Kind sequenceKind = {
    .map = mapSequence,
    .index = select_list,
    .storeRefusal = "cannot assign to an expression sequence",
};

constexpr Kind listKind = {
    .body = 1,
    .attributeField = 2,
    .index = select_list,
    .storeRefusal = "cannot assign to a list",
    .sort = sortList,
};

constexpr Kind setKind = {
    .body = 1,
    .attributeField = 2,
    .index = select_list,
    .storeRefusal = "cannot assign to a set",
};

constexpr Kind callKind = {.body = 2, .headField = 1, .attributeField = 3};

constexpr Kind indexedNameKind = {.body = 2, .headField = 1, .attributeField = 3, .isSingle = true};

}  // namespace korel
