#include "library/repository/repository.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "library/repository/side_file.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

RepositoryDesc* repositoryList = nullptr;  // the newest first
constexpr Word bucketsOfRepository = 256;

DAG newTable(bool rawKeys) {
  DAG table = newhashtab(bucketsOfRepository);
  if (rawKeys) controlWord(table) |= tableBit;
  ProtectFromGC(table);
  return table;
}

// The first value under the hash of `text` for which `fits` holds, or 0.
template <class Fits>
DAG firstUnder(const char* text, DAG table, Fits fits) {
  const Word key = hashstring(text);
  PairAddress pair = search(key, table);
  if (pair == notFound) return DAG();
  for (; pairKey(pair).word != 0; pair = nextPair(pair))
    if (pairKey(pair).word == key && fits(pairValue(pair))) return pairValue(pair);
  return DAG();
}

void enterReference(RepositoryDesc* r, DAG reference, DAG object) {
  updategen(reference);
  hashinsert(hashstring(textOf(reference)), reference, r->idents);
  hashinsert(hashstring(textOf(object)), reference, r->names);
}

}  // namespace

RepositoryDesc* OpenRepository(DAG dir) {
  for (RepositoryDesc* r = repositoryList; r != nullptr; r = r->next)
    if (r->dir == dir) return r;
  auto* r = static_cast<RepositoryDesc*>(std::malloc(sizeof(RepositoryDesc)));
  if (r == nullptr) KernelException("unable to open repository \"%1\"", dir);
  registerRootWalker(MarkRepositoryTables);
  updategen(dir);
  *r = {dir, newTable(false), 0, newTable(true), newTable(true), repositoryList};
  repositoryList = r;
  return r;
}

void CloseAllRepositories() {
  while (RepositoryDesc* r = repositoryList) {
    repositoryList = r->next;
    for (DAG table : {r->pending, r->idents, r->names}) {
      clearhash(table, true);
      DisposeProtected(table);
    }
    std::free(r);
  }
}

DAG RepositoryName(const RepositoryDesc* r) { return r->dir; }

void MarkRepositoryTables(void (*mark)(DAG x)) {
  for (RepositoryDesc* r = repositoryList; r != nullptr; r = r->next)
    for (DAG x : {r->dir, r->pending, r->idents, r->names}) mark(x);
}

bool isOpenRepository(const char* text, std::size_t length) {
  for (RepositoryDesc* r = repositoryList; r != nullptr; r = r->next)
    if (isText(r->dir) && std::strlen(textOf(r->dir)) == length && std::memcmp(textOf(r->dir), text, length) == 0)
      return true;
  return false;
}

// ---- references

DAG UniqueIdentToObjectRef(RepositoryDesc* r, const char* text) {
  return firstUnder(text, r->idents, [&](DAG reference) { return hasText(reference, text); });
}

DAG ObjectNameToObjectRef(RepositoryDesc* r, DAG object) {
  return firstUnder(textOf(object), r->names, [&](DAG reference) { return reference[1] == object; });
}

DAG GetObjectReference(RepositoryDesc* r, DAG object) {
  DAG reference = ObjectNameToObjectRef(r, object);
  if (!reference) {
    std::uint32_t number = CreateUniqueObjectNumber(textOf(r->dir));
    if (number == 0) KernelException("cannot create unique object reference identifier");
    char text[16];
    std::snprintf(text, sizeof text, ":-%u", number);
    reference = newLocalName(text);
    reference[1] = object;
    reference[2] = r->dir;
    controlWord(reference) |= controlWord(object) & deferredBit;
    updategen(object);
    enterReference(r, reference, object);
  }
  // An object that still lies in another repository is fetched, so that it can be written into this one.
  const bool isElsewhere = (controlWord(object) & deferredBit) != 0 && isTag(object[2], NAME) && object[2][2] != r->dir;
  if (isElsewhere) {
    RetrieveName(object);
    controlWord(reference) &= ~deferredBit;
  }
  return reference;
}

DAG PutObjectReference(RepositoryDesc* r, DAG reference, DAG object) {
  if (DAG known = UniqueIdentToObjectRef(r, textOf(reference))) return known;
  reference[1] = object;
  reference[2] = r->dir;
  object[2] = reference;
  updategen(object);
  enterReference(r, reference, object);
  return reference;
}

void AddObjectToPendingWrites(RepositoryDesc* r, DAG reference) {
  if (search(reference.word, r->pending) != notFound) return;
  hashinsert(reference.word, reference, r->pending);
  ++r->pendingCount;
}

}  // namespace korel
