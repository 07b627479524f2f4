// FileIo.h - whole-file reading and atomic writing, with the library's file-error texts.
//
// Every failure is a std::runtime_error whose text starts with one of the fixed pieces
// ("reading error (errno ", "writing error (errno ", "not open: ", "stat failed for file ",
// "an error occurred during renaming the file from ", "exception during renaming ") and
// names the file, so a caller can tell what went wrong where.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qent::base {

std::string openErrorText(const std::string& fileName, int errorNumber);

// The largest file the library reads, and the largest document taken from memory. It bounds
// the memory one input can cost (a JSON or hOCR layout takes several times its bytes once
// read), so a huge file or a device that never ends is an error, not an exhausted machine.
inline constexpr std::size_t kMaxFileBytes = std::size_t{256} << 20;

// Where a reader takes its bytes from, piece by piece.
class ByteSource {
public:
  virtual ~ByteSource() = default;
  // Fills the buffer with up to `size` bytes; 0 only at the end.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;
};

// A file read piece by piece, for readers that need not hold the whole of a large file. A
// directory, a missing or unreadable file, or one larger than kMaxFileBytes is an error, as
// for readFile.
class FileReader : public ByteSource {
public:
  explicit FileReader(const std::filesystem::path& path);
  std::size_t read(char* buffer, std::size_t size) override;
  // Appends up to `size` more bytes (everything left when `size` is npos) to the text.
  void readInto(std::string& text, std::size_t size = std::string::npos);
  bool atEnd();

private:
  std::filesystem::path path_;
  std::ifstream in_;
  std::uintmax_t size_ = 0;  // as the file system said when it was opened; 0 if unknown
  std::size_t total_ = 0;    // bytes read so far
};

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
