// ARRAY: rtables handed to C by pointer or as copies, and data of C as rtables.

#include "external/c_writer.h"
#include "external/describe_types.h"
#include "frame/errors.h"
#include "store/dag.h"
#include "store/vocabulary.h"
#include "text/print/convert_text.h"

namespace korel {

namespace {

// ---- ranges

// The value of a range's end, as C text; a check comes before it where the number may be missing.
void appendRangeVarValue(const Node* node, const ArrayBound& bound, int i) {
  if (bound.declared == nullptr) return AppendFormatToC("bounds[%d] = %ld;\n", i, static_cast<long>(bound.value));
  const Node* number = bound.declared;
  if (number->parent != node->parent) return AppendFormatToC("bounds[%d] = %s;\n", i, globalVariable(number));
  if (isPointer(number))
    AppendFormatToC("if( %s == NULL ) korelKernelVec->error(\"ARRAY dimension is NULL\");\n", number->c);
  AppendFormatToC("bounds[%d] = %s%s;\n", i, isPointer(number) ? "*" : "", number->c);
}

}  // namespace

void writeBounds(Node* node, bool needed) {
  const ArrayDetails& a = *node->array;
  if (a.ranges == 0) {
    if (needed) userror("cannot create ARRAY with unspecified bounds");
    AppendToC("M_INT *bounds = NULL;\n");
    return;
  }
  AppendFormatToC("M_INT bounds[%d];\n", 2 * a.ranges);
  for (int i = 0; i < 2 * a.ranges; ++i) appendRangeVarValue(node, a.bounds[i], i);
}

namespace {

// ---- settings

struct CName {
  const char* name;
};
constexpr CName datatypeNames[] = {
    {"DATATYPE_ANY"},       {"DATATYPE_COMPLEX_SFLOAT"}, {"DATATYPE_INTEGER8"}, {"DATATYPE_INTEGER16"},
    {"DATATYPE_INTEGER32"}, {"DATATYPE_INTEGER64"},      {"DATATYPE_FLOAT64"},  {"DATATYPE_COMPLEXF64"},
};
constexpr CName storageNames[] = {
    {"STORAGE_SPARSE"},      {"STORAGE_EMPTY"},        {"STORAGE_DIAGONAL"},         {"STORAGE_BAND"},
    {"STORAGE_RECTANGULAR"}, {"STORAGE_UPPER"},        {"STORAGE_STRICT_UPPER"},     {"STORAGE_UPPER_HESSENBERG"},
    {"STORAGE_LOWER"},       {"STORAGE_STRICT_LOWER"}, {"STORAGE_LOWER_HESSENBERG"}, {"STORAGE_SCALAR"},
};
constexpr CName subtypeNames[] = {
    {"SUBTYPE_ARRAY"},
    {"SUBTYPE_MATRIX"},
    {"SUBTYPE_COLUMN_VECTOR"},
    {"SUBTYPE_ROW_VECTOR"},
};

bool hasBand(const RTableSettings& s) { return s.storage == storageBand || s.storage == storageSparse; }

void appendRTableSettings(const Node* node) {
  const RTableSettings& s = node->array->settings;
  AppendToC("korelKernelVec->rtableGetDefaults(&s);\n");
  AppendFormatToC("s.num_dimensions = %d;\n", node->array->ranges == 0 ? -1 : node->array->ranges);
  AppendFormatToC("s.data_type = %s;\n", datatypeNames[s.datatype].name);
  AppendFormatToC("s.storage = %s;\n", storageNames[s.storage].name);
  if (hasBand(s)) AppendFormatToC("s.p1 = %d;\ns.p2 = %d;\n", s.b1, s.b2);
  AppendFormatToC("s.order = %s;\n", s.order == cOrder ? "ORDER_C" : "ORDER_FORTRAN");
  if (node->array->subtypeTold) AppendFormatToC("s.subtype = %s;\n", subtypeNames[s.subtype].name);
  if (s.readOnly) AppendToC("s.read_only = TRUE;\n");
  for (Word i = 1; i < lengthOf(s.functions); ++i)
    AppendFormatToC("korelKernelVec->rtableAppendIndFn(&s,korelKernelVec->evalKorelStatement(\"'%s'\"));\n",
                    escapedForC(textOf(ConvertToName(s.functions[i], true))));
}

// The condition under which the settings `t` of an rtable are those that C expects.
void typeRTableSettings(const Node* node) {
  const RTableSettings& s = node->array->settings;
  AppendToC("t.data_type == s.data_type && t.storage == s.storage &&\n");
  if (hasBand(s)) AppendToC("    t.p1 == s.p1 && t.p2 == s.p2 &&\n");
  if (node->array->ranges != 1) AppendToC("    (t.num_dimensions < 2 || t.order == s.order) &&\n");
  if (node->array->subtypeTold) AppendToC("    t.subtype == s.subtype &&\n");
  if (!node->callOnly && !s.readOnly) AppendToC("    !t.read_only &&\n");
  AppendToC("    t.index_functions == s.index_functions");
}

const char* slotOf(const Node* node) { return newText("Array[%d]", node->globalIndex); }

// ---- helpers

// A new rtable over the data at A, or with data of its own when A is null.
void writeAlloc(Node* node) {
  const ArrayDetails& a = *node->array;
  AppendFormatToC("\nstatic ALGEB %s_ALLOC( void *A, M_INT *bounds )\n{\n", typeName(node));
  AppendToC("RTableSettings s;\n");
  appendRTableSettings(node);
  if (a.isFloat32) {
    AppendToC("{\nALGEB m = korelKernelVec->rtableCreate(&s,NULL,bounds);\n");
    AppendToC("FLOAT64 *d = (FLOAT64*) korelKernelVec->rtableData(m);\n");
    AppendToC("M_INT i, n = korelKernelVec->rtableNumElements(m);\n");
    AppendToC("if( A != NULL ) for( i=0; i<n; ++i ) d[i] = ((FLOAT32*)A)[i];\n");
    AppendToC("return( m );\n}\n}\n");
    return;
  }
  if (!a.copy) AppendToC("s.foreign = TRUE;\n");
  AppendToC("if( A == NULL ) s.foreign = FALSE;\n");
  AppendToC("return( korelKernelVec->rtableCreate(&s,(void*)A,bounds) );\n}\n");
}

// The data of C are those of an rtable that it was given.
void appendIsGlobalArray(int dimensions) {
  AppendFormatToC("for( i=0; i<%d; ++i ) {\n", counts().arrays);
  AppendToC("ALGEB m = Array[i];\n");
  AppendFormatToC(
      "if( m == NULL || korelKernelVec->rtableData(m) != (void*)A ||\n"
      "    korelKernelVec->rtableNumDimensions(m) != %d ) continue;\n",
      dimensions);
  AppendFormatToC("for( k=1; k<=%d; ++k )\n", dimensions);
  AppendToC(
      "    if( korelKernelVec->rtableLowerBound(m,k) != bounds[2*k-2] ||\n"
      "        korelKernelVec->rtableUpperBound(m,k) != bounds[2*k-1] ) break;\n");
  AppendFormatToC("if( k > %d ) return( m );\n}\n", dimensions);
}

void writeToKorel(Node* node) {
  AppendFormatToC("\nstatic ALGEB %s_TO_KOREL( void *A, M_INT *bounds )\n{\n", typeName(node));
  if (!node->array->isFloat32 && !node->array->copy) {
    AppendToC("int i, k;\n");
    appendIsGlobalArray(node->array->ranges);
  }
  AppendFormatToC("return( %s_ALLOC(A,bounds) );\n}\n", typeName(node));
}

void writeShapeCheck(const Node* node) {
  AppendFormatToC(
      "if( korelKernelVec->rtableNumDimensions(m) != %d )\n"
      "    korelKernelVec->error(\"ARRAY dimensions do not match\");\n",
      node->array->ranges);
  AppendFormatToC("for( k=1; k<=%d; ++k )\n", node->array->ranges);
  AppendToC(
      "    if( korelKernelVec->rtableLowerBound(m,k) != bounds[2*k-2] ||\n"
      "        korelKernelVec->rtableUpperBound(m,k) != bounds[2*k-1] )\n"
      "        korelKernelVec->error(\"ARRAY dimensions do not match\");\n");
}

void writeRefusal() {
  AppendToC("korelKernelVec->error(\"external function received an ARRAY with incorrect settings\");\n");
}

// A finite number that float[4] can't hold is refused as a single one is.
void writeNarrowing() {
  AppendToC("for( i=0; i<n; ++i ) {\n");
  AppendToC("f[i] = (FLOAT32) d[i];\n");
  AppendToC("if( f[i] - f[i] != 0 && d[i] - d[i] == 0 )\n");
  AppendToC("    korelKernelVec->korelToFloat32(korelKernelVec->toKorelFloat(d[i]));\n");
  AppendToC("}\n");
}

void writeFloat32Data() {
  AppendToC("{\nFLOAT64 *d = (FLOAT64*) korelKernelVec->rtableData(m);\n");
  AppendToC("M_INT i, n = korelKernelVec->rtableNumElements(m);\n");
  AppendToC("FLOAT32 *f = (FLOAT32*) korelKernelVec->alloc(n*sizeof(FLOAT32)+1);\n");
  writeNarrowing();
  AppendToC("return( f );\n}\n");
}

// The data of m, or of a copy of it, which then stands in Array[n].
void writeToC(Node* node) {
  const ArrayDetails& a = *node->array;
  AppendFormatToC("\nstatic %s%s_TO_C( ALGEB m, M_INT *bounds )\n{\n", valueType(node), typeName(node));
  AppendToC("RTableSettings s, t;\nint k;\n");
  appendRTableSettings(node);
  AppendToC("if( korelKernelVec->isRTable(m) ) {\n");
  if (a.ranges != 0) writeShapeCheck(node);
  AppendToC("korelKernelVec->rtableGetSettings(&t,m);\n");
  if (a.copy) {
    AppendToC("m = korelKernelVec->rtableCopy(&s,m);\n");
  } else {
    AppendToC("if( !(");
    typeRTableSettings(node);
    AppendToC(") )\n    ");
    if (a.noCopy) writeRefusal();
    else AppendToC("m = korelKernelVec->rtableCopy(&s,m);\n");
  }
  AppendToC("}\nelse {\n");
  if (a.noCopy) writeRefusal();
  AppendToC("m = korelKernelVec->rtableCopy(&s,m);\n");
  if (a.ranges != 0) writeShapeCheck(node);
  AppendToC("}\n");
  AppendFormatToC("%s = m;\n", slotOf(node));
  if (a.isFloat32) writeFloat32Data();
  else AppendFormatToC("return( (%s) korelKernelVec->rtableData(m) );\n", valueType(node));
  AppendToC("}\n");
}

// float[4] data of C into an rtable of float[8], and back.
void writeFloat32Copies(Node* node) {
  AppendFormatToC("\nstatic void %s_BACK( FLOAT32 *f, ALGEB m )\n{\n", typeName(node));
  AppendToC("FLOAT64 *d = (FLOAT64*) korelKernelVec->rtableData(m);\n");
  AppendToC("M_INT i, n = korelKernelVec->rtableNumElements(m);\n");
  AppendToC("for( i=0; i<n; ++i ) d[i] = f[i];\n}\n");
  AppendFormatToC("\nstatic void %s_FILL( FLOAT32 *f, ALGEB m )\n{\n", typeName(node));
  AppendToC("FLOAT64 *d = (FLOAT64*) korelKernelVec->rtableData(m);\n");
  AppendToC("M_INT i, n = korelKernelVec->rtableNumElements(m);\n");
  writeNarrowing();
  AppendToC("}\n");
}

// ---- passes

bool isHeadParameter(const Node* node) { return node->parent->parent == nullptr; }

void writeNewData(Node* node) {
  AppendFormatToC("%s = %s_ALLOC(NULL,bounds);\n", slotOf(node), typeName(node));
  if (node->array->isFloat32) AppendFormatToC("%s = %s_TO_C(%s,bounds);\n", node->c, typeName(node), slotOf(node));
  else AppendFormatToC("%s = (%s) korelKernelVec->rtableData(%s);\n", node->c, valueType(node), slotOf(node));
}

void arrayIntoC(Node* node) {
  beginNullBlock(newText("korelKernelVec->isUnnamedZero(%s)", node->algeb), newText("%s = NULL;", node->c));
  writeBounds(node, node->returnOnly);
  if (node->returnOnly) {
    writeNewData(node);
    endNullBlock();
    return;
  }
  const bool mayBeUnset = node->byReference && !node->callOnly && isHeadParameter(node);
  if (mayBeUnset) {
    AppendFormatToC("if( korelKernelVec->isUnassignedName(%s) ) {\n", node->algeb);
    if (node->array->ranges == 0)
      AppendToC("korelKernelVec->error(\"cannot create ARRAY with unspecified bounds\");\n");
    else writeNewData(node);
    AppendToC("}\nelse ");
  }
  AppendFormatToC("%s = %s_TO_C(%s,bounds);\n", node->c, typeName(node), node->algeb);
  endNullBlock();
}

void arrayOutOfC(Node* node) {
  beginNullBlock(newText("%s == NULL", node->c), newText("%s = korelKernelVec->toKorelInteger(0);", node->algeb));
  writeBounds(node, true);
  AppendFormatToC("%s = %s_TO_KOREL(%s,bounds);\n", node->algeb, typeName(node), node->c);
  endNullBlock();
}

}  // namespace

void describeARRAY(Node* node, Pass pass) {
  switch (pass) {
    case declarePass: return AppendFormatToC("%s%s;\n", valueType(node), node->c);
    case intoCPass: return arrayIntoC(node);
    case outOfCPass: return arrayOutOfC(node);
    case allocatePass:
      AppendToC("{\n");
      writeBounds(node, true);
      writeNewData(node);
      AppendToC("}\n");
      return;
    case helpersPass:
      if (node->array->ranges != 0) {
        writeAlloc(node);
        writeToKorel(node);
      }
      writeToC(node);
      if (node->array->isFloat32) writeFloat32Copies(node);
      return;
  }
}

}  // namespace korel
