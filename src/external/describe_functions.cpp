// PROC: callbacks, and the wrapper of the function itself.

#include "external/c_writer.h"
#include "external/describe_types.h"
#include "frame/errors.h"
#include "store/dag.h"

namespace korel {

namespace {

template <class Visit>
void forEachParameter(Node* proc, Visit visit) {
  Node* result = returnNode(proc);
  for (Node* p = proc->firstChild; p != nullptr; p = p->next)
    if (p != result) visit(p);
}
template <class Visit>
void forEachParameterArraysLast(Node* proc, Visit visit) {
  for (bool arrays : {false, true})
    forEachParameter(proc, [&](Node* p) {
      if ((p->kind == arrayNode) == arrays) visit(p);
    });
}

void nameParameters(Node* proc) {
  int i = 0;
  forEachParameter(proc, [&](Node* p) {
    ++i;
    p->c = newText("a%d", i);
    p->algeb = newText("arg%d", i);
  });
  if (Node* result = returnNode(proc)) {
    result->c = "r";
    result->algeb = "mr";
  }
}

int parameterCount(Node* proc) {
  int n = 0;
  forEachParameter(proc, [&](Node*) { ++n; });
  return n;
}

const char* resultType(Node* proc) {
  Node* result = returnNode(proc);
  return result == nullptr ? "void" : parameterType(result);
}

// The types of the parameters that C gets; with their names in a definition.
void writeParameterTypes(Node* proc, bool withNames) {
  const char* before = " ";
  forEachParameter(proc, [&](Node* p) {
    if (p->noPass) return;
    AppendFormatToC("%s%s%s%s", before, parameterType(p), withNames ? " " : "", withNames ? p->c : "");
    before = ", ";
  });
  if (*before == ' ') AppendToC(" void");
}

void writeComment(const Node* p) { AppendFormatToC("/* %s */\n", p->identifier); }

bool isTableStruct(const Node* node) { return (node->kind == structNode && !node->isList) || node->kind == unionNode; }

// ---- callbacks

// A parameter by reference that the procedure may assign to reaches it as a name.
bool travelsAsName(const Node* p) {
  if (!p->byReference || p->callOnly || p->kind == arrayNode) return false;
  return !isTableStruct(p);
}

void writeCallbackArgument(Node* p) {
  writeComment(p);
  if (!travelsAsName(p)) return describeType(p, outOfCPass);
  beginNullBlock(newText("%s == NULL", p->c), newText("%s = korelKernelVec->toKorelInteger(0);", p->algeb));
  if (!p->returnOnly) {
    describeType(p, outOfCPass);
    AppendFormatToC("e = %s;\n", p->algeb);
  }
  AppendFormatToC("%s = korelKernelVec->toKorelName(\"%s\",FALSE);\n", p->algeb, p->identifier);
  if (!p->returnOnly) AppendFormatToC("korelKernelVec->assign(%s, e);\n", p->algeb);
  endNullBlock();
}

// What the procedure has assigned goes to where C's pointer leads.
void writeCallbackResult(Node* p) {
  if (p->kind == arrayNode && p->array->isFloat32) {
    AppendFormatToC("if( %s != NULL ) %s_FILL(%s, %s);\n", p->c, typeName(p), p->c, p->algeb);
    return;
  }
  if (!p->byReference || p->callOnly || p->kind == arrayNode) return;
  if (travelsAsName(p)) AppendFormatToC("if( %s != NULL && korelKernelVec->isAssignedName(%s) ) {\n", p->c, p->algeb);
  else AppendFormatToC("if( %s != NULL ) {\n", p->c);
  if (p->kind == stringNode) {
    AppendFormatToC("strncpy(%s, korelKernelVec->korelToString(%s), %d);\n", p->c, p->algeb, p->size);
  } else {
    const char* pointer = p->c;
    p->byReference = false;
    p->c = newText("(*%s)", pointer);
    describeType(p, intoCPass);
    p->c = pointer;
    p->byReference = true;
  }
  AppendToC("}\n");
}

void writeEvaluation(Node* proc) {
  AppendFormatToC("mr = korelKernelVec->evalKorelProc(Proc[%d], %d", proc->globalIndex, parameterCount(proc));
  forEachParameter(proc, [](Node* p) { AppendFormatToC(", %s", p->algeb); });
  AppendToC(");\n");
}

void writeCallback(Node* proc) {
  nameParameters(proc);
  AppendFormatToC("\ntypedef %s (*%s)(", resultType(proc), typeName(proc));
  writeParameterTypes(proc, false);
  AppendToC(" );\n");
  AppendFormatToC("\nstatic %s %s_CALL(", resultType(proc), typeName(proc));
  writeParameterTypes(proc, true);
  AppendToC(" )\n{\n");
  forEachParameter(proc, [](Node* p) { AppendFormatToC("ALGEB %s;\n", p->algeb); });
  AppendToC("ALGEB mr, e;\n");
  Node* result = returnNode(proc);
  if (result != nullptr) AppendFormatToC("%s r;\n", parameterType(result));
  forEachParameterArraysLast(proc, writeCallbackArgument);
  writeEvaluation(proc);
  forEachParameter(proc, writeCallbackResult);
  if (result != nullptr) {
    describeType(result, intoCPass);
    AppendToC("return( r );\n");
  }
  AppendToC("}\n");
}

}  // namespace

void describePROC(Node* node, Pass pass) {
  const char* slot = newText("Proc[%d]", node->globalIndex);
  switch (pass) {
    case declarePass: return AppendFormatToC("%s %s;\n", parameterType(node), node->c);
    case intoCPass:
      if (node->byReference) userror("cannot allocate a proc");
      beginNullBlock(newText("korelKernelVec->isUnnamedZero(%s)", node->algeb), newText("%s = NULL;", node->c));
      AppendFormatToC("%s = %s;\n", slot, node->algeb);
      AppendFormatToC("%s = %s_CALL;\n", node->c, typeName(node));
      return endNullBlock();
    case outOfCPass:
      AppendFormatToC("%s = %s == NULL ? korelKernelVec->toKorelInteger(0) : %s;\n", node->algeb, slot, slot);
      return;
    case allocatePass: userror("cannot allocate a proc");
    case helpersPass:
      for (Node* p = node->firstChild; p != nullptr; p = p->next) describeType(p, helpersPass);
      return writeCallback(node);
  }
}

// ---- the wrapper

namespace {

struct StaticRow {
  const char* name;
  int DescriptionCounts::*count;
};
constexpr StaticRow staticRows[] = {
    {"Proc", &DescriptionCounts::procs},
    {"Array", &DescriptionCounts::arrays},
    {"Struct", &DescriptionCounts::structs},
    {"Union", &DescriptionCounts::unions},
};

void writeStatics() {
  for (const StaticRow& row : staticRows)
    if (counts().*row.count != 0) AppendFormatToC("static ALGEB %s[%d];\n", row.name, counts().*row.count);
  for (int i = 0; i < counts().globals; ++i) {
    const Node* global = counts().global[i];
    AppendFormatToC("static %s %s;\n", valueType(global), globalVariable(global));
  }
}

void writeStaticsTable(const char* wrapper) {
  AppendFormatToC("\nMWrapperStatic %s_statics[] = {\n", wrapper);
  for (const StaticRow& row : staticRows)
    if (counts().*row.count != 0) AppendFormatToC("{ %s, sizeof(%s), TRUE },\n", row.name, row.name);
  for (int i = 0; i < counts().globals; ++i) {
    const char* global = globalVariable(counts().global[i]);
    const bool isObject = counts().global[i]->kind == anythingNode;
    AppendFormatToC("{ &%s, sizeof(%s), %s },\n", global, global, isObject ? "TRUE" : "FALSE");
  }
  AppendToC("{ &args, sizeof(args), FALSE },\n{ NULL, 0, FALSE }\n};\n");
}

void writeStart(Node* head, bool checksCount) {
  AppendToC("korelKernelVec = kv;\n");
  AppendToC("args = (ALGEB*) fn_args;\n");
  if (checksCount) {
    AppendToC("if( korelKernelVec->numArgs((ALGEB) args) != ");
    AppendIntegerToC(parameterCount(head));
    AppendToC(" ) \n    korelKernelVec->error(\"Incorrect number of arguments\");\n");
  }
  for (const StaticRow& row : staticRows) {
    if (counts().*row.count == 0) continue;
    AppendToC("for( i=0; i<");
    AppendIntegerToC(counts().*row.count);
    AppendFormatToC("; ++i ) %s[i] = NULL;\n", row.name);
  }
}

void writeArgument(Node* p) {
  CNewLine();
  writeComment(p);
  describeType(p, intoCPass);
  if (p->returnOnly && isTableStruct(p))
    AppendFormatToC("if( korelKernelVec->isTable(%s) ) %s[%d] = %s;\n", p->algeb,
                    p->kind == unionNode ? "Union" : "Struct", p->globalIndex, p->algeb);
  if (p->isGlobal) {
    if (isPointer(p)) AppendFormatToC("if( %s != NULL ) ", p->c);
    AppendFormatToC("%s = %s%s;\n", globalVariable(p), isPointer(p) ? "*" : "", p->c);
  }
}

void writeCall(Node* head) {
  CNewLine();
  if (returnNode(head) != nullptr) AppendToC("r = ");
  AppendToC("(*fn)(");
  const char* before = "";
  forEachParameter(head, [&](Node* p) {
    if (p->noPass) return;
    AppendFormatToC("%s%s", before, p->c);
    before = ", ";
  });
  AppendToC(");\n");
}

const char* isNameText(const Node* p) {
  return newText("(korelKernelVec->isAssignedName(%s) || korelKernelVec->isUnassignedName(%s))", p->algeb, p->algeb);
}

void writeArrayBack(Node* p) {
  const char* slot = newText("Array[%d]", p->globalIndex);
  AppendFormatToC("if( %s != NULL ) {\n", slot);
  if (p->array->isFloat32) AppendFormatToC("%s_BACK(%s, %s);\n", typeName(p), p->c, slot);
  AppendFormatToC(
      "if( %s &&\n    (!korelKernelVec->isRTable(%s) || korelKernelVec->rtableData(%s) != "
      "korelKernelVec->rtableData(%s)) )\n    korelKernelVec->assign(%s, %s);\n}\n",
      isNameText(p), p->algeb, p->algeb, slot, p->algeb, slot);
}

// By reference, and not for the call only: the value goes to the name, or into the table that was given.
void writeBack(Node* p) {
  if (!p->byReference || p->callOnly) return;
  if (p->kind == arrayNode) return writeArrayBack(p);
  const char* argument = p->algeb;
  AppendFormatToC("if( %s != NULL ) {\nALGEB e;\n", p->c);
  p->algeb = "e";
  describeType(p, outOfCPass);
  p->algeb = argument;
  const char* same =
      isTableStruct(p) ? newText(" && %s[%d] == NULL", p->kind == unionNode ? "Union" : "Struct", p->globalIndex) : "";
  AppendFormatToC("if( %s%s ) korelKernelVec->assign(%s, e);\n}\n", isNameText(p), same, argument);
}

void writeDisposal(Node* p) {
  if (p->kind == stringNode && !p->isGlobal) writeStringDisposal(p);
}

void writeEnd(Node* head) {
  Node* result = returnNode(head);
  const bool handsBack = result != nullptr && result->kind == anythingNode && !result->byReference;
  if (result != nullptr && !handsBack) describeType(result, outOfCPass);
  forEachParameter(head, writeBack);
  forEachParameter(head, writeDisposal);
  if (result == nullptr) AppendToC("return( korelKernelVec->toKorelNULL() );\n");
  else AppendToC(handsBack ? "return( r );\n" : "return( mr );\n");
}

}  // namespace

void describeFunction(Node* head, const char* wrapper, bool checksCount) {
  writeStatics();
  nameParameters(head);
  for (Node* p = head->firstChild; p != nullptr; p = p->next) describeType(p, helpersPass);
  nameParameters(head);
  Node* result = returnNode(head);
  BeginCFunc(wrapper);
  AppendFormatToC("%s (*fn)(", resultType(head));
  writeParameterTypes(head, false);
  AppendToC(" );\n");
  BeginCBlock();
  forEachParameter(head, [](Node* p) {
    describeType(p, declarePass);
    AppendFormatToC("ALGEB %s;\n", p->algeb);
  });
  if (result != nullptr) AppendFormatToC("%s r;\n", parameterType(result));
  AppendToC("ALGEB mr;\nint i;\n\n");
  writeStart(head, checksCount);
  int i = 0;
  forEachParameter(head, [&](Node* p) { AppendFormatToC("%s = args[%d];\n", p->algeb, ++i); });
  forEachParameterArraysLast(head, writeArgument);
  writeCall(head);
  writeEnd(head);
  EndCBlock();
  writeStaticsTable(wrapper);
}

}  // namespace korel
