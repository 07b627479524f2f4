// ConvertVerb.cpp - `ormida convert IN OUT`: one file, or every file of a folder into another.
#include "Batch.h"
#include "Progress.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <atomic>
#include <filesystem>
#include <iostream>
#include <map>

namespace ormida::cli {

namespace {

namespace fs = std::filesystem;

struct OutputFormat {
  const char* property;   // the value of OutputFilename.Format
  const char* extension;  // of files written into a folder
};

const std::map<std::string, OutputFormat> kFormats = {
    {"hocr", {"hocr", ".hocr"}},  {"json", {"json", ".json"}},
    {"html", {"html", ".html"}},  {"webanno", {"webanno", ".tsv"}},
    {"txt", {"txtutf8", ".txt"}},  {"alto", {"alto", ".alto.xml"}},
    {"page", {"page", ".page.xml"}},
};

// ALTO and PAGE are output formats the library writes only when asked to
// (XmlLayoutFormats); converting to them is exactly that request.
bool isXmlLayoutFormat(const std::string& format) { return format == "alto" || format == "page"; }

const char* const kFormatChoice = "hocr|json|html|webanno|txt|alto|page";

// The format an output file's extension names, or empty. ".html" is the HTML view: hOCR
// files are written as ".hocr" here, whatever name engines give them.
std::string formatOfExtension(const fs::path& file) {
  const std::string name = utf8Name(file.filename());
  for (const auto& [format, output] : kFormats) {
    const std::string_view extension = output.extension;
    if (name.size() > extension.size() && name.ends_with(extension)) return format;
  }
  if (name.ends_with(".htm")) return "html";
  return "";
}

class ConvertVerb : public Verb {
public:
  explicit ConvertVerb(CLI::App& app) {
    command_ = app.add_subcommand(
        "convert", "convert a layout to another format (a file, or all files of a folder)");
    command_->add_option("IN", input_, "input file or folder")->required();
    command_->add_option("OUT", output_, "output file or folder")->required();
    command_->add_option("--to", to_, "output format (default: from OUT's extension)")
        ->check(CLI::IsMember({"hocr", "json", "html", "webanno", "txt", "alto", "page"}));
    command_->add_option("-j,--jobs", threads_, "for folders: files converted at once")
        ->default_str("the number of cores")
        ->check(CLI::Range(1, 1024));
    command_->add_flag("--strict", strict_,
                       "read hOCR strictly and write WebAnno offsets in UTF-8 bytes");
  }

  bool chosen() const override { return command_->parsed(); }

  int run() override {
    if (fs::is_directory(utf8Path(input_))) return runFolder();
    const std::string format = to_.empty() ? formatOfExtension(output_) : to_;
    if (format.empty()) {
      std::cerr << "ormida convert: cannot tell the format from \"" << output_
                << "\"; give --to " << kFormatChoice << "\n";
      return kExitUsage;
    }
    if (const std::string why = unusableInputName(input_); !why.empty()) {
      std::cerr << "ormida convert: " << input_ << ": " << why << "\n";
      return kExitUsage;
    }
    const JobOutcome outcome = runJob(jobProperties(input_, output_, format), "", true);
    if (!outcome.ok) {
      std::cerr << "ormida convert: " << outcome.error << "\n";
      return kExitFailed;
    }
    return kExitOk;
  }

private:
  Properties jobProperties(const std::string& input, const std::string& output,
                           const std::string& format) const {
    Properties properties = {{"InputFilename", input},
                             {"OutputFilename", output},
                             {"OutputFilename.Format", kFormats.at(format).property}};
    if (isXmlLayoutFormat(format)) properties.emplace_back("XmlLayoutFormats", "true");
    if (!strict_) {
      properties.emplace_back("TolerantHocr", "true");
      // WebAnno and INCEpTION count offsets in UTF-16 code units.
      if (format == "webanno") properties.emplace_back("WebAnnoOffsets", "utf16");
    }
    return properties;
  }

  int runFolder() {
    if (to_.empty()) {
      std::cerr << "ormida convert: converting a folder needs --to " << kFormatChoice << "\n";
      return kExitUsage;
    }
    std::error_code failed;
    fs::create_directories(utf8Path(output_), failed);
    if (failed || !fs::is_directory(utf8Path(output_))) {
      std::cerr << "ormida convert: cannot create the folder " << output_ << "\n";
      return kExitFailed;
    }
    const std::vector<fs::path> files = filesOf(utf8Path(input_));
    std::atomic<std::size_t> failures{0};
    Progress progress(files.size(), standardErrorIsTerminal(), std::cerr);
    runOnThreads(files.size(), threads_ != 0 ? threads_ : defaultThreads(), [&](std::size_t i) {
      std::string error = unusableInputName(utf8Name(files[i]));
      try {
        if (error.empty()) {
          const fs::path target =
              utf8Path(output_) / (stemOf(files[i]) + kFormats.at(to_).extension);
          const JobOutcome outcome =
              runJob(jobProperties(utf8Name(files[i]), utf8Name(target), to_), "");
          if (outcome.ok) return;
          error = outcome.error;
        }
      } catch (const std::exception& e) {
        error = e.what();
      }
      ++failures;
      progress.note("ormida: " + utf8Name(files[i]) + " failed: " + error);
    }, progress);
    std::cout << files.size() - failures << " of " << files.size() << " files converted to "
              << to_ << " in " << output_ << "\n";
    return failures == 0 ? kExitOk : kExitFailed;
  }

  CLI::App* command_ = nullptr;
  std::string input_, output_, to_;
  unsigned threads_ = 0;
  bool strict_ = false;
};

}  // namespace

std::unique_ptr<Verb> addConvertVerb(CLI::App& app) { return std::make_unique<ConvertVerb>(app); }

}  // namespace ormida::cli
