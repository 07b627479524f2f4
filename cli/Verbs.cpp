// Verbs.cpp - what the verbs share: running one job from a property list.
#include "Verbs.h"

#include "Job.h"

#include <filesystem>
#include <fstream>

namespace ormida::cli {

JobOutcome runJob(const Properties& properties, const std::string& resultName,
                  bool leaveToExit) {
  Job job;
  if (leaveToExit) job.leaveToExit();
  JobOutcome outcome;
  for (const auto& [name, value] : properties) {
    const std::uint32_t code = job.set(name, value);
    if (code == ORMIDA_UNKNOWN_PROPERTY) {
      outcome.error = "this library does not know the property " + name + " (code 99)";
      return outcome;
    }
    if (code != ORMIDA_OK) {
      outcome.error = "could not set " + name + " (code " + std::to_string(code) + ")";
      return outcome;
    }
  }
  const std::uint32_t code = job.execute();
  if (code != ORMIDA_OK) {
    outcome.error = job.errorText() + " (code " + std::to_string(code) + ")";
    return outcome;
  }
  if (!resultName.empty()) {
    std::optional<std::string> result = job.get(resultName);
    if (!result) {
      outcome.error = "the job gave no " + resultName + " (code " +
                      std::to_string(job.lastCode()) + ")";
      return outcome;
    }
    outcome.result = std::move(*result);
  }
  outcome.ok = true;
  return outcome;
}

std::string unusableInputName(const std::string& path) {
  if (path.find(';') != std::string::npos) return "a file name with \";\" cannot be read";
  if (path.find('*') != std::string::npos) return "a file name with \"*\" cannot be read";
  return "";
}

bool writeFileAtomically(const std::string& path, const std::string& text) {
  const std::string temporary = path + ".part";
  bool written = false;
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << text;
    written = static_cast<bool>(out.flush());
  }
  std::error_code failed;
  if (written) std::filesystem::rename(temporary, path, failed);
  if (!written || failed) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    return false;
  }
  return true;
}

}  // namespace ormida::cli
