// AddressRecognitionStep.cpp - recipient and sender blocks, answered instead of the output.
#include "base/Unicode.h"
#include "dataextract/address/AddressRecognizer.h"
#include "job/JobExecution.h"
#include "job/OrmidaJob.h"
#include "job/PropertyStore.h"
#include "job/property_table.h"
#include "job/steps/JobSteps.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <stdexcept>

namespace qent::job::steps {

namespace {

using text::layout::format::Document;

// The text of a plain-text input; a layout is refused, since these tests read text.
std::u16string textOf(const Document& document) {
  if (document.layout() != nullptr) {
    throw std::runtime_error("Address recognition: " + document.name() +
                             " is a layout, where a text input was expected");
  }
  try {
    return base::utf8ToUtf16(document.text());
  } catch (const std::invalid_argument& e) {
    // Reported as a fault of the input, not as an undefined error of the library.
    throw std::runtime_error("Address recognition: " + document.name() + " is not UTF-8 text: " +
                             e.what());
  }
}

std::u16string decision(bool yes) { return yes ? u"1" : u"0"; }

void testTexts(JobExecution& execution) {
  OrmidaJob& job = execution.job();
  const auto& documents = job.documents();
  for (const auto& [sub, value] : execution.properties().subProperties(kAddressRecognition)) {
    if (sub == kTestRecipient) {
      job.setSubResult(kAddressRecognition, kTestRecipient,
                       decision(dataextract::isRecipientText(textOf(*documents[0]))));
    } else if (sub == kTestSender) {
      job.setSubResult(kAddressRecognition, kTestSender,
                       decision(dataextract::isSenderText(textOf(*documents[0]))));
    } else if (sub == kTestRecipientSender) {
      if (documents.size() != 2) {
        throw std::runtime_error("TestRecipientSender expects 2 text inputs: recipient and sender");
      }
      const bool recipient = dataextract::isRecipientText(textOf(*documents[0]));
      const bool sender = dataextract::isSenderText(textOf(*documents[1]));
      job.setSubResult(kAddressRecognition, kTestRecipient, decision(recipient));
      job.setSubResult(kAddressRecognition, kTestSender, decision(sender));
    }
  }
}

// The document's name with its extension replaced by ".json" (appended when it has none),
// written as a JSON string so that a quote, backslash or control character in a path keeps
// the text readable.
std::string resultName(const std::string& name) {
  const std::size_t slash = name.find_last_of("/\\");
  const std::size_t dot = name.rfind('.');
  const bool hasExtension = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  std::string json = hasExtension ? name.substr(0, dot) : name;
  json += ".json";
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> out(buffer);
  out.String(json.data(), static_cast<rapidjson::SizeType>(json.size()));
  return std::string(buffer.GetString(), buffer.GetSize());
}

void recognizeDocuments(JobExecution& execution) {
  OrmidaJob& job = execution.job();
  std::string output = "{\n";
  for (const auto& document : job.documents()) {
    text::layout::Layout* layout = document->layout();
    text::layout::Node* root = layout != nullptr ? layout->root() : nullptr;
    const std::string result =
        layout == nullptr ? dataextract::recognizeAddressesInText(textOf(*document))
        : root != nullptr ? dataextract::recognizeAddresses(*root)
                          : std::string(R"({"recipient":null,"sender":null})");
    output += resultName(document->name());
    output += ": ";
    output += result;
    // Every entry ends with a comma, the last one too: readers of this text expect it.
    output += ", \n";
  }
  output += "}";
  job.setSubResult(kAddressRecognition, kOutput, base::utf8ToUtf16(output));
  execution.writeResultFile(execution.properties().string(kOutputFilename), output);
}

}  // namespace

void addressRecognition(JobExecution& execution) {
  if (execution.job().documents().front()->layout() == nullptr) {
    testTexts(execution);
  } else {
    recognizeDocuments(execution);
  }
}

}  // namespace qent::job::steps
