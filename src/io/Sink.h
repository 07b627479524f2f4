// Sink.h - where a writer's bytes go.
//
// Writers hand their output over piece by piece, so a sink can pass it on (to a file, to a
// caller's callback) without the whole document first being built as one string.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qent::io {

class Sink {
public:
  virtual ~Sink() = default;
  virtual void write(const char* data, std::size_t size) = 0;
  void write(std::string_view text) { write(text.data(), text.size()); }
};

// Collects everything written into one string.
class StringSink : public Sink {
public:
  using Sink::write;
  void write(const char* data, std::size_t size) override { text_.append(data, size); }
  std::string& text() { return text_; }

private:
  std::string text_;
};

}  // namespace qent::io
