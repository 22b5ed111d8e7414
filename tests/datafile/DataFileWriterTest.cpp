#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "datafile/DataFileWriter.h"
#include "support/PlotSurveys.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

namespace fs = std::filesystem;
using testing::ProcessedPoint;
using testing::ScriptedDialogs;
using testing::TestFolder;

// A small processed triangle in metres, as a load and a processing run leave it.
Survey Triangle() {
  Survey survey;
  survey.FieldSeparator = ',';
  survey.SubValueSeparator = ':';
  survey.UnitOfMeasure = kUnitMeters;
  survey.FileTag = "Lot 7";
  survey.UserComments = {"// by J. Smith"};
  survey.Points = {ProcessedPoint(1, kPtXY, "0", "0", 0, 0, 0, 0),
                   ProcessedPoint(2, kPtXY, "40", "0", 40, 0, 90, 40),
                   ProcessedPoint(3, kPtBearing, "0", "30", 40, 30, 0, 30)};
  survey.Datasets = {Dataset{.DatasetType = kTypeM,
                             .DatasetStart = 0,
                             .DatasetTag = "Front",
                             .ClosingBearing = 233.5f,
                             .ClosingLen = 50}};
  return survey;
}

std::string Written(Survey& survey, int expectedFault = 0) {
  std::ostringstream out;
  EXPECT_EQ(WriteSurvey(survey, out), expectedFault);
  return out.str();
}

TEST(DataFileWriterTest, DefaultLayout) {
  Survey survey = Triangle();
  EXPECT_EQ(Written(survey),
            "// Unit of Measure is Meters\n"
            "// by J. Smith\n"
            "//,\n"
            "44,#0092,1,0,0,58,Lot 7\n"
            ",/ Column Headings (for data lines):\n"
            "/Pt#,/Typ,PtRef#,PtTgt#,InXA,InYL,InGPSLong,InGPSLat,X,Y,Bearing,Len,GPSLong,GPSLat,"
            "AltGPSLong,AltGPSLat,AltGPSDelta\n"
            "/ Main Dataset Header\n"
            "H,M,Front\n"
            "1,X,,,0,0,,,0.0,0.0,0\xB0,0.0,,,,,\n"
            "2,X,,,40,0,,,40.0,0.0,90\xB0,40.0,,,,,\n"
            "3,B,,,0,30,,,40.0,30.0,0\xB0,30.0,,,,,\n"
            "/Closing Line,,,,,,,,,,233\xB0 30.0',50.0\n"
            ",/End data\n");
}

TEST(DataFileWriterTest, PlainLayoutWithoutHeadings) {
  Survey survey = Triangle();
  survey.WriterOptions = kWriterOptionsDefault | kWritePlainLayout | kWriteNoHeadings;
  survey.FileFlags = kFileOption;
  survey.FileTag.clear();
  survey.Datasets[0].DatasetTag.clear();
  EXPECT_EQ(Written(survey),
            "// Unit of Measure is Meters\n"
            "// by J. Smith\n"
            "//\n"
            "44,#0092,1,3,0,58\n"
            "/ Main Dataset Header\n"
            "H,M\n"
            "1,X,,,0,0,,,0.0,0.0,0\xB0,0.0,,,,,\n"
            "2,X,,,40,0,,,40.0,0.0,90\xB0,40.0,,,,,\n"
            "3,B,,,0,30,,,40.0,30.0,0\xB0,30.0,,,,,\n"
            "/End data\n");
}

TEST(DataFileWriterTest, DeclinationAddsMagneticBearings) {
  Survey survey = Triangle();
  survey.MagneticDeclination = 12.5f;
  std::string text = Written(survey);
  EXPECT_NE(text.find("44,#0092,1,0,12.5,58,Lot 7\n"), std::string::npos);
  EXPECT_NE(text.find(",Bearing,Mag Brg,Len,"), std::string::npos);
  EXPECT_NE(text.find("\n2,X,,,40,0,,,40.0,0.0,90\xB0,102\xB0 30.0',40.0,,,,,\n"),
            std::string::npos);
  EXPECT_NE(text.find("/Closing Line,,,,,,,,,,233\xB0 30.0',246\xB0,50.0\n"), std::string::npos);
}

TEST(DataFileWriterTest, UnitLineNamesTheSubUnitUnlessPlainLengths) {
  Survey survey = Triangle();
  survey.UnitOfMeasure = kUnitFeet;
  EXPECT_TRUE(Written(survey).starts_with("// Unit of Measure is Feet:Inches\n"));
  survey.UnitOfMeasure = kUnitChains;
  survey.SubValueSeparator = ' ';
  EXPECT_TRUE(Written(survey).starts_with("// Unit of Measure is Chains Links\n"));
  survey.WriterOptions |= kWritePlainLengths;
  EXPECT_TRUE(Written(survey).starts_with("// Unit of Measure is Chains\n"));
  survey.UnitOfMeasure = kUnitNotSpecified;
  survey.WriterOptions = kWriterOptionsDefault;
  EXPECT_TRUE(Written(survey).starts_with("// Unit of Measure is <Not specified>\n"));
}

TEST(DataFileWriterTest, LengthsTakeSubUnitsOnlyWhileWriting) {
  Survey survey = Triangle();
  survey.UnitOfMeasure = kUnitFeet;
  survey.Points[2].Len = 30.25f;
  EXPECT_NE(Written(survey).find(",0\xB0,30:3.0,"), std::string::npos);
  EXPECT_EQ(survey.WriterOptions, kWriterOptionsDefault);
}

// The dummy start is written "D" in a sub-division only; the letters themselves are
// TypeLettersTest's.
TEST(DataFileWriterTest, DummyMarkIsWrittenInASubDivisionOnly) {
  for (std::uint8_t type : {kTypeS | kDatasetHasDummy, int{kTypeM}}) {
    Survey survey = Triangle();
    survey.Points[0].PtMarks = kMarkDummy;
    survey.Datasets[0].DatasetType = type;
    const bool sub = type & kDatasetSubDivision;
    EXPECT_NE(Written(survey).find(sub ? "\n1,D," : "\n1,X,"), std::string::npos) << int{type};
  }
}

struct DatasetCommentRow {
  std::uint8_t type;
  int points;
  const char* expected;  // comment line, header line
};

void PrintTo(const DatasetCommentRow& row, std::ostream* out) { *out << row.expected; }

class DatasetCommentTest : public ::testing::TestWithParam<DatasetCommentRow> {};

TEST_P(DatasetCommentTest, CommentAndHeaderLines) {
  const DatasetCommentRow& row = GetParam();
  Survey survey = Triangle();
  survey.Datasets.push_back(Dataset{.DatasetType = row.type,
                                    .DatasetStart = 3,
                                    .DatasetTag = "Tag",
                                    .ClosingBearing = 90,
                                    .ClosingLen = 2});
  for (int i = 0; i < row.points; ++i) {
    survey.Points.push_back(ProcessedPoint(4 + i, kPtXY, "1", "2", 1, 2, 0, 0));
  }
  std::string text = Written(survey);
  EXPECT_NE(text.find(row.expected), std::string::npos) << text;
  bool closes = row.type & (kDatasetMain | kDatasetSubDivision);
  std::size_t closing = text.find("/Closing Line,,,,,,,,,,90\xB0,2.0\n");
  EXPECT_EQ(closing != std::string::npos, closes) << text;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, DatasetCommentTest, ::testing::Values(
    DatasetCommentRow{kTypeS, 2, "\n/ Sub-division (or Extension) Dataset Header\nH,S,Tag\n4,X,"},
    DatasetCommentRow{kTypeS | kDatasetGenerated, 2,
                      "\n/ Internally generated Sub-division Dataset Header\nH,S,Tag\n"},
    DatasetCommentRow{kTypeL, 2, "\n/ Line Dataset Header\nH,L,Tag\n"},
    DatasetCommentRow{kTypeP, 1, "\n/ Single Point Dataset Header\nH,P,Tag\n"},
    DatasetCommentRow{kTypeP, 2, "\n/ Points Collection Dataset Header\nH,P,Tag\n"}));
// clang-format on

TEST(DataFileWriterTest, NonPerimeterMainIsWrittenAsN) {
  Survey survey = Triangle();
  survey.Datasets[0].DatasetType = kTypeN;
  EXPECT_NE(Written(survey).find("\n/ Main Dataset Header\nH,N,Front\n"), std::string::npos);
}

TEST(DataFileWriterTest, DatasetWithoutPointsIsLeftOut) {
  Survey survey = Triangle();
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 3, .DatasetTag = "x"});
  EXPECT_EQ(Written(survey).find("H,L"), std::string::npos);
}

TEST(DataFileWriterTest, GpsColumnsOnlyWhenTheSurveyHasGps) {
  Survey survey = Triangle();
  Point& link = survey.Points[0];
  link.PtFlags |= kPtGps | kPtLink;
  link.InGPSLong = "150.5";
  link.InGPSLat = "-33.5";
  link.GPSLong = 150.5;
  link.GPSLat = -33.5;
  Point& second = survey.Points[1];
  second.GPSLong = 150.25;
  second.GPSLat = -33.75;
  second.HasAlternate = true;
  second.AltGPSLong = 150.5;
  second.AltGPSLat = -33.5;
  second.AltGPSDelta = 2.5;
  std::string text = Written(survey);
  EXPECT_NE(
      text.find("\n1,XL,,,0,0,150.5,-33.5,0.0,0.0,0\xB0,0.0,150\xB0 30.0' E,33\xB0 30.0' S,,,\n"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find(",150\xB0 15.0' E,33\xB0 45.0' S,150\xB0 30.0' E,33\xB0 30.0' S,2.5\n"),
            std::string::npos)
      << text;
}

TEST(DataFileWriterTest, FreeTextStaysOnOneLine) {
  Survey survey = Triangle();
  survey.FileTag = "two\nlines";
  survey.Datasets[0].DatasetTag = "a\r\nb";
  survey.UserComments = {"note without marks"};
  std::string text = Written(survey);
  EXPECT_NE(text.find("\n// note without marks\n"), std::string::npos);
  EXPECT_NE(text.find(",58,two lines\n"), std::string::npos);
  EXPECT_NE(text.find("\nH,M,a  b\n"), std::string::npos);
}

struct RefusalRow {
  const char* name;
  void (*change)(Survey&);
  int fault;
};

class WriteRefusalTest : public ::testing::TestWithParam<RefusalRow> {};

TEST_P(WriteRefusalTest, WritesNothing) {
  Survey survey = Triangle();
  GetParam().change(survey);
  EXPECT_EQ(Written(survey, GetParam().fault), "");
  EXPECT_EQ(survey.WriterOptions & kWriteInProgress, 0);
}

void PrintTo(const RefusalRow& row, std::ostream* out) { *out << row.name; }

// clang-format off
INSTANTIATE_TEST_SUITE_P(Rows, WriteRefusalTest, ::testing::Values(
    RefusalRow{"TwoPoints", [](Survey& s) { s.Points.pop_back(); }, kWriteTooFewPoints},
    RefusalRow{"GpsOnlyPointWithoutLink", [](Survey& s) {
      s.Points[2].PtFlags = kPtGps; }, kWriteGpsWithoutLink},
    RefusalRow{"AlternateGpsWithoutLink", [](Survey& s) {
      s.Points[1].PtFlags |= kPtGps | kPtAltGps; s.Points[2].PtFlags = kPtGps; },
      kWriteGpsWithoutLink},
    RefusalRow{"ValueHoldsSeparator", [](Survey& s) { s.Points[1].InXA = "40,5"; },
      kWriteUnreadable},
    RefusalRow{"ValueHoldsLineBreak", [](Survey& s) { s.Points[1].InYL = "4\n0"; },
      kWriteUnreadable},
    RefusalRow{"DigitSeparator", [](Survey& s) { s.FieldSeparator = '5'; }, kWriteUnreadable},
    RefusalRow{"SeparatorZero", [](Survey& s) { s.FieldSeparator = '\0'; }, kWriteUnreadable},
    RefusalRow{"SeparatorOfTheMarker", [](Survey& s) { s.FieldSeparator = 'H'; },
      kWriteUnreadable},
    RefusalRow{"SubValueLineBreakForFeet", [](Survey& s) {
      s.UnitOfMeasure = kUnitFeet; s.SubValueSeparator = '\n'; }, kWriteUnreadable},
    RefusalRow{"DegreeMarkLineBreak", [](Survey& s) { s.DegreeChar = '\r'; }, kWriteUnreadable},
    RefusalRow{"UnitSeven", [](Survey& s) { s.UnitOfMeasure = 7; }, kWriteUnreadable},
    RefusalRow{"NoDataset", [](Survey& s) { s.Datasets.clear(); }, kWriteUnreadable},
    RefusalRow{"PointsBeforeFirstDataset", [](Survey& s) { s.Datasets[0].DatasetStart = 1; },
      kWriteUnreadable},
    RefusalRow{"DatasetsOutOfOrder", [](Survey& s) {
      s.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 2});
      s.Datasets.push_back(Dataset{.DatasetType = kTypeP, .DatasetStart = 1}); },
      kWriteUnreadable}),
    [](const auto& info) { return info.param.name; });
// clang-format on

TEST(DataFileWriterTest, GpsOnlyChoiceOrAllGpsNeedsNoLink) {
  Survey survey = Triangle();
  survey.Points[2].PtFlags = kPtGps;
  survey.FileFlags = kFileGpsOnly;
  Written(survey, 0);
  survey.FileFlags = 0;
  for (Point& point : survey.Points) point.PtFlags = kPtGps;
  Written(survey, 0);
}

TEST(DataFileWriterTest, MessagesOfTheFaults) {
  EXPECT_EQ(WriteFaultMessage(1), "Cannot open file - check is not being used by another program.");
  EXPECT_EQ(WriteFaultMessage(2), "GPS values present without a GPS linked point.");
  for (int fault : {0, 3, 4, 99}) {
    EXPECT_EQ(WriteFaultMessage(fault), "Unidentified processing error") << fault;
  }
}

class SavedFileTest : public ::testing::Test {
 protected:
  static std::string Contents(const std::string& path) { return TestFolder::Contents(path); }
  static void Put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  // The fixed text, with the system's reason and the path as the detail where there is one.
  static void ExpectWriteAbort(const ScriptedDialogs& dialogs, const std::string& text,
                               const std::string& detail = "") {
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Write File Abort");
    EXPECT_EQ(dialogs.last().text, text);
    EXPECT_EQ(dialogs.last().detail, detail);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
  }

  TestFolder folder_;
};

TEST_F(SavedFileTest, WritesTheFileAndNothingElse) {
  Survey survey = Triangle();
  ScriptedDialogs dialogs;
  std::string path = folder_.Path("lot.csv");
  ASSERT_TRUE(WriteDataFile(survey, path, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(Contents(path), Written(survey));
  EXPECT_EQ(folder_.FileCount(), 1);
}

TEST_F(SavedFileTest, EachFailureKeepsItsTextAndGivesTheSystemsReasonBeside) {
  fs::create_directory(folder_.Path("taken.csv"));
  Put(folder_.Path("taken.csv/inside.txt"), "kept");
  Put(folder_.Path("read-only.csv"), "kept");
  ASSERT_EQ(::chmod(folder_.Path("read-only.csv").c_str(), 0444), 0);
  const struct {
    const char* name;
    const char* reason;
  } rows[] = {{"no-such-folder/lot.csv", "No such file or directory"},
              {"taken.csv", "Is a directory"},
              {"read-only.csv", "Permission denied"}};
  for (const auto& row : rows) {
    Survey survey = Triangle();
    ScriptedDialogs dialogs;
    const std::string path = folder_.Path(row.name);
    EXPECT_FALSE(WriteDataFile(survey, path, dialogs));
    ExpectWriteAbort(dialogs, "Cannot open file - check is not being used by another program.",
                     path + ": " + row.reason);
    EXPECT_EQ(survey.WriterOptions, kWriterOptionsDefault);
  }
  EXPECT_EQ(Contents(folder_.Path("taken.csv/inside.txt")), "kept");
  EXPECT_EQ(Contents(folder_.Path("read-only.csv")), "kept");
  EXPECT_EQ(folder_.FileCount(), 2);
}

TEST_F(SavedFileTest, RefusedSurveyLeavesTheOldFile) {
  std::string path = folder_.Path("lot.csv");
  Put(path, "old text");
  Survey gpsWithoutLink = Triangle();
  gpsWithoutLink.Points[2].PtFlags = kPtGps;
  Survey twoPoints = Triangle();
  twoPoints.Points.pop_back();
  for (Survey* survey : {&gpsWithoutLink, &twoPoints}) {
    ScriptedDialogs dialogs;
    EXPECT_FALSE(WriteDataFile(*survey, path, dialogs));
    ExpectWriteAbort(dialogs, survey == &twoPoints
                                  ? "Unidentified processing error"
                                  : "GPS values present without a GPS linked point.");
    EXPECT_EQ(Contents(path), "old text");
    EXPECT_EQ(folder_.FileCount(), 1);
  }
}

// The disk fills up half-way through: the write fails, and the old file must survive
// whole with no temporary file left beside it.
TEST_F(SavedFileTest, FailingWriteLeavesTheOldFileIntact) {
  std::string path = folder_.Path("lot.csv");
  const std::string old = "the survey as last saved\n";
  Put(path, old);
  Survey survey = Triangle();
  for (int i = 4; i < 2000; ++i) {
    survey.Points.push_back(ProcessedPoint(i, kPtXY, "12.5", "7.25", 12.5f, 7.25f, 45, 10));
  }
  ScriptedDialogs dialogs;
  struct rlimit saved;
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
  auto previousHandler = ::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = saved;
  small.rlim_cur = 4096;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  bool written = WriteDataFile(survey, path, dialogs);
  ::setrlimit(RLIMIT_FSIZE, &saved);
  ::signal(SIGXFSZ, previousHandler);
  EXPECT_FALSE(written);
  ExpectWriteAbort(dialogs, "Cannot open file - check is not being used by another program.",
                   path + ": File too large");
  EXPECT_EQ(Contents(path), old);
  EXPECT_EQ(folder_.FileCount(), 1);
  EXPECT_EQ(survey.WriterOptions, kWriterOptionsDefault);
}

}  // namespace
}  // namespace plotmeter
