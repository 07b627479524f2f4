// FileSink.h - output streamed into a file that appears, complete, only on commit().
//
// Until then the bytes go to a temporary file beside the target; a writer that fails half
// way, or a sink destroyed without commit, leaves no truncated file and never replaces an
// earlier output.
#pragma once

#include "base/FileIo.h"
#include "base/Sink.h"

#include <filesystem>

namespace qent::base {

class FileSink : public Sink {
public:
  explicit FileSink(std::filesystem::path path) : file_(std::move(path)) {}
  using Sink::write;
  void write(const char* data, std::size_t size) override { file_.write(data, size); }
  void commit() { file_.commit(); }

private:
  AtomicFile file_;
};

}  // namespace qent::base
