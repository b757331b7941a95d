#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

#include "known_names.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/vocabulary.h"
#include "text/read/tokens.h"

namespace korel {

namespace {

using Names = std::vector<std::string>;

void sortUnique(Names& names) {
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
}

void addReservedWords(Names& names) {
  // Two words close a statement in the place of `end`.
  names.insert(names.end(), {"fi", "od", "done", "stop"});
  for (int token = firstNamedToken; token < tokenEnd; ++token)
    if (const char* word = TokenToKeyWord(token)) names.emplace_back(word);
}

void addAssignedNames(Names& names) {
  auto visit = [](void* list, PairAddress pair) {
    DAG name = pairValue(pair);
    if (isTag(name, NAME) && name[1]) static_cast<Names*>(list)->emplace_back(textOf(name));
    return true;
  };
  hashforeach(nametab, visit, &names);
}

// A member holds the object of the name in front of its extension.
void addMember(std::string_view member, Names& names) {
  constexpr std::string_view extension = ".m";
  if (!member.ends_with(extension) || member.starts_with(":-")) return;
  names.emplace_back(member.substr(0, member.size() - extension.size()));
}

// The members of the archive in `directory`, by the names in its index.
void addLibraryNames(const std::string& directory, Names& names) {
  std::FILE* data = std::fopen((directory + "/korel.lib").c_str(), "rb");
  if (data == nullptr) return;
  const int sizeByte = std::fgetc(data);
  std::fclose(data);
  if (sizeByte != 0 && sizeByte != 1) return;
  const std::size_t entrySize = sizeByte == 0 ? 64 : 128;
  std::FILE* index = std::fopen((directory + "/korel.ind").c_str(), "rb");
  if (index == nullptr) return;
  char entry[128];
  constexpr char tombstone = 1;
  while (std::fread(entry, 1, entrySize, index) == entrySize)
    if (entry[0] != '\0' && entry[0] != tombstone) addMember({entry, strnlen(entry, entrySize)}, names);
  std::fclose(index);
}

void addLibraries(Names& names) {
  DAG entries = ini("libname")[1];
  if (!entries) return;
  const Word n = isSequence(entries) ? memberCount(entries) : 1;
  for (Word i = 1; i <= n; ++i) {
    DAG entry = isSequence(entries) ? entries[i] : entries;
    if (isText(entry)) addLibraryNames(textOf(entry), names);
  }
}

Names allNames() {
  Names names;
  addReservedWords(names);
  addAssignedNames(names);
  addLibraries(names);
  sortUnique(names);
  return names;
}

// What a person calls: parts of procedures have a slash in their name.
bool isOwnName(const std::string& name) { return name.find('/') == std::string::npos; }

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; }

// How many letters have to be put in, left out or changed to make one word of the other (Wagner and Fischer).
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (lowered(a[i - 1]) == lowered(b[j - 1]) ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[b.size()];
}

}  // namespace

Names namesBeginningWith(std::string_view prefix) {
  Names names = allNames();
  std::erase_if(names, [prefix](const std::string& name) {
    return !name.starts_with(prefix) || (!isOwnName(name) && prefix.find('/') == prefix.npos);
  });
  return names;
}

Names filesBeginningWith(const std::string& prefix) {
  const std::size_t slash = prefix.rfind('/');
  const std::string folder = slash == prefix.npos ? "" : prefix.substr(0, slash + 1);
  const std::string begin = prefix.substr(folder.size());
  Names files;
  DIR* directory = opendir(folder.empty() ? "." : folder.c_str());
  if (directory == nullptr) return files;
  while (const dirent* entry = readdir(directory)) {
    std::string name = entry->d_name;
    if (!name.starts_with(begin) || (name[0] == '.' && begin.empty())) continue;
    struct stat status;
    if (stat((folder + name).c_str(), &status) == 0 && S_ISDIR(status.st_mode)) name += '/';
    files.push_back(folder + name);
  }
  closedir(directory);
  sortUnique(files);
  return files;
}

Names namesNear(std::string_view word, std::size_t count) {
  struct Candidate {
    std::size_t distance;
    std::string name;
  };
  std::vector<Candidate> near;
  const std::size_t farthest = word.size() / 3 + 1;
  for (std::string& name : allNames()) {
    if (!isOwnName(name)) continue;
    const auto same = [](char a, char b) { return lowered(a) == lowered(b); };
    const bool contains =
        word.size() > 2 && std::search(name.begin(), name.end(), word.begin(), word.end(), same) != name.end();
    const std::size_t d = std::min<std::size_t>(distance(word, name), contains ? 1 : word.size());
    if (d <= farthest) near.push_back({d, std::move(name)});
  }
  std::stable_sort(near.begin(), near.end(), [](auto& a, auto& b) { return a.distance < b.distance; });
  Names names;
  for (Candidate& c : near)
    if (names.size() < count) names.push_back(std::move(c.name));
  return names;
}

}  // namespace korel
