// CliRunner.h - runs the ormida tool in a directory from the shell (POSIX only), capturing
// its exit status, standard output and standard error.
#pragma once

#include "support/TempDir.h"

#if !defined(_WIN32)

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace qent::test {

struct CliRun {
  int status;
  std::string out;
  std::string err;
};

inline CliRun runCli(const std::string& arguments, const TempDir& dir) {
  const auto errFile = dir / "stderr.txt";
  const std::string command = "cd '" + dir.path().string() + "' && '" ORMIDA_CLI_PATH "' " +
                              arguments + " 2>'" + errFile.string() + "'";
  CliRun run{};
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, "", "popen failed"};
  std::array<char, 4096> buffer{};
  size_t n = 0;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.out.append(buffer.data(), n);
  const int status = pclose(pipe);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.err = readAll(errFile);
  return run;
}

}  // namespace qent::test

#endif
