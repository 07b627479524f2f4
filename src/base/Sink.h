// Sink.h - where a writer's bytes go.
//
// Writers hand their output over piece by piece, so a sink can pass it on (to a file, to a
// caller's callback) without the whole document first being built as one string.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qent::base {

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

// Drops everything: for a pass that only wants to learn what a writer would write.
class NullSink : public Sink {
public:
  using Sink::write;
  void write(const char*, std::size_t) override {}
};

// Passes everything on to two sinks, for an output that goes to a file and to the caller.
class TeeSink : public Sink {
public:
  TeeSink(Sink& first, Sink& second) : first_(first), second_(second) {}
  using Sink::write;
  void write(const char* data, std::size_t size) override {
    first_.write(data, size);
    second_.write(data, size);
  }

private:
  Sink& first_;
  Sink& second_;
};

}  // namespace qent::base
