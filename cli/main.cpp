// main.cpp - the ormida command-line tool: sets job properties from its arguments,
// executes the job once and prints requested results. It uses only the public C header,
// so it doubles as the example of how to drive the library.
#include "ormida/ormida.h"

#include "CompareSummary.h"
#include "ExtractionSummary.h"
#include "Job.h"
#include "PropertyHelp.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>
#include <utf8.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

std::string versionText() {
  char text[64];
  OrmidaGetVersionText(text, sizeof text);
  return text;
}

std::string helpFooter() {
  std::ostringstream out;
  out << "\nProperties (NAME=VALUE, set in order, later wins; booleans: empty, 0, false, no are false):\n";
  for (const auto& p : ormida::cli::kProperties) {
    out << "  " << std::left << std::setw(40) << p.name << p.type << ", default " << p.fallback << "\n      " << p.meaning << "\n";
  }
  out << "\nResults for --get:";
  for (const char* name : ormida::cli::kResults) out << ' ' << name;
  out << "\n\nVerbs (ormida VERB --help for their options):\n"
         "  ormida compare GT OCR [--level word] [--json result.json]   one pair, or two folders\n"
         "  ormida convert IN OUT [--to hocr|json|html|webanno|txt|alto|page]\n"
         "  ormida check TEXT|LAYOUT [--lang deu|eng] [--format text|csv|json]\n"
         "  ormida summarize A.json B.json ... [--json all.json] [--csv all.csv]\n"
         "\nExamples:\n"
         "  ormida InputFilename=page.json OutputFilename=page.txt OutputFilename.Format=txtutf8\n"
         "  ormida InputFilename=ocr.json Compare=true Compare.With=truth.json --get Compare.Result\n"
         "  ormida InputFilename=ocr.json ExtractFromLayout=true ExtractFromLayout.With=form.json --summary\n";
  return out.str();
}

// Whether the job writes a trace: freeing it then writes the trace's closing line, which
// a reader of the trace should still find.
bool writesTrace(const std::vector<std::string>& assignments) {
  const char* variable = std::getenv("QENT_TEXTTRACE");
  if (variable != nullptr && *variable != '\0') return true;
  for (const std::string& assignment : assignments) {
    if (assignment.rfind("TraceFilename=", 0) == 0) return true;
  }
  return false;
}

// The value last given to a property on the command line, resolved against WorkSpace as the
// library resolves it; empty when it was not set.
std::string outputPath(const std::vector<std::string>& assignments, const std::string& property) {
  const std::string prefix = property + "=";
  std::string workSpace, output;
  for (const std::string& assignment : assignments) {
    if (assignment.rfind("WorkSpace=", 0) == 0) workSpace = assignment.substr(10);
    if (assignment.rfind(prefix, 0) == 0) output = assignment.substr(prefix.size());
  }
  const bool absolute = !output.empty() && (output[0] == '/' || output[0] == '\\' ||
                                            (output.size() > 1 && output[1] == ':'));
  if (output.empty() || absolute || workSpace.empty()) return output;
  const char last = workSpace.back();
  return workSpace + (last == '/' || last == '\\' ? "" : "/") + output;
}

// The summaries of --summary (the comparison's, the extraction comparison's, or both), each
// followed by where its full result went.
int printSummaries(ormida::cli::Job& job, const std::vector<std::string>& assignments) {
  const std::optional<std::string> compare = job.get("Compare.Result");
  const std::optional<std::string> extraction = job.get("CompareErrorRate");
  if (!compare && !extraction) {
    std::cerr << "ormida: --summary: no comparison result (set Compare=true or "
                 "ExtractFromLayout=true)\n";
    return 1;
  }
  if (compare) {
    std::cout << ormida::cli::compareSummary(*compare);
    const std::string output = outputPath(assignments, "Compare.OutputFilename");
    if (!output.empty()) {
      std::cout << "\nFull result: " << output << "\n";
    } else {
      std::cout << "\nFull result: --get Compare.Result, or set Compare.OutputFilename\n";
    }
  }
  if (extraction) {
    if (compare) std::cout << "\n";
    std::cout << ormida::cli::extractionSummary(*extraction);
    const std::string output = outputPath(assignments, "ExtractFromLayout.OutputFilename");
    if (!output.empty()) {
      std::cout << "\nZone by zone: " << output << "\n";
    } else {
      std::cout << "\nZone by zone: set ExtractFromLayout.OutputFilename\n";
    }
  }
  return 0;
}

int run(int argc, char** argv) {
  CLI::App app{"ormida - process OCR results: convert layouts, compare a recognition with its "
               "ground truth.\n" + versionText(),
               "ormida"};
  app.footer(helpFooter());
  std::vector<std::string> assignments;
  std::vector<std::string> gets;
  bool version = false;
  bool summary = false;
  app.add_option("NAME=VALUE", assignments,
                 "set a job property; NAME=@FILE sets it to the contents of FILE (UTF-8)");
  app.add_option("--get", gets, "after executing, print this result property (repeatable)")
      ->type_name("NAME");
  app.add_flag("--version", version, "print the version text");
  app.add_flag("--summary", summary,
               "after executing, print a summary of the comparison results (with Compare=true "
               "or ExtractFromLayout=true)");
  std::vector<std::unique_ptr<ormida::cli::Verb>> verbs;
  verbs.push_back(ormida::cli::addCompareVerb(app));
  verbs.push_back(ormida::cli::addConvertVerb(app));
  verbs.push_back(ormida::cli::addCheckVerb(app));
  verbs.push_back(ormida::cli::addSummarizeVerb(app));
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // Help is a success; every other parse error is a usage error.
    const int status = app.exit(e);
    return status == 0 ? 0 : ormida::cli::kExitUsage;
  }
  for (const auto& verb : verbs) {
    if (verb->chosen()) return verb->run();
  }
  if (version) {
    std::cout << versionText() << "\n";
    return 0;
  }
  if (assignments.empty()) {
    std::cerr << app.help() << "\normida: no properties given\n";
    return 2;
  }

  ormida::cli::Job job;
  if (!writesTrace(assignments)) job.leaveToExit();
  for (const std::string& assignment : assignments) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0) {
      std::cerr << "ormida: argument \"" << assignment << "\" is not NAME=VALUE\n";
      return 2;
    }
    const std::string name = assignment.substr(0, equals);
    std::string value = assignment.substr(equals + 1);
    if (!value.empty() && value[0] == '@') {
      std::ifstream in(value.substr(1), std::ios::binary);
      if (!in) {
        std::cerr << "ormida: cannot read " << value.substr(1) << " for " << name << "\n";
        return 2;
      }
      value.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    if (!utf8::is_valid(name.begin(), name.end()) || !utf8::is_valid(value.begin(), value.end())) {
      std::cerr << "ormida: " << name << " is not valid UTF-8\n";
      return 2;
    }
    const uint32_t code = job.set(name, value);
    if (code == ORMIDA_UNKNOWN_PROPERTY) {
      std::cerr << "ormida: unknown property " << name << " (see ormida --help)\n";
      return 2;
    }
    if (code != ORMIDA_OK) {
      std::cerr << "ormida: could not set " << name << " (code " << code << ")\n";
      return 2;
    }
  }

  const uint32_t code = job.execute();
  if (code != ORMIDA_OK) {
    std::cerr << "ormida: " << job.errorText() << " (code " << code << ")\n";
    return 1;
  }
  for (const std::string& name : gets) {
    const std::optional<std::string> value = job.get(name);
    if (!value) {
      if (job.lastCode() == ORMIDA_UNKNOWN_PROPERTY) {
        std::cerr << "ormida: no result " << name << "\n";
      } else {
        std::cerr << "ormida: reading " << name << " failed: " << job.errorText() << " (code "
                  << job.lastCode() << ")\n";
      }
      return 1;
    }
    std::cout << *value << "\n";
  }
  if (summary) return printSummaries(job, assignments);
  return 0;
}

}  // namespace

#if defined(_WIN32)
// Windows hands arguments over as UTF-16; the tool works in UTF-8 like the library's files.
int wmain(int argc, wchar_t** wargv) {
  std::vector<std::string> storage;
  std::vector<char*> argv;
  for (int i = 0; i < argc; ++i) {
    const std::wstring arg(wargv[i]);
    const std::u16string wide(arg.begin(), arg.end());
    std::string utf8Arg;
    utf8::utf16to8(wide.begin(), wide.end(), std::back_inserter(utf8Arg));
    storage.push_back(utf8Arg);
  }
  for (auto& s : storage) argv.push_back(s.data());
  _setmode(_fileno(stdout), _O_BINARY);
  return run(argc, argv.data());
}
#else
int main(int argc, char** argv) { return run(argc, argv); }
#endif
