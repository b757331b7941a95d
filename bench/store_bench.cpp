// The store: allocation and release of small objects, look-up of names, collections.

#include <cstdlib>
#include <string>
#include <unordered_map>
#include <vector>

#include "eval/statements/statements.h"
#include "frame/output.h"
#include "row.h"
#include "store/collect/collector.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

using namespace korel;
using namespace korel::bench;

namespace {

constexpr int objectCount = 1000000;
constexpr int nameCount = 2000;

// A tree of blocks from the system, walked as the marker walks: what a collection over as many live
// objects is measured against. It is built and freed once for all rounds.
struct Node {
  Node* left;
  Node* right;
  std::uint32_t label;
};
constexpr int treeDepth = 19;  // 2^20 - 1 nodes

Node* plant(int depth) {
  auto* node = static_cast<Node*>(std::malloc(sizeof(Node)));
  *node = {depth > 0 ? plant(depth - 1) : nullptr, depth > 0 ? plant(depth - 1) : nullptr, 0};
  return node;
}
int label(Node* node, std::uint32_t mark) {
  if (node == nullptr || node->label == mark) return 0;
  node->label = mark;
  return 1 + label(node->left, mark) + label(node->right, mark);
}
void fell(Node* node) {
  if (node == nullptr) return;
  fell(node->left);
  fell(node->right);
  std::free(node);
}

DAG plantInHeap(int depth) {
  return depth > 0 ? new3(EQUATION, plantInHeap(depth - 1), plantInHeap(depth - 1)) : new3(EQUATION, cons1, cons0);
}

// Work that leaves garbage behind, as a statement's loop does: collections included.
DAG loop() {
  DAG statement = parsestring("for i to 1000000 do [i, f(i)] od:", 0);
  return evalstat(nerintokorel(statement), modeSilent);
}

DAG collectionRows() {
  row(
      "10^6 rounds of an allocating loop", "ms", 1e3, "trees of as many nodes, made and freed", [] { loop(); },
      [] {
        // Four objects a round: 2^22 nodes in trees of 2^10.
        for (int i = 0; i < 4096; ++i) fell(plant(9));
      });
  static DAG tree = plantInHeap(treeDepth);
  ProtectFromGC(tree);
  static Node* nodes = plant(treeDepth);
  static std::uint32_t mark = 0;
  row(
      "collection over 10^6 live objects", "ms", 1e3, "walk over a tree of malloc's blocks", [] { gc(); },
      [] {
        if (label(nodes, ++mark) != (1 << (treeDepth + 1)) - 1) std::abort();
      });
  AllowGC(tree);
  fell(nodes);
  return null;
}

DAG rows() {
  static std::vector<DAG> objects(1000);
  static std::vector<void*> blocks(1000);
  row(
      "10^6 objects of 3 words, made and released", "ms", 1e3, "malloc and free of 16 bytes",
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
  row(
      "10^6 look-ups among 2,000 names", "ms", 1e3, "std::unordered_map<std::string, int>",
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
  runInKernel(collectionRows);
}
