#include "external/vector_settings.h"

#include "eval/simplify/simplify.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "frame/errors.h"
#include "rtable/rtable_object.h"
#include "store/vocabulary.h"

namespace korel {

namespace vector {

namespace {

void checkPointer(const void* settings) {
  if (settings == nullptr) userror("Bad settings pointer");
}

DAG appended(ALGEB sequence, DAG member) {
  DAG before = asSequence(simpl(fromC(sequence)));
  return simpl(new3(EXPSEQ, before, member));
}

std::int32_t narrowed(M_INT value) {
  if (value != static_cast<std::int32_t>(value)) userror("Bad settings pointer");
  return static_cast<std::int32_t>(value);
}

DAG indexingFunction(ALGEB reference) {
  DAG function = simpl(fromC(reference));
  if (!korel::isName(function) && !(isTag(function, TABLEREF) && korel::isName(function[1])))
    KernelException("%1 is not a valid indexing function name", function);
  return function;
}

}  // namespace

RTableSettings settingsFromC(const ::RTableSettings* s) {
  checkPointer(s);
  if (s->num_dimensions < -1 || s->num_dimensions > M_INT{maxDimensions})
    userror("too many or too few dimensions for rtable");
  const bool isKnown = s->data_type >= 0 && Word(s->data_type) < datatypeCount && s->storage >= 0 &&
                       Word(s->storage) < storageKindCount && s->subtype >= 0 && s->subtype <= SUBTYPE_ROW_VECTOR;
  if (!isKnown) userror("Bad settings pointer");
  RTableSettings settings;
  settings.datatype = s->data_type;
  if (s->element_type != nullptr) settings.elementType = simpl(fromC(s->element_type));
  settings.subtype = s->subtype;
  settings.storage = s->storage;
  settings.b1 = narrowed(s->p1);
  settings.b2 = narrowed(s->p2);
  settings.order = s->order == ORDER_C ? cOrder : fortranOrder;
  settings.readOnly = s->read_only != FALSE;
  settings.foreign = s->foreign != FALSE;
  settings.dimensions = static_cast<int>(s->num_dimensions);
  settings.functions = asSequence(simpl(fromC(s->index_functions)));
  settings.attributes = asSequence(simpl(fromC(s->attributes)));
  settings.transpose = s->transpose != FALSE;
  if (s->fill != nullptr) settings.fill = simpl(fromC(s->fill));
  return settings;
}

void settingsToC(const RTableSettings& settings, ::RTableSettings* s) {
  s->data_type = static_cast<RTableDatatypeCode>(settings.datatype);
  s->element_type = toC(settings.elementType);
  s->subtype = static_cast<RTableSubtypeCode>(settings.subtype);
  s->storage = static_cast<RTableStorageCode>(settings.storage);
  s->p1 = settings.b1;
  s->p2 = settings.b2;
  s->order = settings.order == cOrder ? ORDER_C : ORDER_FORTRAN;
  s->read_only = settings.readOnly;
  s->foreign = settings.foreign;
  s->num_dimensions = settings.dimensions;
  s->index_functions = toC(settings.functions);
  s->attributes = toC(settings.attributes);
  s->transpose = settings.transpose;
  s->fill = toC(settings.fill);
}

void boundsFromC(const M_INT* bounds, Word n, std::int32_t* result) {
  for (Word i = 0; i < 2 * n; ++i) {
    result[i] = static_cast<std::int32_t>(bounds[i]);
    if (result[i] != bounds[i]) userror("integer dimensions required");
  }
  for (Word k = 0; k < n; ++k)
    if (extentOf(result, k) < 0) userror("must have a non-negative size in each dimension");
}

void rtableGetDefaults(::RTableSettings* s) {
  checkPointer(s);
  settingsToC(RTableSettings(), s);
}
void rtableGetSettings(::RTableSettings* s, ALGEB reference) {
  checkPointer(s);
  DAG r = valueOf(reference);
  if (!isTag(r, RTABLE)) userror("RTABLE expected");
  settingsToC(CopyRTableSettings(r, true), s);
}

void rtableSetAttribute(::RTableSettings* s, ALGEB attribute) {
  checkPointer(s);
  s->attributes = toC(asSequence(simpl(fromC(attribute))));
}
void rtableAppendAttribute(::RTableSettings* s, ALGEB attribute) {
  checkPointer(s);
  s->attributes = toC(appended(s->attributes, simpl(fromC(attribute))));
}
void rtableSetIndFn(::RTableSettings* s, ALGEB function) {
  checkPointer(s);
  s->index_functions = toC(simpl(new2(EXPSEQ, indexingFunction(function))));
}
void rtableAppendIndFn(::RTableSettings* s, ALGEB function) {
  checkPointer(s);
  s->index_functions = toC(appended(s->index_functions, indexingFunction(function)));
}
void rtableSetType(::RTableSettings* s, RTableDatatypeCode code, ALGEB elementType) {
  checkPointer(s);
  s->data_type = code;
  s->element_type = elementType == nullptr ? toC(ini("anything")) : elementType;
}

}  // namespace vector

}  // namespace korel
