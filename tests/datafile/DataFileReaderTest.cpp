#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <tuple>

#include "datafile/DataFileReader.h"
#include "datafile/LoadCheck.h"
#include "support/EnteredSurvey.h"
#include "support/Latin1.h"
#include "support/ScriptedDialogs.h"
#include "support/SurveyComparison.h"
#include "support/TestFolder.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ExpectSameEnteredSurvey;
using testing::Latin1;
using testing::ScriptedDialogs;

// A good file using every kind of dataset, a sub-division with its dummy start, shared
// points, an intermediate bearing and a GPS link; the header's options and declination are
// left empty. Each fault row below breaks one thing in it; so do the broken files beside it,
// which the reader's goldens load (tests/golden/reader), and their faults have no row here.
const std::string kGoodFile =
    testing::TestFolder::Contents(PLOTMETER_GOLDEN_DIR "/reader/good.csv");

// `text` with `from` replaced: its first occurrence, or with `all` every one.
std::string Replaced(std::string text, std::string_view from, std::string_view to,
                     bool all = false) {
  std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << "the good file lacks: " << from;
  for (; at != std::string::npos; at = all ? text.find(from, at + to.size()) : std::string::npos) {
    text.replace(at, from.size(), to);
  }
  return text;
}

ReadResult Read(Survey& survey, const std::string& text) {
  std::istringstream in(text);
  return ReadDataFile(survey, in);
}

bool Load(Survey& survey, const std::string& text, ScriptedDialogs& dialogs) {
  return CheckLoadedData(survey, Read(survey, text), dialogs);
}

// The box's kind and buttons; its words are the goldens' (tests/golden/reader).
using BoxKind = std::tuple<std::string, Icon, Buttons, Button>;
BoxKind KindOf(const MessageBox& box) {
  return {box.title, box.icon, box.buttons, box.defaultButton};
}

// One critical box for fault `code` at `point` (1-based, 0 for none), after one beep, and
// the survey as no file left it. Each code's wording is pinned by the reader's goldens;
// fault 14 names the missing point, 99 in its row below.
void ExpectAborted(const Survey& survey, const ScriptedDialogs& dialogs, int code, int point) {
  ASSERT_FALSE(dialogs.boxes.empty());
  EXPECT_EQ(KindOf(dialogs.last()),
            BoxKind("File Read Abort", Icon::Critical, Buttons::Ok, Button::Ok));
  const std::string suffix = point > 0 ? " [Point " + std::to_string(point) + "]" : "";
  EXPECT_EQ(dialogs.last().text,
            ReadFaultMessage(code, 99) + suffix + "\nPlease correct for a valid file");
  EXPECT_EQ(dialogs.beeps, 1);
  ExpectSameEnteredSurvey(Survey{}, survey);
}

TEST(DataFileReaderTest, GoodFileFillsSettingsDatasetsAndPoints) {
  Survey survey;
  ScriptedDialogs dialogs;
  ASSERT_TRUE(Load(survey, kGoodFile, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
  // The same survey written as the resolution tests write theirs.
  Survey expected =
      Entered(Latin1("H,M\n1,XL,,,0,0,150.5,-33.5\n2,XJ,,,40,0\n3,B,,,0,30\n4,XJ,,,0,30\n"
                     "H,S\n5,D,,,40,0\n6,X,,,20,15\n"
                     "H,L\n7,R,1\n8,BI,7,,45,5\n9,B,,,45,10\n"
                     "H,P\n10,X,,,10,10\n11,CF,10,,90°,5\n12,G,,,,,150.6,-33.4"));
  expected.SubValueSeparator = ':';
  expected.FileTag = "Test lot";
  // The link passed the load check: the next write marks the link as established.
  expected.FileFlags = kFileOption;
  // Only the user's own line survives; the unit line and "//," are the writer's.
  expected.UserComments = {"// Surveyed by J. Smith"};
  expected.Datasets[1].DatasetType |= kDatasetHasDummy;
  const char* tags[] = {"Front field", "Split", "Road", "Sheds"};
  for (int d = 0; d < 4; ++d) expected.Datasets[d].DatasetTag = tags[d];
  ExpectSameEnteredSurvey(expected, survey);
}

struct FaultRow {
  const char* name;
  const char* from;  // a piece of the good file
  const char* to;    // what it becomes
  int code;
  int point;                       // 1-based point of the " [Point N]" suffix, 0 for none
  const char* alsoFrom = nullptr;  // a second change, where one fault needs two
  const char* alsoTo = nullptr;
};

void PrintTo(const FaultRow& row, std::ostream* out) { *out << row.name; }

class FileFaultTest : public ::testing::TestWithParam<FaultRow> {};

TEST_P(FileFaultTest, ShowsTheFaultAndEmptiesTheSurvey) {
  const FaultRow& row = GetParam();
  Survey survey;
  ScriptedDialogs dialogs;
  std::string text = Replaced(kGoodFile, row.from, row.to);
  if (row.alsoFrom) text = Replaced(text, row.alsoFrom, row.alsoTo);
  EXPECT_FALSE(Load(survey, text, dialogs));
  EXPECT_EQ(dialogs.boxes.size(), 1u);
  ExpectAborted(survey, dialogs, row.code, row.point);
}

// clang-format off
const FaultRow kFaultRows[] = {
  // The top block and the header.
  {"BlankLineBeforeHeader", "//,\n", "//,\n\n", 1, 0},
  {"SeparatorCodeAbove255", "44,#0092", "300,#0092", 3, 0},
  {"SeparatorCodeZero", "44,#0092", "0,#0092", 3, 0},
  {"SeparatorCodeNotAlone", "44,#0092,1", "44x,#0092,1", 3, 0},
  {"SeparatorCharacterAbsent", "44,#0092,1,,,58,Test lot", "59", 3, 0},
  {"UnitNotNumber", "#0092,1,", "#0092,one,", 3, 0},
  {"UnitNegative", "#0092,1,", "#0092,-1,", 42, 0},
  {"OptionsNotNumber", "#0092,1,,", "#0092,1,x,", 3, 0},
  {"DeclinationNotNumber", "1,,,58", "1,,east,58", 3, 0},
  {"DeclinationBeyondCircle", "1,,,58", "1,,400,58", 3, 0},
  {"SubValueCodeEmpty", ",58,Test", ",,Test", 43, 0},
  {"SubValueCodeNegative", ",58,Test", ",-1,Test", 43, 0},
  // Between the header and the first dataset.
  {"BlankLineAfterHeader", "Test lot\n", "Test lot\n\n", 8, 0},
  {"DataBeforeFirstDataset", "H,M,Front field\n", "", 8, 0},
  {"DatasetTypeWord", "H,M,Front", "H,Main,Front", 41, 0},
  {"MainAndNonPerimeterMain", "H,P,Sheds", "H,N,Sheds", 6, 0},
  {"DatasetWithoutPoints", "H,L,Road\n", "H,L,Road\nH,P,Empty\n", 8, 0},
  {"LastDatasetWithoutPoints", ",/End data\n", "H,P,Empty\n", 8, 0},
  // One data line at a time.
  {"PointNumberZero", "3,B,,,0,30", "0,B,,,0,30", 4, 3},
  {"ReferenceNotNumber", "7,R,1,", "7,R,one,", 4, 7},
  {"TargetNotNumber", "8,BI,7,,", "8,BI,7,x,", 4, 8},
  {"TwoTypes", "3,B,,,0,30", "3,XB,,,0,30", 32, 3},
  {"DummyInMain", "3,B,,,0,30", "3,D,,,0,30", 32, 3},
  {"DummyAfterSubDivisionStart", "6,X,,,20,15", "6,D,,,20,15", 32, 6},
  {"FromFlagWithoutBearing", "10,X,,,10,10", "10,XF,,,10,10", 27, 10},
  {"ReferenceWithGps", "7,R,1,", "7,RA,1,", 27, 7},
  {"ReferenceAsIntermediate", "7,R,1,", "7,RI,1,", 27, 7},
  {"ReferencePointWithoutReference", "7,R,1,", "7,R,,", 13, 7},
  {"FromFlagWithoutReference", "11,CF,10,", "11,CF,,", 13, 11},
  {"ReferenceOnSubDivisionPoint", "6,X,,,20,15", "6,X,2,,20,15", 18, 6},
  {"SharedPointInMain", "3,B,,,0,30", "3,R,1,,,", 18, 3},
  {"SharedPointLaterInSubDivision", "6,X,,,20,15", "6,R,1,,,", 21, 6},
  {"StandAloneSharedPoint", "12,G,,,,,150.6,-33.4", "12,R,1,,,,,", 19, 12},
  // Over all the points.
  {"TargetMissing", "8,BI,7,,", "8,BI,7,99,", 28, 8},
  {"SharedPointOfOwnDataset", "7,R,1,", "7,R,9,", 13, 7},
  {"CircleThroughLine", "7,R,1,", "7,R,11,", 20, 7, "11,CF,10,", "11,CF,9,"},
  // The load check.
  {"OneJoinPoint", "2,XJ,,,40,0", "2,X,,,40,0", 10, 0},
  {"LineStartsWithBearing", "7,R,1,,,,,", "7,B,,,10,10,,", 23, 7},
  {"PointsStartWithBearing", "10,X,,,10,10", "10,B,,,10,10", 23, 10},
  // Not every main point has GPS values, so no 'GPS Only' question is asked.
  {"GpsOnlyBeforeLink", "1,XL,,,0,0,", "1,G,,,,,", 25, 1, "10,X,,,10,10,,", "10,XL,,,10,10,1,1"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Rows, FileFaultTest, ::testing::ValuesIn(kFaultRows),
                         [](const auto& info) { return info.param.name; });

// No reader fault leaves a survey without datasets: the load check's own code, and the
// messages of codes no file reaches.
TEST(DataFileReaderTest, NoDatasetAtAllAndTheMessagesOfNoFault) {
  Survey survey;
  ScriptedDialogs dialogs;
  EXPECT_FALSE(CheckLoadedData(survey, ReadResult{}, dialogs));
  ExpectAborted(survey, dialogs, 30, 0);
  EXPECT_EQ(dialogs.last().text, "No 'data-sets' found in data.\nPlease correct for a valid file");
  EXPECT_EQ(ReadFaultMessage(12), "Data could not be processed, check and");
  EXPECT_EQ(ReadFaultMessage(31), "Unidentified data parsing error.");
}

// A file of the reader's goldens, loaded and checked.
bool LoadGolden(Survey& survey, const std::string& name, ScriptedDialogs& dialogs) {
  return Load(survey, testing::TestFolder::Contents(PLOTMETER_GOLDEN_DIR "/reader/" + name),
              dialogs);
}

// Every point of the main dataset carries GPS values, so a 'GPS Only' calculation is
// possible although GPS-only points come before the link point: a question, No by default
// (what No does is the gps-link golden's). A link in a survey of GPS values alone is
// dropped, with a warning.
TEST(DataFileReaderTest, GpsOnlyQuestionAndIgnoredLink) {
  Survey survey, allGps;
  ScriptedDialogs dialogs;
  dialogs.answers.push_back(Button::Yes);
  ASSERT_TRUE(LoadGolden(survey, "gps-only-possible.csv", dialogs));
  ASSERT_TRUE(LoadGolden(allGps, "link-of-all-gps-data.csv", dialogs));
  ASSERT_EQ(dialogs.boxes.size(), 2u);
  EXPECT_EQ(KindOf(dialogs.boxes[0]),
            BoxKind("GPS Link issue", Icon::Question, Buttons::YesNo, Button::No));
  EXPECT_EQ(KindOf(dialogs.boxes[1]),
            BoxKind("GPS Link issue", Icon::Exclamation, Buttons::Ok, Button::Ok));
  EXPECT_EQ(dialogs.beeps, 0);
  EXPECT_EQ(survey.FileFlags, kFileGpsOnly | kFileOption);
  EXPECT_EQ(allGps.FileFlags & kFileOption, 0);
  EXPECT_EQ(allGps.Points[1].PtFlags, kPtGps);
}

// ---- Robustness: forgiving input reads as intended; large input neither crashes nor hangs

// Forgiving forms read as the plain file: other line endings, the file saved as UTF-8,
// the padding and empty rows of a spreadsheet, letters of either case and blanks. The line
// ends are CR LF, a lone CR (and a mix of LF and lone CR), or LF; which UTF-8 texts are
// converted is FileTextTest's.
TEST(DataFileReaderTest, ForgivingFormsReadAsThePlainFile) {
  Survey plain;
  ASSERT_EQ(Read(plain, kGoodFile).fault, 0);
  const std::string padded = Replaced(kGoodFile, "\n", ",,,,,,,,,,,\n", true);
  const std::string loose = Replaced(kGoodFile, "H,L,Road", " h , l , Road ");
  const std::string forms[] = {
      "\xEF\xBB\xBF" + Replaced(Replaced(kGoodFile, "\xB0", "\xC2\xB0"), "\n", "\r\n", true),
      Replaced(Replaced(kGoodFile, "\n", "\r", true), "//,\r", "//,\n"),
      Replaced(padded, "H,L,Road", ",,,,\nH,L,Road"),
      Replaced(Replaced(loose, "3,B,,,0,30", " 3 , b ,  , , 0 , 30 "), "4,XJ,", "4,jx,")};
  for (const std::string& text : forms) {
    Survey survey;
    ReadResult read = Read(survey, text);
    ASSERT_EQ(read.fault, 0) << ReadFaultText(read) << text;
    ExpectSameEnteredSurvey(plain, survey);
  }
}

// A million stand-alone points, each a bearing from the one before: read and checked
// without deep recursion (measured by hand: well under a second in an optimised build),
// also when the first refers to the last and they go round in one circle.
TEST(DataFileReaderTest, MillionPointsReferringInAChainOrACircle) {
  constexpr int kMillion = 1'000'000;
  for (int firstReference : {3, kMillion + 3}) {
    std::string text = "44,#0092,1,0,0,58\nH,M,Big\n1,X,,,0,0,,\n2,X,,,1,0,,\n3,X,,,1,1,,\n";
    text += "H,P,Chain\n4,BF," + std::to_string(firstReference) + ",,45,1,,\n";
    for (int n = 5; n < kMillion + 4; ++n) {
      text += std::to_string(n) + ",BF," + std::to_string(n - 1) + ",,45,1.5,,\n";
    }
    Survey survey;
    const ReadResult read = Read(survey, text);
    // A chain reads whole; a circle's fault is at its earliest point.
    const bool chain = firstReference == 3;
    EXPECT_EQ(read.fault, chain ? 0 : 20) << ReadFaultText(read);
    EXPECT_EQ(chain ? survey.PointCount() : read.point, chain ? kMillion + 3 : 3);
  }
}

}  // namespace
}  // namespace plotmeter
