#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>

#include "datafile/DataFileWriter.h"
#include "support/PlotSurveys.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

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
  EXPECT_EQ(Written(survey), TestFolder::Contents(PLOTMETER_GOLDEN_DIR "/writer/every-part.csv"));
}

// Plain lengths drop the sub-unit from the unit line and the values. A non-perimeter main,
// a generated sub-division and a dataset of one point have headers of their own.
TEST(DataFileWriterTest, PlainLayoutWithoutHeadingsAndTheOtherDatasetHeaders) {
  Survey survey = Triangle();
  survey.UnitOfMeasure = kUnitChains;
  survey.WriterOptions =
      kWriterOptionsDefault | kWritePlainLayout | kWriteNoHeadings | kWritePlainLengths;
  survey.FileFlags = kFileOption;
  survey.FileTag.clear();
  survey.Datasets[0].DatasetTag.clear();
  survey.Datasets[0].DatasetType = kTypeN;
  AddDataset(survey, kTypeS | kDatasetGenerated, "Cut", 1);
  AddDataset(survey, kTypeP, "Shed", 1);
  EXPECT_EQ(Written(survey), TestFolder::Contents(PLOTMETER_GOLDEN_DIR "/writer/plain-layout.csv"));
}

// A refused survey writes nothing: the file keeps its old text and the box says why. A file
// that cannot be made is the writer's golden (no-such-folder); how a save keeps the old
// file through any failure is SafeFileTest's.
TEST(DataFileWriterTest, RefusedSurveysLeaveTheOldFile) {
  TestFolder folder;
  const std::string path = folder.Write("lot.csv", "old text");
  // clang-format off
  const struct {
    const char* name;
    void (*change)(Survey&);
    int fault;
  } rows[] = {
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
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Survey survey = Triangle();
    row.change(survey);
    EXPECT_EQ(Written(survey, row.fault), "");
    ScriptedDialogs dialogs;
    EXPECT_FALSE(WriteDataFile(survey, path, dialogs));
    ASSERT_EQ(dialogs.boxes.size(), 1u);
    const MessageBox& box = dialogs.last();
    const std::string text = row.fault == kWriteGpsWithoutLink
                                 ? "GPS values present without a GPS linked point."
                                 : "Unidentified processing error";
    EXPECT_EQ(std::tie(box.title, box.text, box.detail, box.icon, box.buttons, dialogs.beeps),
              std::tuple("Write File Abort", text, "", Icon::Critical, Buttons::Ok, 1));
    EXPECT_EQ(survey.WriterOptions, kWriterOptionsDefault);
  }
  EXPECT_EQ(TestFolder::Contents(path), "old text");
  // Points given by GPS alone need no link when 'GPS Only' processing was chosen, or when
  // every point is given so; the file then holds what `WriteSurvey` gives.
  Survey survey = Triangle();
  survey.Points[2].PtFlags = kPtGps;
  survey.FileFlags = kFileGpsOnly;
  Written(survey, 0);
  survey.FileFlags = 0;
  for (Point& point : survey.Points) point.PtFlags = kPtGps;
  ScriptedDialogs dialogs;
  ASSERT_TRUE(WriteDataFile(survey, path, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(TestFolder::Contents(path), Written(survey));
  EXPECT_EQ(folder.FileCount(), 1);
}

}  // namespace
}  // namespace plotmeter
