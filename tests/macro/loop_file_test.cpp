// Loop files, and how their tokens replace parts of a statement.
#include "macro/loop_file.h"

#include <gtest/gtest.h>

#include "macro/parsed.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

using Texts = std::vector<std::string>;

class LoopFiles : public testing::Test {
 protected:
  std::vector<LoopRow> Rows(const std::string& text) {
    std::vector<LoopRow> rows;
    readable = ReadLoopFile(folder.Write("loop", text), rows);
    return rows;
  }
  // The tokens of each line.
  std::vector<Texts> Tokens(const std::string& text) {
    std::vector<Texts> lines;
    for (const LoopRow& row : Rows(text)) {
      lines.emplace_back();
      for (std::size_t c = 0; c < row.TokenCount(); ++c) lines.back().emplace_back(LoopToken(row, c));
    }
    return lines;
  }
  ScratchFolder folder;
  bool readable = false;
};

using Lines = std::vector<Texts>;

TEST_F(LoopFiles, LinesFallApartAtBlanksOnly) {
  EXPECT_EQ(Tokens("a b c\n"), (Lines{{"a", "b", "c"}}));
  EXPECT_EQ(Tokens("  a   b  \n"), (Lines{{"a", "b"}}));
  EXPECT_EQ(Tokens("a\tb c\n\t\n"), (Lines{{"a\tb", "c"}, {"\t"}}));
  EXPECT_EQ(Tokens("a,b;c#d \"e f\"\n"), (Lines{{"a,b;c#d", "\"e", "f\""}}));
}

TEST_F(LoopFiles, AnEmptyLineIsARowWithoutTokens) {
  EXPECT_EQ(Tokens("a\n\nb\n"), (Lines{{"a"}, {}, {"b"}}));
  EXPECT_EQ(Tokens("\n"), (Lines{{}}));
  EXPECT_EQ(Tokens("   \n"), (Lines{{}}));
  EXPECT_EQ(Tokens("a\n\n"), (Lines{{"a"}, {}}));
}

TEST_F(LoopFiles, TheLastLineNeedsNoLineFeed) {
  EXPECT_EQ(Tokens("a\nb c"), (Lines{{"a"}, {"b", "c"}}));
  EXPECT_EQ(Tokens("a\r\nb\r\n"), (Lines{{"a"}, {"b"}}));
}

TEST_F(LoopFiles, ATokenOf20CharactersRunsOnIntoTheNext) {
  const std::string of19(19, 'a'), of20(20, 'b');
  EXPECT_EQ(Tokens(of19 + " x\n"), (Lines{{of19, "x"}}));
  EXPECT_EQ(Tokens(of20 + " x y\n"), (Lines{{of20 + "x", "x", "y"}}));
  EXPECT_EQ(Tokens(of20 + "cut x\n"), (Lines{{of20 + "x", "x"}}));
  EXPECT_EQ(Tokens(of20 + ' ' + of20 + " x\n"), (Lines{{of20 + of20 + "x", of20 + "x", "x"}}));
  EXPECT_EQ(Tokens(of20 + "\nnext\n"), (Lines{{of20}, {"next"}}));
}

TEST_F(LoopFiles, ALongLineIsReadInPiecesOf999Characters) {
  EXPECT_EQ(Tokens(std::string(998, ' ') + "\nx\n"), (Lines{{}, {"x"}}));
  // The line feed after 999 characters is read as a separate piece.
  EXPECT_EQ(Tokens(std::string(999, ' ') + "\nx\n"), (Lines{{}, {}, {"x"}}));
  EXPECT_EQ(Tokens(std::string(998, ' ') + "ab c\nd\n"), (Lines{{"a"}, {"b", "c"}, {"d"}}));
  EXPECT_EQ(Tokens(std::string(1998, ' ') + "x"), (Lines{{}, {}, {"x"}}));
  EXPECT_EQ(Tokens(std::string(1997, ' ') + "x"), (Lines{{}, {"x"}}));
}

TEST_F(LoopFiles, TheThousandthLineIsTheLast) {
  std::string text;
  for (int i = 1; i <= 1200; ++i) text += std::to_string(i) + '\n';
  const auto lines = Tokens(text);
  ASSERT_EQ(lines.size(), 1000u);
  EXPECT_EQ(lines.front(), Texts{"1"});
  EXPECT_EQ(lines.back(), Texts{"1000"});
}

TEST_F(LoopFiles, The200thTokenIsTheLast) {
  std::string text;
  for (int i = 1; i <= 240; ++i) text += std::to_string(i) + ' ';
  const auto lines = Tokens(text + "\nnext\n");
  ASSERT_EQ(lines.size(), 2u);
  ASSERT_EQ(lines[0].size(), 200u);
  EXPECT_EQ(lines[0].back(), "200");
  EXPECT_EQ(lines[1], Texts{"next"});
}

TEST_F(LoopFiles, AnEmptyOrMissingFileFailsAndLeavesNoRows) {
  std::vector<LoopRow> rows = Rows("old\n");
  EXPECT_TRUE(readable);
  EXPECT_FALSE(ReadLoopFile(folder.Write("empty", ""), rows));
  EXPECT_TRUE(rows.empty());
  for (const std::string& name : {folder.Path("none"), folder.Name(), std::string()}) {
    rows = Rows("old\n");
    EXPECT_FALSE(ReadLoopFile(name, rows)) << name;
    EXPECT_TRUE(rows.empty());
  }
}

class Substitution : public LoopFiles {
 protected:
  MacroBlock Filled(const std::string& statement, const std::string& line) {
    const auto statements = Parsed(statement);
    MacroBlock block = statements[0].block;
    SubstituteLoopValues(*statements[0].command, Rows(line + "\n")[0], block);
    return block;
  }
  int Integer(const std::string& value, const std::string& line) {
    return Filled("Fit(NumIters=" + value + ");", line)[0].intValue;
  }
  double Real(const std::string& value, const std::string& line) {
    return Filled("AddNoise(Sigma=" + value + ");", line)[1].realValue;
  }
  std::string Text(const std::string& text, const std::string& line) {
    return Filled("LoadModel(File=\"" + text + "\");", line)[1].text;
  }
  std::string ShortText(const std::string& text, const std::string& line) {  // capacity 10
    return Filled("LoadDataset(Quantity=\"" + text + "\");", line)[1].text;
  }
};

TEST_F(Substitution, IntegersTakeTheIntegerConversionOfTheirToken) {
  EXPECT_EQ(Integer("%1", "12 34"), 12);
  EXPECT_EQ(Integer("%2", "12 34"), 34);
  EXPECT_EQ(Integer("%1", "-7"), -7);
  EXPECT_EQ(Integer("%1", "12abc"), 12);
  EXPECT_EQ(Integer("%1", "1.9"), 1);
  EXPECT_EQ(Integer("%1", "x"), 0);
  EXPECT_EQ(Integer("%1", "\t5"), 5);  // a tab is part of the token; the conversion skips it as white space
}

TEST_F(Substitution, RealsTakeTheFloatingConversionOfTheirToken) {
  EXPECT_EQ(Real("%2", "1.5 2"), 2);
  EXPECT_EQ(Real("%1", "1.5 2"), 1.5);
  EXPECT_EQ(Real("%1", "-2.5e-3x"), -0.0025);
  EXPECT_EQ(Real("%1", "x"), 0);
  EXPECT_EQ(Real("%12", "1 2 3 4 5 6 7 8 9 10 11 12.5"), 12.5);
}

TEST_F(Substitution, AColumnThatTheRowDoesNotHaveLeavesTheZero) {
  EXPECT_EQ(Real("%3", "1.5 2"), 0);
  EXPECT_EQ(Integer("%1", ""), 0);
  EXPECT_EQ(Real("%0", "5"), 0);
  EXPECT_EQ(Integer("%0", "5"), 0);
}

TEST_F(Substitution, LiteralsStay) {
  EXPECT_EQ(Integer("7", "1 2 3"), 7);
  EXPECT_EQ(Real("7.5", "1 2 3"), 7.5);
  EXPECT_EQ(Text("plain 5% x", "a"), "plain 5% x");
}

TEST_F(Substitution, WhatIsNotGivenStaysSo) {
  const MacroBlock block = Filled("SetModelParam(Value=%1);", "5");
  EXPECT_FALSE(block[0].given);
  EXPECT_EQ(block[0].intValue, 0);
  EXPECT_EQ(block[3].realValue, 5);
}

TEST_F(Substitution, TextsTakeColumns1To8Only) {
  EXPECT_EQ(Text("%1_%3_%2", "a b"), "a__b");
  EXPECT_EQ(Text("%1%2%3%4%5%6%7%8", "a b c d e f g h i"), "abcdefgh");
  EXPECT_EQ(Text("%9 %0", "1 2 3 4 5 6 7 8 9"), "%9 %0");
  EXPECT_EQ(Text("%12", "a"), "a2");
  EXPECT_EQ(Text("%%x%", "a"), "%%x%");
  EXPECT_EQ(Text("%%1", "a"), "%a");
  EXPECT_EQ(Text("%1.dat", ""), ".dat");
  EXPECT_EQ(Text("%1", "%2 x"), "%2");  // replaced text is not searched again
}

TEST_F(Substitution, ATokenOf20CharactersRunsOnInNumbersAndTexts) {
  EXPECT_EQ(Real("%1", "0.000000000000000001 5"), 0.0000000000000000015);
  EXPECT_EQ(Text("%1", "aaaaaaaaaaaaaaaaaaaa b"), "aaaaaaaaaaaaaaaaaaaab");
}

TEST_F(Substitution, TextsEndAtTheirCapacity) {
  EXPECT_EQ(ShortText("%1%1%1", "abcd"), "abcdabcdab");
  EXPECT_EQ(ShortText("%1", "0123456789abc"), "0123456789");
  EXPECT_EQ(ShortText("x%1x", "12345678"), "x12345678x");
  EXPECT_EQ(ShortText("12345678%1", "ab"), "12345678ab");
  EXPECT_EQ(ShortText("12345678%1", "a\u03C9"), "12345678a");  // characters are not split
  // A placeholder is replaced only if both of its characters lie within the capacity.
  EXPECT_EQ(ShortText("123456789%1", "ab"), "123456789%");
}

}  // namespace
}  // namespace kalvex
