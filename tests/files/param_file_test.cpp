#include "files/param_file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

struct Tables : ParamTables {
  Tables() {
    ExpParams = DefaultExpParams();
    for (int i = 0; i < 2; ++i) {
      Model& model = *CreateModel(*this);
      InsertRow(model, 1);
      for (std::size_t k = 0; k < model.rows.size(); ++k) model.rows[k].value = 10 * (i + 1) + static_cast<double>(k);
    }
  }
};

using Numbers = std::vector<std::uint32_t>;

void Spoil(ParamTables& tables) {
  for (Model& model : tables.models) {
    for (ModelParam& param : model.rows) param.value = -1;
  }
}

TEST(ParamFile, OneRecordOfTwentyBytesForEachElement) {
  const ScratchFolder folder;
  Tables tables;
  ASSERT_TRUE(SaveParams(tables, folder.Path("a.kvp")).Ok());
  const std::string bytes = folder.Read("a.kvp");
  ASSERT_EQ(bytes.size(), 12u * 20);
  const std::int32_t place[3] = {1, 0, 2};  // the ninth record: entry 1, row 0, column 2
  const double value = 22;
  std::string expected(20, '\0');
  std::memcpy(expected.data(), place, 12);
  std::memcpy(expected.data() + 12, &value, 8);
  EXPECT_EQ(bytes.substr(std::size_t{8} * 20, 20), expected);
}

TEST(ParamFile, LoadRestoresValuesPastLimitsAndNamesTheModels) {
  const ScratchFolder folder;
  Tables tables;
  ASSERT_TRUE(SaveParams(tables, folder.Path("a.kvp")).Ok());
  Spoil(tables);
  Cell(tables.models[0], 0, Wo).useMax = 1;
  Cell(tables.models[0], 0, Wo).max = 1;
  const auto complete = LoadParams(tables, folder.Path("a.kvp"));
  ASSERT_TRUE(complete.Ok());
  EXPECT_EQ(*complete, Numbers({1, 2}));
  EXPECT_EQ(Cell(tables.models[0], 0, Wo).value, 10);
  EXPECT_EQ(Cell(tables.models[1], 1, G).value, 25);
}

TEST(ParamFile, ARowMoreInTheFirstModelStopsTheWalkThereAndKeepsWhatCameBefore) {
  const ScratchFolder folder;
  Tables tables;
  ASSERT_TRUE(SaveParams(tables, folder.Path("a.kvp")).Ok());
  Spoil(tables);
  InsertRow(tables.models[0], 2);
  EXPECT_EQ(*LoadParams(tables, folder.Path("a.kvp")), Numbers());  // no model is complete
  EXPECT_EQ(Cell(tables.models[0], 1, G).value, 15);
  EXPECT_EQ(Cell(tables.models[0], 2, Wo).value, 100);
  EXPECT_EQ(Cell(tables.models[1], 0, Wo).value, -1);
}

TEST(ParamFile, CutAnywhereItLoadsWhatIsWhole) {
  const ScratchFolder folder;
  Tables tables;
  ASSERT_TRUE(SaveParams(tables, folder.Path("a.kvp")).Ok());
  const std::string whole = folder.Read("a.kvp");
  for (std::size_t size = 0; size < whole.size(); size += 7) {
    folder.Write("cut.kvp", whole.substr(0, size));
    Spoil(tables);
    const auto complete = LoadParams(tables, folder.Path("cut.kvp"));
    ASSERT_TRUE(complete.Ok());
    EXPECT_EQ(*complete, size >= std::size_t{6} * 20 ? Numbers({1}) : Numbers());  // a model has six elements
    EXPECT_EQ(Cell(tables.models[0], 0, Wo).value, size >= 20 ? 10 : -1);
    EXPECT_EQ(Cell(tables.models[1], 1, G).value, -1);
  }
}

TEST(ParamFile, MissingFilesFail) {
  const ScratchFolder folder;
  Tables tables;
  EXPECT_EQ(LoadParams(tables, folder.Path("none")).GetStatus().Code(), StatusCode::kCannotRead);
  EXPECT_EQ(SaveParams(tables, folder.Path("no folder/a.kvp")).Code(), StatusCode::kCannotWrite);
}

class SpecialParams : public testing::Test {
 protected:
  Status Save(const std::string& configuration) {
    const InFolder inside(folder.Name());
    folder.Write("ParsSpecial.cfg", configuration);
    return SaveParamsSpecial(tables);
  }
  ScratchFolder folder;
  Tables tables;
};

TEST_F(SpecialParams, EntriesOfOneFileComeTogetherInTheOrderOfTheConfiguration) {
  Cell(tables.models[0], 0, Wp).error = 0.5;
  ASSERT_TRUE(Save("3\nb.txt z 1 1 2\na.txt y 2 2 3\nb.txt x 1 2 1\n").Ok());
  EXPECT_EQ(folder.Read("b.txt"), "z 11 0.5\nx 13 0\n");
  EXPECT_EQ(folder.Read("a.txt"), "y 25 0\n");
}

TEST_F(SpecialParams, AnyWrongEntryWritesNothing) {
  for (const char* const wrong :
       {"2\na.txt l 1 1 1\na.txt m 1 1 4\n", "2\na.txt l 1 1 1\na.txt m 1 3 1\n", "2\na.txt l 1 1 1\na.txt m 7 1 1\n",
        "2\na.txt l 1 1 1\na.txt m 1 0 1\n", "2\na.txt l 1 1 1\n", "0\n", "-1\n", "many\n", "",
        "2000000000\na.txt l 1 1 1\n", "1\na-name-of-twenty-ch. l 1 1 1\n"}) {
    EXPECT_EQ(Save(wrong).Code(), StatusCode::kBadFormat) << wrong;
    EXPECT_FALSE(folder.Has("a.txt")) << wrong;
  }
}

TEST_F(SpecialParams, NamesOfNineteenCharactersFit) {
  ASSERT_EQ(Save("1 12345678901234567890 l 1 1 1").Code(), StatusCode::kBadFormat);
  ASSERT_TRUE(Save("1 1234567890123456789 l 1 1 1").Ok());
  EXPECT_EQ(folder.Read("1234567890123456789"), "l 10 0\n");
}

TEST_F(SpecialParams, WithoutTheConfigurationItFails) {
  const InFolder inside(folder.Name());
  EXPECT_EQ(SaveParamsSpecial(tables).Code(), StatusCode::kBadFormat);
}

}  // namespace
}  // namespace kalvex
