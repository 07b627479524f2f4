// JobExecution.cpp - the execution steps of a job, in their fixed order.
#include "job/JobExecution.h"

#include "base/FileIo.h"
#include "base/NumberConversion.h"
#include "base/QentException.h"
#include "base/TraceLog.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "job/OrmidaJob.h"
#include "job/OutputWriters.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "layout/Layout.h"
#include "layout/comparison/LayoutComparison.h"
#include "layout/comparison/LayoutTransformation.h"
#include "layout/format/JSONWriter.h"
#include "ormida/ormida.h"

#include <stdexcept>

namespace qent::job {

namespace {

using text::layout::format::Document;

[[noreturn]] void unavailable(const std::string& operation) {
  throw base::QentException(base::kErrorOption,
                            operation + " is not available in this build of Ormida");
}

std::string utf8(const std::u16string& text) { return base::utf16ToUtf8(text); }

}  // namespace

JobExecution::JobExecution(OrmidaJob& job)
    : job_(job),
      properties_(job.properties()),
      loader_(base::platform::pathFromUtf8(utf8(job.properties().string(kWorkSpace)))) {}

std::filesystem::path JobExecution::resolve(const std::u16string& path) const {
  return base::resolveAgainst(base::platform::pathFromUtf8(utf8(properties_.string(kWorkSpace))),
                              base::platform::pathFromUtf8(utf8(path)));
}

void JobExecution::writeResultFile(const std::u16string& path, const std::string& text) const {
  if (!path.empty()) base::writeFileAtomic(resolve(path), text);
}

void JobExecution::run() {
  loadMainDocuments();
  if (properties_.boolean(kEntityExtraction)) entityExtraction();
  if (properties_.boolean(kExtractFromLayout)) extractionComparison();
  if (properties_.boolean(kCheckMask)) regionTemplates();
  if (properties_.boolean(kCompare)) comparison();
  if (properties_.boolean(kWordRecognizer)) wordRecognition();
  if (properties_.boolean(kBestOfLayout)) bestOfMerge();
  if (properties_.boolean(kAddressRecognition)) {
    addressRecognition();
  } else {
    writeOutput();
  }
}

void JobExecution::loadMainDocuments() {
  DocumentList documents;
  if (properties_.isSet(kInputMemoryAddress)) {
    documents = loader_.loadMemory(properties_.string(kInputMemoryAddress));
  } else if (properties_.isSet(kInputFilename)) {
    const std::u16string items = properties_.string(kInputFilename);
    documents = loader_.loadFiles(items, false);
  } else if (properties_.isSet(kInputFilenamePattern)) {
    documents = loader_.loadFiles(properties_.string(kInputFilenamePattern), true);
  }
  if (documents.empty()) throw std::runtime_error("No Main document loaded");
  job_.documents() = std::move(documents);
}

std::unique_ptr<Document> JobExecution::loadOptional(const std::u16string& with) {
  if (with.empty()) return nullptr;
  try {
    DocumentList loaded = loader_.loadFiles(with, false);
    return std::move(loaded.front());
  } catch (const std::exception& e) {
    base::TraceLog::write("could not load " + base::utf16ToUtf8Lenient(with) + ": " + e.what(),
                          base::kTraceError);
    return nullptr;
  }
}

void JobExecution::entityExtraction() {
  std::u16string configuration, outputFilename;
  for (const auto& [sub, value] : properties_.subProperties(kEntityExtraction)) {
    if (sub == kConfiguration) configuration = value;
    if (sub == kOutputFilename) outputFilename = value;
  }
  unavailable("Entity extraction (EntityExtraction)");
}

void JobExecution::extractionComparison() {
  std::u16string with;
  for (const auto& [sub, value] : properties_.subProperties(kExtractFromLayout)) {
    if (sub == kPageOffset) toInteger(value);  // a bad offset fails before anything runs
    if (sub == kWith) with = value;
  }
  auto reference = loadOptional(with);
  if (!reference && job_.documents().size() < 2) {
    throw std::runtime_error("Source document is not loaded");
  }
  unavailable("Extraction comparison (ExtractFromLayout)");
}

void JobExecution::regionTemplates() {
  for (const auto& [sub, value] : properties_.subProperties(kCheckMask)) {
    if (sub == kOverlapThreshold) toDouble(value);
  }
  unavailable("Region template evaluation (CheckMask)");
}

void JobExecution::comparison() {
  namespace comparison = text::layout::comparison;
  comparison::CompareOptions options;  // Word, Text, edit distance, partial errors, Corner
  std::u16string with, outputFilename;
  for (const auto& [sub, value] : properties_.subProperties(kCompare)) {
    switch (sub) {
      case kLevel: options.level = comparison::levelFromName(value); break;
      case kMode: options.mode = comparison::modeFromName(value); break;
      case kEditDistance: options.characterwise = toBoolean(value); break;
      case kPartialSegmentationErrors: options.countLengthDifference = toBoolean(value); break;
      case kTransformStrategy: options.alignment = comparison::alignmentFromName(value); break;
      case kWith: with = value; break;
      case kOutputFilename: outputFilename = value; break;
      default: break;
    }
  }
  auto second = loadOptional(with);
  if (!second && job_.documents().size() < 2) {
    throw std::runtime_error("No CompareWidth document loaded");
  }
  const Document& left = *job_.documents().front();
  const Document& right = second ? *second : *job_.documents()[1];
  for (const Document* document : {&left, &right}) {
    if (document->layout() == nullptr) {
      throw std::runtime_error("Layout comparison needs two layouts; " + document->name() +
                               " is plain text");
    }
  }
  // A reference loaded from Compare.With is dropped after this step: its annotations would
  // never be read.
  const std::string result =
      comparison::compareLayouts(options, *left.layout(), *right.layout(), second == nullptr);
  job_.setSubResult(kCompare, kResult, base::utf8ToUtf16(result));
  writeResultFile(outputFilename, result);
}

void JobExecution::wordRecognition() {
  for (const auto& [sub, value] : properties_.subProperties(kWordRecognizer)) {
    switch (sub) {
      case kRejectedWordsFilename:
      case kRecognizedWordsFilename:
      case kStatisticsFilename:
      case kDictionaryWorkSpace:
      case kInputFormat:
      case kOptions:
      case kStatisticsOutputFormat:
      case kStatisticsPerPage:
        break;
      case kLargeWordLimit:
      case kSmallWordLimit:
      case kGarbageThreshold:
        toUnsigned(value);
        break;
      case kTextAcceptThreshold:
        toDouble(value);
        break;
      default:
        throw base::QentException(base::kErrorOption, "unknown subproperty set to WordRecognizer");
    }
  }
  unavailable("Word recognition (WordRecognizer)");
}

void JobExecution::bestOfMerge() {
  for (const auto& [sub, value] : properties_.subProperties(kBestOfLayout)) {
    switch (sub) {
      case kRasterFactorX:
      case kRasterFactorY:
      case kPageWidth:
      case kPageHeight:
        toInteger(value);
        break;
      case kOverlapThreshold:
      case kClusterAreaTolerance:
      case kWordHeightFactor:
      case kWordWidthFactor:
      case kVerticalConfidenceMin:
      case kMaxWordDistance:
      case kMaxLineHeightDeviation:
        toFloatOr(value, 0.0f);
        break;
      case kEqualizeLayouts:
      case kReferenceImageFilename:
      case kTraceDirectory:
        break;
      default:
        // The merge reports an unknown name and goes on without it.
        base::TraceLog::writeFormatted(base::kTraceWarning, "Unknown subproperty was set: %s",
                                       utf8(properties_.string(sub)).c_str());
    }
  }
  unavailable("Best-Of merge (BestOfLayout)");
}

void JobExecution::addressRecognition() { unavailable("Address recognition (AddressRecognition)"); }

void JobExecution::writeOutput() {
  const bool toFile = properties_.isSet(kOutputFilename);
  const bool toMemory = properties_.isSet(kMemoryOutputCallback);
  if (!toFile && !toMemory) return;

  std::u16string formats = u"HOCR";
  for (const auto& [sub, value] : properties_.subProperties(kOutputFilename)) {
    if (sub == kFormat) formats = value;
  }
  OrmidaMemoryOutput callback = nullptr;
  std::uint64_t userdata = 0;
  if (toMemory) {
    const std::uint64_t address =
        base::parseUnsigned64(utf8(properties_.string(kMemoryOutputCallback)));
    if (address == 0) throw std::runtime_error("MemoryOutputCallback is the address 0");
    callback = reinterpret_cast<OrmidaMemoryOutput>(static_cast<std::uintptr_t>(address));
    if (properties_.isSet(kMemoryOutputUserdata)) {
      userdata = base::parseUnsigned64(utf8(properties_.string(kMemoryOutputUserdata)));
    }
  }

  const Document& main = *job_.documents().front();
  if (main.layout() == nullptr) {
    throw std::runtime_error("the main document " + main.name() +
                             " is plain text and has no layout to write");
  }
  // Every name is checked before anything is written, so a bad list writes nothing.
  const std::vector<std::u16string> names = splitItems(formats);
  std::vector<OutputFormat> list;
  for (const std::u16string& name : names) {
    list.push_back(outputFormatFromName(base::utf16ToUtf8Lenient(name)));
  }
  if (list.empty()) throw std::runtime_error("unsupported output format specified");

  std::filesystem::path path = resolve(properties_.string(kOutputFilename));
  for (const OutputFormat format : list) {
    const std::string text = writeLayout(*main.layout(), format);
    if (list.size() > 1) path.replace_extension(extensionOf(format));
    if (callback != nullptr) callback(text.data(), text.size(), userdata, 0);
    if (toFile) base::writeFileAtomic(path, text);
  }
}

std::u16string JobExecution::transformLayout() {
  namespace comparison = text::layout::comparison;
  std::u16string with, outputFilename;
  std::int32_t pageOffset = 0;
  comparison::Alignment alignment = comparison::Alignment::Corner;
  for (const auto& [sub, value] : properties_.subProperties(kTransformLayout)) {
    switch (sub) {
      case kWith: with = value; break;
      case kOutputFilename: outputFilename = value; break;
      case kPageOffset: pageOffset = toInteger(value); break;
      case kTransformStrategy: alignment = comparison::alignmentFromName(value); break;
      default: break;
    }
  }
  if (job_.documents().empty() || job_.documents().front()->layout() == nullptr) {
    throw std::runtime_error("No Main document loaded");
  }
  // Without With, the second main document is the reference, as for the comparison.
  auto reference = loadOptional(with);
  const Document* fixed = reference ? reference.get() : nullptr;
  if (fixed == nullptr && with.empty() && job_.documents().size() >= 2) {
    fixed = job_.documents()[1].get();
  }
  if (fixed == nullptr || fixed->layout() == nullptr) {
    throw std::runtime_error("Document for comparison is not found!");
  }
  text::layout::Layout& main = *job_.documents().front()->layout();
  std::string json;
  {
    // Undone at the end of the scope: reading the result again gives the same text.
    comparison::LayoutTransformation transformation(main, *fixed->layout(), alignment, pageOffset);
    json = text::layout::format::JSONWriter().write(main);
  }
  writeResultFile(outputFilename, json);
  return base::utf8ToUtf16(json);
}

}  // namespace qent::job
