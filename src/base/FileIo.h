// FileIo.h - whole-file reading and atomic writing, with the library's file-error texts.
//
// Every failure is a std::runtime_error whose text starts with one of the fixed pieces
// ("reading error (errno ", "writing error (errno ", "not open: ", "stat failed for file ",
// "an error occurred during renaming the file from ", "exception during renaming ") and
// names the file, so a caller can tell what went wrong where.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qent::base {

std::string openErrorText(const std::string& fileName, int errorNumber);

// Reads the whole file. A directory, a missing or unreadable file is an error.
std::string readFile(const std::filesystem::path& path);

// A file written piece by piece into a temporary file beside its path and renamed over the
// path only by commit(): a reader never sees a half-written file, and a failure (or an
// object destroyed without commit) removes the temporary file and leaves an earlier file
// untouched.
class AtomicFile {
public:
  explicit AtomicFile(std::filesystem::path path);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void write(const char* data, std::size_t size);
  void commit();

private:
  [[noreturn]] void failWriting();

  std::filesystem::path path_;
  std::filesystem::path temporary_;
  std::ofstream out_;
  bool committed_ = false;
};

// The whole data as an AtomicFile.
void writeFileAtomic(const std::filesystem::path& path, std::string_view data);

// Resolves a relative path against a base directory (the job's WorkSpace); an absolute
// path or an empty base leaves the path as it is.
std::filesystem::path resolveAgainst(const std::filesystem::path& base,
                                     const std::filesystem::path& path);

}  // namespace qent::base
