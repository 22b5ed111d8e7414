#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/MemoryLimit.h"
#include "support/PlotSurveys.h"
#include "support/TestFolder.h"
#include "ui/DataListing.h"

namespace plotmeter {
namespace {

using testing::ProcessedPoint;

// Lists data files written into the test's own folder.
class DataListingFileTest : public ::testing::Test {
 protected:
  // Lists `text` from the file, as the window does with "Processed" cleared.
  const std::vector<std::string>& ListFile(const std::string& text) {
    survey_.CurrentFileName = folder_.Write("survey.csv", text);
    list_.Refresh(survey_);
    return list_.DataLst();
  }

  testing::TestFolder folder_;
  Survey survey_;
  DataListLogic list_;
};

constexpr const char* kHeader = "// Unit of Measure is Meters\n44,#0092,1,0,0,58,Example lot\n";

// Plain right-aligned cell of a listing line: one blank and the value in
// `width`.
std::string Cell(const std::string& value, int width) {
  return " " + std::string(width - value.size(), ' ') + value;
}

TEST_F(DataListingFileTest, ListsAGoodFileWithItsHeadingsAndInputColumns) {
  const auto& lines = ListFile(std::string(kHeader) +
                               "/ Main Dataset Header\n"
                               "H,M,Front field\n"
                               "1,X,,,0,0,,\n"
                               "2,x,,,40,0,,\n"
                               "3,B,,,90,30,,\n"
                               "/Closing Line,,,,\n"
                               "H,L\n"
                               "10,R,3,,,,,\n"
                               "11,BI,10,12,45,12.5,,\n"
                               "12,X,,,50,50,,\n"
                               "/End data\n");
  EXPECT_EQ(list_.LstHdrLbl(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ");
  const std::vector<std::string> expected = {
      "[M] Dataset as Main (Perimeter) for 'Front field'",
      "  1 X           |" + Cell("0", 10) + Cell("0", 10),
      "  2 X           |" + Cell("40", 10) + Cell("0", 10),
      "  3 B           |" + Cell("90", 10) + Cell("30", 10),
      "[L] Dataset as Line",
      " 10 R     3     |" + Cell("", 10) + Cell("", 10),
      " 11 BI   10  12 |" + Cell("45", 10) + Cell("12.5", 10),
      " 12 X           |" + Cell("50", 10) + Cell("50", 10),
  };
  EXPECT_EQ(lines, expected);
  // The group mark stands under the heading's.
  EXPECT_EQ(lines[1].size(), list_.LstHdrLbl().size());
  EXPECT_EQ(lines[1].find(" | "), list_.LstHdrLbl().find(" | "));
}

TEST_F(DataListingFileTest, GpsInputAddsItsColumns) {
  const auto& lines = ListFile(std::string(kHeader) +
                               "H,M\n"
                               "1,XL,,,0,0,151.5 E,33.25 S\n"
                               "2,G,,,,,151.6 E,33.3 S\n"
                               "3,X,,,5,5,,\n");
  EXPECT_EQ(list_.LstHdrLbl(),
            "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)   "
            "I/P-Long        I/P-Lat        ");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[1], "  1 XL          |" + Cell("0", 10) + Cell("0", 10) + Cell("151.5 E", 15) +
                          Cell("33.25 S", 15));
  EXPECT_EQ(lines[2], "  2 G           |" + Cell("", 10) + Cell("", 10) + Cell("151.6 E", 15) +
                          Cell("33.3 S", 15));
}

TEST_F(DataListingFileTest, TypedValueLongerThanItsColumnIsCutAndMarked) {
  const auto& lines = ListFile(std::string(kHeader) +
                               "H,M\n"
                               "1,X,,,1234567890,12345678901,,\n");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "  1 X           | 1234567890 123456789+");
  EXPECT_EQ(list_.EditText(1), "I/P-X(B): 1234567890\nI/P-Y(L): 12345678901");
}

TEST_F(DataListingFileTest, EditShowsTheWholeInputOfPointLinesOnly) {
  ListFile(std::string(kHeader) + "H,M\n1,XA,,,3,4,151 30.25 E,33 15.5 S\n");
  EXPECT_EQ(list_.EditText(1),
            "I/P-X(B): 3\nI/P-Y(L): 4\nI/P-Long: 151 30.25 E\nI/P-Lat: 33 15.5 S");
  EXPECT_EQ(list_.EditText(0), std::nullopt);   // the dataset heading
  EXPECT_EQ(list_.EditText(-1), std::nullopt);  // no line selected
  EXPECT_EQ(list_.EditText(2), std::nullopt);
}

TEST_F(DataListingFileTest, WithNoColumnGroupAPointLineHoldsOnlyItsFourFields) {
  list_.ShowColumns = 0;
  const auto& lines = ListFile(std::string(kHeader) + "H,M\n7,CIsJ,5,9,10,3,,\n");
  EXPECT_EQ(list_.LstHdrLbl(), "Pt# Typ Ref Tgt");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "  7 CIsJ   5   9");
  // From the file only the input columns can be shown.
  list_.ShowColumns = kShowAll;
  ListFile(std::string(kHeader) + "H,M\n1,X,,,0,0,,\n");
  EXPECT_EQ(list_.LstHdrLbl(), "Pt# Typ Ref Tgt | I/P-X(B)   I/P-Y(L)  ");
}

TEST_F(DataListingFileTest, DatasetHeadingsByCodeAndPointCount) {
  const auto& lines = ListFile(std::string(kHeader) +
                               "H,N,Yard\n1,X,,,0,0\n2,X,,,1,0\n"
                               "H,S\n3,D,,,0,0\n4,XJ,,,1,1\n"
                               "H,P,Shed\n5,X,,,3,3\n"
                               "H,p,Trees\n6,X,,,4,4\n7,X,,,5,5\n");
  std::vector<std::string> headings;
  for (const std::string& line : lines) {
    if (line.front() == '[') headings.push_back(line);
  }
  const std::vector<std::string> expected = {
      "[N] Dataset as Main (Non-perimeter) for 'Yard'",
      "[S] Dataset as Sub-division (or Extension)",
      "[P] Dataset as Single Point for 'Shed'",
      "[P] Dataset as Points Collection for 'Trees'",
  };
  EXPECT_EQ(headings, expected);
}

struct IncludeCase {
  int box;
  const char* left;  // the start of each line left in the listing, one after the other
};

class DataListingIncludeTest : public DataListingFileTest,
                               public ::testing::WithParamInterface<IncludeCase> {};

TEST_P(DataListingIncludeTest, EachBoxLeavesOutItsPoints) {
  list_.IncludeCkB[GetParam().box] = false;
  const auto& lines = ListFile(std::string(kHeader) +
                               "H,M\n1,X,,,0,0\n2,XI,1,3,1,0\n3,X,,,2,0\n"
                               "H,S\n4,XJ,,,0,0\n5,XJ,,,2,0\n"
                               "H,L\n6,X,,,0,5\n7,X,,,1,5\n"
                               "H,P\n8,X,,,9,9\n");
  std::string left;
  for (const std::string& line : lines) left += line.substr(0, 3);
  EXPECT_EQ(left, GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    Boxes, DataListingIncludeTest,
    ::testing::Values(IncludeCase{kIncludeMain, "[S]  4  5[L]  6  7[P]  8"},
                      IncludeCase{kIncludeSubDivision, "[M]  1  2  3[L]  6  7[P]  8"},
                      IncludeCase{kIncludeIntermediate, "[M]  1  3[S]  4  5[L]  6  7[P]  8"},
                      IncludeCase{kIncludeLines, "[M]  1  2  3[S]  4  5[P]  8"},
                      IncludeCase{kIncludePoints, "[M]  1  2  3[S]  4  5[L]  6  7"}));

struct BadFileCase {
  const char* name;
  std::string text;
  std::string reason;
};

class DataListingBadFileTest : public DataListingFileTest,
                               public ::testing::WithParamInterface<BadFileCase> {};

TEST_P(DataListingBadFileTest, ListsOnlyTheAbortAndItsReason) {
  const auto& lines = ListFile(GetParam().text);
  const std::vector<std::string> expected = {"Aborted - Bad File", GetParam().reason};
  EXPECT_EQ(lines, expected);
}

const std::string kGood = "44,#0092,1,0,0,58\n";

// One row a branch of the listing's own checks; each header field's own check is the
// reader's (FileFaultTest).
INSTANTIATE_TEST_SUITE_P(
    Reasons, DataListingBadFileTest,
    ::testing::Values(
        BadFileCase{"Empty", "", "File selected has Invalid Header."},
        BadFileCase{"Letters", "ab,#0092,1,0,0,58\nH,M\n1,X,,,0,0\n",
                    "File selected has Invalid Header."},
        BadFileCase{"NotThisProgram", "44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n",
                    "Invalid Header line data."},
        BadFileCase{"BlankBeforeDataset", kGood + "\nH,M\n1,X,,,0,0\n",
                    "File has invalid Datasets."},
        BadFileCase{"DataBeforeDataset", kGood + "1,X,,,0,0\n", "File has invalid Datasets."},
        BadFileCase{"TwoMain", kGood + "H,M\n1,X,,,0,0\nH,N\n2,X,,,1,1\n",
                    "Has multiple 'Main' Datasets"},
        BadFileCase{"TwoSub", kGood + "H,M\n1,X,,,0,0\nH,S\n2,X,,,1,1\nH,S\n3,X,,,2,2\n",
                    "Has multiple 'Sub-division' Datasets"},
        BadFileCase{"InvalidCode", kGood + "H,Q\n1,X,,,0,0\n", "'Q' is an Invalid Dataset code"},
        BadFileCase{"EmptyDataset", kGood + "H,M\nH,L\n2,X,,,1,1\n",
                    "Dataset is without points specified."},
        BadFileCase{"EmptyLastDataset", kGood + "H,M\n1,X,,,0,0\nH,L\n/End data\n",
                    "Dataset is without points specified."},
        BadFileCase{"NoTypeField", kGood + "H,M\n1\n",
                    "Data line (non-'H') without type code entry."},
        BadFileCase{"TwoTypes", kGood + "H,M\n1,XB,,,0,0\n", "Multiple type codes present."},
        BadFileCase{"UnknownLetter", kGood + "H,M\n1,XQ,,,0,0\n",
                    "Data line with unknown type code."},
        BadFileCase{"DummyOutsideSub", kGood + "H,M\n1,D,,,0,0\n",
                    "Data line with unknown type code."},
        BadFileCase{"TwoDummies", kGood + "H,M\n1,X,,,0,0\nH,S\n2,D,,,0,0\n3,D,,,1,1\n",
                    "Multiple Sub-div dummy lines present."},
        BadFileCase{"FlagsOnly", kGood + "H,M\n1,AI,,,0,0\n", "No type code present."}),
    [](const ::testing::TestParamInfo<BadFileCase>& info) { return info.param.name; });

TEST_F(DataListingFileTest, ReadsTheFileAsTheReaderDoes) {
  const struct {
    std::string text;
    std::vector<std::string> lines;
  } rows[] = {
      {"//,\r\n44,#0092,1,0,0,58\r\n, / Column Headings (for data lines):\r\n,/Pt#,/Typ\r\n"
       "/ Main Dataset Header\r\nH,M\r\n1,X,,,0,0\r\n,/Closing Line,90\r\n,/End data\r\n",
       {"[M] Dataset as Main (Perimeter)", "  1 X           |" + Cell("0", 10) + Cell("0", 10)}},
      {std::string(kHeader) + "H,M,Smith, North,,\n1,X,,,0,0\n,,,,\n  \n2,X,,,1,0\r3,X,,,1,1\n",
       {"[M] Dataset as Main (Perimeter) for 'Smith, North'",
        "  1 X           |" + Cell("0", 10) + Cell("0", 10),
        "  2 X           |" + Cell("1", 10) + Cell("0", 10),
        "  3 X           |" + Cell("1", 10) + Cell("1", 10)}},
      {"9\t#0092\t3\t0\t0\t32\nH\tM\n1\tB\t\t\t27 30\t12 6\n",
       {"[M] Dataset as Main (Perimeter)",
        "  1 B           |" + Cell("27 30", 10) + Cell("12 6", 10)}},
      {"\xEF\xBB\xBF"
       "44,#0092,3,0,0,58\nH,M,Caf\xC3\xA9\n1,C,,,27\xC2\xB0 30',12:6\n",
       {"[M] Dataset as Main (Perimeter) for 'Caf\xE9'",
        "  1 C           |" + Cell("27\xB0 30'", 10) + Cell("12:6", 10)}},
  };
  for (const auto& row : rows) EXPECT_EQ(ListFile(row.text), row.lines) << row.text;
}

TEST_F(DataListingFileTest, SettingsLabelsComeFromTheSurvey) {
  survey_.UnitOfMeasure = kUnitFeet;
  survey_.SubValueSeparator = ':';
  survey_.FileTag = "Smith's block";
  survey_.MagneticDeclination = -12.5f;
  ListFile(std::string(kHeader) + "H,M\n1,X,,,0,0\n");
  const auto& labels = list_.SettingLabels();
  EXPECT_EQ(labels[0].caption, "Unit of Measure:");
  EXPECT_EQ(labels[0].value, "Feet:Inches");
  EXPECT_EQ(labels[1].caption, "File Tag:");
  EXPECT_EQ(labels[1].value, "Smith's block");
  EXPECT_EQ(labels[2].caption, "Mag Decl'n:");
  EXPECT_EQ(labels[2].value, "-12.5");
  // A unit without sub-unit has no separator; the declination keeps three decimals.
  survey_.UnitOfMeasure = kUnitMeters;
  survey_.MagneticDeclination = 2.12345f;
  list_.Refresh(survey_);
  EXPECT_EQ(list_.SettingLabels()[0].value, "Meters");
  EXPECT_EQ(list_.SettingLabels()[2].value, "2.123");
}

// A file that cannot be read, or a folder, is a bad file.
TEST_F(DataListingFileTest, MissingFileOrFolderIsABadFile) {
  for (std::string name :
       {::testing::TempDir() + "/no such folder/none.csv", ::testing::TempDir()}) {
    survey_.CurrentFileName = name;
    list_.Refresh(survey_);
    EXPECT_EQ(list_.DataLst(), (std::vector<std::string>{"Aborted - Bad File",
                                                         "File selected has Invalid Header."}));
  }
}

// Collects what `Write` hands on.
class CollectedListing : public ListingOutput {
 public:
  void Begin(const DataListLogic& list) override {
    lines.push_back("begin: " + list.LstHdrLbl() + " / " + list.SettingLabels()[1].value);
  }
  void Line(std::string_view line) override { lines.emplace_back(line); }

  std::vector<std::string> lines;
};

// plotmeter-cli prints the lines as they are made: the same lines as the window keeps,
// after the labels and the heading, from the text it read itself.
TEST_F(DataListingFileTest, WriteHandsOnTheLinesThatRefreshKeeps) {
  survey_.FileTag = "Lot 7";
  const std::string texts[] = {
      std::string(kHeader) + "H,M,Front\n1,XA,,,3,4,151 30.25 E,33 15.5 S\nH,P\n2,B,1,,90,5\n",
      kGood + "H,M\n1,XB,,,0,0\n"};
  for (const std::string& text : texts) {
    for (const bool processed : {false, true}) {
      list_.ProcdCkB = processed;
      std::vector<std::string> kept = ListFile(text);
      kept.insert(kept.begin(), "begin: " + list_.LstHdrLbl() + " / Lot 7");
      CollectedListing written;
      list_.Write(survey_, text, written);
      EXPECT_EQ(written.lines, kept) << text;
      EXPECT_TRUE(list_.DataLst().empty());
    }
  }
}

#ifndef PLOTMETER_ADDRESS_SANITIZER
// Lists with little memory left; exits 0 when the listing was given up for the abort of a
// file that cannot be read.
[[noreturn]] void ListWithLittleMemory(DataListLogic& list, const Survey& survey) {
  testing::LimitAddressSpace(48 << 20);
  list.Refresh(survey);
  const std::vector<std::string> givenUp = {"Aborted - Bad File",
                                            "File selected has Invalid Header."};
  std::exit(list.DataLst() == givenUp ? 0 : 1);
}
#endif

TEST_F(DataListingFileTest, AListingTooLongForTheMemoryLeftIsGivenUpNotACrash) {
#ifdef PLOTMETER_ADDRESS_SANITIZER
  GTEST_SKIP() << "AddressSanitizer needs more address space than the limit leaves";
#else
  std::string text = std::string(kHeader) + "H,P\n";
  for (int i = 1; i <= 600'000; ++i) text += std::to_string(i) + ",X,,,1,2\n";
  survey_.CurrentFileName = folder_.Write("survey.csv", text);
  EXPECT_EXIT(ListWithLittleMemory(list_, survey_), ::testing::ExitedWithCode(0), "");
#endif
}

TEST_F(DataListingFileTest, HugeLineAndManyLinesAreListed) {
  std::string text = std::string(kHeader) + "H,M\n1,X,,," + std::string(3'000'000, '7') + ",1\n";
  for (int i = 2; i <= 100'000; ++i) text += std::to_string(i) + ",X,,,1,2\n";
  const auto& lines = ListFile(text);
  ASSERT_EQ(lines.size(), 100'001u);
  EXPECT_EQ(lines[1], "  1 X           | 777777777+" + Cell("1", 10));
  EXPECT_EQ(list_.EditText(1)->size(), std::string("I/P-X(B): \nI/P-Y(L): 1").size() + 3'000'000);
}

// ---------------------------------------------------------------------------------------
// The processed survey in memory

// A 40 by 30 block in metres, its closing line running due south.
Survey Block() {
  Survey survey;
  survey.UnitOfMeasure = kUnitMeters;
  survey.Points = {ProcessedPoint(1, kPtXY, "0", "0", 0, 0, 0, 0),
                   ProcessedPoint(2, kPtXY, "40", "0", 40, 0, 90, 40),
                   ProcessedPoint(3, kPtXY, "40", "30", 40, 30, 0, 30),
                   ProcessedPoint(4, kPtXY, "0", "30", 0, 30, 270, 40)};
  survey.Datasets = {Dataset{.DatasetType = kTypeM,
                             .DatasetStart = 0,
                             .DatasetTag = "Block",
                             .ClosingBearing = 180,
                             .ClosingLen = 30}};
  return survey;
}

class DataListingProcessedTest : public ::testing::Test {
 protected:
  const std::vector<std::string>& List(std::uint8_t show) {
    list_.ProcdCkB = true;
    list_.ShowColumns = show;
    list_.Refresh(survey_);
    return list_.DataLst();
  }

  Survey survey_ = Block();
  DataListLogic list_;
};

TEST_F(DataListingProcessedTest, ListsComputedColumnsAndTheClosingLine) {
  const auto& lines = List(kShowXY | kShowBearing);
  EXPECT_EQ(list_.LstHdrLbl(), "Pt# Typ Ref Tgt | X         Y         | Bearing    Length   ");
  const std::vector<std::string> expected = {
      "[M] Dataset as Main (Perimeter) for 'Block'",
      "  1 X           |" + Cell("0.0", 9) + Cell("0.0", 9) + " |" + Cell("0.0", 10) +
          Cell("0.0", 9),
      "  2 X           |" + Cell("40.0", 9) + Cell("0.0", 9) + " |" + Cell("90.0", 10) +
          Cell("40.0", 9),
      "  3 X           |" + Cell("40.0", 9) + Cell("30.0", 9) + " |" + Cell("0.0", 10) +
          Cell("30.0", 9),
      "  4 X           |" + Cell("0.0", 9) + Cell("30.0", 9) + " |" + Cell("270.0", 10) +
          Cell("40.0", 9),
      " -Closing Line Bearing:" + std::string(37 - 23, ' ') + " |" + Cell("180.0", 10) +
          Cell("30.0", 9),
  };
  EXPECT_EQ(lines, expected);
}

// The closing line's values end where the Bearing and Length headings' cells
// end.
TEST_F(DataListingProcessedTest, ClosingLineValuesStandUnderTheirHeadings) {
  for (std::uint8_t show : {kShowBearing, std::uint8_t(kShowInput | kShowBearing),
                            std::uint8_t(kShowXY | kShowBearing | kShowGps)}) {
    const auto& lines = List(show);
    const std::string& heading = list_.LstHdrLbl();
    const std::string& closing = lines.back();
    const std::size_t bearingEnd = heading.find("Bearing") + 10;
    const std::size_t lengthEnd = heading.find("Length") + 9;
    EXPECT_EQ(closing.substr(bearingEnd - 5, 5), "180.0") << int(show);
    EXPECT_EQ(closing.substr(lengthEnd - 4, 4), "30.0") << int(show);
    EXPECT_EQ(closing.find(" | "), heading.find(" | Bearing")) << int(show);
  }
}

TEST_F(DataListingProcessedTest, ClosingLineLabelDependsOnTheLeadingGroups) {
  EXPECT_EQ(List(kShowBearing).back(), " -Closing Line: |" + Cell("180.0", 10) + Cell("30.0", 9));
  EXPECT_EQ(List(kShowInput).back(), " -Closing Line Bearing:" + std::string(39 - 23, ' ') + " |" +
                                         Cell("180.0", 10) + Cell("30.0", 9));
  EXPECT_EQ(List(0).back(), " -Closing Line: |" + Cell("180.0", 10) + Cell("30.0", 9));
}

TEST_F(DataListingProcessedTest, MagneticBearingsGetTheirColumn) {
  survey_.MagneticDeclination = 10;
  const auto& lines = List(kShowBearing);
  EXPECT_EQ(list_.LstHdrLbl(), "Pt# Typ Ref Tgt | Bearing    Bearg Mag  Length   ");
  EXPECT_EQ(lines[2], "  2 X           |" + Cell("90.0", 10) + Cell("100.0", 10) + Cell("40.0", 9));
  EXPECT_EQ(lines.back(),
            " -Closing Line: |" + Cell("180.0", 10) + Cell("190.0", 10) + Cell("30.0", 9));
}

TEST_F(DataListingProcessedTest, NonPerimeterMainHasNoClosingLine) {
  survey_.Datasets[0].DatasetType = kTypeN;
  const auto& lines = List(kShowInput);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], "[N] Dataset as Main (Non-perimeter) for 'Block'");
  EXPECT_EQ(lines[4], "  4 X           |" + Cell("0", 10) + Cell("30", 10));
}

TEST_F(DataListingProcessedTest, GpsColumnsShowComputedAndAlternateValues) {
  survey_.Points[0].PtFlags |= kPtGps | kPtLink;
  survey_.Points[0].InGPSLong = "151.5 E";
  survey_.Points[0].InGPSLat = "33.25 S";
  for (Point& point : survey_.Points) {
    point.GPSLong = 151.5;
    point.GPSLat = -33.25;
  }
  survey_.Points[1].PtFlags |= kPtGps | kPtAltGps;
  survey_.Points[1].HasAlternate = true;
  survey_.Points[1].AltGPSLong = 190;
  survey_.Points[1].AltGPSLat = 12.5;
  survey_.Points[1].AltGPSDelta = 1.25;
  const auto& lines = List(kShowGps | kShowAltGps);
  EXPECT_EQ(list_.LstHdrLbl(),
            "Pt# Typ Ref Tgt | GPS-Long        GPS-Lat      "
            "   | Alt-Long        Alt-Lat        "
            " Delta    ");
  EXPECT_EQ(lines[1], "  1 XL          |" + Cell("151.5 E", 15) + Cell("33.25 S", 15) + " |" +
                          Cell("", 15) + Cell("", 15) + Cell("", 9));
  EXPECT_EQ(lines[2], "  2 XA          |" + Cell("151.5 E", 15) + Cell("33.25 S", 15) + " |" +
                          Cell("170.0 W", 15) + Cell("12.5 N", 15) + Cell("1.25", 9));
}

TEST_F(DataListingProcessedTest, GpsColumnsStayBlankWithoutGpsData) {
  const auto& lines = List(kShowGps);
  EXPECT_EQ(lines[1], "  1 X           |" + Cell("", 15) + Cell("", 15));
}

TEST_F(DataListingProcessedTest, ReferenceAndTargetNumbersAreRightAligned) {
  survey_.Points[2].PtRef = 2;
  survey_.Points[2].PtTarget = 104;
  const auto& lines = List(0);
  EXPECT_EQ(lines[3], "  3 X     2 104");
}

TEST_F(DataListingProcessedTest, IntermediatePointsCanBeLeftOut) {
  survey_.Points[2].PtFlags |= kPtIntermediate;
  list_.IncludeCkB[kIncludeIntermediate] = false;
  const auto& lines = List(0);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[3].substr(0, 3), "  4");
}

TEST_F(DataListingProcessedTest, EditShowsTheSurveysTypedInput) {
  survey_.Points[1].InXA = "40.000000000001";
  List(kShowInput);
  EXPECT_EQ(list_.DataLst()[2], "  2 X           | 40.000000+" + Cell("0", 10));
  EXPECT_EQ(list_.EditText(2), "I/P-X(B): 40.000000000001\nI/P-Y(L): 0");
  EXPECT_EQ(list_.EditText(5), std::nullopt);  // the closing line
}

TEST_F(DataListingProcessedTest, ValuesArePlainDecimalsEvenDuringAWrite) {
  survey_.UnitOfMeasure = kUnitFeet;
  survey_.SubValueSeparator = ':';
  survey_.WriterOptions = kWriteInProgress | kWriterOptionsDefault;
  survey_.Points[1].X = 40.5f;
  survey_.Points[1].Bearing = 90.5f;
  const auto& lines = List(kShowXY | kShowBearing);
  EXPECT_EQ(lines[2], "  2 X           |" + Cell("40.5", 9) + Cell("0.0", 9) + " |" +
                          Cell("90.5", 10) + Cell("40.0", 9));
  EXPECT_EQ(survey_.WriterOptions, kWriteInProgress | kWriterOptionsDefault);
}

}  // namespace
}  // namespace plotmeter
