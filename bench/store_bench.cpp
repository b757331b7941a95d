// The store: allocation and release of small objects, look-up of names.

#include <cstdlib>
#include <string>
#include <unordered_map>
#include <vector>

#include "row.h"
#include "store/names.h"
#include "store/objects.h"

using namespace korel;
using namespace korel::bench;

namespace {

constexpr int objectCount = 1000000;
constexpr int nameCount = 2000;

DAG rows() {
  static std::vector<DAG> objects(1000);
  static std::vector<void*> blocks(1000);
  row("10^6 objects of 3 words, made and released", "ms", 1e3, "malloc and free of 16 bytes",
      [] {
        for (int n = 0; n < objectCount; n += 1000) {
          for (DAG& x : objects) x = new3(EQUATION, cons1, cons0);
          for (DAG x : objects) release(x, 3);
        }
      },
      [] {
        for (int n = 0; n < objectCount; n += 1000) {
          for (void*& p : blocks) {
            p = std::malloc(16);
            static_cast<volatile char*>(p)[0] = 1;
          }
          for (void* p : blocks) std::free(p);
        }
      });
  static std::vector<std::string> texts;
  static std::unordered_map<std::string, int> map;
  for (int i = 0; i < nameCount; ++i) {
    texts.push_back("name" + std::to_string(i));
    map[texts.back()] = i;
  }
  static Word sink;
  row("10^6 look-ups among 2,000 names", "ms", 1e3, "std::unordered_map<std::string, int>",
      [] {
        for (int round = 0; round < 500; ++round)
          for (const std::string& text : texts) sink += naminstall(text.c_str()).word;
      },
      [] {
        for (int round = 0; round < 500; ++round)
          for (const std::string& text : texts) sink += static_cast<Word>(map.find(text.c_str())->second);
      });
  std::printf("%s", sink == 1 ? "\n" : "");  // what was looked up is used
  return null;
}

}  // namespace

int main() {
  startKernel();
  runInKernel(rows);
}
