#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "datafile/DataFileWriter.h"
#include "support/Latin1.h"
#include "support/PlotSurveys.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

using testing::Latin1;
using testing::ProcessedPoint;
using testing::ScriptedDialogs;
using testing::TestFolder;

// A small processed triangle in metres, as a load and a processing run leave it.
Survey Triangle() {
  Survey survey;
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

// Adds a dataset of `points` points at (1, 2), closing at 90 degrees over 2.
void AddDataset(Survey& survey, std::uint8_t type, const char* tag, int points) {
  survey.Datasets.push_back(Dataset{.DatasetType = type,
                                    .DatasetStart = survey.PointCount(),
                                    .DatasetTag = tag,
                                    .ClosingBearing = 90,
                                    .ClosingLen = 2});
  for (int i = 0; i < points; ++i) {
    survey.Points.push_back(ProcessedPoint(survey.PointCount() + 1, kPtXY, "1", "2", 1, 2, 0, 0));
  }
}

std::string Written(Survey& survey, int expectedFault = 0) {
  std::ostringstream out;
  EXPECT_EQ(WriteSurvey(survey, out), expectedFault);
  EXPECT_EQ(survey.WriterOptions & kWriteInProgress, 0);
  return out.str();
}

// Every part a file can have: sub-units, the magnetic bearings, the GPS columns with an
// alternate position, a dummy start (in a sub-division only), a closing line after main
// and sub-division only, a dataset of each kind (the empty one left out), and free text
// kept on one line.
TEST(DataFileWriterTest, DefaultLayoutWithEveryPart) {
  Survey survey = Triangle();
  survey.UnitOfMeasure = kUnitFeet;
  survey.MagneticDeclination = 12.5f;
  survey.FileFlags = kFileOption;
  survey.FileTag = "two\nlines";
  survey.UserComments.push_back("note without marks");
  Point& link = survey.Points[0];
  link.PtFlags |= kPtGps | kPtLink;
  link.PtMarks = kMarkDummy;
  link.InGPSLong = "150.5";
  link.InGPSLat = "-33.5";
  link.GPSLong = 150.5;
  link.GPSLat = -33.5;
  Point& second = survey.Points[1];
  second.HasAlternate = true;
  second.AltGPSLong = 150.25;
  second.AltGPSLat = -33.75;
  second.AltGPSDelta = 2.25;
  survey.Points[2].Len = 30.25f;
  AddDataset(survey, kTypeS | kDatasetHasDummy, "a\r\nb", 2);
  survey.Points[3].PtMarks = kMarkDummy;
  AddDataset(survey, kTypeL, "Empty", 0);
  AddDataset(survey, kTypeL, "Lane", 1);
  AddDataset(survey, kTypeP, "Sheds", 2);
  EXPECT_EQ(Written(survey),
            Latin1("// Unit of Measure is Feet:Inches\n"
                   "// by J. Smith\n"
                   "// note without marks\n"
                   "//,\n"
                   "44,#0092,3,1,12.5,58,two lines\n"
                   ",/ Column Headings (for data lines):\n"
                   "/Pt#,/Typ,PtRef#,PtTgt#,InXA,InYL,InGPSLong,InGPSLat,X,Y,Bearing,Mag Brg,Len,"
                   "GPSLong,GPSLat,AltGPSLong,AltGPSLat,AltGPSDelta\n"
                   "/ Main Dataset Header\n"
                   "H,M,Front\n"
                   "1,XL,,,0,0,150.5,-33.5,0,0,0°,12° 30.0',0,150° 30.0' E,33° 30.0' S,,,\n"
                   "2,X,,,40,0,,,40,0,90°,102° 30.0',40,0° E,0° N,150° 15.0' E,33° 45.0' S,2:3.0\n"
                   "3,B,,,0,30,,,40,30,0°,12° 30.0',30:3.0,0° E,0° N,,,\n"
                   "/Closing Line,,,,,,,,,,233° 30.0',246°,50\n"
                   "/ Sub-division (or Extension) Dataset Header\n"
                   "H,S,a  b\n"
                   "4,D,,,1,2,,,1,2,0°,12° 30.0',0,0° E,0° N,,,\n"
                   "5,X,,,1,2,,,1,2,0°,12° 30.0',0,0° E,0° N,,,\n"
                   "/Closing Line,,,,,,,,,,90°,102° 30.0',2\n"
                   "/ Line Dataset Header\n"
                   "H,L,Lane\n"
                   "6,X,,,1,2,,,1,2,0°,12° 30.0',0,0° E,0° N,,,\n"
                   "/ Points Collection Dataset Header\n"
                   "H,P,Sheds\n"
                   "7,X,,,1,2,,,1,2,0°,12° 30.0',0,0° E,0° N,,,\n"
                   "8,X,,,1,2,,,1,2,0°,12° 30.0',0,0° E,0° N,,,\n"
                   ",/End data\n"));
}

// Plain lengths drop the sub-unit from the unit line and the values.
TEST(DataFileWriterTest, PlainLayoutWithoutHeadings) {
  Survey survey = Triangle();
  survey.UnitOfMeasure = kUnitChains;
  survey.WriterOptions =
      kWriterOptionsDefault | kWritePlainLayout | kWriteNoHeadings | kWritePlainLengths;
  survey.FileFlags = kFileOption;
  survey.FileTag.clear();
  survey.Datasets[0].DatasetTag.clear();
  EXPECT_EQ(Written(survey), Latin1("// Unit of Measure is Chains\n"
                                    "// by J. Smith\n"
                                    "//\n"
                                    "44,#0092,5,3,0,58\n"
                                    "/ Main Dataset Header\n"
                                    "H,M\n"
                                    "1,X,,,0,0,,,0.0,0.0,0°,0.0,,,,,\n"
                                    "2,X,,,40,0,,,40.0,0.0,90°,40.0,,,,,\n"
                                    "3,B,,,0,30,,,40.0,30.0,0°,30.0,,,,,\n"
                                    "/End data\n"));
}

TEST(DataFileWriterTest, NonPerimeterMainGeneratedSubDivisionAndSinglePoint) {
  Survey survey = Triangle();
  survey.Datasets[0].DatasetType = kTypeN;
  AddDataset(survey, kTypeS | kDatasetGenerated, "Cut", 1);
  AddDataset(survey, kTypeP, "Shed", 1);
  const std::string text = Written(survey);
  for (const char* part : {"\n/ Main Dataset Header\nH,N,Front\n1,X,",
                           "\n/ Internally generated Sub-division Dataset Header\nH,S,Cut\n",
                           "\n/ Single Point Dataset Header\nH,P,Shed\n"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
}

struct RefusalRow {
  const char* name;
  void (*change)(Survey&);
  int fault;
};

TEST(DataFileWriterTest, RefusedSurveysWriteNothing) {
  // clang-format off
  const RefusalRow rows[] = {
    {"TwoPoints", [](Survey& s) { s.Points.pop_back(); }, kWriteTooFewPoints},
    {"GpsOnlyPointWithoutLink", [](Survey& s) { s.Points[2].PtFlags = kPtGps; },
     kWriteGpsWithoutLink},
    {"ValueHoldsSeparator", [](Survey& s) { s.Points[1].InXA = "40,5"; }, kWriteUnreadable},
    {"ValueHoldsLineBreak", [](Survey& s) { s.Points[1].InYL = "4\n0"; }, kWriteUnreadable},
    {"DigitSeparator", [](Survey& s) { s.FieldSeparator = '5'; }, kWriteUnreadable},
    {"SeparatorZero", [](Survey& s) { s.FieldSeparator = '\0'; }, kWriteUnreadable},
    {"SubValueLineBreakForFeet", [](Survey& s) {
      s.UnitOfMeasure = kUnitFeet; s.SubValueSeparator = '\n'; }, kWriteUnreadable},
    {"DegreeMarkLineBreak", [](Survey& s) { s.DegreeChar = '\r'; }, kWriteUnreadable},
    {"UnitSeven", [](Survey& s) { s.UnitOfMeasure = 7; }, kWriteUnreadable},
    {"NoDataset", [](Survey& s) { s.Datasets.clear(); }, kWriteUnreadable},
    {"PointsBeforeFirstDataset", [](Survey& s) { s.Datasets[0].DatasetStart = 1; },
     kWriteUnreadable},
    {"DatasetsOutOfOrder", [](Survey& s) {
      s.Datasets.push_back(Dataset{.DatasetType = kTypeL, .DatasetStart = 2});
      s.Datasets.push_back(Dataset{.DatasetType = kTypeP, .DatasetStart = 1}); },
     kWriteUnreadable},
  };
  // clang-format on
  for (const RefusalRow& row : rows) {
    SCOPED_TRACE(row.name);
    Survey survey = Triangle();
    row.change(survey);
    EXPECT_EQ(Written(survey, row.fault), "");
  }
  // Points given by GPS alone need no link when 'GPS Only' processing was chosen, or when
  // every point is given so.
  Survey survey = Triangle();
  survey.Points[2].PtFlags = kPtGps;
  survey.FileFlags = kFileGpsOnly;
  Written(survey, 0);
  survey.FileFlags = 0;
  for (Point& point : survey.Points) point.PtFlags = kPtGps;
  Written(survey, 0);
}

// The file holds what `WriteSurvey` gives; a fault leaves the old file and shows the box,
// with the system's reason and the path beside it where the system gave one. How a save
// keeps the old file through any failure is SafeFileTest's.
TEST(DataFileWriterTest, SavedFileOrWriteFileAbort) {
  TestFolder folder;
  const std::string path = folder.Write("lot.csv", "old text");
  Survey gpsWithoutLink = Triangle(), twoPoints = Triangle(), good = Triangle();
  gpsWithoutLink.Points[2].PtFlags = kPtGps;
  twoPoints.Points.pop_back();
  const struct {
    Survey* survey;
    std::string path, text, detail;
  } rows[] = {{&gpsWithoutLink, path, "GPS values present without a GPS linked point.", ""},
              {&twoPoints, path, "Unidentified processing error", ""},
              {&good, folder.Path("no-such-folder/lot.csv"),
               "Cannot open file - check is not being used by another program.",
               folder.Path("no-such-folder/lot.csv") + ": No such file or directory"}};
  for (const auto& row : rows) {
    ScriptedDialogs dialogs;
    EXPECT_FALSE(WriteDataFile(*row.survey, row.path, dialogs));
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    EXPECT_EQ(dialogs.last().title, "Write File Abort");
    EXPECT_EQ(dialogs.last().text, row.text);
    EXPECT_EQ(dialogs.last().detail, row.detail);
    EXPECT_EQ(dialogs.last().icon, Icon::Critical);
    EXPECT_EQ(dialogs.last().buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.beeps, 1);
    EXPECT_EQ(row.survey->WriterOptions, kWriterOptionsDefault);
  }
  EXPECT_EQ(TestFolder::Contents(path), "old text");
  ScriptedDialogs dialogs;
  ASSERT_TRUE(WriteDataFile(good, path, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(TestFolder::Contents(path), Written(good));
  EXPECT_EQ(folder.FileCount(), 1);
}

}  // namespace
}  // namespace plotmeter
