// QentException.h - the library's exception: a runtime error that carries an error code.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace qent::base {

// Error codes the library reports to callers through OrmidaJobExecute.
inline constexpr std::uint32_t kErrorHocr = 20001;    // hOCR and WebAnno TSV reading
inline constexpr std::uint32_t kErrorOption = 20020;  // bad option values, missing operations
inline constexpr std::uint32_t kErrorJson = 20039;    // malformed JSON layout or cloud-OCR input

class QentException : public std::runtime_error {
public:
  QentException(std::uint32_t code, const std::string& message);
  ~QentException() override;

  // The message, or "Unknown exception" when the exception was built without one.
  const char* what() const noexcept override;
  virtual std::uint32_t code() const noexcept { return code_; }

private:
  std::uint32_t code_;
  bool hasMessage_;
};

}  // namespace qent::base
