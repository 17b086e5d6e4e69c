#include "app/command_line.h"

#include <string_view>

#include "core/text.h"
#include "terms/describe.h"
#include "types/describe.h"

namespace kalvex {

constinit const char* const kUsage =
    "usage: kalvex [options] [macro.kvs]\n"
    "\n"
    "Fits optical spectra. With a screen it opens windows and runs the macro in them.\n"
    "Without a screen it runs the macro and ends.\n"
    "\n"
    "  --headless    open no windows even if there is a screen\n"
    "  --check       check the macro for mistakes, but do not run it\n"
    "  --verbose     report on standard error what each statement did, or why it did nothing\n"
    "  --progress    report the progress of a fit on standard error (always on if that is a terminal)\n"
    "  --defaults N  the macro begins with the defaults of level N: 1, as ever, or 2, those of today\n"
    "  --threads N   compute with N threads (default: the number of processors)\n"
    "  --list-types  list the special models: code, name, for what sample\n"
    "  --describe-type N  show the page of the special model with code N; 0 shows the index\n"
    "  --list-terms  list the terms with a code: codes, name, causal or not\n"
    "  --describe-term N  show the page of the term with code N; 0 shows the index\n"
    "  --help        show this text\n"
    "  --version     show the version\n"
    "\n"
    "Exit status: 0 the macro ran to its end, 1 it could not run or an error ended it, 2 wrong command line,\n"
    "3 passes of a loop failed.\n";

namespace {

// Reads the code after an option: 0 or a known code. False for any other text.
template <class Find>
bool ReadCode(std::string_view text, Find find, int& code) {
  code = IntegerOf(text);
  return std::to_string(code) == text && (code == 0 || find(code));
}

}  // namespace

bool ReadCommandLine(std::span<const char* const> args, CommandLine& line, std::string& fault) {
  bool onlyFiles = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view arg = args[i];
    if (onlyFiles || arg.empty() || arg[0] != '-' || arg == "-") {
      if (!line.macroFile.empty()) {
        fault = "there is a second macro file, '" + std::string(arg) + "'";
        return false;
      }
      line.macroFile = arg;
    } else if (arg == "--") {
      onlyFiles = true;
    } else if (arg == "--headless") {
      line.headless = true;
    } else if (arg == "--check") {
      line.check = true;
    } else if (arg == "--verbose") {
      line.verbose = true;
    } else if (arg == "--progress") {
      line.progress = true;
    } else if (arg == "--help" || arg == "-h") {
      line.help = true;
    } else if (arg == "--version") {
      line.version = true;
    } else if (arg == "--list-types") {
      line.listTypes = true;
    } else if (arg == "--describe-type") {
      if (!ReadCode(i + 1 < args.size() ? args[++i] : "", TypeOfCode, line.describeType)) {
        fault = "--describe-type needs the code of a special model; --list-types shows them";
        return false;
      }
    } else if (arg == "--list-terms") {
      line.listTerms = true;
    } else if (arg == "--describe-term") {
      if (!ReadCode(i + 1 < args.size() ? args[++i] : "", TermOfCode, line.describeTerm)) {
        fault = "--describe-term needs a code of a term; --list-terms shows them";
        return false;
      }
    } else if (arg == "--defaults") {
      const std::string_view level = i + 1 < args.size() ? args[++i] : "";
      line.defaults = IntegerOf(level);
      if (level != "1" && level != "2") {
        fault = "--defaults needs 1 or 2";
        return false;
      }
    } else if (arg == "--threads") {
      const std::string_view number = i + 1 < args.size() ? args[++i] : "";
      line.threads = IntegerOf(number);
      if (line.threads < 1 || std::to_string(line.threads) != number) {
        fault = "--threads needs a number of at least 1";
        return false;
      }
    } else {
      fault = "unknown option '" + std::string(arg) + "'";
      return false;
    }
  }
  if (line.check && line.macroFile.empty()) {
    fault = "--check needs a macro file";
    return false;
  }
  return true;
}

}  // namespace kalvex
