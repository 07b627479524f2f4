// Document.cpp - a loaded input.
#include "layout/format/Document.h"

#include "layout/Layout.h"

namespace qent::text::layout::format {

Document::Document(std::string name, std::unique_ptr<layout::Layout> layout)
    : name_(std::move(name)), layout_(std::move(layout)) {}

Document::Document(std::string name, std::string text, std::filesystem::path file)
    : name_(std::move(name)), text_(std::move(text)), file_(std::move(file)) {}

Document::~Document() = default;

}  // namespace qent::text::layout::format
