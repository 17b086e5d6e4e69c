// The options of the program.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace kalvex {

struct CommandLine {
  bool headless = false;
  bool check = false;
  bool verbose = false;
  bool progress = false;
  bool help = false;
  bool version = false;
  bool listTypes = false;
  int describeType = -1;  // code of the special model whose page is wanted, 0 for the page of all
  bool listTerms = false;
  int describeTerm = -1;  // a code of the term whose page is wanted, 0 for the page of all
  int threads = 0;        // 0: as many as there are processors
  std::string macroFile;
};

// Reads the arguments behind the program's own name. False for a wrong command line, with the reason in fault.
bool ReadCommandLine(std::span<const char* const> args, CommandLine& line, std::string& fault);

extern const char* const kUsage;

}  // namespace kalvex
