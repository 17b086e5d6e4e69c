// The pages for the user keep up with the program.
#include <gtest/gtest.h>

#include "core/files.h"
#include "macro/command_table.h"
#include "models/model.h"
#include "models/quantity.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

std::string Page(const char* name) {
  std::string text;
  EXPECT_TRUE(ReadWholeFile(ProjectFile(std::string("docs/") + name), text)) << name;
  return text;
}

bool Mentions(const std::string& page, const std::string& name) {
  return page.find('`' + name + '`') != std::string::npos;
}

TEST(Docs, EveryCommandAndParameterStandsOnThePageOfTheLanguage) {
  const std::string page = Page("macro-language.md");
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      EXPECT_TRUE(Mentions(page, command.name)) << command.name;
      for (const MacroParam& param : command.params)
        EXPECT_TRUE(Mentions(page, param.name)) << command.name << ' ' << param.name;
    }
  }
}

TEST(Docs, TheOrderOfTheNamesIsThatOfTheTables) {
  const std::string page = Page("macro-language.md");
  std::size_t at = page.find("## The order of the names");
  ASSERT_NE(at, std::string::npos);
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      at = page.find('`' + std::string(command.name) + '`', at);
      ASSERT_NE(at, std::string::npos) << command.name;
    }
  }
}

TEST(Docs, EveryQuantityAndExperimentalParameterIsExplained) {
  const std::string page = Page("models-and-quantities.md");
  for (const QuantityName& quantity : kQuantityNames)
    EXPECT_TRUE(Mentions(page, quantity.shortName)) << quantity.shortName;
  for (const ModelParam& param : DefaultExpParams()) {
    EXPECT_NE(page.find('"' + std::string(NameOf(param)) + '"'), std::string::npos) << NameOf(param);
  }
}

}  // namespace
}  // namespace kalvex
