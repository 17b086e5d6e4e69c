// The macro language: a text file becomes a list of statements, and each statement calls one operation of the session.
// This folder stands on floor 9, above the session and beside the windows. Read the files in this order:
//
//   run_macro.h      reading, checking and running a file: the entry to this folder
//   clean.h          the file without comments, blanks and line ends
//   parse.h          the clean text as statements, or the first fault
//   loop_file.h      the lines of a loop file, and how they replace the loop columns of a statement
//   command.h        a command: a record of parameters, its description, a handler
//   command_table.h  the tables of all commands
//   *_commands.h     the commands by subject: records and handlers
//   shared_params.h, param_fields.h, named_model.h   helpers for several commands
//   macro_state.h    the state of the interpreter
//
// A handler only translates. It reads its record, calls one operation of the session or opens a window, and sets the
// verbose text: what was done, or why nothing was done. It checks no rules of its own and changes no table.
//
// To add a command: a record with a member for each parameter and Describe(), and a handler, both in *_commands.h; a
// row at the end of the second table in command_table.cpp; a heading and an entry in the list of
// docs/macro-language.md; its tests in tests/macro. New parameters are appended to Describe(), because the order
// resolves abbreviations.
#pragma once

#include <string_view>

namespace kalvex {

struct Desk;

enum RunMacroResult : int { kMacroEnded = 0, kMacroQuit = 1, kMacroFailed = -1, kMacroAlreadyRunning = -2 };

// Runs the file; the name may be enclosed in double quotes. It begins with the defaults desk.macro.defaults; the
// present ones return when it has ended. kMacroQuit: the caller must end the program. kMacroFailed: desk.macro.fault
// contains the reason; no statement has been executed, unless the fault is in a loop file, or errors end the macro
// (OnError).
int RunMacro(Desk& desk, std::string_view fileName);

// Reads and parses without running. Returns kMacroEnded or kMacroFailed.
int CheckMacro(Desk& desk, std::string_view fileName);

}  // namespace kalvex
