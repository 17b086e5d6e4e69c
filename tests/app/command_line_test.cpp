// The command line: options, exit statuses, standard output and standard error.
#include <algorithm>

#include "app/kalvex_run.h"

namespace kalvex {
namespace {

using Args = std::vector<std::string>;

class CommandLines : public Kalvex {
 protected:
  CommandLines() {
    folder.Write("good one.kvs", "Echo(Text=\"ran\");\n");
    folder.Write("bad.kvs", "Echo(Text=\"ran\");\n  NewModel(Foo=1);\n");
  }
  ProgramRun With(const Args& args) const { return RunProgram(folder, args); }
};

TEST_F(CommandLines, AMacroThatRunsToItsEndGivesZero) {
  const ProgramRun good = With({"good one.kvs"});
  EXPECT_EQ(good.status, 0);
  EXPECT_EQ(good.out, "ran\n");
  EXPECT_EQ(good.err, "");
}

TEST_F(CommandLines, ExitGivesZeroWithAndWithoutQuitApp) {
  for (const char* const exit : {"Exit();", "Exit(QuitApp=0);", "Exit(QuitApp=1);"}) {
    folder.Write("m.kvs", "Echo(Text=\"a\");" + std::string(exit) + "Echo(Text=\"b\");");
    const ProgramRun ended = With({"m.kvs"});
    EXPECT_EQ(ended.status, 0) << exit;
    EXPECT_EQ(ended.out, "a\n") << exit;
  }
}

TEST_F(CommandLines, AFaultGivesOneOnStandardErrorAndNoStatementHasRun) {
  const ProgramRun bad = With({"bad.kvs"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.out, "");
  EXPECT_EQ(bad.err,
            "bad.kvs:2:12: unknown parameter 'Foo' of NewModel; expected one of XPos, YPos, Width, Height, "
            "VarDielFuncSeen\n");
}

TEST_F(CommandLines, CheckingParsesAndRunsNothing) {
  const ProgramRun good = With({"--check", "good one.kvs"});
  EXPECT_EQ(good.status, 0);
  EXPECT_EQ(good.out, "");
  EXPECT_EQ(good.err, "");
  const ProgramRun bad = With({"bad.kvs", "--check"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.err, With({"bad.kvs"}).err);
  EXPECT_EQ(With({"--check", "--verbose", "good one.kvs"}).err, "");
}

TEST_F(CommandLines, AFileNameMayStandInQuotesOfItsOwn) {
  EXPECT_EQ(With({"\"good one.kvs\""}).out, "ran\n");
  EXPECT_EQ(With({"\"good one.kvs"}).status, 1);
  EXPECT_EQ(With({folder.Path("good one.kvs")}).out, "ran\n");
}

TEST_F(CommandLines, AMissingOrUnreadableMacroGivesOne) {
  const ProgramRun missing = With({"none.kvs"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "none.kvs: the macro file cannot be opened\n");
  for (const std::string& name : {folder.Name(), std::string("."), std::string("good one.kvs/x"), std::string("\"\""),
                                  std::string("/dev/zero")}) {
    EXPECT_EQ(With({name}).status, 1) << name;
    EXPECT_EQ(With({"--check", name}).status, 1) << name;
  }
}

TEST_F(CommandLines, ABinaryFileIsAFault) {
  folder.Write("b.kvs", std::string("\x7f"
                                    "ELF\0\1\2\xff;;;\n",
                                    11));
  EXPECT_EQ(With({"b.kvs"}).status, 1);
}

TEST_F(CommandLines, WithoutAMacroThereIsNothingToRun) {
  for (const Args& args : {Args{}, Args{""}, Args{"--headless"}, Args{"--verbose", "--progress"}}) {
    const ProgramRun idle = With(args);
    EXPECT_EQ(idle.status, 0);
    EXPECT_EQ(idle.out, "");
  }
}

TEST_F(CommandLines, AnEmptyMacroDoesNothing) {
  folder.Write("empty.kvs", "");
  folder.Write("comments.kvs", "# only\n# comments\n");
  for (const char* const name : {"empty.kvs", "comments.kvs"}) {
    const ProgramRun nothing = With({"--verbose", name});
    EXPECT_EQ(nothing.status, 0);
    EXPECT_EQ(nothing.out + nothing.err, "");
  }
}

TEST_F(CommandLines, OptionsStandInAnyOrderAndTogether) {
  for (const Args& args :
       {Args{"--headless", "good one.kvs"}, Args{"good one.kvs", "--headless"}, Args{"--threads", "2", "good one.kvs"},
        Args{"--threads", "64", "good one.kvs"}, Args{"--progress", "good one.kvs"}, Args{"--", "good one.kvs"},
        Args{"--headless", "--headless", "--threads", "1", "--progress", "good one.kvs"}}) {
    const ProgramRun good = With(args);
    EXPECT_EQ(good.status, 0) << args[0];
    EXPECT_EQ(good.out, "ran\n") << args[0];
    EXPECT_EQ(good.err, "") << args[0];
  }
  folder.Write("--check", "Echo(Text=\"odd name\");");
  EXPECT_EQ(With({"--", "--check"}).out, "odd name\n");
}

TEST_F(CommandLines, VerboseTellsOfEachStatement) {
  const ProgramRun told = With({"--verbose", "good one.kvs"});
  EXPECT_EQ(told.out, "ran\n");
  EXPECT_EQ(told.err, "good one.kvs:1: Echo: one line printed\n");
}

TEST_F(CommandLines, AWrongCommandLineGivesTwoAndRunsNothing) {
  constexpr auto kNoType = "--describe-type needs the code of a special model; --list-types shows them";
  constexpr auto kNoTerm = "--describe-term needs a code of a term; --list-terms shows them";
  const struct {
    Args args;
    const char* fault;
  } kCases[] = {{{"--frobnicate", "good one.kvs"}, "unknown option '--frobnicate'"},
                {{"-v", "good one.kvs"}, "unknown option '-v'"},
                {{"--Check", "good one.kvs"}, "unknown option '--Check'"},
                {{"--threads=2", "good one.kvs"}, "unknown option '--threads=2'"},
                {{"good one.kvs", "--threads"}, "--threads needs a number of at least 1"},
                {{"--threads", "0", "good one.kvs"}, "--threads needs a number of at least 1"},
                {{"--threads", "-1", "good one.kvs"}, "--threads needs a number of at least 1"},
                {{"--threads", "2x", "good one.kvs"}, "--threads needs a number of at least 1"},
                {{"--threads", "good one.kvs"}, "--threads needs a number of at least 1"},
                {{"good one.kvs", "b.kvs"}, "there is a second macro file, 'b.kvs'"},
                {{"--check"}, "--check needs a macro file"},
                {{"--describe-type"}, kNoType},
                {{"--describe-type", "30"}, kNoType},
                {{"--describe-type", "114"}, kNoType},
                {{"--describe-type", "-17"}, kNoType},
                {{"--describe-type", "17x"}, kNoType},
                {{"--describe-term"}, kNoTerm},
                {{"--describe-term", "999"}, kNoTerm},
                {{"--describe-term", "-25"}, kNoTerm},
                {{"--describe-term", "25x"}, kNoTerm},
                {{"--help", "--frobnicate"}, "unknown option '--frobnicate'"}};
  for (const auto& c : kCases) {
    const ProgramRun refused = With(c.args);
    EXPECT_EQ(refused.status, 2) << c.args[0];
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err.substr(0, refused.err.find('\n')), "kalvex: " + std::string(c.fault));
    EXPECT_NE(refused.err.find("usage: kalvex [options] [macro.kvs]"), std::string::npos);
  }
}

TEST_F(CommandLines, HelpNamesEveryOptionAndVersionTheProgram) {
  const ProgramRun help = With({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* const option : {"--headless", "--check", "--verbose", "--progress", "--threads N", "--list-types",
                                   "--describe-type N", "--list-terms", "--describe-term N", "--help", "--version"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
  EXPECT_EQ(With({"--help", "good one.kvs"}).out, help.out);
  const ProgramRun version = With({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.substr(0, 7), "Kalvex ");
  EXPECT_EQ(version.out.back(), '\n');
}

TEST_F(CommandLines, SpecialModelsAreListedAndDescribed) {
  const ProgramRun list = With({"--list-types"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), 106);
  EXPECT_NE(list.out.find("\n17\tRefl. sample in medium\t"), std::string::npos);
  const ProgramRun page = With({"--describe-type", "17"});
  EXPECT_EQ(page.status, 0);
  EXPECT_EQ(page.out.substr(0, page.out.find('\n')), "# 17: Refl. sample in medium");
  EXPECT_NE(page.out.find("| 1 | Wp | model | sample |"), std::string::npos);
  EXPECT_EQ(list.err + page.err, "");
}

TEST_F(CommandLines, TermsAreListedAndDescribedByAnyOfTheirCodes) {
  const ProgramRun list = With({"--list-terms"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), 72);
  EXPECT_NE(list.out.find("\n51 to 54\ttwo modes that mix\tcausal\n"), std::string::npos);
  EXPECT_NE(list.out.find("\n63, 64\tFano line in the conductivity\tnot causal\n"), std::string::npos);
  for (const char* const code : {"51", "52", "54"}) {
    const ProgramRun page = With({"--describe-term", code});
    EXPECT_EQ(page.status, 0);
    EXPECT_EQ(page.out.substr(0, page.out.find('\n')), "# 51 to 54: two modes that mix");
    EXPECT_EQ(page.err, "");
  }
  EXPECT_EQ(With({"--describe-term", "0"}).out.substr(0, 20), "# Terms with a code\n");
  EXPECT_EQ(list.err, "");
}

TEST_F(CommandLines, AMissingLoopFileGivesOneAndKeepsTheEffectsBeforeIt) {
  folder.Write("m.kvs",
               "NewModel();\nSaveModel(File=\"before.kvm\");\n BeginLoop(LoopFile=\"none\");\n"
               "SaveModel(File=\"inside.kvm\");\nEndLoop();\nSaveModel(File=\"after.kvm\");\n");
  const ProgramRun cut = With({"m.kvs"});
  EXPECT_EQ(cut.status, 1);
  EXPECT_EQ(cut.err,
            "m.kvs:3:2: the loop file 'none' cannot be opened or is empty; it should have a line for each pass\n");
  EXPECT_TRUE(folder.Has("before.kvm"));
  EXPECT_FALSE(folder.Has("inside.kvm"));
  EXPECT_FALSE(folder.Has("after.kvm"));
}

TEST_F(CommandLines, AnUnknownCommandAnywhereKeepsEveryFileFromBeingWritten) {
  folder.Write("m.kvs", "NewModel();\nSaveModel(File=\"a.kvm\");\nFoo();\n");
  EXPECT_EQ(With({"m.kvs"}).status, 1);
  EXPECT_FALSE(folder.Has("a.kvm"));
}

TEST_F(CommandLines, SuspendGoesOnAtOnceAndMessagesGoToStandardError) {
  folder.Write("m.kvs", "Suspend();LoadDataset(MasterFile=\"none\");Wait();Echo(Text=\"end\");");
  const ProgramRun ran = With({"m.kvs"});
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.out, "end\n");
  EXPECT_EQ(ran.err, "Error: Cannot open master file.\n1 of 4 statements did nothing: --verbose tells which\n");
}

}  // namespace
}  // namespace kalvex
