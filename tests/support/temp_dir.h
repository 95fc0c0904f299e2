#pragma once
// A fresh directory under the system's temporary folder, removed afterwards.
// Making one also bounds the size of every file the test process writes.

#include <filesystem>
#include <string>

namespace rk4::test {

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return root; }
    std::filesystem::path operator/(const std::string& name) const { return root / name; }

  private:
    std::filesystem::path root;
};

} // namespace rk4::test
