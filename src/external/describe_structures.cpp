// STRUCT and UNION: their C types, and the functions that convert them.

#include "external/c_writer.h"
#include "external/describe_types.h"
#include "store/dag.h"

namespace korel {

void writeStructHelpers(Node* node);

namespace {

template <class Visit>
void forEachMember(Node* node, Visit visit) {
  for (Node* member = node->firstChild; member != nullptr; member = member->next) visit(member);
}

bool isUnion(const Node* node) { return node->kind == unionNode; }

// ---- the C type

void writeDeclaration(Node* node) {
  AppendFormatToC("\ntypedef %s {\n", isUnion(node) ? "union" : "struct");
  forEachMember(node, [](Node* m) {
    if (m->kind == stringNode && m->size != 0 && !m->byReference)
      AppendFormatToC("char %s[%d];\n", m->identifier, m->size);
    else AppendFormatToC("%s %s;\n", parameterType(m), m->identifier);
  });
  if (node->firstChild == nullptr) AppendToC("char empty;\n");
  AppendFormatToC("} %s;\n", typeName(node));
}

// The members stand at p->name, their objects in `e`.
void nameMembers(Node* node) {
  forEachMember(node, [](Node* m) {
    m->c = newText("p->%s", m->identifier);
    m->algeb = "e";
  });
}

const char* keyOf(Node* member) {
  return newText("korelKernelVec->toKorelName(\"%s\",TRUE)", escapedForC(textOf(member->name)));
}

// Arrays need the numbers of other members.
template <class Visit>
void forEachMemberArraysLast(Node* node, Visit visit) {
  for (bool arrays : {false, true})
    forEachMember(node, [&](Node* m) {
      if ((m->kind == arrayNode) == arrays) visit(m);
    });
}

// ---- into C

void writeMemberIntoC(Node* member) {
  AppendFormatToC("/* %s */\n", member->identifier);
  if (member->returnOnly) {
    describeType(member, allocatePass);
    return;
  }
  if (member->parent->isList) {
    AppendFormatToC("e = korelKernelVec->listSelect(s, %d);\n", member->position);
  } else {
    AppendFormatToC("e = korelKernelVec->tableSelect(s, %s);\n", keyOf(member));
    AppendFormatToC("if( e == NULL ) korelKernelVec->error(\"undefined table entry %%1\", %s);\n", keyOf(member));
  }
  describeType(member, intoCPass);
}

// The test that a value which is no table is meant for the member.
const char* appendTypeCheck(Node* member) {
  switch (member->kind) {
    case arrayNode: return "korelKernelVec->isRTable(s)";
    case complexNode: return "korelKernelVec->isComplexFloat(s)";
    case integerNode: return "korelKernelVec->isInteger(s)";
    case floatNode: return "korelKernelVec->isFloat(s)";
    case stringNode: case charNode: return "korelKernelVec->isString(s)";
    case structNode: case unionNode: return "korelKernelVec->isTable(s)";
    case procNode: return "korelKernelVec->isProcedure(s)";
    default: return "TRUE";
  }
}

void writeUnionIntoC(Node* node) {
  AppendToC("if( korelKernelVec->isTable(s) ) {\n");
  forEachMember(node, [](Node* m) {
    AppendFormatToC("if( korelKernelVec->tableHasEntry(s, %s) ) {\n", keyOf(m));
    AppendFormatToC("e = korelKernelVec->tableSelect(s, %s);\n", keyOf(m));
    describeType(m, intoCPass);
    AppendToC("return;\n}\n");
  });
  AppendToC("}\nelse {\n");
  forEachMember(node, [](Node* m) {
    AppendFormatToC("if( %s ) {\n", appendTypeCheck(m));
    AppendToC("e = s;\n");
    describeType(m, intoCPass);
    AppendToC("return;\n}\n");
  });
  AppendToC("}\n");
  AppendFormatToC("korelKernelVec->error(\"undefined table entry %%1\", korelKernelVec->toKorelName(\"%s\",TRUE));\n",
                  escapedForC(textOf(node->name)));
}

void writeToC(Node* node) {
  AppendFormatToC("\nstatic void %s_TO_C( %s *p, ALGEB s )\n{\n", typeName(node), typeName(node));
  AppendToC("ALGEB e;\n");
  nameMembers(node);
  if (isUnion(node)) writeUnionIntoC(node);
  else forEachMemberArraysLast(node, writeMemberIntoC);
  AppendToC("}\n");
}

// ---- out of C

// C sees the member as a pointer, which may be null.
bool mayBeNull(const Node* member) {
  return isPointer(member) || member->kind == arrayNode || member->kind == procNode ||
         (member->kind == stringNode && (member->size == 0 || member->byReference));
}

void writeMemberOutOfC(Node* member) {
  AppendFormatToC("/* %s */\n", member->identifier);
  const bool isList = member->parent->isList;
  if (mayBeNull(member)) {
    if (isList)
      AppendFormatToC("if( %s == NULL ) korelKernelVec->listAssign(s, %d, korelKernelVec->toKorelInteger(0));\n",
                      member->c, member->position);
    else AppendFormatToC("if( %s == NULL ) korelKernelVec->tableDelete(s, %s);\n", member->c, keyOf(member));
    AppendToC("else ");
  }
  AppendToC("{\n");
  describeType(member, outOfCPass);
  if (isList) AppendFormatToC("korelKernelVec->listAssign(s, %d, e);\n", member->position);
  else AppendFormatToC("korelKernelVec->tableAssign(s, %s, e);\n", keyOf(member));
  AppendToC("}\n");
}

// Which member of a union C has set is not told: pointers are followed only where the program has put one.
void writeUnionMemberOutOfC(Node* member) {
  if (mayBeNull(member) || member->kind == anythingNode)
    AppendFormatToC("if( %s != NULL && korelKernelVec->tableHasEntry(s, %s) ) ", member->c, keyOf(member));
  AppendToC("{\n");
  describeType(member, outOfCPass);
  AppendFormatToC("korelKernelVec->tableAssign(s, %s, e);\n", keyOf(member));
  AppendToC("}\n");
}

void writeToKorel(Node* node) {
  AppendFormatToC("\nstatic ALGEB %s_TO_KOREL( %s *p, ALGEB s )\n{\n", typeName(node), typeName(node));
  AppendToC("ALGEB e;\n");
  nameMembers(node);
  if (node->isList)
    AppendFormatToC("s = korelKernelVec->listAlloc(%d);\n", node->lastChild ? node->lastChild->position : 0);
  else AppendToC("if( s == NULL || !korelKernelVec->isTable(s) ) s = korelKernelVec->tableAlloc();\n");
  forEachMember(node, isUnion(node) ? writeUnionMemberOutOfC : writeMemberOutOfC);
  AppendFormatToC("return( %s );\n}\n", node->isList ? "korelKernelVec->simplify(s)" : "s");
}

}  // namespace

void writeStructHelpers(Node* node) {
  forEachMember(node, [](Node* m) { describeType(m, helpersPass); });
  writeDeclaration(node);
  writeToC(node);
  writeToKorel(node);
}

}  // namespace korel
