// WordRecognitionStep.cpp - text quality of the main document judged with dictionaries.
#include "base/QentException.h"
#include "job/JobExecution.h"
#include "job/PropertyStore.h"
#include "job/PropertyValues.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"
#include "job/steps/NotBuiltYet.h"
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
  readOptions(execution.properties());
  requireBuilt(kWordRecognizer);
}

}  // namespace qent::job::steps
