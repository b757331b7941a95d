#include "external/addresses.h"

#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "rtable/rtable_object.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

ExternalCall* innermostCall = nullptr;

ExternalCall* callWithBlock(ALGEB x) {
  ExternalCall* call = innermostCall;
  while (call != nullptr && reinterpret_cast<ALGEB*>(x) != call->block) call = call->outer;
  return call;
}

DAG fromOutside(ALGEB x) {
  ExternalCall* call = callWithBlock(x);
  return call != nullptr ? call->arguments = simpl(call->arguments) : null;
}

// ---- blocks of the heap
//
//   BINARY   s[1] s[2]                 s[3] ...
//            mark, xor its address     the block

namespace {

constexpr std::uint64_t blockMark = 0x6b6f72656c303130;
constexpr std::size_t markBytes = sizeof blockMark;

std::uint64_t markFor(const void* place) { return blockMark ^ reinterpret_cast<std::uintptr_t>(place); }

}  // namespace

void* newNativeBlock(std::size_t bytes) {
  if (bytes > std::size_t{4} * (maxLength - 8)) KernelException("object too large");
  DAG holder = newDoubleAligned(static_cast<Word>((bytes + 7) / 4 + markBytes / 4), BINARY);
  void* place = reinterpret_cast<char*>(&holder[1]) + markBytes;
  const std::uint64_t mark = markFor(place);
  std::memcpy(static_cast<void*>(&holder[1]), &mark, markBytes);
  return place;
}

DAG holderOfNative(const void* place) {
  const auto address = reinterpret_cast<std::uintptr_t>(place);
  if (address % 8 == 0 && address > markBytes && address == static_cast<Word>(address)) {
    const Word first = static_cast<Word>(address - markBytes);
    std::uint64_t mark;
    std::memcpy(&mark, reinterpret_cast<const char*>(place) - markBytes, markBytes);
    if (mark == markFor(place)) return DAG(first - 4);
  }
  return fromC(reinterpret_cast<ALGEB>(const_cast<void*>(place)));
}

// ---- data of C

void attachForeignData(DAG r, void* data) {
  if (rawField(r, rtableCount) == 0) return;
  DAG cell = newDoubleAligned(2, BINARY);
  std::memcpy(static_cast<void*>(&cell[1]), &data, sizeof data);
  UpdateRTABLE(r, rtableData, cell.word + 4);
}

}  // namespace korel
