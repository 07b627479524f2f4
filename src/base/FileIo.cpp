// FileIo.cpp - file helpers shared by the trace log and the output writing.
#include "base/FileIo.h"

#include "base/platform/platform.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace qent::base {

namespace {

std::string display(const std::filesystem::path& path) { return platform::pathToUtf8(path); }

int lastErrno(int fallback) { return errno != 0 ? errno : fallback; }

[[noreturn]] void failTooLarge(const std::filesystem::path& path) {
  throw std::runtime_error("reading error (errno " + std::to_string(EFBIG) + "): " +
                           display(path) + " is larger than " + std::to_string(kMaxFileBytes) +
                           " bytes, the most the library reads from one file");
}

}  // namespace

std::string openErrorText(const std::string& fileName, int errorNumber) {
  return "file is busy or not exist or its path is too long (errno: " +
         std::to_string(errorNumber) + "): " + fileName;
}

FileReader::FileReader(const std::filesystem::path& path) : path_(path) {
  std::error_code ec;
  const auto status = std::filesystem::status(path, ec);
  if (ec) {
    throw std::runtime_error("stat failed for file " + display(path) +
                             " errno is: " + std::to_string(ec.value()));
  }
  if (std::filesystem::is_directory(status)) {
    throw std::runtime_error("reading error (errno " + std::to_string(EISDIR) +
                             "): " + display(path) + " is a directory");
  }
  errno = 0;
  in_.open(path, std::ios::binary);
  if (!in_.is_open()) throw std::runtime_error(openErrorText(display(path), lastErrno(ENOENT)));
  const auto size = std::filesystem::file_size(path, ec);
  if (!ec && size > kMaxFileBytes) failTooLarge(path);
  if (!ec) size_ = size;
}

std::size_t FileReader::read(char* buffer, std::size_t size) {
  in_.read(buffer, static_cast<std::streamsize>(size));
  const auto got = static_cast<std::size_t>(in_.gcount());
  // Counted while reading too: a device or pipe has no size beforehand, and /dev/zero
  // never ends.
  total_ += got;
  if (total_ > kMaxFileBytes) failTooLarge(path_);
  if (in_.bad()) {
    throw std::runtime_error("reading error (errno " + std::to_string(lastErrno(EIO)) +
                             "): " + display(path_));
  }
  return got;
}

void FileReader::readInto(std::string& text, std::size_t size) {
  // The whole file ends up in the text: one allocation of its size. The bytes go straight
  // into the text, not through a buffer on the stack, which may be small on the caller's
  // thread.
  if (size == std::string::npos && size_ > text.size()) text.reserve(static_cast<std::size_t>(size_));
  constexpr std::size_t kPiece = 1 << 16;
  while (size > 0) {
    const std::size_t want = std::min(size, kPiece);
    const std::size_t at = text.size();
    text.resize(at + want);
    const std::size_t got = read(text.data() + at, want);
    text.resize(at + got);
    if (got == 0) return;
    if (size != std::string::npos) size -= got;
  }
}

bool FileReader::atEnd() { return in_.peek() == std::char_traits<char>::eof(); }

std::string readFile(const std::filesystem::path& path) {
  FileReader reader(path);
  std::string data;
  reader.readInto(data);
  return data;
}

AtomicFile::AtomicFile(std::filesystem::path path) : path_(std::move(path)) {
  // A device or a pipe (/dev/stdout, /dev/full, a FIFO) is written as it is: renaming a
  // temporary file over it would replace the device node itself (a process running as root
  // may do that), and its earlier content is nothing that could be lost.
  std::error_code ec;
  const auto status = std::filesystem::status(path_, ec);
  if (!ec && std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
      !std::filesystem::is_directory(status)) {
    errno = 0;
    out_.open(path_, std::ios::binary);
    if (!out_.is_open()) throw std::runtime_error(openErrorText(display(path_), lastErrno(ENOENT)));
    direct_ = true;
    return;
  }
  static std::atomic<unsigned> sequence{0};
  temporary_ = path_;
  temporary_ += ".tmp" + std::to_string(platform::threadNumber() % 100000) + "_" +
                std::to_string(sequence++);
  errno = 0;
  out_.open(temporary_, std::ios::binary | std::ios::trunc);
  if (!out_.is_open()) throw std::runtime_error(openErrorText(display(path_), lastErrno(ENOENT)));
}

AtomicFile::~AtomicFile() {
  if (committed_ || direct_) return;
  out_.close();
  std::error_code ignored;
  std::filesystem::remove(temporary_, ignored);
}

void AtomicFile::failWriting() {
  const int error = lastErrno(EIO);
  throw std::runtime_error("writing error (errno " + std::to_string(error) +
                           "): " + display(path_));
}

void AtomicFile::write(const char* data, std::size_t size) {
  out_.write(data, static_cast<std::streamsize>(size));
  if (!out_) failWriting();
}

void AtomicFile::commit() {
  out_.flush();
  if (!out_) failWriting();
  out_.close();
  if (!out_) failWriting();
  if (direct_) {
    committed_ = true;
    return;
  }
  try {
    std::error_code ec;
    std::filesystem::rename(temporary_, path_, ec);
    if (ec) {
      throw std::runtime_error("an error occurred during renaming the file from " +
                               display(temporary_) + " to " + display(path_) + ": " +
                               ec.message());
    }
  } catch (const std::runtime_error&) {
    throw;
  } catch (const std::exception& e) {
    throw std::runtime_error(std::string("exception during renaming ") + e.what());
  }
  committed_ = true;
}

void writeFileAtomic(const std::filesystem::path& path, std::string_view data) {
  AtomicFile file(path);
  file.write(data.data(), data.size());
  file.commit();
}

std::filesystem::path resolveAgainst(const std::filesystem::path& base,
                                     const std::filesystem::path& path) {
  if (base.empty() || path.empty() || path.is_absolute()) return path;
  return base / path;
}

}  // namespace qent::base
