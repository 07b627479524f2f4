// OutputStep.cpp - the main layout written in the chosen formats, to a file and/or to the
// caller's memory callback.
#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/FileSink.h"
#include "io/FormatTable.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "ormida/ormida.h"

#include <optional>
#include <stdexcept>
#include <vector>

namespace qent::job::steps {

namespace {

struct OutputOptions {
  std::u16string formats = u"HOCR";
  io::WriteOptions write;
  bool xmlLayoutFormats = false;  // "alto" and "page" are offered only on request
  bool toFile = false;
  OrmidaMemoryOutput callback = nullptr;
  std::uint64_t userdata = 0;
};

std::uint64_t number(const PropertyStore& properties, std::uint32_t property) {
  return base::parseUnsigned64(base::utf16ToUtf8(properties.string(property)));
}

OutputOptions readOptions(const PropertyStore& properties) {
  OutputOptions options;
  options.toFile = properties.isSet(kOutputFilename);
  options.xmlLayoutFormats = properties.boolean(kXmlLayoutFormats);
  for (const auto& [sub, value] : properties.subProperties(kOutputFilename)) {
    if (sub == kFormat) options.formats = value;
  }
  // WebAnno and INCEpTION count offsets in UTF-16 code units; the default stays UTF-8 bytes.
  const std::string offsets = base::utf16ToUtf8Lenient(properties.string(kWebAnnoOffsets));
  if (base::equalsIgnoreAsciiCase(offsets, "utf16")) {
    options.write.webAnnoUtf16Offsets = true;
  } else if (!offsets.empty() && !base::equalsIgnoreAsciiCase(offsets, "utf8")) {
    throw base::QentException(base::kErrorOption,
                              "WebAnnoOffsets must be utf8 or utf16, not \"" + offsets + "\"");
  }
  if (properties.isSet(kMemoryOutputCallback)) {
    const std::uint64_t address = number(properties, kMemoryOutputCallback);
    if (address == 0) throw std::runtime_error("MemoryOutputCallback is the address 0");
    options.callback = reinterpret_cast<OrmidaMemoryOutput>(static_cast<std::uintptr_t>(address));
    if (properties.isSet(kMemoryOutputUserdata)) {
      options.userdata = number(properties, kMemoryOutputUserdata);
    }
  }
  return options;
}

// Every name is checked before anything is written, so a bad list writes nothing.
std::vector<const io::Format*> formatsOf(const std::u16string& names, bool xmlLayoutFormats) {
  std::vector<const io::Format*> formats;
  for (const std::u16string& name : splitItems(names)) {
    formats.push_back(&io::formatNamed(base::utf16ToUtf8Lenient(name), xmlLayoutFormats));
  }
  if (formats.empty()) throw std::runtime_error("unsupported output format specified");
  return formats;
}

}  // namespace

void writeOutput(JobExecution& execution) {
  const PropertyStore& properties = execution.properties();
  if (!properties.isSet(kOutputFilename) && !properties.isSet(kMemoryOutputCallback)) return;
  const OutputOptions options = readOptions(properties);
  const text::layout::format::Document& main = *execution.job().documents().front();
  if (main.layout() == nullptr) {
    throw std::runtime_error("the main document " + main.name() +
                             " is plain text and has no layout to write");
  }
  std::filesystem::path path = execution.resolve(properties.string(kOutputFilename));
  const std::vector<const io::Format*> formats = formatsOf(options.formats, options.xmlLayoutFormats);
  for (const io::Format* format : formats) {
    // Each name from the given one: "alto.xml" replaced by "json" would leave "x.alto.json".
    std::filesystem::path target = path;
    if (formats.size() > 1) target.replace_extension(format->extension);
    // The file is streamed; the caller's callback receives each output in one call, so its
    // copy is collected first.
    std::optional<base::FileSink> file;
    if (options.toFile) file.emplace(target);
    base::StringSink memory;
    std::optional<base::TeeSink> both;
    base::Sink* sink = &memory;
    if (file && options.callback == nullptr) sink = &*file;
    if (file && options.callback != nullptr) sink = &both.emplace(*file, memory);
    io::writeLayout(*format, *main.layout(), *sink, options.write);
    if (options.callback != nullptr) {
      options.callback(memory.text().data(), memory.text().size(), options.userdata, 0);
    }
    if (file) file->commit();
  }
}

}  // namespace qent::job::steps
