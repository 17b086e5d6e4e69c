#include "core/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/bytes.h"
#include "core/noise.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

int FilesIn(const ScratchFolder& folder) {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.Name())) ++count;
  return count;
}

TEST(Files, ReadingTakesFilesOnly) {
  const ScratchFolder folder;
  std::string text;
  EXPECT_TRUE(ReadWholeFile(folder.Write("a", std::string("x\0y", 3)), text));
  EXPECT_EQ(text, std::string("x\0y", 3));
  EXPECT_TRUE(ReadWholeFile(folder.Write("empty", ""), text));
  EXPECT_EQ(text, "");
  EXPECT_FALSE(ReadWholeFile(folder.Path("none"), text));
  EXPECT_FALSE(ReadWholeFile(folder.Name(), text));
  EXPECT_FALSE(ReadWholeFile("/dev/zero", text));
  EXPECT_FALSE(ReadWholeFile("", text));
}

TEST(Files, AReturnBeforeALineFeedIsDroppedAndOthersStay) {
  const ScratchFolder folder;
  std::string text;
  ASSERT_TRUE(ReadTextFile(folder.Write("a", "one\r\ntwo\rthree\r\r\nfour\r"), text));
  EXPECT_EQ(text, "one\ntwo\rthree\r\nfour\r");
}

TEST(Files, TheOldFileStaysUntilTheNewOneIsWhole) {
  const ScratchFolder folder;
  folder.Write("a", "old");
  {
    WholeFileWriter dropped(folder.Path("a"));
    ASSERT_TRUE(dropped.IsOpen());
    dropped.Write("half");
    EXPECT_EQ(folder.Read("a"), "old");
  }
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(FilesIn(folder), 1);
  EXPECT_TRUE(WriteWholeFile(folder.Path("a"), "new").Ok());
  EXPECT_EQ(folder.Read("a"), "new");
  EXPECT_EQ(FilesIn(folder), 1);
}

TEST(Files, PermissionsAndLinksSurvive) {
  const ScratchFolder folder;
  folder.Write("a", "old");
  ASSERT_EQ(::chmod(folder.Path("a").c_str(), 0640), 0);
  std::filesystem::create_symlink("a", folder.Path("link"));
  EXPECT_TRUE(WriteWholeFile(folder.Path("link"), "new").Ok());
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link")));
  EXPECT_EQ(folder.Read("a"), "new");
  struct stat info {};
  ::stat(folder.Path("a").c_str(), &info);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST(Files, WhatCannotBeWrittenSaysSo) {
  const ScratchFolder folder;
  for (const std::string& name : {folder.Path("no folder/a"), folder.Name(), std::string(), std::string("/dev/full")}) {
    for (const Status& status : {WriteWholeFile(name, "x"), AppendToFile(name, "x")}) {
      EXPECT_EQ(status.Code(), StatusCode::kCannotWrite) << name;
      EXPECT_EQ(status.About(), name);
    }
  }
  EXPECT_TRUE(WriteWholeFile("/dev/null", "x").Ok());
}

TEST(Files, AppendingMakesAndGrowsAFile) {
  const ScratchFolder folder;
  EXPECT_TRUE(AppendToFile(folder.Path("a"), "one\n").Ok());
  EXPECT_TRUE(AppendToFile(folder.Path("a"), "two\n").Ok());
  EXPECT_EQ(folder.Read("a"), "one\ntwo\n");
}

TEST(Bytes, AreLittleEndianAndPacked) {
  ByteWriter out;
  out.I32(7);
  out.F64(1.0);
  out.U32(0xfffffffeu);
  out.Bytes(std::string_view("ab"));
  EXPECT_EQ(out.Content(), std::string("\x07\0\0\0\0\0\0\0\0\0\xf0\x3f\xfe\xff\xff\xff"
                                       "ab",
                                       18));
  ByteReader in(out.Content());
  EXPECT_EQ(in.I32(), 7);
  EXPECT_EQ(in.F64(), 1.0);
  EXPECT_EQ(in.I32(), -2);
  EXPECT_EQ(in.Left(), 2u);
  EXPECT_EQ(in.U32(), 0u);  // too short
  EXPECT_EQ(in.Left(), 0u);
}

TEST(Noise, TheGeneratorIsTheLinearCongruence) {
  NoiseGenerator noise;
  SeedNoise(noise, 123456789);
  std::uint64_t high = 0, low = 123456789;  // the two halves, multiplied by hand
  for (int i = 0; i < 1000; ++i) {
    const std::uint64_t product = low * 22695477 + 1;
    low = product & 0xffffffff;
    high = (high * 22695477 + (product >> 32)) & 0xffffffff;
    EXPECT_EQ(NextRandom(noise), high & 0x7fffffff);
  }
}

TEST(Noise, TheInverseOfTheTableMeetsItsEntriesAndIsLinearBetween) {
  EXPECT_EQ(InverseNormalArea(0), 0);
  EXPECT_EQ(InverseNormalArea(-1), 0);
  EXPECT_CLOSE(InverseNormalArea(0.3413), 1.0, kRound);
  EXPECT_CLOSE(InverseNormalArea(0.4772), 2.0, kRound);
  EXPECT_CLOSE(InverseNormalArea((0.1915 + 0.2257) / 2), 0.55, kRound);
  EXPECT_CLOSE(InverseNormalArea(0.4990), 3.1, kRound);
  EXPECT_CLOSE(InverseNormalArea(0.7), 3.1, kRound);
}

TEST(Noise, DeviatesHaveMeanZeroAndUnitVariance) {
  NoiseGenerator noise;
  SeedNoise(noise, 5);
  constexpr int kCount = 200000;
  double sum = 0, squares = 0, most = 0;
  for (int i = 0; i < kCount; ++i) {
    const double g = NextNormal(noise);
    sum += g;
    squares += g * g;
    most = std::fmax(most, std::fabs(g));
  }
  EXPECT_NEAR(sum / kCount, 0, 5 / std::sqrt(kCount));
  constexpr double kCutOff = 0.02;  // the deviates are cut off at 3.1; spread of the sample
  EXPECT_NEAR(squares / kCount, 1, kCutOff);
  EXPECT_LE(most, 3.1);
}

}  // namespace
}  // namespace kalvex
