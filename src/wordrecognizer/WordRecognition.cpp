// WordRecognition.cpp - from a document to the report and the word lists.
#include "wordrecognizer/WordRecognition.h"

#include "base/FileIo.h"
#include "layout/format/Document.h"
#include "wordrecognizer/Language.h"
#include "wordrecognizer/LanguageResources.h"
#include "wordrecognizer/StatisticsReport.h"
#include "wordrecognizer/TextDecoding.h"
#include "wordrecognizer/TokenPage.h"
#include "wordrecognizer/WordRecognizer.h"

namespace qent::text::wordrecognizer {

RecognitionOutput recognizeDocument(layout::format::Document& document,
                                    const RecognizerSettings& settings, ResourceFolders folders,
                                    const std::filesystem::path& digramTable) {
  std::vector<TokenPage> pages;
  std::string fallbackLanguage;
  if (document.layout() != nullptr) {
    pages = tokensOfLayout(*document.layout());
  } else {
    // The document reader keeps the text as UTF-8; the file's own bytes are decoded here,
    // so that the job's InputFormat decides about encodings the reader could only guess.
    const std::string bytes =
        document.file().empty() ? document.text() : base::readFile(document.file());
    fallbackLanguage = languageOfLetter(document.textCode());
    pages = tokensOfText(decodeText(bytes, settings.encoding, document.name()), fallbackLanguage);
  }

  LanguageResources resources(std::move(folders), digramTable);
  WordRecognizer recognizer(settings, resources);
  for (TokenPage& page : pages) recognizer.addPage(page, fallbackLanguage);
  const RecognitionResult result = recognizer.finish();

  RecognitionOutput output;
  const ReportInput input{result, document.name(), settings.statisticsPerPage, settings.reportAll,
                          settings.textAcceptThreshold};
  output.report = writeReport(input, settings.format);
  output.recognizedWords = writeWordList(result.document.mainFrequency);
  output.rejectedWords = writeWordList(result.document.rejectedFrequency);
  return output;
}

}  // namespace qent::text::wordrecognizer
