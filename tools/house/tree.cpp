#include <filesystem>
#include <fstream>
#include <utility>

#include "tree.h"

namespace house {

namespace {

constexpr std::string_view folders[] = {"lib", "src", "include", "programs", "tests", "bench", "fuzz", "tools", "docs"};

Lines readLines(const std::filesystem::path& path) {
  Lines lines;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string trimmed(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

}  // namespace

Tree::Tree(std::string top) : top_(std::move(top)) {
  namespace fs = std::filesystem;
  for (std::string_view folder : folders) {
    if (!fs::exists(fs::path(top_) / folder)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(fs::path(top_) / folder)) {
      std::string path = fs::relative(entry.path(), top_).generic_string();
      if (!entry.is_regular_file()) continue;
      files_[path] = isCode(path) || isDocument(path) ? readLines(entry.path()) : Lines{};
    }
  }
  files_["README.md"] = readLines(fs::path(top_) / "README.md");
}

void Tree::write(const std::string& path, const Lines& lines) {
  files_[path] = lines;
  std::ofstream out(std::filesystem::path(top_) / path);
  for (const std::string& line : lines) out << line << '\n';
}

std::vector<std::string> tableCells(const std::string& line) {
  std::vector<std::string> cells;
  if (!line.starts_with('|')) return cells;
  for (std::size_t at = 1; at < line.size();) {
    std::size_t end = line.find('|', at);
    if (end == std::string::npos) break;
    cells.push_back(trimmed(std::string_view(line).substr(at, end - at)));
    at = end + 1;
  }
  return cells;
}

}  // namespace house
