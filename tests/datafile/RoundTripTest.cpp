// Read, write, read gives the same survey: over every example and over many generated
// surveys that use every setting, dataset kind, point type and flag a file can carry.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <numeric>
#include <random>
#include <sstream>

#include "datafile/DataFileReader.h"
#include "datafile/DataFileWriter.h"
#include "datafile/LoadCheck.h"
#include "geometry/ResolvePoints.h"
#include "support/ScriptedDialogs.h"
#include "support/SurveyComparison.h"

namespace plotmeter {
namespace {

namespace fs = std::filesystem;
using testing::ExpectSameEnteredSurvey;
using testing::ScriptedDialogs;

std::string Written(Survey& survey) {
  std::ostringstream out;
  EXPECT_EQ(WriteSurvey(survey, out), 0);
  return out.str();
}

// Reads and checks `text`, expecting a good file that needs no question.
Survey Loaded(const std::string& text) {
  Survey survey;
  ScriptedDialogs dialogs;
  std::istringstream in(text);
  ReadResult read = ReadDataFile(survey, in);
  EXPECT_TRUE(CheckLoadedData(survey, read, dialogs)) << ReadFaultText(read) << "\n" << text;
  EXPECT_TRUE(dialogs.boxes.empty());
  return survey;
}

// Random surveys the reader accepts: each dataset kind with the first points it allows,
// then points of any type, some intermediate or referring to others, and every flag and
// mark a file keeps.
class SurveyGenerator {
 public:
  explicit SurveyGenerator(unsigned seed) : random_(seed), numbers_(5000) {
    std::iota(numbers_.begin(), numbers_.end(), 1);
    std::shuffle(numbers_.begin(), numbers_.end(), random_);
  }

  Survey Make() {
    // The limits of the separator codes are among them: 1 and 255, and 0 and 255 for the
    // sub-value separator.
    survey_.FieldSeparator = OneOf({',', '\t', ';', '|', '\x01', '\xFF'});
    do {
      survey_.SubValueSeparator = OneOf({':', '\\', ' ', '_', '\0', '\xFF'});
    } while (survey_.SubValueSeparator == survey_.FieldSeparator);
    allGps_ = Chance(8);
    gps_ = allGps_ || Chance(40);
    survey_.UnitOfMeasure = Pick(gps_ ? 1 : 0, 5);
    survey_.MagneticDeclination = Chance(50) ? 0.0f : static_cast<float>(Pick(-2400, 2400)) / 8;
    survey_.FileTag = Chance(70) ? Words(survey_.FieldSeparator) : "";
    for (int n = Pick(0, 3); n > 0; --n) survey_.UserComments.push_back("// " + Words(' '));
    survey_.WriterOptions = static_cast<std::uint8_t>(Pick(0, 255) & ~kWriteInProgress);

    // The main dataset starts from a plane point, a GPS link in a survey with GPS values.
    bool subDivision = !allGps_ && Chance(40);
    bool perimeter = Chance(80);
    std::uint8_t first = allGps_ ? kPtGps : gps_ ? kPtXY | kPtGps | kPtLink : kPtXY;
    int start = AddDataset(perimeter ? kTypeM : kTypeN, NewPoint(first), Pick(3, 8), perimeter);
    if (subDivision || Chance(15)) MarkJoins(start);
    if (subDivision) {
      // A sub-division starts from a dummy point, a reference or any shape point.
      int kind = Pick(0, 2);
      Point point = kind == 0 ? NewPoint(kPtXY) : kind == 1 ? NewPoint(kPtReference) : ShapePoint();
      if (kind == 0) point.PtMarks = kMarkDummy;
      AddDataset(kind == 0 ? kTypeS | kDatasetHasDummy : kTypeS, point, Pick(1, 5), true);
    }
    for (int n = Pick(0, 2); n > 0; --n) {
      std::uint8_t flags = allGps_ ? kPtGps : OneOf({kPtReference, kPtXY, kPtXY});
      AddDataset(kTypeL, NewPoint(flags), Pick(1, 5), false, true);
    }
    for (int n = Pick(0, 2); n > 0; --n) AddStandAlonePoints();

    if (survey_.MagneticDeclination != 0) survey_.FileFlags |= kFileMagnetic;
    if ((gps_ && !allGps_) || Chance(20)) survey_.FileFlags |= kFileOption;  // a link needs it
    return survey_;
  }

 private:
  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  bool Chance(int percent) { return Pick(1, 100) <= percent; }
  template <typename T>
  T OneOf(std::initializer_list<T> items) {
    return items.begin()[Pick(0, static_cast<int>(items.size()) - 1)];
  }
  std::string Number(int low, int high) { return std::to_string(Pick(low, high)); }

  std::string Words(char middle) {
    std::string text = OneOf({"North", "Lot 7", "Creek side", "Parish of Bowen"});
    return Chance(50) ? text + middle + OneOf({"east", "block 3", "the dam"}) : text;
  }

  // An entered value in one of the forms a user types: the reader keeps it as text, with
  // the degree mark, blanks, letters and the sub-value separator inside.
  std::string Value() {
    std::string number = Number(-359, 359);
    return OneOf<std::string>({number, number + ".125", number + "\xB0" + Number(0, 59) + "'",
                               number + "d" + Number(0, 59) + "m10s",
                               number + survey_.SubValueSeparator + Number(0, 11),
                               number + ".5 " + OneOf({"E", "W", "N", "S"})});
  }

  // A point with the entered values its flags call for, and computed values, which a file
  // carries too but the reader does not read. A reference names an earlier point that is
  // not intermediate, so references never go round in a circle.
  Point NewPoint(std::uint8_t flags) {
    Point point;
    point.PtNumber = numbers_[next_++];
    point.PtFlags = flags;
    if (flags & (kPtXY | kPtBearing)) point.InXA = Value(), point.InYL = Value();
    if ((flags & kPtBearing) && Chance(50)) point.PtMarks = kMarkCompass;
    if (flags & kPtGps) point.InGPSLong = Value(), point.InGPSLat = Value();
    if (flags & kPtReference) point.PtRef = AnyAnchor();
    point.X = point.Len = static_cast<float>(Pick(-5000, 5000)) / 4;
    point.Y = point.Bearing = static_cast<float>(Pick(0, 3599)) / 10;
    point.GPSLong = point.AltGPSLong = Pick(0, 35999) / 100.0;
    point.GPSLat = point.AltGPSLat = point.AltGPSDelta = Pick(-8999, 8999) / 100.0;
    point.HasAlternate = Chance(20);
    return point;
  }

  // Co-ordinates or a bearing, perhaps also GPS values, as any dataset allows.
  Point ShapePoint() {
    if (allGps_) return NewPoint(kPtGps);
    std::uint8_t flags = OneOf({kPtXY, kPtBearing, kPtBearing});
    return NewPoint(gps_ && Chance(25) ? flags | kPtGps | kPtAltGps : flags);
  }

  int AnyAnchor() { return anchors_[Pick(0, static_cast<int>(anchors_.size()) - 1)]; }

  void Add(Point point) {
    if (!(point.PtFlags & kPtIntermediate)) anchors_.push_back(point.PtNumber);
    survey_.Points.push_back(std::move(point));
  }

  int StartDataset(std::uint8_t type) {
    survey_.Datasets.push_back(
        Dataset{.DatasetType = type,
                .DatasetStart = survey_.PointCount(),
                .DatasetTag = Chance(60) ? Words(survey_.FieldSeparator) : "",
                .ClosingBearing = static_cast<float>(Pick(0, 359)),
                .ClosingLen = static_cast<float>(Pick(0, 800)) / 8});
    return survey_.PointCount();
  }

  // Adds a dataset of `count` points from `first`; intermediate points may stand anywhere
  // but first, and in an open line not last. Returns where the dataset starts.
  int AddDataset(std::uint8_t type, Point first, int count, bool closed, bool references = false) {
    int start = StartDataset(type);
    Add(std::move(first));
    for (int k = 1; k < count; ++k) {
      Point point = ShapePoint();
      bool bearing = point.PtFlags & kPtBearing;
      if (!allGps_ && Chance(20) && (closed || k < count - 1)) {
        point.PtFlags |= kPtIntermediate;
        if (Chance(30)) point.PtMarks |= kMarkShared;
        if (bearing) point.PtRef = AnyAnchor();
        if (bearing && Chance(50)) point.InYL.clear();  // the length follows from the line
        if (Chance(40)) point.PtTarget = AnyAnchor();
      } else if (references && bearing && Chance(30)) {
        point.PtFlags |= kPtReference;
        point.PtRef = AnyAnchor();
      }
      Add(std::move(point));
    }
    return start;
  }

  void MarkJoins(int start) {
    int a = Pick(start, survey_.PointCount() - 1), b = a;
    while (b == a) b = Pick(start, survey_.PointCount() - 1);
    for (int join : {a, b}) survey_.Points[join].PtFlags |= kPtJoin;
    survey_.JoinPointCount = 2;
  }

  // A stand-alone bearing is taken from a referenced point, and must be for the first.
  void AddStandAlonePoints() {
    int start = StartDataset(kTypeP);
    for (int k = Pick(1, 4); k > 0; --k) {
      Point point = gps_ && Chance(20) ? NewPoint(kPtGps) : ShapePoint();
      bool first = survey_.PointCount() == start;
      if ((point.PtFlags & kPtBearing) && (first || Chance(50))) {
        point.PtRef = AnyAnchor();
        if (first || Chance(50)) point.PtFlags |= kPtReference;
      }
      Add(std::move(point));
    }
  }

  std::mt19937 random_;
  std::vector<int> numbers_;
  std::size_t next_ = 0;
  std::vector<int> anchors_;
  bool gps_ = false, allGps_ = false;
  Survey survey_;
};

TEST(RoundTripTest, GeneratedSurveysReadBackTheSame) {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Survey generated = SurveyGenerator(seed).Make();
    Survey read = Loaded(Written(generated));
    ExpectSameEnteredSurvey(generated, read);
    read.WriterOptions = generated.WriterOptions;
    std::string second = Written(read);
    Survey again = Loaded(second);
    ExpectSameEnteredSurvey(read, again);
    again.WriterOptions = generated.WriterOptions;
    EXPECT_EQ(Written(again), second);
    if (::testing::Test::HasFailure()) break;
  }
}

// Read, process, write; then read that, process and write again: the same bytes. The
// examples, and the reader's good file with its dummy start, intermediate point, line and
// points collection.
TEST(RoundTripTest, ProcessedExamplesAreWrittenTheSameTwice) {
  std::vector<fs::path> files = {PLOTMETER_GOLDEN_DIR "/reader/good.csv"};
  for (const auto& entry : fs::directory_iterator(PLOTMETER_EXAMPLES_DIR)) {
    if (entry.path().extension() == ".csv") files.push_back(entry.path());
  }
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.filename().string());
    std::string texts[2];
    Survey survey;
    ScriptedDialogs dialogs;
    ASSERT_TRUE(CheckLoadedData(survey, ReadDataFile(survey, file.string()), dialogs));
    for (std::string& text : texts) {
      ProcessingState state;
      ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs)) << dialogs.last().text;
      text = Written(survey);
      survey = Loaded(text);
    }
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_EQ(texts[0], texts[1]);
  }
  EXPECT_GE(files.size(), 6u);
}

}  // namespace
}  // namespace plotmeter
