// Any bytes as damage to the files of a library: the index, the data and the side file of an archive.
//
// Each input changes, cuts or lengthens the files of a small archive that is whole, or gives an index of its own, and
// then members are looked up, read, written, listed, and the archive is rebuilt. What must hold for every input: each
// step ends in a value or one reported error, an archive that has been rebuilt holds as many members as the rebuild
// has told, and nothing crashes, hangs or takes memory that the files don't account for.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "fuzz_kernel.h"
#include "library/archive/archive_files.h"
#include "library/archive/march.h"
#include "library/records/record_file.h"
#include "library/repository/directory_contents.h"
#include "library/repository/repository.h"
#include "library/retrieve.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

constexpr const char* fileNames[] = {"korel.ind", "korel.lib", "korel.rep"};
constexpr int fileCount = 3;
struct Content {
  std::uint8_t bytes[65536];
  std::size_t size;
};
Content whole[fileCount], damaged[fileCount];
char directory[64];

void pathOf(int file, char* path) { std::sprintf(path, "%s/%s", directory, fileNames[file]); }

bool readFile(int file, Content& content) {
  char path[128];
  pathOf(file, path);
  std::FILE* stream = std::fopen(path, "rb");
  if (stream == nullptr) return false;
  content.size = std::fread(content.bytes, 1, sizeof content.bytes, stream);
  std::fclose(stream);
  return true;
}
void writeFile(int file, const Content& content) {
  char path[128];
  pathOf(file, path);
  std::FILE* stream = std::fopen(path, "wb");
  if (stream == nullptr || std::fwrite(content.bytes, 1, content.size, stream) != content.size) std::abort();
  std::fclose(stream);
}
void removeTemporaries() {
  for (const char* name : {"lerok.ind", "lerok.lib"}) {
    char path[128];
    std::sprintf(path, "%s/%s", directory, name);
    ::unlink(path);
  }
}

// ---- steps, each a statement of its own

DAG march(const char* command) { return March(newSequence({strinstall(command), strinstall(directory)})); }

constexpr const char* memberNames[] = {"a", "b", "evalf/c", ":-1", "absent"};

DAG saveMembers() {
  DAG names = newl2(4, EXPSEQ);
  for (Word i = 1; i < 4; ++i) {
    DAG name = naminstall(memberNames[i - 1]);
    name[1] = strinstall("value");
    controlWord(name) &= ~deferredBit;
    names[i] = name;
  }
  SaveInRepository(names, 3, strinstall(directory));
  return null;
}

int chosen;  // member of the step
DAG readMember() {
  char path[128];
  std::sprintf(path, "%s/%s.m", directory, memberNames[chosen]);
  return ReadDotMFile(path, true, OpenRepository(strinstall(directory)));
}
DAG writeMember() {
  char path[128];
  std::sprintf(path, "%s/%s.m", directory, memberNames[chosen]);
  WriteDotMFile(path, naminstall("a"), OpenRepository(strinstall(directory)));
  return null;
}

DAG listed() { return march("list"); }
/// How many members the archive lists; -1 when it can't be told.
std::int64_t memberCountListed() {
  static std::int64_t count;
  count = -1;
  run([] {
    DAG list = listed();
    count = memberCount(asSequence(list[1]));
    return null;
  });
  return count;
}

DAG rebuild() {
  DAG told = march("reindex");
  if (isImmediate(told[1]) && immediateValue(told[1]) != memberCountListed()) std::abort();
  return null;
}
DAG collect() {
  DAG told = march("gc");
  if (isImmediate(told[2]) && immediateValue(told[2]) != memberCountListed()) std::abort();
  return null;
}
DAG packAll() { return march("pack"); }

DAG useLibrary() {
  // In front of the library of the tree, which is whole.
  DAG name = ini("libname");
  name[1] = newSequence({strinstall(directory), name[1]});
  setSimplified(name[1]);
  return null;
}
DAG makeArchive() {
  March(newSequence({strinstall("create"), strinstall(directory), immediate(1)}));
  return null;
}

// ---- damage

/// Takes the input four bytes at a time: which file, where, and what.
void damage(const std::uint8_t* data, std::size_t size) {
  for (; size >= 4; data += 4, size -= 4) {
    Content& content = damaged[data[0] % fileCount];
    const std::size_t at = (std::size_t{data[1]} << 8 | data[2]) % (content.size + 1);
    switch (data[0] / fileCount % 8) {
      case 0: content.size = at; break;
      case 1:
        if (content.size + data[3] < sizeof content.bytes) {
          std::memset(content.bytes + content.size, data[2], data[3]);
          content.size += data[3];
        }
        break;
      case 2: content.bytes[data[2] % 128] = data[3]; break;  // near the start, where most of them matter
      default: content.bytes[at < content.size ? at : 0] = data[3];
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel();
  std::strcpy(directory, ::access("/dev/shm", W_OK) == 0 ? "/dev/shm/korel-XXXXXX" : "/tmp/korel-XXXXXX");
  if (::mkdtemp(directory) == nullptr) std::abort();
  startClock();
  run(useLibrary);
  run(makeArchive);
  run(saveMembers);
  chosen = 3;
  run(writeMember);
  run(packAll);
  for (int file = 0; file < fileCount; ++file)
    if (!readFile(file, whole[file])) std::abort();
  if (memberCountListed() != 4) std::abort();
  std::atexit([] {
    removeTemporaries();
    for (int file = 0; file < fileCount; ++file) {
      char path[128];
      pathOf(file, path);
      ::unlink(path);
    }
    ::rmdir(directory);
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  for (int file = 0; file < fileCount; ++file) damaged[file] = whole[file];
  if (data[0] == 'r' && size > 1) {
    // The input itself is the index, as far as it goes.
    std::memcpy(damaged[0].bytes, data + 1, size - 1 < damaged[0].size ? size - 1 : damaged[0].size);
  } else {
    damage(data + 1, size - 1);
  }
  removeTemporaries();
  for (int file = 0; file < fileCount; ++file) writeFile(file, damaged[file]);
  FlushDotMFileCache();
  forgetDirectoryContents();
  startClock();
  for (chosen = 0; chosen < 5; ++chosen) run(readMember);
  chosen = data[0] % 5;
  run(listed);
  run(writeMember);
  run(readMember);
  run(saveMembers);
  run(collect);
  run(rebuild);
  run(packAll);
  run(listed);
  run(readMember);
  collectEvery(64);
  return 0;
}
