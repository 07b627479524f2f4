// FileIo.cpp - file helpers shared by the trace log and the output writing.
#include "base/FileIo.h"

#include "base/platform/platform.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace qent::base {

namespace {

std::string display(const std::filesystem::path& path) { return platform::pathToUtf8(path); }

int lastErrno(int fallback) { return errno != 0 ? errno : fallback; }

}  // namespace

std::string openErrorText(const std::string& fileName, int errorNumber) {
  return "file is busy or not exist or its path is too long (errno: " +
         std::to_string(errorNumber) + "): " + fileName;
}

std::string readFile(const std::filesystem::path& path) {
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
  std::ifstream in(path, std::ios::binary);
  if (!in.is_open()) throw std::runtime_error(openErrorText(display(path), lastErrno(ENOENT)));
  std::string data;
  const auto size = std::filesystem::file_size(path, ec);
  if (!ec) data.reserve(static_cast<std::size_t>(size));
  char buffer[1 << 16];
  while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
    data.append(buffer, static_cast<std::size_t>(in.gcount()));
  }
  if (in.bad()) {
    throw std::runtime_error("reading error (errno " + std::to_string(lastErrno(EIO)) +
                             "): " + display(path));
  }
  return data;
}

void writeFileAtomic(const std::filesystem::path& path, std::string_view data) {
  static std::atomic<unsigned> sequence{0};
  std::filesystem::path temporary = path;
  temporary += ".tmp" + std::to_string(platform::threadNumber() % 100000) + "_" +
               std::to_string(sequence++);
  {
    errno = 0;
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (!out.is_open()) {
      throw std::runtime_error(openErrorText(display(path), lastErrno(ENOENT)));
    }
    out.write(data.data(), static_cast<std::streamsize>(data.size()));
    out.flush();
    if (!out) {
      const int error = lastErrno(EIO);
      out.close();
      std::error_code ignored;
      std::filesystem::remove(temporary, ignored);
      throw std::runtime_error("writing error (errno " + std::to_string(error) +
                               "): " + display(path));
    }
  }
  try {
    std::error_code ec;
    std::filesystem::rename(temporary, path, ec);
    if (ec) {
      std::error_code ignored;
      std::filesystem::remove(temporary, ignored);
      throw std::runtime_error("an error occurred during renaming the file from " +
                               display(temporary) + " to " + display(path) + ": " +
                               ec.message());
    }
  } catch (const std::runtime_error&) {
    throw;
  } catch (const std::exception& e) {
    throw std::runtime_error(std::string("exception during renaming ") + e.what());
  }
}

std::filesystem::path resolveAgainst(const std::filesystem::path& base,
                                     const std::filesystem::path& path) {
  if (base.empty() || path.empty() || path.is_absolute()) return path;
  return base / path;
}

}  // namespace qent::base
