#pragma once
// Where references of 32 bits and the addresses that C code sees meet: the one place for both ways.
//
// An object's reference is its address, so that an ALGEB is the reference, widened. Two things lie elsewhere:
//
//   - The argument sequence of a call reaches C as an array of ALGEB on the native stack, which is what `args[2]` in C
//     takes it for. Handed back to the kernel it stands for the sequence itself.
//   - Data that C owns may lie above 4 GiB. An rtable over them is a foreign one: its data word leads to a cell of 8
//     bytes with the true address (`rtableBlock` in store/object_fields.h reads it).
//
// Blocks that `alloc` hands out lie in the heap, behind a mark by which they are known again.

#include <cstddef>
#include <korelshlib.h>

#include "store/dag.h"

namespace korel {

/// A running call of external code. The records form a chain, the innermost first.
struct ExternalCall {
  ALGEB* block;   // what C takes for the argument sequence
  DAG arguments;  // the sequence itself, a simplified one once C has asked for it
  ExternalCall* outer;
};
extern ExternalCall* innermostCall;

inline ALGEB toC(DAG x) { return reinterpret_cast<ALGEB>(std::uintptr_t{x.word}); }
/// The running call whose arguments C takes for the array at `x`, or null.
ExternalCall* callWithBlock(ALGEB x);
/// The object behind an address beyond those of the store, or behind none.
DAG fromOutside(ALGEB x);
/// The object that C means; a null pointer stands for the empty sequence.
inline DAG fromC(ALGEB x) {
  const auto address = reinterpret_cast<std::uintptr_t>(x);
  if (address != 0 && address == static_cast<Word>(address)) [[likely]]
    return DAG(static_cast<Word>(address));
  return fromOutside(x);
}

/// A block of `bytes` bytes in the heap, at a multiple of 8; zero. Nothing refers to it.
void* newNativeBlock(std::size_t bytes);
/// The object to which what C holds belongs: the holder of a block of `newNativeBlock`, or `fromC` itself.
DAG holderOfNative(const void* place);

/// Gives `r`, which has no data yet, those at `data`, which stay the property of C.
void attachForeignData(DAG r, void* data);

}  // namespace korel
