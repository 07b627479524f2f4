// Verbs.h - the everyday commands of the tool (compare, convert, check, summarize), each a
// CLI11 subcommand that maps its arguments onto job properties. Exit codes: 0 success, 1 a
// job failed (its message and the library's code on standard error), 2 a usage error.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace ormida::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

using Properties = std::vector<std::pair<std::string, std::string>>;

// The outcome of one job: the requested result, or the error with the library's code.
struct JobOutcome {
  bool ok = false;
  std::string result;
  std::string error;
};

// Creates a job, sets the properties in order, executes it and reads resultName (when not
// empty). A property the library does not know fails the job with a message naming it.
JobOutcome runJob(const Properties& properties, const std::string& resultName,
                  bool leaveToExit = false);

// A file name the library's input list can take as one item: it splits at ";" and reads
// "*" as a pattern. Empty when fine, else the reason.
std::string unusableInputName(const std::string& path);

// Writes text to path through a temporary file beside it, so that a failed write never
// leaves a truncated file behind.
bool writeFileAtomically(const std::string& path, const std::string& text);

class Verb {
public:
  virtual ~Verb() = default;
  // Whether the command line named this verb.
  virtual bool chosen() const = 0;
  virtual int run() = 0;
};

std::unique_ptr<Verb> addCompareVerb(CLI::App& app);
std::unique_ptr<Verb> addConvertVerb(CLI::App& app);
std::unique_ptr<Verb> addCheckVerb(CLI::App& app);
std::unique_ptr<Verb> addSummarizeVerb(CLI::App& app);

}  // namespace ormida::cli
