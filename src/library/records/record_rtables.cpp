// The records of rtables: object, dimensions and data, in every element format and storage.

#include <bit>
#include <cstdlib>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "library/records/record_reading.h"
#include "library/records/record_writing.h"
#include "rtable/storage_kinds.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The flags that a record keeps: whose memory the data are in is no part of it.
constexpr Word keptFlags = ~((Word{1} << 20) - (Word{1} << 6));

template <class T>
T elementAt(const unsigned char* data, std::int64_t i) {
  T value;
  std::memcpy(&value, data + i * static_cast<std::int64_t>(sizeof(T)), sizeof(T));
  return value;
}

// ---- writing

// A double as its sixteen hexadecimal digits, the sign first.
void putDouble(Writing& w, double x) {
  auto bits = std::bit_cast<std::uint64_t>(x);
  for (int shift = 60; shift >= 0; shift -= 4) put(w, "0123456789ABCDEF"[(bits >> shift) & 15]);
}

void putElement(Writing& w, const unsigned char* data, std::int64_t i, Word datatype) {
  switch (datatype) {
    case dataDag: return putRecord(w, elementAt<DAG>(data, i));
    case dataComplexFloat:
      putRecord(w, elementAt<DAG>(data, 2 * i));
      return putRecord(w, elementAt<DAG>(data, 2 * i + 1));
    case dataInteger8: return putInt(w, elementAt<std::int8_t>(data, i));
    case dataInteger16: return putInt(w, elementAt<std::int16_t>(data, i));
    case dataInteger32: return putInt(w, elementAt<std::int32_t>(data, i));
    case dataInteger64: return putInt(w, elementAt<std::int64_t>(data, i));
    case dataFloat64: return putDouble(w, elementAt<double>(data, i));
    default: putDouble(w, elementAt<double>(data, 2 * i)); return putDouble(w, elementAt<double>(data, 2 * i + 1));
  }
}

void putData(Writing& w, DAG s) {
  if (isKorelSparse(s)) return putRecord(w, s[rtableData]);
  std::int64_t count = rawField(s, rtableCount);
  const unsigned char* data = rtableBlock(s);
  if (data == nullptr) count = 0;
  if (rtableFlag(s, rtableStorage) == storageSparse) {
    std::int64_t indices = count * rtableFlag(s, rtableDimensions);
    for (std::int64_t i = 0; i < indices; ++i) putInt(w, elementAt<std::int32_t>(data, i));
    data += 4 * indices;
  }
  for (std::int64_t i = 0; i < count; ++i) putElement(w, data, i, rtableFlag(s, rtableDatatype));
}

}  // namespace

void putRtable(Writing& w, DAG s) {
  Word n = lengthOf(s);
  putInt(w, n);
  putRecord(w, s[rtableElementType]);
  DAG functions = s[rtableFunctions];  // the last is the next member of the ring
  putRecord(w, lengthOf(functions) <= 2 ? null : simpl(copydel(functions, lengthOf(functions) - 2, 1)));
  putRecord(w, s[rtableAttributes]);
  putInt(w, static_cast<std::int32_t>(rawField(s, rtableFlags) & keptFlags));
  const bool hasData = isKorelSparse(s) || rawField(s, rtableData) != 0;
  for (Word i = rtableCount; i < n; ++i)
    putInt(w, i == rtableCount && !hasData ? 0 : static_cast<std::int32_t>(rawField(s, i)));
  putData(w, s);
}

// ---- reading

namespace {

[[noreturn]] void malformed(Reading& r) { failReading(r, "syntax error while reading file"); }

double nextDouble(Reading& r) {
  std::uint64_t bits = 0;
  for (int k = 0; k < 16; ++k) {
    int c = next(r);
    int digit = c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
    if (digit < 0) failReading(r, "expecting exactly 16 hexadecimal digits");
    bits = bits << 4 | static_cast<std::uint64_t>(digit);
  }
  return std::bit_cast<double>(bits);
}

// A block that grows as its elements arrive; `r.block` holds it, so that a failure gives it back. No record is read
// meanwhile, which might be that of an rtable.
class Block {
 public:
  explicit Block(Reading& r) : r_(r) {}
  template <class T>
  void add(T value) {
    if (used_ + sizeof(T) > space_) grow();
    std::memcpy(static_cast<unsigned char*>(r_.block) + used_, &value, sizeof(T));
    used_ += sizeof(T);
  }
  std::size_t size() const { return used_; }

 private:
  void grow() {
    space_ = space_ == 0 ? 1024 : 2 * space_;
    void* block = std::realloc(r_.block, space_);
    if (block == nullptr) failReading(r_, "ran out of memory");
    r_.block = block;
  }

  Reading& r_;
  std::size_t used_ = 0, space_ = 0;
};

template <class T>
void addInteger(Reading& r, Block& block) {
  std::int64_t value = nextInt(r, sizeof(T) == 8 ? 16 : 8);
  if (static_cast<T>(value) != value) malformed(r);
  block.add(static_cast<T>(value));
}

void addElement(Reading& r, Block& block, Word datatype) {
  switch (datatype) {
    case dataInteger8: return addInteger<std::int8_t>(r, block);
    case dataInteger16: return addInteger<std::int16_t>(r, block);
    case dataInteger32: return addInteger<std::int32_t>(r, block);
    case dataInteger64: return addInteger<std::int64_t>(r, block);
    case dataFloat64: return block.add(nextDouble(r));
    default: block.add(nextDouble(r)); return block.add(nextDouble(r));
  }
}

constexpr std::size_t largestBlock = 0xffffff0;  // bytes that a block inside the heap may have

// The bytes as an object of the heap; its first element's address.
Word blockInHeap(Reading& r, const void* bytes, std::size_t size) {
  if (size == 0) return 0;
  if (size > largestBlock) failReading(r, "not enough memory to allocate rtable");
  DAG binary = newDoubleAligned(static_cast<Word>((size + 3) / 4), BINARY);
  std::memcpy(&binary[1], bytes, size);
  return binary.word + 4;
}

const std::int32_t* boundsOf(DAG s) { return reinterpret_cast<const std::int32_t*>(&s[rtableFirstBound]); }

void checkBounds(Reading& r, DAG s) {
  const std::int32_t* bounds = boundsOf(s);
  for (Word k = 0, n = rtableFlag(s, rtableDimensions); k < n; ++k)
    if (std::int64_t{bounds[2 * k + 1]} - bounds[2 * k] + 1 < 0) malformed(r);
}

// Every count, as far as the data are laid out by it.
void checkDimensions(Reading& r, DAG s) {
  Word n = rtableFlag(s, rtableDimensions), storage = rtableFlag(s, rtableStorage);
  if (storage >= storageKindCount || rtableFlag(s, rtableDatatype) >= datatypeCount) malformed(r);
  if (lengthOf(s) != 2 * n + 7 + tailLength(storage)) failReading(r, "invalid dag length");
  auto first = static_cast<std::int32_t>(rawField(s, lengthOf(s) - 2));
  auto second = static_cast<std::int32_t>(rawField(s, lengthOf(s) - 1));
  std::int64_t count = rawField(s, rtableCount);
  const std::int32_t* bounds = boundsOf(s);
  checkBounds(r, s);
  if (storage == storageSparse) {
    bool good = first >= 0 && first <= count && second >= 0 && second <= 2;
    if (!good || count > 0x7fffffff) malformed(r);
    return;
  }
  if (storage == storageBand && (first < 0 || second < 0)) malformed(r);
  std::int64_t kept = storedElements(bounds, n, storage, first, second);
  // A count of 0 stands for an rtable without data.
  if (kept < 0 || (count != kept && count != 0)) failReading(r, "invalid dag length");
}

// The indices of a sparse rtable, each given to `add`; of others there are none.
template <class Add>
void nextSparseIndices(Reading& r, DAG s, Add add) {
  if (rtableFlag(s, rtableStorage) != storageSparse) return;
  Word n = rtableFlag(s, rtableDimensions);
  Word capacity = rawField(s, rtableCount), used = rawField(s, lengthOf(s) - 2);
  const std::int32_t* bounds = boundsOf(s);
  for (Word k = 0; k < n; ++k)
    for (Word i = 0; i < capacity; ++i) {
      std::int64_t index = nextInt(r);
      if (i < used && (index < bounds[2 * k] || index > bounds[2 * k + 1])) malformed(r);
      add(static_cast<std::int32_t>(index));
    }
}

DAG complexPart(Reading& r, DAG x) {
  if (x && !isNumeric(x) && !isTag(x, NAME) && !isTag(x, SUM)) malformed(r);
  return x;
}

// Elements that are objects, and perhaps rtables: they wait among the fields, with the indices before them.
Word nextReferences(Reading& r, DAG s) {
  const std::size_t first = r.fieldCount;
  nextSparseIndices(r, s, [&r](std::int32_t index) { keepField(r, DAG(static_cast<Word>(index))); });
  const std::size_t elements = r.fieldCount;
  const bool areComplex = rtableFlag(s, rtableDatatype) == dataComplexFloat;
  for (std::int64_t left = std::int64_t{areComplex ? 2 : 1} * rawField(s, rtableCount); left > 0; --left)
    keepField(r, nextRecord(r));
  settleWaiting(r);
  for (std::size_t i = elements; i < r.fieldCount; ++i) {
    DAG x = settledObject(r.fields[i]);
    r.fields[i] = areComplex ? complexPart(r, x) : settled(r, x);
  }
  const Word block = blockInHeap(r, r.fields + first, (r.fieldCount - first) * sizeof(DAG));
  r.fieldCount = first;
  return block;
}

Word nextMachineNumbers(Reading& r, DAG s) {
  Block block(r);
  nextSparseIndices(r, s, [&block](std::int32_t index) { block.add(index); });
  for (Word i = 0, count = rawField(s, rtableCount); i < count; ++i)
    addElement(r, block, rtableFlag(s, rtableDatatype));
  const Word inHeap = blockInHeap(r, r.block, block.size());
  std::free(r.block);
  r.block = nullptr;
  return inHeap;
}

void nextData(Reading& r, DAG s) {
  if (isKorelSparse(s)) {
    s[rtableData] = nextSettled(r);
    if (!isTag(s[rtableData], HASHTAB)) malformed(r);
    return;
  }
  const Word datatype = rtableFlag(s, rtableDatatype);
  const bool areObjects = datatype == dataDag || datatype == dataComplexFloat;
  rawField(s, rtableData) = areObjects ? nextReferences(r, s) : nextMachineNumbers(r, s);
}

// The indexing functions f1 ... fk of `s` as a ring: each member sees those that are still to be applied.
void closeRing(DAG s, DAG functions) {
  Word k = lengthOf(functions) - 1;
  DAG next = s;
  // From the last member, which leads back to the head, to the first.
  for (Word from = k; from > 0; --from) {
    DAG member = CopyAlg(s);
    DAG rest = newl2(k - from + 2, EXPSEQ);
    for (Word i = from + 1; i <= k; ++i) rest[i - from] = functions[i];
    rest[k - from + 1] = next;
    member[rtableFunctions] = markSimplified(rest);
    next = markSimplified(member);
  }
  DAG all = newl2(k + 2, EXPSEQ);
  for (Word i = 1; i <= k; ++i) all[i] = functions[i];
  all[k + 1] = next;
  s[rtableFunctions] = markSimplified(all);
}

}  // namespace

DAG nextRtable(Reading& r, Word number) {
  Word n = nextCount(r, 2 * maxDimensions + 9);
  if (n < 7 || n % 2 == 0) failReading(r, "invalid dag length");
  DAG s = enter(r, number, newl2(n, RTABLE));
  s[rtableElementType] = nextSettled(r);
  DAG functions = nextSettled(r);
  s[rtableAttributes] = nextSettled(r);
  if (!s[rtableElementType] || !isSequence(functions) || !isSequence(s[rtableAttributes])) malformed(r);
  s[rtableFunctions] = functions;
  rawField(s, rtableFlags) = static_cast<Word>(nextInt(r)) & keptFlags;
  for (Word i = rtableCount; i < n; ++i) rawField(s, i) = static_cast<Word>(nextInt(r));
  checkDimensions(r, s);
  nextData(r, s);
  closeRing(s, functions);
  return s;
}

// What earlier versions kept beside rtables: the number of dimensions, their bounds, and the doubles in the order
// of C.
DAG nextOldFloatArray(Reading& r) {
  Word dimensions = nextCount(r, maxDimensions);
  DAG s = newl2(2 * dimensions + 7, RTABLE);
  s[rtableElementType] = ini("anything");
  s[rtableAttributes] = null;
  s[rtableFunctions] = null;
  rawField(s, rtableFlags) = dimensions | Word{1} << 21 | Word{storageRectangular} << 22 | Word{dataFloat64} << 28;
  for (Word i = 0; i < 2 * dimensions; ++i) rawField(s, rtableFirstBound + i) = static_cast<Word>(nextInt(r));
  checkBounds(r, s);
  std::int64_t count = storedElements(boundsOf(s), dimensions, storageRectangular, 0, 0);
  if (count < 0) failReading(r, "invalid dag length");
  rawField(s, rtableCount) = static_cast<Word>(count);
  nextData(r, s);
  closeRing(s, null);
  return s;
}

}  // namespace korel
