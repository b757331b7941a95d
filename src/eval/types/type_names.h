#pragma once
// The type names that the kernel knows by itself.
//
// One table of names and tests, reached through the first character of the name; within a character
// names are compared as words. A local name of the same spelling is another word, and no built-in type.

#include "store/dag.h"
#include "store/tag_facts.h"

namespace korel {

using TypeTest = bool (*)(DAG e);

/// The test behind a built-in type name, or null when `name` is none. `filedesc` goes by its text, the
/// others by their word.
TypeTest builtinType(DAG name);
/// The tags that decide the type `name`: an object matches exactly when its tag is among them. Empty for
/// a type that needs more than the tag. For walks over many objects.
TagSet tagsOfType(DAG name);
/// `x` can't stand in a set operation: numbers, strings, and objects that never become a set.
bool IsNotSet(DAG x);

/// A POWER, or a PROD of one pair, which is a power too.
bool isPower(DAG x);
/// A COMPLEX whose imaginary part is a zero, whose real part is one or absent.
bool hasZeroImaginaryPart(DAG complex);
bool hasZeroRealPart(DAG complex);

}  // namespace korel
