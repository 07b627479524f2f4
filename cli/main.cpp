// main.cpp - the ormida command-line tool: sets job properties from its arguments,
// executes the job once and prints requested results. It uses only the public C header.
#include "ormida/ormida.h"

#include <cstdio>
#include <cstring>
#include <string>

int main(int argc, char** argv) {
  char version[64];
  OrmidaGetVersionText(version, sizeof version);
  if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
    std::printf("%s\n", version);
    return 0;
  }
  std::fprintf(stderr, "ormida: executing jobs from the command line is not built yet\n");
  return 2;
}
