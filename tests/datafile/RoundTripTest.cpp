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
#include "datafile/SurveyComparison.h"
#include "geometry/ResolvePoints.h"
#include "support/ScriptedDialogs.h"

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

class SurveyGenerator {
 public:
  explicit SurveyGenerator(unsigned seed) : random_(seed) {
    numbers_.resize(5000);
    std::iota(numbers_.begin(), numbers_.end(), 1);
    std::shuffle(numbers_.begin(), numbers_.end(), random_);
  }

  Survey Make() {
    Survey survey;
    // The limits of the separator codes are among them: 1 and 255, and 0 and 255 for the
    // sub-value separator.
    survey.FieldSeparator = OneOf({',', '\t', ';', '|', '\x01', '\xFF'});
    do {
      survey.SubValueSeparator = OneOf({':', '\\', ' ', '_', '\0', '\xFF'});
    } while (survey.SubValueSeparator == survey.FieldSeparator);
    allGps_ = Chance(8);
    gps_ = allGps_ || Chance(40);
    survey.UnitOfMeasure = gps_ ? Pick(1, 5) : Pick(0, 5);
    survey.MagneticDeclination = Chance(50) ? 0.0f : static_cast<float>(Pick(-2400, 2400)) / 8;
    survey.FileTag = Chance(70) ? Words(survey.FieldSeparator) : "";
    for (int n = Pick(0, 3); n > 0; --n) survey.UserComments.push_back("// " + Words(' '));
    survey.WriterOptions = static_cast<std::uint8_t>(Pick(0, 255) & ~kWriteInProgress);
    separator_ = survey.FieldSeparator;
    subValue_ = survey.SubValueSeparator;
    unit_ = survey.UnitOfMeasure;

    bool subDivision = !allGps_ && Chance(40);
    AddMain(survey, subDivision);
    if (subDivision) AddSubDivision(survey);
    for (int n = Pick(0, 2); n > 0; --n) AddLine(survey);
    for (int n = Pick(0, 2); n > 0; --n) AddPoints(survey);

    if (survey.MagneticDeclination != 0) survey.FileFlags |= kFileMagnetic;
    bool link = std::any_of(survey.Points.begin(), survey.Points.end(),
                            [](const Point& point) { return point.PtFlags & kPtLink; });
    if (link || Chance(20)) survey.FileFlags |= kFileOption;
    for (const Point& point : survey.Points)
      survey.JoinPointCount += point.PtFlags & kPtJoin ? 1 : 0;
    return survey;
  }

 private:
  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  bool Chance(int percent) { return Pick(1, 100) <= percent; }
  template <typename T>
  T OneOf(std::initializer_list<T> items) {
    return items.begin()[Pick(0, static_cast<int>(items.size()) - 1)];
  }

  std::string Words(char middle) {
    std::string text = OneOf({"North", "Lot 7", "Creek side", "Parish of Bowen"});
    if (Chance(50)) text += std::string(1, middle) + OneOf({"east", "block 3", "the dam"});
    return text;
  }

  std::string Decimal() {
    return std::to_string(Pick(-999, 999)) + OneOf({"", ".5", ".25", ".125"});
  }
  std::string Bearing() {
    int degrees = Pick(0, 359);
    switch (Pick(0, 3)) {
      case 0:
        return std::to_string(degrees);
      case 1:
        return std::to_string(degrees) + "\xB0" + std::to_string(Pick(0, 59)) + "'";
      case 2:
        return std::to_string(degrees) + "d" + std::to_string(Pick(0, 59)) + "m10s";
      default:
        return std::to_string(degrees) + ".75";
    }
  }
  std::string Length() {
    int whole = Pick(1, 500);
    if (SubUnitsPerUnit(unit_) > 0 && Chance(50)) {
      return std::to_string(whole) + subValue_ + std::to_string(Pick(0, 11));
    }
    return std::to_string(whole) + OneOf({"", ".5", ".05"});
  }
  std::string Gps(bool latitude) {
    int degrees = latitude ? Pick(0, 89) : Pick(0, 179);
    std::string letter = latitude ? OneOf({"N", "S"}) : OneOf({"E", "W"});
    return Chance(50)
               ? std::to_string(degrees) + ".5 " + letter
               : std::to_string(degrees) + "\xB0" + std::to_string(Pick(0, 59)) + "' " + letter;
  }

  Point NewPoint(std::uint8_t flags) {
    Point point;
    point.PtNumber = numbers_[next_++];
    point.PtFlags = flags;
    point.X = static_cast<float>(Pick(-5000, 5000)) / 4;
    point.Y = static_cast<float>(Pick(-5000, 5000)) / 4;
    point.Bearing = static_cast<float>(Pick(0, 3599)) / 10;
    point.Len = static_cast<float>(Pick(0, 4000)) / 8;
    point.GPSLong = Pick(0, 35999) / 100.0;
    point.GPSLat = Pick(-8999, 8999) / 100.0;
    point.HasAlternate = Chance(20);
    point.AltGPSLong = point.GPSLong;
    point.AltGPSLat = point.GPSLat;
    point.AltGPSDelta = Pick(0, 100) / 4.0;
    return point;
  }

  void GiveGps(Point& point) {
    point.InGPSLong = Gps(false);
    point.InGPSLat = Gps(true);
  }
  Point PlanePoint() {
    Point point = NewPoint(kPtXY);
    point.InXA = Decimal();
    point.InYL = Decimal();
    return point;
  }
  Point BearingPoint(bool compass) {
    Point point = NewPoint(kPtBearing);
    if (compass) point.PtMarks = kMarkCompass;
    point.InXA = Bearing();
    point.InYL = Length();
    return point;
  }
  Point GpsPoint() {
    Point point = NewPoint(kPtGps);
    GiveGps(point);
    return point;
  }
  Point ReferencePoint() {
    Point point = NewPoint(kPtReference);
    point.PtRef = AnyAnchor();
    return point;
  }
  // A point made as the file allows for any dataset: co-ordinates or a bearing, perhaps
  // also GPS values.
  Point ShapePoint() {
    if (allGps_) return GpsPoint();
    Point point = OneOf({0, 1, 2}) == 0 ? PlanePoint() : BearingPoint(Chance(50));
    if (gps_ && Chance(25)) {
      point.PtFlags |= kPtGps | kPtAltGps;
      GiveGps(point);
    }
    return point;
  }

  // Points that refer to others name earlier points that are not intermediate, so the
  // references never go round in a circle.
  int AnyAnchor() { return anchors_[Pick(0, static_cast<int>(anchors_.size()) - 1)]; }

  void MakeIntermediate(Point& point) {
    point.PtFlags |= kPtIntermediate;
    if (Chance(30)) point.PtMarks |= kMarkShared;
    if (point.PtFlags & kPtBearing) {
      point.PtRef = AnyAnchor();
      if (Chance(50)) point.InYL.clear();  // the length follows from the line
    }
    if (Chance(40)) point.PtTarget = AnyAnchor();
  }

  void Add(Survey& survey, Point point) {
    if (!(point.PtFlags & kPtIntermediate)) anchors_.push_back(point.PtNumber);
    survey.Points.push_back(std::move(point));
  }

  // Intermediate points may stand anywhere but first, and in an open line not last.
  void AddBody(Survey& survey, int count, bool closed, bool references) {
    for (int k = 1; k < count; ++k) {
      Point point = ShapePoint();
      bool last = k == count - 1;
      if (!allGps_ && Chance(20) && (closed || !last)) {
        MakeIntermediate(point);
      } else if (references && (point.PtFlags & kPtBearing) && Chance(30)) {
        point.PtFlags |= kPtReference;
        point.PtRef = AnyAnchor();
      }
      Add(survey, std::move(point));
    }
  }

  void AddMain(Survey& survey, bool subDivision) {
    bool perimeter = Chance(80);
    survey.Datasets.push_back(Dataset{.DatasetType = perimeter ? kTypeM : kTypeN,
                                      .DatasetStart = survey.PointCount(),
                                      .DatasetTag = Chance(70) ? Words(separator_) : "",
                                      .ClosingBearing = 12.5f,
                                      .ClosingLen = 100});
    int count = Pick(3, 8);
    Point first = allGps_ ? GpsPoint() : PlanePoint();
    if (gps_ && !allGps_) {
      first.PtFlags |= kPtGps | kPtLink;
      GiveGps(first);
    }
    Add(survey, std::move(first));
    AddBody(survey, count, perimeter, false);
    if (subDivision || Chance(15)) {
      int begin = survey.Datasets.back().DatasetStart;
      int a = Pick(begin, survey.PointCount() - 1);
      int b = a;
      while (b == a) b = Pick(begin, survey.PointCount() - 1);
      survey.Points[a].PtFlags |= kPtJoin;
      survey.Points[b].PtFlags |= kPtJoin;
    }
  }

  void AddSubDivision(Survey& survey) {
    Dataset dataset{.DatasetType = kTypeS,
                    .DatasetStart = survey.PointCount(),
                    .DatasetTag = Chance(50) ? Words(separator_) : "",
                    .ClosingBearing = 300,
                    .ClosingLen = 12.25f};
    Point first;
    switch (Pick(0, 2)) {
      case 0:
        first = PlanePoint();
        first.PtMarks = kMarkDummy;
        dataset.DatasetType |= kDatasetHasDummy;
        break;
      case 1:
        first = ReferencePoint();
        break;
      default:
        first = ShapePoint();
        break;
    }
    survey.Datasets.push_back(dataset);
    Add(survey, std::move(first));
    AddBody(survey, Pick(1, 5), true, false);
  }

  void AddLine(Survey& survey) {
    survey.Datasets.push_back(Dataset{.DatasetType = kTypeL,
                                      .DatasetStart = survey.PointCount(),
                                      .DatasetTag = Chance(50) ? Words(separator_) : ""});
    Point first = allGps_ ? GpsPoint() : OneOf({0, 1, 2}) == 0 ? ReferencePoint() : PlanePoint();
    Add(survey, std::move(first));
    AddBody(survey, Pick(1, 5), false, true);
  }

  void AddPoints(Survey& survey) {
    survey.Datasets.push_back(Dataset{.DatasetType = kTypeP,
                                      .DatasetStart = survey.PointCount(),
                                      .DatasetTag = Chance(50) ? Words(separator_) : ""});
    for (int k = Pick(1, 4); k > 0; --k) {
      Point point = ShapePoint();
      if (gps_ && Chance(20)) point = GpsPoint();
      bool first = survey.PointCount() == survey.Datasets.back().DatasetStart;
      bool bearing = point.PtFlags & kPtBearing;
      // A stand-alone bearing is taken from a referenced point, and must be for the first.
      if (bearing && (first || Chance(50))) {
        point.PtRef = AnyAnchor();
        if (first || Chance(50)) point.PtFlags |= kPtReference;
      }
      Add(survey, std::move(point));
    }
  }

  std::mt19937 random_;
  std::vector<int> numbers_;
  std::size_t next_ = 0;
  std::vector<int> anchors_;
  bool gps_ = false, allGps_ = false;
  char separator_ = ',', subValue_ = ':';
  int unit_ = 0;
};

TEST(RoundTripTest, GeneratedSurveysReadBackTheSame) {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Survey generated = SurveyGenerator(seed).Make();
    std::string first = Written(generated);
    Survey read = Loaded(first);
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

std::vector<fs::path> Examples() {
  std::vector<fs::path> paths;
  for (const auto& entry : fs::directory_iterator(PLOTMETER_EXAMPLES_DIR)) {
    if (entry.path().extension() == ".csv") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

TEST(RoundTripTest, ThereAreExamples) { EXPECT_GE(Examples().size(), 5u); }

TEST(RoundTripTest, EveryExampleLoadsCleanlyAndReadsBackTheSame) {
  for (const fs::path& path : Examples()) {
    SCOPED_TRACE(path.filename().string());
    Survey survey;
    ScriptedDialogs dialogs;
    ReadResult read = ReadDataFile(survey, path.string());
    ASSERT_TRUE(CheckLoadedData(survey, read, dialogs)) << dialogs.last().text;
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_EQ(survey.CurrentFileName, path.string());
    EXPECT_FALSE(survey.UserComments.empty());
    std::string text = Written(survey);
    Survey again = Loaded(text);
    ExpectSameEnteredSurvey(survey, again);
    EXPECT_EQ(Written(again), text);
  }
}

// Read, process, write; then read that, process and write again: the same bytes.
TEST(RoundTripTest, ProcessedExamplesAreWrittenTheSameTwice) {
  for (const fs::path& path : Examples()) {
    SCOPED_TRACE(path.filename().string());
    std::string texts[2];
    Survey survey;
    ScriptedDialogs dialogs;
    ASSERT_TRUE(CheckLoadedData(survey, ReadDataFile(survey, path.string()), dialogs));
    for (std::string& text : texts) {
      ProcessingState state;
      ASSERT_TRUE(ResolvePoints(survey, state, kFirstPass, dialogs)) << dialogs.last().text;
      text = Written(survey);
      survey = Loaded(text);
    }
    EXPECT_TRUE(dialogs.boxes.empty());
    EXPECT_EQ(texts[0], texts[1]);
  }
}

}  // namespace
}  // namespace plotmeter
