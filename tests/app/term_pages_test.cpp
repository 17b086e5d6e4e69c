// The pages of the terms with a code agree with the program, and the macro on each page gives the values of a
// direct evaluation of the term.
#include <cmath>
#include <filesystem>

#include "app/kalvex_run.h"
#include "core/files.h"
#include "core/text.h"
#include "support/called_term.h"
#include "terms/describe.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

std::string PageFile(const std::string& name) { return ProjectFile("docs/terms/" + name + ".md"); }

std::string PageOnDisk(const std::string& name) {
  std::string text;
  EXPECT_TRUE(ReadWholeFile(PageFile(name), text)) << name << ": run scripts/docs";
  return text;
}

TEST(TermPages, AreThoseOfTheProgramAndNoneIsMissingOrOld) {
  std::size_t pages = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFile("docs/terms"))) {
    static_cast<void>(entry);
    ++pages;
  }
  EXPECT_EQ(pages, kTermRecords + 1);
  EXPECT_EQ(PageOnDisk("README"), IndexOfTerms()) << "run scripts/docs";
  for (const TermRecord* const record : TermTable) {
    const std::string name = std::to_string(record->firstId);
    EXPECT_EQ(PageOnDisk(name), PageOf(*record)) << name << ": run scripts/docs";
  }
}

TEST(TermPages, SayWhetherTheTermIsCausal) {
  for (const TermRecord* const record : TermTable) {
    const std::string page = PageOf(*record);
    EXPECT_EQ(page.find("\nCausal.") != std::string::npos, record->page.causal) << record->firstId;
    EXPECT_EQ(page.find("\nNot causal. ") != std::string::npos, !record->page.causal) << record->firstId;
  }
}

TEST(TermPages, LinkToPagesThatAreThere) {
  std::vector<std::string> texts = {IndexOfTerms()};
  for (const TermRecord* const record : TermTable) texts.push_back(PageOf(*record));
  for (const std::string& text : texts) {
    for (std::size_t at = text.find("]("); at != std::string::npos; at = text.find("](", at + 2)) {
      const std::string target = text.substr(at + 2, text.find(')', at) - at - 2);
      EXPECT_TRUE(std::filesystem::exists(ProjectFile("docs/terms/" + target))) << target;
    }
  }
}

class TermPageMacros : public Kalvex, public testing::WithParamInterface<const TermRecord*> {};

INSTANTIATE_TEST_SUITE_P(Table, TermPageMacros, testing::ValuesIn(TermTable),
                         [](const auto& of) { return "Code" + std::to_string(of.param->firstId); });

TEST_P(TermPageMacros, GiveTheValuesOfTheCalculator) {
  const TermRecord& record = *GetParam();
  const std::string page = PageOnDisk(std::to_string(record.firstId));
  const std::size_t start = page.find("```\n", page.find("## Macro")) + 4;
  std::string data;
  for (const DataRow& row : SampleSpectrum()) data += TextG(row.x, 17) + ' ' + TextG(row.y, 17) + '\n';
  folder.Write("data1.dat", data);
  Run(page.substr(start, page.find("```", start) - start));
  EXPECT_EQ(run.err.find("nothing done"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("no term has"), std::string::npos) << run.err;

  const Table e1 = Written("E1.dat"), e2 = Written("E2.dat");
  ASSERT_EQ(e1.size(), static_cast<std::size_t>(kPagePoints));
  ASSERT_EQ(e2.size(), e1.size());
  TypicalTerm typical(record);
  for (std::size_t i = 0; i < e1.size(); ++i) {
    const double step = (record.page.to - record.page.from) / (kPagePoints - 1);
    const double w = record.page.from + step * static_cast<double>(i);
    EXPECT_TRUE(CloseTo(e1[i][0], w, kSixDigits));
    const Cplx value = typical.Value(record.firstId, w);
    EXPECT_TRUE(CloseTo(e1[i][1], value.re, kSixDigits)) << w;
    EXPECT_TRUE(CloseTo(e2[i][1], value.im, kSixDigits)) << w;
  }
}

// Verbose output names every element that the macro sets by its meaning on the page.
TEST_P(TermPageMacros, NameTheirCellsByTheirMeaning) {
  const TermRecord& record = *GetParam();
  folder.Write("data1.dat", "100 1\n200 1\n");
  Run(MacroOf(record));
  for (const TermCell& cell : record.inputs) {
    EXPECT_NE(run.err.find(MeaningOf(cell)), std::string::npos) << MeaningOf(cell) << '\n' << run.err;
  }
}

}  // namespace
}  // namespace kalvex
