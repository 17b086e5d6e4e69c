// The first phase of reading a macro: from the file to one compact text.
#include <gtest/gtest.h>

#include <random>

#include "core/files.h"
#include "macro/clean.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

TEST(Cleaning, ANumberSignOutsideAStringDropsTheRestOfItsLine) {
  EXPECT_EQ(CleanMacro("ab#cd\nef\n"), "abef");
  EXPECT_EQ(CleanMacro("a## # b\nc\n"), "ac");
  EXPECT_EQ(CleanMacro("Fit(NumIters=5); # fit\nWait();\n"), "Fit(NumIters=5);Wait();");
  EXPECT_EQ(CleanMacro("#\n#\n"), "");
}

TEST(Cleaning, ANumberSignInsideAStringStays) {
  EXPECT_EQ(CleanMacro("x(\"a#b\");\n"), "x(\"a#b\");");
  EXPECT_EQ(CleanMacro("\"#\"#\"#\"\n"), "\"#\"");
}

TEST(Cleaning, LineFeedsGoAndEndCommentAndString) {
  EXPECT_EQ(CleanMacro("a\n\nb#\nc\n"), "abc");
  EXPECT_EQ(CleanMacro("\"a b\nc d#e\n\"f g\"\n"), "\"a bcd\"f g\"");
  EXPECT_EQ(CleanMacro("NewModel\n(\nXPos\n=\n1\n2\n)\n;\n"), "NewModel(XPos=12);");
}

TEST(Cleaning, TabsGoEverywhereInsideStringsToo) {
  EXPECT_EQ(CleanMacro("\ta\tb\t\n"), "ab");
  EXPECT_EQ(CleanMacro("x(\"a \tb\t\");\n"), "x(\"a b\");");
}

TEST(Cleaning, BlanksGoOutsideStringsAndStayInside) {
  EXPECT_EQ(CleanMacro("  a  b  \n"), "ab");
  EXPECT_EQ(CleanMacro("Data set No = 1 0\n"), "DatasetNo=10");
  EXPECT_EQ(CleanMacro("x ( \" a  b \" ) ;\n"), "x(\" a  b \");");
}

TEST(Cleaning, AQuoteFlipsTheStringButNotInsideAComment) {
  EXPECT_EQ(CleanMacro("\"a b\" c d \"e f\" g\n"), "\"a b\"cd\"e f\"g");
  EXPECT_EQ(CleanMacro("a b # \" c\nd e\n"), "abde");
  EXPECT_EQ(CleanMacro("\"\" a b\n"), "\"\"ab");
}

TEST(Cleaning, AllOtherCharactersStayOutsideComments) {
  std::string others;
  for (int c = 0; c < 256; ++c) {
    if (c != '\n' && c != '\t' && c != ' ' && c != '"' && c != '#') others += static_cast<char>(c);
  }
  EXPECT_EQ(CleanMacro(others + "\n"), others);
  EXPECT_EQ(CleanMacro("#" + others + "\n"), "");
  EXPECT_EQ(CleanMacro("a\rb\n"), "a\rb");
}

TEST(Cleaning, AStringOpenAtItsLinesEndProtectsNoMoreUntilTheNextQuoteOpensOne) {
  EXPECT_EQ(CleanMacro("MainWindow(Title=\"a b\n c d\");\ne f;\n"), "MainWindow(Title=\"a bcd\");ef;");
  // The quote on the second line opens a string, so that the blanks after it stay up to the end of the line.
  EXPECT_EQ(CleanMacro("\"a\nb \" c d # e\nf g\n"), "\"ab\" c d # efg");
}

TEST(Cleaning, APairOfReturnAndLineFeedIsOneLineFeed) {
  const ScratchFolder folder;
  std::string text;
  ASSERT_TRUE(ReadTextFile(folder.Write("m", "a; # b\r\n\"c d\r\ne f\r\n"), text));
  EXPECT_EQ(CleanMacro(text), "a;\"c def");
  ASSERT_TRUE(ReadTextFile(folder.Write("m", "first;\r\nsecond;\r\n# end"), text));
  EXPECT_EQ(CleanMacro(text), "second;");
}

TEST(Cleaning, ALastLineThatIsACommentWithoutALineFeedCostsTheFirstLine) {
  EXPECT_EQ(CleanMacro("first;\nsecond;\n# end"), "second;");
  EXPECT_EQ(CleanMacro("a;\nb; # end"), "b;");
  EXPECT_EQ(CleanMacro("only; # end"), "");
  EXPECT_EQ(CleanMacro("#"), "");
  // A quote in the lost line opens no string.
  EXPECT_EQ(CleanMacro("x(\"a\nb c\n#"), "bc");
}

TEST(Cleaning, TheFirstLineIsSafeOtherwise) {
  EXPECT_EQ(CleanMacro("first;\nsecond;\n# end\n"), "first;second;");
  EXPECT_EQ(CleanMacro("first;\nsecond;"), "first;second;");
  EXPECT_EQ(CleanMacro("first;\n\"open # text"), "first;\"open # text");
  EXPECT_EQ(CleanMacro("\nsecond;\n# end"), "second;");  // only the empty first line is lost
}

TEST(Cleaning, AnOpenStringAtTheEndDoesNotReachTheFirstLine) { EXPECT_EQ(CleanMacro("a b\n\"c d"), "ab\"c d"); }

// An independent version that works line by line: what is kept of a line does not depend on earlier lines.
std::string KeptOfLine(const std::string& line) {
  std::string kept;
  bool inString = false;
  for (const char c : line) {
    if (!inString && c == '#') break;
    if (c == '"') inString = !inString;
    if (c != '\t' && (inString || c != ' ')) kept += c;
  }
  return kept;
}

bool EndsInComment(const std::string& line) {
  bool inString = false;
  for (const char c : line) {
    if (!inString && c == '#') return true;
    if (c == '"') inString = !inString;
  }
  return false;
}

std::string CleanedByLines(const std::string& text) {
  std::vector<std::string> lines = {""};
  for (const char c : text) {
    if (c == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  if (EndsInComment(lines.back())) lines.front().clear();
  std::string kept;
  for (const std::string& line : lines) kept += KeptOfLine(line);
  return kept;
}

TEST(Cleaning, RandomTextsComeOutAsLineByLine) {
  std::mt19937 random(7);
  const std::string letters = "aB;%\r \t\"#\n";
  for (int trial = 0; trial < 3000; ++trial) {
    std::string text;
    for (auto n = random() % 40; n > 0; --n) text += letters[random() % letters.size()];
    ASSERT_EQ(CleanMacro(text), CleanedByLines(text)) << testing::PrintToString(text);
  }
}

TEST(Cleaning, EveryKeptCharacterKnowsItsPlace) {
  std::vector<std::uint32_t> sources;
  const std::string text = "ab #c\n  d\n";
  EXPECT_EQ(CleanMacro(text, &sources), "abd");
  EXPECT_EQ(sources, (std::vector<std::uint32_t>{0, 1, 8}));
}

TEST(Places, AreCountedFromOneInLinesAndColumns) {
  const std::string text = "ab\n\n cd";
  const struct {
    std::size_t offset;
    int line, column;
  } kPlaces[] = {{0, 1, 1}, {1, 1, 2}, {2, 1, 3}, {3, 2, 1}, {4, 3, 1}, {5, 3, 2}, {7, 3, 4}};
  for (const auto& place : kPlaces) {
    EXPECT_EQ(PlaceOf(text, place.offset).line, place.line) << place.offset;
    EXPECT_EQ(PlaceOf(text, place.offset).column, place.column) << place.offset;
  }
}

}  // namespace
}  // namespace kalvex
