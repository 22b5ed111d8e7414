// Bad input gets a message, never a crash or a hang; forgiving input reads as intended.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "datafile/DataFileReader.h"
#include "datafile/LoadCheck.h"
#include "support/Latin1.h"
#include "support/ScriptedDialogs.h"
#include "support/SurveyComparison.h"

namespace plotmeter {
namespace {

using testing::ExpectSameEnteredSurvey;
using testing::Latin1;
using testing::ScriptedDialogs;

// Written in UTF-8 here, read as the single bytes a data file holds.
const std::string kSmallFile = Latin1(
    "// Unit of Measure is Feet:Inches\n"
    "// Corner block\n"
    "//,\n"
    "44,#0092,3,0,12.5,58,Lot 14\n"
    "/ Main Dataset Header\n"
    "H,M,Lot 14\n"
    "1,X,,,0,0,,\n"
    "2,C,,,100°30',152:6,,\n"
    "3,C,,,14d45m,96:6,,\n"
    "4,CJ,,,284:00,148:3,,\n"
    "5,XJ,,,0,100,,\n"
    "/ Line Dataset Header\n"
    "H,L,Driveway\n"
    "6,R,2,,,,,\n"
    "7,C,,,282°30',40:0,,\n"
    ",/End data\n");

struct Outcome {
  Survey survey;
  ReadResult read;
  bool good = false;
  ScriptedDialogs dialogs;
};

Outcome Load(const std::string& text) {
  Outcome outcome;
  std::istringstream in(text);
  outcome.read = ReadDataFile(outcome.survey, in);
  outcome.good = CheckLoadedData(outcome.survey, outcome.read, outcome.dialogs);
  return outcome;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

TEST(ReaderRobustnessTest, LineOfSeveralMegabytes) {
  const std::string huge(6 << 20, 'x');
  Outcome tagged = Load(Replaced(kSmallFile, "H,L,Driveway", "H,L," + huge));
  ASSERT_TRUE(tagged.good);
  EXPECT_EQ(tagged.survey.Datasets[1].DatasetTag, huge);

  Outcome header = Load(std::string(6 << 20, '4') + ",#0092,1,0,0,58\nH,M\n1,X,,,0,0\n");
  EXPECT_EQ(header.read.fault, 3);

  Outcome comment = Load("/" + huge + "\n" + kSmallFile);
  EXPECT_EQ(comment.read.fault, 3);  // a comment line cannot stand before the header
}

std::string PointsFile(int count, int firstReference) {
  std::string text = "44,#0092,1,0,0,58\nH,M,Big\n1,X,,,0,0,,\n2,X,,,1,0,,\n3,X,,,1,1,,\n";
  text += "H,P,Chain\n";
  text += "4,BF," + std::to_string(firstReference) + ",,45,1,,\n";
  for (int n = 5; n < count + 4; ++n) {
    text += std::to_string(n) + ",BF," + std::to_string(n - 1) + ",,45,1.5,,\n";
  }
  return text;
}

// A million stand-alone points, each a bearing from the one before: read and checked
// without deep recursion (measured by hand: well under a second in an optimised build).
TEST(ReaderRobustnessTest, MillionPointsReferringInAChain) {
  constexpr int kMillion = 1'000'000;
  Outcome outcome = Load(PointsFile(kMillion, 3));
  ASSERT_TRUE(outcome.good) << ReadFaultText(outcome.read);
  EXPECT_EQ(outcome.survey.PointCount(), kMillion + 3);
  EXPECT_EQ(outcome.survey.Points.back().PtRef, kMillion + 2);
}

TEST(ReaderRobustnessTest, MillionPointsInOneCircle) {
  constexpr int kMillion = 1'000'000;
  Outcome outcome = Load(PointsFile(kMillion, kMillion + 3));
  EXPECT_FALSE(outcome.good);
  EXPECT_EQ(outcome.read.fault, 20);
  EXPECT_EQ(outcome.read.point, 3);  // the earliest point of the circle
  EXPECT_TRUE(outcome.survey.Points.empty());
}

TEST(ReaderRobustnessTest, SeparatorCodeLimitsAreRead) {
  std::string withFF = Replaced(Replaced(kSmallFile, ",", "\xFF"), "44\xFF", "255\xFF");
  Outcome highest = Load(withFF);
  ASSERT_TRUE(highest.good) << ReadFaultText(highest.read);
  EXPECT_EQ(highest.survey.FieldSeparator, '\xFF');
  EXPECT_EQ(highest.survey.PointCount(), 7);

  for (int code : {0, 255}) {
    Outcome outcome = Load(Replaced(kSmallFile, "12.5,58,", "12.5," + std::to_string(code) + ","));
    ASSERT_TRUE(outcome.good) << code;
    EXPECT_EQ(outcome.survey.SubValueSeparator, static_cast<char>(code));
  }
  EXPECT_EQ(Load(Replaced(kSmallFile, "12.5,58,", "12.5,-1,")).read.fault, 43);
}

// Forgiving forms read as the plain file: other line endings, the file saved as UTF-8,
// the padding and empty rows of a spreadsheet, letters of either case and blanks.
TEST(ReaderRobustnessTest, ForgivingFormsReadAsThePlainFile) {
  Outcome plain = Load(kSmallFile);
  ASSERT_TRUE(plain.good);
  const std::string padded = Replaced(kSmallFile, "\n", ",,,,,,,,,,,\n");
  const std::string loose = Replaced(kSmallFile, "H,L,Driveway", " h , l , Driveway ");
  // Line endings and UTF-8 are FileTextTest's; one form of each here, through the reader.
  const std::string forms[] = {
      "\xEF\xBB\xBF" + Replaced(Replaced(kSmallFile, "\xB0", "\xC2\xB0"), "\n", "\r\n"),
      Replaced(padded, "H,L,Driveway", ",,,,\nH,L,Driveway"),
      Replaced(Replaced(loose, "3,C,,,14d45m", " 3 , c ,  , , 14d45m "), "4,CJ,", "4,jc,"),
  };
  for (const std::string& text : forms) {
    Outcome outcome = Load(text);
    ASSERT_TRUE(outcome.good) << ReadFaultText(outcome.read) << text;
    ExpectSameEnteredSurvey(plain.survey, outcome.survey);
  }
}

TEST(ReaderRobustnessTest, MissingFileOrFolderCannotBeOpenedAndTheSystemSaysWhy) {
  const struct {
    std::string path;
    std::string reason;
  } rows[] = {{PLOTMETER_TEST_DATA_DIR "/no-such-file.csv", "No such file or directory"},
              {PLOTMETER_TEST_DATA_DIR, "Is a directory"}};
  for (const auto& row : rows) {
    Survey survey;
    ScriptedDialogs dialogs;
    ReadResult read = ReadDataFile(survey, row.path);
    EXPECT_EQ(read.fault, 1) << row.path;
    EXPECT_EQ(read.point, -1);
    EXPECT_EQ(survey.CurrentFileName, row.path);
    EXPECT_FALSE(CheckLoadedData(survey, read, dialogs));
    EXPECT_EQ(dialogs.last().text,
              "Cannot open file - check is not being used by another program.\n"
              "Please correct for a valid file");
    EXPECT_EQ(dialogs.last().detail, row.path + ": " + row.reason);
  }
}

}  // namespace
}  // namespace plotmeter
