// WordRecognition.h - one run of the word recognizer over a job's main document: a layout
// (its words are marked) or a plain text (read in the configured encoding).
#pragma once

#include "wordrecognizer/RecognizerSettings.h"
#include "wordrecognizer/ResourceFolders.h"

#include <filesystem>
#include <string>

namespace qent::text::layout::format {
class Document;
}

namespace qent::text::wordrecognizer {

struct RecognitionOutput {
  std::string report;           // in the settings' form
  std::string recognizedWords;  // "word\tcount" lines of the main words
  std::string rejectedWords;
};

// `digramTable` is the explicitly named table, resolved, or empty. Errors of resources and
// inputs are QentExceptions naming the file.
RecognitionOutput recognizeDocument(layout::format::Document& document,
                                    const RecognizerSettings& settings, ResourceFolders folders,
                                    const std::filesystem::path& digramTable);

}  // namespace qent::text::wordrecognizer
