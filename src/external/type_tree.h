#pragma once
// The description of a C function as a tree: what `define_external` is told, and what the wrapper is written from.
//
// The head is a procedure, its children are the parameters and the result, and so on down. A description in progress
// owns all its nodes and texts; there is one at a time, and `cleanup` gives it back, on an error too. Nodes refer to
// each other freely, and hold texts that live as long as the description.

#include "rtable/rtable_settings.h"
#include "store/dag.h"

namespace korel {

/// In the order of the table of functions that write them.
enum NodeKind : int {
  structNode,
  integerNode,
  floatNode,
  complexNode,
  stringNode,
  arrayNode,
  enumNode,
  charNode,
  booleanNode,
  unionNode,
  procNode,
  anythingNode,
};
constexpr int nodeKindCount = 12;

struct Node;

/// An end of a range: a number, or the value of another parameter.
struct ArrayBound {
  std::int32_t value = 0;
  DAG variable;              // NAME, or 0
  Node* declared = nullptr;  // the parameter of that name
};

struct ArrayDetails {
  RTableSettings settings;
  int ranges = 0;  // 0: of any shape
  ArrayBound bounds[2 * maxDimensions];
  bool copy = false;         // the data of C are copied
  bool noCopy = false;       // data with other settings are refused
  bool isFloat32 = false;    // in the kernel they are float[8]
  bool subtypeTold = false;  // otherwise any will do
};

struct Node {
  NodeKind kind = anythingNode;
  Node* parent = nullptr;
  Node* firstChild = nullptr;  // members of a structure, parameters of a procedure
  Node* lastChild = nullptr;
  Node* next = nullptr;
  DAG name;                          // a NAME, as it is written
  const char* identifier = nullptr;  // the same for C
  int position = 0;                  // among the children, from 1
  int size = 0;                      // of a number in bytes; of a string, 0: as long as it is
  int number = 0;                    // of the type among those of its kind, from 1
  int globalIndex = -1;              // of Proc[n], Array[n], Struct[n], Union[n]
  bool byReference = false;
  bool acceptsAnything = false;  // by reference: a value that is no name as well
  bool callOnly = false;         // by reference: not copied back
  bool returnOnly = false;       // by reference: not converted into C
  bool noPass = false;           // the function doesn't get it
  bool isGlobal = false;         // callbacks see its value
  bool isList = false;           // a structure that is a list in the language
  ArrayDetails* array = nullptr;
  const char* c = nullptr;      // the C variable, or where else its value stands
  const char* algeb = nullptr;  // the variable of the object
};

/// Bounds of the trees that a description may make.
constexpr int mostNestedTypes = 100;
constexpr int mostGlobals = 256;

/// What a description counts up.
struct DescriptionCounts {
  int procs = 0, arrays = 0, structs = 0, unions = 0;
  int globals = 0;
  Node* global[mostGlobals];
};

struct Description;
extern Description* description;  // the one in progress, or null

/// Begins a description whose head is the function `name`; `cleanup` is registered for errors.
Node* beginDescription(DAG name);
/// Gives the description back. As an error procedure it is called with the message.
void cleanup(const char* message);
DescriptionCounts& counts();

/// A node at the end of its parent's children. Error: "out of memory".
Node* newNode(NodeKind kind, Node* parent, DAG name);
ArrayDetails* newArrayDetails();
/// A text of the description, put together as by printf.
[[gnu::format(printf, 1, 2)]] const char* newText(const char* format, ...);

/// A text as it stands between the quotes of C.
const char* escapedForC(const char* text);

/// The nodes on the way down. Error: "too many levels of recursion".
void stackPush(Node* node);
void stackPop();
Node* stackTop();

/// Enters a node that callbacks and later calls refer to. Errors: "redefinition of global %1", "too many global
/// variables", "RETURN is not a valid name for a global variable", "PROCs, STRUCTs, and ARRAYs are not valid GLOBAL
/// types".
void pushGlobal(Node* node);

/// Parses `name::type` and adds it to `parent`. Errors: those of the description, each beside what it refuses.
void parseParameter(Node* parent, DAG parameter);
/// Finds the parameters that the ranges below `container` name, when all of them are known. Error: "Undefined
/// variable, %1, in ARRAY range".
void resolveRanges(Node* container);
/// Parses the arguments of ARRAY into `node`.
void parseArray(Node* node, DAG arguments);

/// The result among the children of a procedure, or null.
Node* returnNode(const Node* proc);
inline bool isReturn(const Node* node) { return node == returnNode(node->parent); }

/// A type in the words of the description, such as `integer[4]` or `STRUCT`.
const char* typeText(const Node* node);

}  // namespace korel
