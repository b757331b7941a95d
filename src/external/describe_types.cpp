#include "external/describe_types.h"

#include "external/c_writer.h"
#include "frame/errors.h"

namespace korel {

namespace {

using DescribeFunction = void (*)(Node* node, Pass pass);
constexpr DescribeFunction describeFunctions[nodeKindCount] = {
    describeSTRUCT, describeINTEGER, describeFLOAT,   describeCOMPLEX, describeSTRING, describeARRAY,
    describeENUM,   describeCHAR,    describeBOOLEAN, describeSTRUCT,  describePROC,   describeANYTHING,
};

[[noreturn]] void fatal() { userror("fatal error generating wrapper code"); }

// Bits in the names of C types.
int bitsOf(const Node* node) { return 8 * node->size; }

}  // namespace

void describeType(Node* node, Pass pass) {
  stackPush(node);
  describeFunctions[node->kind](node, pass);
  stackPop();
}

// ---- names of types

const char* typeName(const Node* node) {
  switch (node->kind) {
    case procNode: return newText("MWRAPPROC_P_%d", node->number);
    case arrayNode: return newText("MWRAPARRAY_A_%d", node->number);
    case structNode: return newText("MWRAPSTRUCT_S_%d", node->number);
    case unionNode: return newText("MWRAPUNION_U_%d", node->number);
    case enumNode: return newText("MWRAPENUM_E_%d", node->number);
    default: fatal();
  }
}

namespace {

const char* elementType(const ArrayDetails& a) {
  if (a.isFloat32) return "FLOAT32";
  switch (a.settings.datatype) {
    case dataInteger8: return "INTEGER8";
    case dataInteger16: return "INTEGER16";
    case dataInteger32: return "INTEGER32";
    case dataInteger64: return "INTEGER64";
    case dataFloat64: return "FLOAT64";
    case dataComplexFloat64: return "COMPLEXF64";
    case dataDag: return "ALGEB";
    default: userror("Unspecified ARRAY datatype");
  }
}

const char* integerType(const Node* node) {
  switch (node->size) {
    case 1: case 2: case 4: case 8: return newText("INTEGER%d", bitsOf(node));
    default: userror("unsupported size, of INTEGER type");
  }
}
const char* floatType(const Node* node) {
  if (node->size != 4 && node->size != 8) userror("unsupported size of FLOAT type");
  return newText("FLOAT%d", bitsOf(node));
}

}  // namespace

const char* valueType(const Node* node) {
  switch (node->kind) {
    case integerNode: case booleanNode: return integerType(node);
    case floatNode: return floatType(node);
    case complexNode: return "ComplexFloat64";
    case stringNode: return "char *";
    case charNode: return "CHAR";
    case arrayNode: return newText("%s *", elementType(*node->array));
    case anythingNode: return "ALGEB";
    default: return typeName(node);
  }
}

bool isPointer(const Node* node) { return node->byReference && node->kind != stringNode && node->kind != arrayNode; }
const char* parameterType(const Node* node) {
  return isPointer(node) ? newText("%s *", valueType(node)) : valueType(node);
}

const char* globalVariable(const Node* node) { return newText("Global_%s", node->identifier); }

// ---- parts of statements

void beginNullBlock(const char* condition, const char* whenNull) {
  AppendFormatToC("if( %s ) %s\n", condition, whenNull);
  AppendToC("else ");
  BeginCBlock();
}
void endNullBlock() { EndCBlock(); }

namespace {

// By reference, as a parameter or a member: around `value`, which converts between *c and the object.
using ValueFunction = void (*)(Node* node, const char* c);

bool isHeadParameter(const Node* node) { return node->parent != nullptr && node->parent->parent == nullptr; }

// A structure that is a table is changed in place: it needs no name.
bool isTableStruct(const Node* node) { return (node->kind == structNode && !node->isList) || node->kind == unionNode; }

void declare(Node* node) {
  if (isPointer(node)) AppendFormatToC("%s v_%s;\n", valueType(node), node->c);
  AppendFormatToC("%s %s;\n", parameterType(node), node->c);
}

// The argument must be a name, that the result can go to.
void writeNameCheck(Node* node) {
  if (node->acceptsAnything || node->callOnly || !isHeadParameter(node)) return;
  const char* other = isTableStruct(node) ? newText(" && !korelKernelVec->isTable(%s)", node->algeb) : "";
  AppendFormatToC("if( !korelKernelVec->isUnassignedName(%s) && !korelKernelVec->isAssignedName(%s)%s )\n", node->algeb,
                  node->algeb, other);
  AppendFormatToC(
      "    korelKernelVec->error(\"expected named %s, instead got %%1; make sure all REF variables are "
      "'quoted'\", %s);\n",
      typeText(node), node->algeb);
}

// Memory for *c: a local variable of the wrapper, or a block of the heap.
void writeMemory(Node* node) {
  if (isHeadParameter(node)) AppendFormatToC("%s = &v_%s;\n", node->c, node->c);
  else AppendFormatToC("%s = (%s*) korelKernelVec->alloc(sizeof(%s));\n", node->c, valueType(node), valueType(node));
  AppendFormatToC("memset(%s, 0, sizeof(%s));\n", node->c, valueType(node));
}

void pointerIntoC(Node* node, ValueFunction value) {
  beginNullBlock(newText("korelKernelVec->isUnnamedZero(%s)", node->algeb), newText("%s = NULL;", node->c));
  writeNameCheck(node);
  writeMemory(node);
  if (!node->returnOnly) {
    const bool mayBeUnset = isHeadParameter(node) && !node->callOnly;
    if (mayBeUnset) AppendFormatToC("if( !korelKernelVec->isUnassignedName(%s) ) {\n", node->algeb);
    value(node, newText("(*%s)", node->c));
    if (mayBeUnset) AppendToC("}\n");
  }
  endNullBlock();
}

void pointerOutOfC(Node* node, ValueFunction value) {
  beginNullBlock(newText("%s == NULL", node->c), newText("%s = korelKernelVec->toKorelInteger(0);", node->algeb));
  value(node, newText("(*%s)", node->c));
  endNullBlock();
}

// A kind whose values are converted by one statement each way.
void describeValue(Node* node, Pass pass, ValueFunction intoC, ValueFunction outOfC) {
  switch (pass) {
    case declarePass: return declare(node);
    case intoCPass: return isPointer(node) ? pointerIntoC(node, intoC) : intoC(node, node->c);
    case outOfCPass: return isPointer(node) ? pointerOutOfC(node, outOfC) : outOfC(node, node->c);
    case allocatePass:
      if (isPointer(node)) writeMemory(node);
      return;
    case helpersPass: return;
  }
}

}  // namespace

// ---- scalars

void describeINTEGER(Node* node, Pass pass) {
  describeValue(
      node, pass,
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->korelToInteger%d(%s);\n", c, bitsOf(n), n->algeb);
      },
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->toKorelInteger((long) %s);\n", n->algeb, c);
      });
}

void describeFLOAT(Node* node, Pass pass) {
  describeValue(
      node, pass,
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->korelToFloat%d(%s);\n", c, bitsOf(n), n->algeb);
      },
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->toKorelFloat((double) %s);\n", n->algeb, c);
      });
}

void describeCOMPLEX(Node* node, Pass pass) {
  describeValue(
      node, pass,
      [](Node* n, const char* c) { AppendFormatToC("%s = korelKernelVec->korelToComplexFloat64(%s);\n", c, n->algeb); },
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->toKorelComplex(%s.re, %s.im);\n", n->algeb, c, c);
      });
}

// A text of one letter, or the number of one.
void describeCHAR(Node* node, Pass pass) {
  describeValue(
      node, pass,
      [](Node* n, const char* c) {
        AppendFormatToC("if( (korelKernelVec->isString(%s) || korelKernelVec->isUnassignedName(%s)) &&\n", n->algeb,
                        n->algeb);
        AppendFormatToC("    strlen(korelKernelVec->korelToString(%s)) == 1 )\n", n->algeb);
        AppendFormatToC("    %s = *korelKernelVec->korelToString(%s);\n", c, n->algeb);
        AppendFormatToC("else %s = korelKernelVec->korelToInteger8(%s);\n", c, n->algeb);
      },
      [](Node* n, const char* c) { AppendFormatToC("%s = korelKernelVec->toKorelChar((long) %s);\n", n->algeb, c); });
}

void describeBOOLEAN(Node* node, Pass pass) {
  describeValue(
      node, pass,
      [](Node* n, const char* c) {
        AppendFormatToC("%s = (%s) korelKernelVec->korelToBool(%s);\n", c, valueType(n), n->algeb);
      },
      [](Node* n, const char* c) {
        AppendFormatToC("%s = korelKernelVec->toKorelBoolean((long) %s);\n", n->algeb, c);
      });
}

// No description makes one.
void describeENUM(Node*, Pass) {}

// The object itself.
void describeANYTHING(Node* node, Pass pass) {
  const bool copiedBack = pass == outOfCPass && node->byReference;
  if (copiedBack) userror("don't know how to convert void* back to Korel");
  describeValue(
      node, pass, [](Node* n, const char* c) { AppendFormatToC("%s = %s;\n", c, n->algeb); },
      [](Node* n, const char* c) { AppendFormatToC("%s = %s;\n", n->algeb, c); });
}

// ---- strings

namespace {
// An argument that the wrapper copies onto the stack when it is short (bench/external.sh).
bool hasShortCopy(const Node* node) {
  return node->size == 0 && !node->byReference && !node->isGlobal && isHeadParameter(node) && !isReturn(node);
}
}  // namespace

void writeStringDisposal(Node* node) {
  const char* isOwn = hasShortCopy(node) ? newText(" && %s != t_%s", node->c, node->c) : "";
  AppendFormatToC("if( %s != NULL%s ) korelKernelVec->dispose(%s);\n", node->c, isOwn, node->c);
}

namespace {

// Within a structure a string of a told size is a part of it.
bool isInline(const Node* node) {
  const Node* parent = node->parent;
  return node->size != 0 && !node->byReference && parent != nullptr &&
         (parent->kind == structNode || parent->kind == unionNode);
}

constexpr int shortCopyBytes = 256;

void fillBuffer(Node* node) {
  AppendFormatToC("strncpy(%s, korelKernelVec->korelToString(%s), %d);\n", node->c, node->algeb, node->size);
}

// C gets a copy: the text of a string belongs to all who have it. A short copy of an argument lies on the stack.
void stringIntoC(Node* node) {
  if (isInline(node)) return fillBuffer(node);
  beginNullBlock(newText("korelKernelVec->isUnnamedZero(%s)", node->algeb), newText("%s = NULL;", node->c));
  if (node->byReference) writeNameCheck(node);
  if (node->size == 0) {
    AppendFormatToC("char *text = korelKernelVec->korelToString(%s);\n", node->algeb);
    AppendFormatToC("size_t bytes = strlen(text) + 1;\n");
    const char* memory = hasShortCopy(node) ? newText("bytes <= sizeof(t_%s) ? t_%s : ", node->c, node->c) : "";
    AppendFormatToC("%s = (char*) memcpy(%skorelKernelVec->alloc(bytes), text, bytes);\n", node->c, memory);
  } else {
    AppendFormatToC("%s = (char*) korelKernelVec->alloc(%d);\n", node->c, node->size + 1);
    if (!node->returnOnly) {
      if (node->byReference && isHeadParameter(node))
        AppendFormatToC("if( !korelKernelVec->isUnassignedName(%s) || korelKernelVec->isString(%s) )\n    ",
                        node->algeb, node->algeb);
      fillBuffer(node);
    }
  }
  endNullBlock();
}

void stringOutOfC(Node* node) {
  if (isInline(node)) {
    AppendToC("{\n");
    AppendFormatToC("char text[%d];\n", node->size + 1);
    AppendFormatToC("memcpy(text, %s, %d);\n", node->c, node->size);
    AppendFormatToC("text[%d] = 0;\n", node->size);
    AppendFormatToC("%s = korelKernelVec->toKorelString(text);\n", node->algeb);
    AppendToC("}\n");
    return;
  }
  AppendFormatToC("if( %s == NULL ) %s = korelKernelVec->toKorelNULL();\n", node->c, node->algeb);
  AppendFormatToC("else %s = korelKernelVec->toKorelString(%s);\n", node->algeb, node->c);
}

}  // namespace

void describeSTRING(Node* node, Pass pass) {
  switch (pass) {
    case declarePass:
      if (hasShortCopy(node)) AppendFormatToC("char t_%s[%d];\n", node->c, shortCopyBytes);
      return declare(node);
    case intoCPass: return stringIntoC(node);
    case outOfCPass: return stringOutOfC(node);
    case allocatePass:
      if (!isInline(node)) AppendFormatToC("%s = (char*) korelKernelVec->alloc(%d);\n", node->c, node->size + 1);
      return;
    case helpersPass: return;
  }
}

// ---- structures, by their helpers

namespace {

void structIntoC(Node* node, const char* c) {
  if (isHeadParameter(node)) {
    const char* family = node->kind == unionNode ? "Union" : "Struct";
    AppendFormatToC("%s[%d] = %s;\n", family, node->globalIndex, node->algeb);
  }
  AppendFormatToC("%s_TO_C(&%s, %s);\n", typeName(node), c, node->algeb);
}

// The table that the argument was is changed in place; otherwise there is a new one.
void structOutOfC(Node* node, const char* c) {
  const char* family = node->kind == unionNode ? "Union" : "Struct";
  if (isHeadParameter(node) && isTableStruct(node) && !isReturn(node))
    AppendFormatToC("%s = %s_TO_KOREL(&%s, %s[%d]);\n", node->algeb, typeName(node), c, family, node->globalIndex);
  else AppendFormatToC("%s = %s_TO_KOREL(&%s, NULL);\n", node->algeb, typeName(node), c);
}

}  // namespace

void writeStructHelpers(Node* node);

void describeSTRUCT(Node* node, Pass pass) {
  if (pass == helpersPass) return writeStructHelpers(node);
  describeValue(node, pass, structIntoC, structOutOfC);
}

}  // namespace korel
