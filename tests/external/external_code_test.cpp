#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "external/addresses.h"
#include "external/compile_module.h"
#include "external/libraries.h"
#include "external/vector_functions.h"
#include "kernel_fixture.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "store/collect/collector.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {
namespace {

using test::errorOf;
using test::text;

// Sets a variable of the environment for the time of a test.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    const char* before = std::getenv(name);
    hadValue_ = before != nullptr;
    if (hadValue_) before_ = before;
    setenv(name, value, 1);
  }
  ~EnvironmentVariable() {
    if (hadValue_) setenv(name_, before_.c_str(), 1);
    else unsetenv(name_);
  }

 private:
  const char* name_;
  std::string before_;
  bool hadValue_;
};

// The commands as they are run: defaults, each part that can be told, libraries with and without an extension, paths
// that the shell would take apart, a variable that ends with a slash.
TEST(CompileModule, CommandsOfEachPart) {
  EnvironmentVariable home("KOREL", "/opt/korel/");
  EXPECT_STREQ(compileCommands("dir.d/f_______.c", {}),
               "cc -c -std=gnu17 -O -w -fPIC -I /opt/korel/extern/include -o dir.d/f_______.o dir.d/f_______.c\n"
               "ld -shared -Bsymbolic -Bdynamic -lc -o dir.d/f_______.so dir.d/f_______.o");
  EnvironmentVariable blanks("KOREL", "/my home/it's");
  CompileOptions options;
  options.compiler = "gcc";
  options.options = "-c -g";
  options.incFlag = "-isystem";
  options.objFlag = "-o";
  options.linkFlags = "-G";
  options.libs = newSequence({strinstall("/usr/lib/libz"), strinstall("./libm.so.6"), strinstall("a b.a")});
  EXPECT_STREQ(compileCommands("f", options),
               "gcc -c -g -isystem '/my home/it'\\''s/extern/include' -of.o f.c\n"
               "ld -G -o f.so f.o /usr/lib/libz.so ./libm.so.6 'a b.a'");
}

TEST(CompileModule, LongestPath) {
  const std::string path = std::string(251, 'x');
  CompileOptions options;
  options.compiler = "false";
  EXPECT_EQ(errorOf([&] { CompileModule((path + "x").c_str(), options); }), "file name too long, " + path + "x");
  EXPECT_EQ(errorOf([&] { CompileModule(path.c_str(), options); }).substr(0, 23), "compiler command false ");
}

TEST(CompileModule, WithoutTheVariableItWarns) {
  EnvironmentVariable home("KOREL", "");
  unsetenv("KOREL");
  std::string output = test::outputOf([] { EXPECT_STREQ(includeDirectory(true), "/usr/local/korel/extern/include"); });
  EXPECT_EQ(
      output,
      "Warning, KOREL environment variable not set, using default include path /usr/local/korel/extern/include\n");
}

// One library is opened once, and stays in the table over collections.
TEST(Libraries, OneHandleForOnePath) {
  void* first = LoadExternalLibrary("libm.so.6");
  const Word entries = lengthOf(ExternalLibraryTable);
  gc();
  EXPECT_EQ(LoadExternalLibrary("libm.so.6"), first);
  EXPECT_EQ(lengthOf(ExternalLibraryTable), entries);
  EXPECT_EQ(text(ExternalLibraryTable[entries - 1][1]), "\"libm.so.6\"");
  EXPECT_NE(LookUpExternalSymbol(first, "cos"), nullptr);
}

// What `alloc` gives is known again by its address, and told from an object at the same place.
TEST(Addresses, BlocksAndObjects) {
  for (std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{8}, std::size_t{13}, std::size_t{100000}}) {
    void* place = newNativeBlock(bytes);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(place) % 8, 0u);
    EXPECT_TRUE(isTag(holderOfNative(place), BINARY));
    vector::dispose(place);
  }
  DAG list = new2(LIST, newSequence({cons1}));
  EXPECT_EQ(holderOfNative(toC(list)), list);
  EXPECT_EQ(fromC(nullptr), null);
  EXPECT_EQ(fromC(toC(consm0)), consm0);
  int onTheStack;
  EXPECT_EQ(fromC(reinterpret_cast<ALGEB>(&onTheStack)), null);
}

// Data above 4 GiB through every kind of access, and a copy that owns its data.
TEST(Addresses, ForeignDataAnywhere) {
  static double numbers[4] = {1, 2, 3, 4};
  ::RTableSettings s;
  vector::rtableGetDefaults(&s);
  s.data_type = DATATYPE_FLOAT64;
  s.num_dimensions = 1;
  s.foreign = TRUE;
  const M_INT bounds[2] = {1, 4};
  DAG r = fromC(vector::rtableCreate(&s, numbers, bounds));
  EXPECT_EQ(dataOf(r), reinterpret_cast<unsigned char*>(numbers));
  const std::int32_t third[1] = {3};
  assignElement(r, third, immediate(30));
  EXPECT_EQ(numbers[2], 30);
  DAG copy = CopyRTable(r);
  numbers[2] = 31;
  EXPECT_EQ(text(selectElement(r, third)), "31.");
  EXPECT_EQ(text(selectElement(copy, third)), "30.");
  const M_INT none[2] = {1, 0};
  EXPECT_EQ(dataOf(fromC(vector::rtableCreate(&s, numbers, none))), nullptr);
}

}  // namespace
}  // namespace korel
