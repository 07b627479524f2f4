// QentException.cpp - the library's exception type.
#include "base/QentException.h"

namespace qent::base {

QentException::QentException(std::uint32_t code, const std::string& message)
    : std::runtime_error(message), code_(code), hasMessage_(!message.empty()) {}

QentException::~QentException() = default;

const char* QentException::what() const noexcept {
  return hasMessage_ ? std::runtime_error::what() : "Unknown exception";
}

}  // namespace qent::base
