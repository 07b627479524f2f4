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

// The largest file readFile reads, and the largest document taken from memory. It bounds
// the memory one input can cost (a JSON or hOCR layout takes several times its bytes once
// read), so a huge file or a device that never ends is an error, not an exhausted machine.
inline constexpr std::size_t kMaxFileBytes = std::size_t{256} << 20;

// Reads the whole file. A directory, a missing or unreadable file, or one larger than
// kMaxFileBytes is an error.
std::string readFile(const std::filesystem::path& path);

// A file written piece by piece into a temporary file beside its path and renamed over the
// path only by commit(): a reader never sees a half-written file, and a failure (or an
// object destroyed without commit) removes the temporary file and leaves an earlier file
// untouched. A path that names a device or a pipe is written directly, and a write that
// fails there (a full device) fails the same way.
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
  bool direct_ = false;  // writing straight into a device or pipe
};

// The whole data as an AtomicFile.
void writeFileAtomic(const std::filesystem::path& path, std::string_view data);

// Resolves a relative path against a base directory (the job's WorkSpace); an absolute
// path or an empty base leaves the path as it is.
std::filesystem::path resolveAgainst(const std::filesystem::path& base,
                                     const std::filesystem::path& path);

}  // namespace qent::base
