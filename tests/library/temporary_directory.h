#pragma once
// A directory of a test's own, removed at its end.

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace korel::test {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    char name[] = "/tmp/korel-test-XXXXXX";
    path_ = mkdtemp(name);
  }
  ~TemporaryDirectory() { remove(); }
  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }
  void remove() {
    if (std::system(("rm -rf " + path_).c_str()) != 0) std::abort();
  }

 private:
  std::string path_;
};

inline std::string bytesOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}
inline void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace korel::test
