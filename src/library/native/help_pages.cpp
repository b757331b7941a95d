// Native library procedures that find pages of help.
//
// A page is a section of a file in the directory `help` beside an archive of the library: it goes from a heading
// `## name, name` to the next heading. docs/library/ holds the sources of the files.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/errors.h"
#include "library/native/native.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::string_view pageMark = "## ";

std::string contentOf(const std::string& path) {
  std::string text;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return text;
  char block[16384];
  for (std::size_t got; (got = std::fread(block, 1, sizeof block, file)) > 0;) text.append(block, got);
  std::fclose(file);
  return text;
}

std::vector<std::string> pageFiles(const std::string& directory) {
  std::vector<std::string> paths;
  DIR* listing = opendir(directory.c_str());
  if (listing == nullptr) return paths;
  while (const dirent* entry = readdir(listing)) {
    const std::string_view name = entry->d_name;
    if (name.ends_with(".md") && !name.starts_with('.')) paths.push_back(directory + "/" + entry->d_name);
  }
  closedir(listing);
  std::sort(paths.begin(), paths.end());
  return paths;
}

/// Whether `name` is one of those in a heading, which stand between commas, perhaps in quotes.
bool headingHas(std::string_view heading, std::string_view name) {
  while (!heading.empty()) {
    const std::size_t comma = std::min(heading.find(','), heading.size());
    std::string_view word = heading.substr(0, comma);
    while (word.starts_with(' ') || word.starts_with('`')) word.remove_prefix(1);
    while (word.ends_with(' ') || word.ends_with('`') || word.ends_with('\r')) word.remove_suffix(1);
    if (word == name) return true;
    heading.remove_prefix(std::min(comma + 1, heading.size()));
  }
  return false;
}

/// The text as a terminal shows it: `\\*` keeps a star from being a mark in the document.
std::string withoutEscapes(std::string text) {
  for (std::size_t at = 0; (at = text.find("\\*", at)) != text.npos; ++at) text.erase(at, 1);
  return text;
}

/// The page of `name` in a file's text, its heading without mark and quotes; empty when there is none.
std::string pageIn(std::string_view text, std::string_view name) {
  std::size_t at = text.starts_with(pageMark) ? 0 : text.find("\n## ");
  for (; at != text.npos; at = text.find("\n## ", at + 1)) {
    const std::size_t start = at + (text[at] == '\n' ? 1 : 0) + pageMark.size();
    const std::size_t lineEnd = std::min(text.find('\n', start), text.size());
    if (!headingHas(text.substr(start, lineEnd - start), name)) continue;
    std::string_view page = text.substr(start, std::min(text.find("\n## ", lineEnd), text.size()) - start);
    while (page.ends_with('\n')) page.remove_suffix(1);
    std::string shown(page.substr(0, lineEnd - start));
    std::erase(shown, '`');
    shown.append(page.substr(lineEnd - start));
    return withoutEscapes(std::move(shown)) + "\n";
  }
  return {};
}

/// The first line of a file without its mark.
std::string titleIn(const std::string& text) {
  const std::size_t start = std::min(text.find_first_not_of("# "), text.size());
  return text.substr(start, std::min(text.find('\n', start), text.size()) - start);
}

std::string_view baseName(std::string_view path) {
  path.remove_prefix(path.rfind('/') + 1);
  return path.substr(0, path.size() - std::strlen(".md"));
}

/// What a file is about: what stands before its first page, and the headings of all.
std::string subjectIn(const std::string& text) {
  constexpr std::size_t width = 78;
  std::string shown = titleIn(text) + "\n", line;
  const std::size_t start = std::min(text.find('\n'), text.size());
  shown += text.substr(start, text.find("\n## ", start) - start);
  for (std::size_t at = text.find("\n## "); at != text.npos; at = text.find("\n## ", at + 1)) {
    std::string names = text.substr(at + 4, text.find('\n', at + 1) - at - 4);
    std::erase(names, '`');
    if (line.size() + names.size() + 3 > width) {
      shown += line + "\n";
      line.clear();
    }
    line += "   " + names;
  }
  return shown + line + "\n";
}

/// All subjects, a line for each.
std::string topicsIn(const std::vector<std::string>& files) {
  std::string shown;
  for (const std::string& path : files) {
    std::string name(baseName(path));
    if (name.size() < 18) name.resize(18, ' ');
    shown += "  " + name + " " + titleIn(contentOf(path)) + "\n";
  }
  return shown;
}

/// The page's STRING, or 0. The texts end here, before anything can raise an error.
DAG pageOf(const char* directory, const char* name) {
  const std::vector<std::string> files = pageFiles(directory);
  for (const std::string& path : files) {
    const std::string page = pageIn(contentOf(path), name);
    if (!page.empty()) return strinstall(page.c_str());
  }
  for (const std::string& path : files)
    if (baseName(path) == name) return strinstall(subjectIn(contentOf(path)).c_str());
  if (std::strcmp(name, "topics") == 0 && !files.empty()) return strinstall(topicsIn(files).c_str());
  return DAG();
}

}  // namespace

// helppage(directory, name): the page about a name, from the files in the directory, what a file is about by its name,
// or the list of all files for "topics"; FAIL without such a page.
DAG native::helppage(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isText(call.arguments[1]) || !isText(call.arguments[2])) wrongParameters(call);
  DAG page = pageOf(textOf(call.arguments[1]), textOf(call.arguments[2]));
  return page ? page : ini("FAIL");
}

}  // namespace korel
