// TempDir.h - a fresh temporary directory per test, removed with everything in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace qent::test {

class TempDir {
public:
  TempDir() {
    std::random_device seed;
    std::mt19937_64 random(seed());
    path_ = std::filesystem::temp_directory_path() /
            ("ormida-test-" + std::to_string(random() % 1000000000000ULL));
    std::filesystem::create_directories(path_);
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  std::filesystem::path write(std::string_view name, std::string_view bytes) const {
    const auto file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
  }

private:
  std::filesystem::path path_;
};

inline std::string readAll(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace qent::test
