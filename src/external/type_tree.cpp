#include "external/type_tree.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "frame/errors.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

// Everything of a description lies in blocks of one chain, so that an error gives it back at once.
struct Description {
  struct Block {
    Block* below;
  };
  Block* blocks = nullptr;
  DescriptionCounts counts;
  Node* stack[mostNestedTypes];
  int depth = 0;
};
Description* description = nullptr;

namespace {

void* blockOf(std::size_t bytes) {
  auto* block = static_cast<Description::Block*>(std::malloc(sizeof(Description::Block) + bytes));
  if (block == nullptr) userror("out of memory");
  block->below = description->blocks;
  description->blocks = block;
  return block + 1;
}

void tree_cleanup() {
  while (description->blocks != nullptr) {
    Description::Block* below = description->blocks->below;
    std::free(description->blocks);
    description->blocks = below;
  }
}

// Words that C keeps for itself, and the variables that a wrapper has of its own.
constexpr const char* reservedWords[] = {
    "auto",      "break",   "case",      "char",       "const",          "continue", "default",   "do",
    "double",    "else",    "enum",      "extern",     "float",          "for",      "goto",      "if",
    "inline",    "int",     "long",      "register",   "restrict",       "return",   "short",     "signed",
    "sizeof",    "static",  "struct",    "switch",     "typedef",        "union",    "unsigned",  "void",
    "volatile",  "while",   "asm",       "typeof",     "NULL",           "TRUE",     "FALSE",     "ALGEB",
    "CHAR",      "args",    "M_INT",     "M_BOOL",     "M_FAIL",         "INTEGER8", "INTEGER16", "INTEGER32",
    "INTEGER64", "FLOAT32", "FLOAT64",   "COMPLEXF64", "ComplexFloat64", "bool",     "true",      "false",
    "alignas",   "alignof", "constexpr", "nullptr",    "thread_local",
};

const char* identifierOf(DAG name, int position) {
  const char* text = textOf(name);
  bool isPlain = std::isalpha(static_cast<unsigned char>(text[0])) || text[0] == '_';
  for (const char* at = text; *at != '\0'; ++at) {
    const auto c = static_cast<unsigned char>(*at);
    isPlain = isPlain && c < 128 && (std::isalnum(c) || c == '_');
  }
  for (const char* word : reservedWords) isPlain = isPlain && std::strcmp(word, text) != 0;
  return isPlain ? newText("%s", text) : newText("member_%d", position);
}

}  // namespace

Node* beginDescription(DAG name) {
  if (description != nullptr) cleanup(nullptr);
  description = static_cast<Description*>(std::malloc(sizeof(Description)));
  if (description == nullptr) userror("out of memory");
  new (description) Description;
  PushErrorProc(cleanup);
  return newNode(procNode, nullptr, name);
}

void cleanup(const char*) {
  if (description == nullptr) return;
  tree_cleanup();
  std::free(description);
  description = nullptr;
}

DescriptionCounts& counts() { return description->counts; }

Node* newNode(NodeKind kind, Node* parent, DAG name) {
  Node* node = new (blockOf(sizeof(Node))) Node;
  node->kind = kind;
  node->parent = parent;
  node->name = name;
  if (parent != nullptr) {
    node->position = parent->lastChild != nullptr ? parent->lastChild->position + 1 : 1;
    (parent->lastChild != nullptr ? parent->lastChild->next : parent->firstChild) = node;
    parent->lastChild = node;
  }
  node->identifier = identifierOf(name, node->position);
  return node;
}

ArrayDetails* newArrayDetails() { return new (blockOf(sizeof(ArrayDetails))) ArrayDetails; }

const char* newText(const char* format, ...) {
  std::va_list list;
  va_start(list, format);
  const int length = std::vsnprintf(nullptr, 0, format, list);
  va_end(list);
  auto* text = static_cast<char*>(blockOf(static_cast<std::size_t>(length) + 1));
  va_start(list, format);
  std::vsnprintf(text, static_cast<std::size_t>(length) + 1, format, list);
  va_end(list);
  return text;
}

const char* escapedForC(const char* text) {
  const std::size_t length = std::strlen(text);
  auto* result = static_cast<char*>(blockOf(4 * length + 1));
  char* to = result;
  for (std::size_t i = 0; i < length; ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c >= 32 && c != '"' && c != '\\' && c != '?' && c != '{' && c != '}' && c != 127) *to++ = text[i];
    else to += std::snprintf(to, 5, "\\%03o", c);
  }
  *to = '\0';
  return result;
}

// ---- the way down

void stackPush(Node* node) {
  if (description->depth == mostNestedTypes) userror("too many levels of recursion");
  description->stack[description->depth++] = node;
}
void stackPop() { --description->depth; }
Node* stackTop() { return description->depth == 0 ? nullptr : description->stack[description->depth - 1]; }

// ---- globals

namespace {

bool isReturnName(DAG name) { return hasText(name, "RETURN"); }

void enterVariable(Node* node) {
  DescriptionCounts& c = counts();
  if (isReturnName(node->name)) userror("RETURN is not a valid name for a global variable");
  switch (node->kind) {
    case procNode: case structNode: case unionNode: case arrayNode:
      userror("PROCs, STRUCTs, and ARRAYs are not valid GLOBAL types");
    default: break;
  }
  for (int i = 0; i < c.globals; ++i)
    if (c.global[i]->name == node->name) KernelException("redefinition of global %1", node->name);
  if (c.globals == mostGlobals) userror("too many global variables");
  c.global[c.globals++] = node;
}

}  // namespace

void pushGlobal(Node* node) {
  DescriptionCounts& c = counts();
  if (node->isGlobal) return enterVariable(node);
  int* count;
  switch (node->kind) {
    case procNode: count = &c.procs; break;
    case arrayNode: count = &c.arrays; break;
    case structNode: count = &c.structs; break;
    case unionNode: count = &c.unions; break;
    default: return;
  }
  if (*count == mostGlobals) userror("too many global variables");
  node->globalIndex = (*count)++;
  node->number = *count;
}

Node* returnNode(const Node* proc) {
  if (proc == nullptr || proc->kind != procNode) return nullptr;
  for (Node* child = proc->firstChild; child != nullptr; child = child->next)
    if (isReturnName(child->name)) return child;
  return nullptr;
}

const char* typeText(const Node* node) {
  switch (node->kind) {
    case structNode: return "STRUCT";
    case unionNode: return "UNION";
    case arrayNode: return "ARRAY";
    case procNode: return "PROC";
    case integerNode: return newText("integer[%d]", node->size);
    case floatNode: return newText("float[%d]", node->size);
    case complexNode: return newText("complex[%d]", node->size);
    case charNode: return newText("char[%d]", node->size);
    case booleanNode: return newText("boolean[%d]", node->size);
    case stringNode: return node->size == 0 ? "string" : newText("string[%d]", node->size);
    case enumNode: case anythingNode: break;
  }
  return "ANYTHING";
}

}  // namespace korel
