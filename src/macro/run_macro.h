// The macro language: a text file becomes a list of statements, and each statement one operation of the session.
//
//   run_macro.h      reading, checking and running a file: the door of this folder
//   clean.h          the file without comments, blanks and lines
//   parse.h          the clean text as statements, or the first fault
//   loop_file.h      the lines of a loop file, and what they put into a statement
//   command.h        what a command is: a record of parameters, its description, a handler
//   command_table.h  the tables of all commands
//   *_commands.h     the commands by subject: records and handlers
//   shared_params.h, param_fields.h, named_model.h   what several commands share
//
// A handler only translates. It unpacks its record, calls one operation of the session or opens a window, and says what
// was done or why nothing was. It has no rule of its own and changes no table.
//
// To add a command: a record with a member for each parameter and Describe(), and a handler, both in *_commands.h; a
// row at the end of the second table in command_table.cpp; a heading and the name's place in docs/macro-language.md;
// its lines in tests/macro. New parameters go to the end of Describe(), since the order gives abbreviations a meaning.
#pragma once

#include <string_view>

namespace kalvex {

struct Desk;

enum RunMacroResult : int { kMacroEnded = 0, kMacroQuit = 1, kMacroFailed = -1, kMacroAlreadyRunning = -2 };

// Runs the file, whose name may stand in double quotes. kMacroQuit asks the caller to leave the program. After
// kMacroFailed, desk.macro.fault says why; unless a loop file was at fault, no statement has then had any effect.
int RunMacro(Desk& desk, std::string_view fileName);

// Reads and parses only: kMacroEnded or kMacroFailed.
int CheckMacro(Desk& desk, std::string_view fileName);

}  // namespace kalvex
