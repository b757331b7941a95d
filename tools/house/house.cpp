// Checks of the tree, and what puts it in order:
//
//     house [-C top] CHECK...           includes floors doors sizes paths catalogue format
//     house [-C top] sort FILE...       brings the includes of the files into order
//     house [-C top] format FILE...     that, and the layout of `make format`
//
// A check prints a line for each finding, as a compiler does, and the program ends with 1 if there is one.

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tree.h"

namespace {

struct Check {
  const char* name;
  house::Findings (*run)(const house::Tree& tree);
};
constexpr Check checks[] = {
    {"includes", house::checkIncludeOrder}, {"floors", house::checkFloors}, {"doors", house::checkDoors},
    {"sizes", house::checkSizes},           {"paths", house::checkPaths},   {"catalogue", house::checkCatalogue},
    {"format", house::checkFormat},
};

bool runCheck(const house::Tree& tree, const char* name) {
  for (const Check& check : checks) {
    if (std::strcmp(check.name, name) != 0) continue;
    house::Findings findings = check.run(tree);
    for (const house::Finding& f : findings) {
      if (f.line != 0) std::printf("%s:%zu: %s\n", f.path.c_str(), f.line, f.text.c_str());
      else std::printf("%s: %s\n", f.path.c_str(), f.text.c_str());
    }
    return findings.empty();
  }
  std::fprintf(stderr, "house: no check is called %s\n", name);
  return false;
}

/// `file` as the tree knows it, whether it is given from the top or from here.
std::string pathInTree(const house::Tree& tree, const char* file) {
  if (tree.has(file)) return file;
  return std::filesystem::relative(file, tree.top()).generic_string();
}

bool changeFile(house::Tree& tree, const char* file, house::Lines (*change)(const house::Tree&, const std::string&)) {
  std::string path = pathInTree(tree, file);
  if (!tree.has(path)) {
    std::fprintf(stderr, "house: no file %s in the tree\n", file);
    return false;
  }
  if (house::Lines lines = change(tree, path); lines != tree.lines(path)) tree.write(path, lines);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  int at = 1;
  const char* top = ".";
  if (argc > 2 && std::strcmp(argv[1], "-C") == 0) {
    top = argv[2];
    at = 3;
  }
  if (at == argc) {
    std::fputs("usage: house [-C top] CHECK... | sort FILE... | format FILE...\nchecks:", stderr);
    for (const Check& check : checks) std::fprintf(stderr, " %s", check.name);
    std::fputs("\n", stderr);
    return 2;
  }
  house::Tree tree(top);
  auto change = std::strcmp(argv[at], "sort") == 0     ? house::sortedIncludes
                : std::strcmp(argv[at], "format") == 0 ? house::formatted
                                                       : nullptr;
  if (change != nullptr) ++at;
  bool ok = true;
  for (; at < argc; ++at)
    ok = (change != nullptr ? changeFile(tree, argv[at], change) : runCheck(tree, argv[at])) && ok;
  return ok ? 0 : 1;
}
