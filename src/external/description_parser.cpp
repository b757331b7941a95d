#include <cstring>

#include "external/type_tree.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

void parseType(Node* node, DAG type);

[[noreturn]] void invalidType(DAG type) { KernelException("invalid argument type, %1", type); }

bool isHeadOfTree(const Node* node) { return node->parent == nullptr; }

// Whether the node stands in the parameters of a callback.
bool isInsideCallback(const Node* node) {
  for (const Node* n = node->parent; n != nullptr; n = n->parent)
    if (n->kind == procNode && !isHeadOfTree(n)) return true;
  return false;
}

// ---- name[size]

struct SizedType {
  const char* name;
  NodeKind kind;
  int sizes[5];  // that it may have, ended by 0
};
constexpr SizedType sizedTypes[] = {
    // name     kind         sizes
    {"integer", integerNode, {1, 2, 4, 8}},
    {"float",   floatNode,   {4, 8}},
    {"complex", complexNode, {8}},
    {"char",    charNode,    {1}},
    {"boolean", booleanNode, {1, 2, 4, 8}},
};

void parseSize(Node* node, const SizedType& row, DAG type) {
  if (memberCount(type[2]) != 1) invalidType(type);
  DAG size = type[2][1];
  if (!isInteger(size)) KernelException("integer expected for size of type, not %1", size);
  for (const int* allowed = row.sizes; *allowed != 0; ++allowed) {
    if (size != immediate(*allowed)) continue;
    node->kind = row.kind;
    node->size = *allowed;
    return;
  }
  KernelException("unsupported size of type, %1", type);
}

void parseString(Node* node, DAG options) {
  node->kind = stringNode;
  for (Word i = 1; i < lengthOf(options); ++i) {
    DAG option = options[i];
    if (!isInteger(option)) KernelException("unknown STRING option %1", option);
    if (!isImmediate(option) || immediateValue(option) < 1) KernelException("invalid STRING size %1", option);
    node->size = immediateValue(option);
  }
}

void parseIndexed(Node* node, DAG type) {
  if (!isName(type[1]) || !isSequence(type[2])) invalidType(type);
  if (hasText(type[1], "string")) return parseString(node, type[2]);
  for (const SizedType& row : sizedTypes)
    if (hasText(type[1], row.name)) return parseSize(node, row, type);
  invalidType(type);
}

// ---- structures and unions

void parseMembers(Node* node, DAG type) {
  DAG word = naminstall(node->kind == structNode ? "STRUCT" : "UNION");
  DAG members = type[2];
  stackPush(node);
  for (Word i = 1; i < lengthOf(members); ++i) {
    DAG member = members[i];
    if (isTag(member, DCOLON)) {
      parseParameter(node, member);
      continue;
    }
    const bool takesList = node->kind == structNode;
    if (isName(member) && hasText(member, "LIST") && takesList) node->isList = true;
    else if (isName(member) && hasText(member, "TABLE")) node->isList = false;
    else KernelException("unknown %1 option %2", word, member);
  }
  stackPop();
  pushGlobal(node);
}
void parseStruct(Node* node, DAG type) {
  node->kind = structNode;
  parseMembers(node, type);
}
void parseUnion(Node* node, DAG type) {
  node->kind = unionNode;
  parseMembers(node, type);
}

// ---- procedures

void parseProc(Node* node, DAG type) {
  if (isInsideCallback(node)) userror("nested PROCs are not allowed");
  if (isReturn(node)) userror("PROCs are not valid RETURN types");
  node->kind = procNode;
  DAG parameters = type[2];
  stackPush(node);
  for (Word i = 1; i < lengthOf(parameters); ++i) {
    if (!isTag(parameters[i], DCOLON)) invalidType(parameters[i]);
    parseParameter(node, parameters[i]);
  }
  stackPop();
  pushGlobal(node);
}

// ---- what stands around a type

void parseRef(Node* node, DAG type) {
  if (node->byReference) userror("nesting REF is not allowed");
  DAG parts = type[2];
  if (memberCount(parts) == 0) invalidType(type);
  node->byReference = true;
  for (Word i = 2; i < lengthOf(parts); ++i) {
    DAG option = parts[i];
    if (isName(option) && hasText(option, "ANYTHING")) node->acceptsAnything = true;
    else if (isName(option) && hasText(option, "CALL_ONLY")) node->callOnly = true;
    else if (isName(option) && hasText(option, "RETURN_ONLY")) node->returnOnly = true;
    else KernelException("unknown %1 option %2", type[1], option);
  }
  parseType(node, parts[1]);
  if (node->kind == stringNode && node->size == 0 && !node->callOnly && !isReturn(node))
    userror("a size must be specified for a string to be copied back");
}

void parseNoPass(Node* node, DAG type) {
  if (isInsideCallback(node)) userror("NO_PASS is not alowed inside a procedure");
  if (memberCount(type[2]) != 1 || !isHeadOfTree(node->parent) || isReturn(node)) invalidType(type);
  node->noPass = true;
  parseType(node, type[2][1]);
}

void parseGlobal(Node* node, DAG type) {
  if (memberCount(type[2]) != 1) invalidType(type);
  node->isGlobal = true;
  parseType(node, type[2][1]);
}

void parseArrayType(Node* node, DAG type) {
  node->kind = arrayNode;
  parseArray(node, type[2]);
  pushGlobal(node);
}

struct TypeConstructor {
  const char* name;
  void (*parse)(Node* node, DAG type);
};
constexpr TypeConstructor typeConstructors[] = {
    // name      parse
    {"ARRAY",   parseArrayType},
    {"GLOBAL",  parseGlobal},
    {"NO_PASS", parseNoPass},
    {"PROC",    parseProc},
    {"REF",     parseRef},
    {"STRUCT",  parseStruct},
    {"UNION",   parseUnion},
};

void parseType(Node* node, DAG type) {
  if (isTag(type, TABLEREF)) return parseIndexed(node, type);
  if (isName(type) && hasText(type, "ANYTHING")) {
    node->kind = anythingNode;
    return;
  }
  if (isName(type) && hasText(type, "string")) return parseString(node, null);
  if (isTag(type, FUNCTION) && isName(type[1]) && isSequence(type[2]))
    for (const TypeConstructor& row : typeConstructors)
      if (hasText(type[1], row.name)) return row.parse(node, type);
  invalidType(type);
}

}  // namespace

void parseParameter(Node* parent, DAG parameter) {
  DAG name = parameter[1];
  if (!isName(name)) KernelException("left hand side of %1 must be a name", parameter);
  for (const Node* child = parent->firstChild; child != nullptr; child = child->next)
    if (child->name == name) KernelException("Duplicate identifier %1 in %2", name, parent->name);
  Node* node = newNode(anythingNode, parent, name);
  stackPush(node);
  parseType(node, parameter[2]);
  if (node->isGlobal) pushGlobal(node);
  stackPop();
}

// ---- ranges

namespace {

// A number in the same container, or a global one.
Node* findVariable(Node* container, DAG name) {
  for (Node* child = container->firstChild; child != nullptr; child = child->next)
    if (child->name == name) return child->kind == integerNode ? child : nullptr;
  const DescriptionCounts& c = counts();
  for (int i = 0; i < c.globals; ++i)
    if (c.global[i]->name == name && c.global[i]->kind == integerNode) return c.global[i];
  return nullptr;
}

}  // namespace

void resolveRanges(Node* container) {
  for (Node* child = container->firstChild; child != nullptr; child = child->next) {
    resolveRanges(child);
    if (child->kind != arrayNode) continue;
    for (int i = 0; i < 2 * child->array->ranges; ++i) {
      ArrayBound& bound = child->array->bounds[i];
      if (!bound.variable) continue;
      bound.declared = findVariable(container, bound.variable);
      if (bound.declared == nullptr) KernelException("Undefined variable, %1, in ARRAY range", bound.variable);
    }
  }
}

}  // namespace korel
