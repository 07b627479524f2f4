// WordRecognitionStep.cpp - text quality of the main document judged with dictionaries.
#include "base/QentException.h"
#include "base/Unicode.h"
#include "base/platform/platform.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "wordrecognizer/RecognizerSettings.h"
#include "wordrecognizer/ResourceFolders.h"
#include "wordrecognizer/WordRecognition.h"
#include "wordrecognizer/WordRecognizerOptions.h"

namespace qent::job::steps {

namespace {

text::wordrecognizer::WordRecognizerOptions readOptions(const PropertyStore& properties) {
  text::wordrecognizer::WordRecognizerOptions options;
  for (const auto& [sub, value] : properties.subProperties(kWordRecognizer)) {
    switch (sub) {
      case kRejectedWordsFilename: options.rejectedWordsFilename = value; break;
      case kRecognizedWordsFilename: options.recognizedWordsFilename = value; break;
      case kStatisticsFilename: options.statisticsFilename = value; break;
      case kDictionaryWorkSpace: options.dictionaryWorkSpace = value; break;
      case kInputFormat: options.inputFormat = value; break;
      case kOptions: options.options = value; break;
      case kStatisticsOutputFormat: options.statisticsOutputFormat = value; break;
      case kStatisticsPerPage: options.statisticsPerPage = toBoolean(value); break;
      case kLargeWordLimit: options.largeWordLimit = toUnsigned(value); break;
      case kSmallWordLimit: options.smallWordLimit = toUnsigned(value); break;
      case kGarbageThreshold: options.garbageThreshold = toUnsigned(value); break;
      case kTextAcceptThreshold: options.textAcceptThreshold = toDouble(value); break;
      default:
        throw base::QentException(base::kErrorOption, "unknown subproperty set to WordRecognizer");
    }
  }
  return options;
}

}  // namespace

void wordRecognition(JobExecution& execution) {
  namespace wr = text::wordrecognizer;
  const wr::WordRecognizerOptions options = readOptions(execution.properties());
  const wr::RecognizerSettings settings = wr::readSettings(options);

  const std::u16string workSpace = execution.properties().string(kWorkSpace);
  wr::ResourceFolders folders(
      options.dictionaryWorkSpace.empty() ? std::filesystem::path()
                                          : execution.resolve(options.dictionaryWorkSpace),
      base::platform::pathFromUtf8(base::utf16ToUtf8(workSpace)),
      wr::ResourceFolders::dataFoldersOf(base::platform::modulePath()));
  const std::filesystem::path digramTable =
      settings.digramTable.empty() ? std::filesystem::path() : execution.resolve(settings.digramTable);

  const wr::RecognitionOutput output = wr::recognizeDocument(
      *execution.job().documents().front(), settings, std::move(folders), digramTable);
  execution.job().setSubResult(kWordRecognizer, kResult, base::utf8ToUtf16(output.report));
  execution.writeResultFile(options.statisticsFilename, output.report);
  execution.writeResultFile(options.recognizedWordsFilename, output.recognizedWords);
  execution.writeResultFile(options.rejectedWordsFilename, output.rejectedWords);
}

}  // namespace qent::job::steps
