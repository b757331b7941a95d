#include "rtable/information.h"

#include <algorithm>
#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "rtable/create.h"
#include "rtable/element_formats.h"
#include "rtable/element_walks.h"
#include "rtable/rtable_object.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// An Array of `count` elements in the format of `r`; `mode` tells of its data.
DAG newVector(DAG r, std::int64_t count) {
  RTableSettings settings;
  settings.datatype = datatypeOf(r);
  settings.elementType = r[rtableElementType];
  settings.dimensions = 1;
  std::int32_t bounds[] = {1, static_cast<std::int32_t>(count)};
  return RTableCreate(settings, DAG(), bounds, DataMode::cleared);
}

struct Append {
  DAG vector;
  std::int64_t at;
};

DAG tableValues(DAG r) {
  DAG table = r[rtableData];
  Append append{newVector(r, table ? hashcount(table) : 0), 0};
  if (table)
    hashforeach(
        table,
        [](void* arg, PairAddress pair) {
          auto& a = *static_cast<Append*>(arg);
          RTableSetDagToDataOffset(a.vector, a.at++, pairValue(pair));
          return true;
        },
        &append);
  return append.vector;
}

// The first `count` elements of the block as they stand.
DAG blockCopy(DAG r, std::int64_t count) {
  if (rawField(r, rtableData) == 0) count = 0;
  DAG vector = newVector(r, count);
  if (count > 0)
    std::memcpy(dataOf(vector), elementPlace(r, 0),
                static_cast<std::size_t>(count * rtableElementBytes[datatypeOf(r)]));
  if (holdsObjects(vector)) updategens(vector);
  return vector;
}

}  // namespace

DAG RTableRawVectorCopy(DAG r) {
  if (isKorelSparse(r)) return tableValues(r);
  return blockCopy(r, storageOf(r) == storageSparse ? tailOf(r, 2) : rawField(r, rtableCount));
}

namespace {

DAG RTableRawCopy(DAG r) { return isKorelSparse(r) ? tableValues(r) : blockCopy(r, rawField(r, rtableCount)); }

struct InfoOption {
  const char* name;
  DAG (*answer)(DAG r);
};
constexpr InfoOption infoOptions[] = {{"Raw", RTableRawCopy}, {"RawVector", RTableRawVectorCopy}};

}  // namespace

DAG builtin::rtableInfo(const BuiltinCall& call) {
  if (argumentCount(call) == 0) KernelException("too few arguments");
  DAG r = call.arguments[1];
  if (isName(r)) r = valuenv(r, false);
  if (!isTag(r, RTABLE)) KernelException("rtable expected as first argument");
  if (argumentCount(call) < 2) KernelException("too few arguments");
  DAG option = call.arguments[2];
  if (!isText(option)) KernelException("name or string expected as second argument");
  for (const InfoOption& row : infoOptions)
    if (hasText(option, row.name)) return row.answer(r);
  KernelException("unrecognized option %1", option);
}

DAG builtin::rtable_is_zero(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !isTag(call.arguments[1], RTABLE)) KernelException("rtable expected");
  return truth(RTableIsZero(call.arguments[1]));
}

}  // namespace korel
