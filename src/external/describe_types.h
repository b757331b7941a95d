#pragma once
// C text for the types of a description: one function for each kind of node, called for each pass.
//
// A pass writes statements for one node, between the C value `node->c` and the object `node->algeb`. For a parameter by
// reference the C value is the pointer.

#include "external/type_tree.h"

namespace korel {

enum Pass : int {
  declarePass = 2,   // the C variables
  intoCPass = 3,     // from the object into C
  outOfCPass = 4,    // from C into the object
  helpersPass = 5,   // types and functions that the other passes use
  allocatePass = 6,  // memory for what C fills in
};

/// Writes `node` in that pass: the functions of the table below, with the node on the stack meanwhile.
void describeType(Node* node, Pass pass);

void describeSTRUCT(Node* node, Pass pass);
void describeINTEGER(Node* node, Pass pass);
void describeFLOAT(Node* node, Pass pass);
void describeCOMPLEX(Node* node, Pass pass);
void describeSTRING(Node* node, Pass pass);
void describeARRAY(Node* node, Pass pass);
void describeENUM(Node* node, Pass pass);
void describeCHAR(Node* node, Pass pass);
void describeBOOLEAN(Node* node, Pass pass);
void describePROC(Node* node, Pass pass);
void describeANYTHING(Node* node, Pass pass);

/// The C type of a value of the node, and that of a parameter, which may be a pointer to it.
const char* valueType(const Node* node);
const char* parameterType(const Node* node);
/// Whether C sees the node as a pointer to a value of its own: by reference, but for strings and arrays.
bool isPointer(const Node* node);
/// At the end of the wrapper: the copy that C was given of a string is of no use any more.
void writeStringDisposal(Node* node);
/// The name of the node's type, as MWRAPSTRUCT_S_1. Error: "fatal error generating wrapper code".
const char* typeName(const Node* node);

/// Of an array: writes M_INT bounds[n] with the values of its ranges, at the beginning of a block. Error: "cannot
/// create ARRAY with unspecified bounds" when they are `needed` and not told.
void writeBounds(Node* node, bool needed);
/// The variable of a global number.
const char* globalVariable(const Node* node);

/// The wrapper of the function: its passes, put together.
void describeFunction(Node* head, const char* wrapper, bool checksCount);

/// `if( x == NULL )` with what stands for a null pointer on the other side, and the block for the other case.
void beginNullBlock(const char* condition, const char* whenNull);
void endNullBlock();

}  // namespace korel
