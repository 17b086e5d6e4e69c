// The program: options, progress on standard error, and the choice between windows and a run without them. This folder
// stands on floor 10, on top of everything else. Read the files in this order:
//
//   command_line.h   the options of the program
//   main.cpp         checks the options and runs or checks the macro
//   window_layer.h   finds and loads the library of windows, if there is a screen
//   window_entry.h   the one function that the program calls in that library
//   progress.h       one line for each iteration of a fit
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
  int describeType = -1;  // code of the special model whose page is shown, 0 for the index
  bool listTerms = false;
  int describeTerm = -1;  // a code of the term whose page is shown, 0 for the index
  int defaults = 1;       // with which a macro starts
  int threads = 0;        // 0: as many as there are processors
  std::string macroFile;
};

// Reads the arguments after the program's name. False for a wrong command line; `fault` then contains the reason.
bool ReadCommandLine(std::span<const char* const> args, CommandLine& line, std::string& fault);

extern const char* const kUsage;

}  // namespace kalvex
