// Surveys as a damaged file or a careless edit could leave them: resolution must end in
// a result or one message, never a crash, a hang or a value that is not a number.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <string>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::ScriptedDialogs;

constexpr std::array<const char*, 22> kTexts = {
    "",       "0",     "10",   "-5",        "3e38", "1e39",  "nan",       "inf",
    "10\\60", "abc",   "5\\6", "151",       "-33",  "S33.5", "E151 12.5", "95",
    "-200",   "1e-40", "2.5",  "27d42m50s", " ",    "33.5 S"};

class RandomSurveys {
 public:
  explicit RandomSurveys(unsigned seed) : random_(seed) {}

  Survey Next() {
    Survey survey;
    survey.UnitOfMeasure = Pick(7);
    survey.SubValueSeparator = std::array<char, 4>{'\\', ' ', ':', '\0'}[Pick(4)];
    survey.FileFlags = static_cast<std::uint8_t>(Pick(8));
    survey.MagneticDeclination = Pick(2) ? 0.0f : 3.5f;
    int count = Pick(14);
    for (int i = 0; i < count; ++i) survey.Points.push_back(RandomPoint(count));
    int datasets = Pick(4);
    int start = 0;
    for (int d = 0; d < datasets; ++d) {
      if (d > 0) start += Pick(count + 1 - start);
      if (Pick(20) == 0) start = Pick(count + 3) - 1;  // now and then out of order
      Dataset set;
      set.DatasetType =
          std::array<std::uint8_t, 7>{kTypeM, kTypeN, kTypeS, kTypeL, kTypeP, 0, 255}[Pick(7)];
      set.DatasetStart = start;
      survey.Datasets.push_back(set);
    }
    return survey;
  }

 private:
  int Pick(int n) { return n <= 0 ? 0 : std::uniform_int_distribution<int>(0, n - 1)(random_); }
  std::string Text() { return kTexts[Pick(static_cast<int>(kTexts.size()))]; }

  Point RandomPoint(int count) {
    Point p;
    std::array<std::uint8_t, 8> common = {kPtXY,
                                          kPtBearing,
                                          kPtGps,
                                          kPtReference,
                                          kPtXY | kPtIntermediate,
                                          kPtBearing | kPtIntermediate,
                                          kPtXY | kPtGps | kPtLink,
                                          kPtBearing | kPtReference};
    p.PtFlags = Pick(4) ? common[Pick(8)] : static_cast<std::uint8_t>(Pick(256));
    p.PtNumber = Pick(5) ? Pick(count + 4) - 2 : 1;
    p.PtRef = Pick(count + 4) - 1;
    p.PtTarget = Pick(3) ? 0 : Pick(count + 4) - 1;
    p.InXA = Text();
    p.InYL = Text();
    p.InGPSLong = Text();
    p.InGPSLat = Text();
    p.PtMarks = static_cast<std::uint8_t>(Pick(256));
    return p;
  }

  std::mt19937 random_;
};

TEST(ResolveRobustnessTest, EveryDamagedSurveyEndsInAResultOrOneMessage) {
  RandomSurveys surveys(2024);
  int resolved = 0;
  for (int n = 0; n < 20000; ++n) {
    Survey survey = surveys.Next();
    ProcessingState state;
    ScriptedDialogs dialogs;
    bool ok = ResolvePoints(survey, state, kFirstPass, dialogs);
    if (ok) {
      ++resolved;
      EXPECT_TRUE(dialogs.boxes.empty());
      for (const Point& p : survey.Points) {
        ASSERT_TRUE(std::isfinite(p.X) && std::isfinite(p.Y)) << "survey " << n;
        ASSERT_TRUE(std::isfinite(p.Bearing) && std::isfinite(p.Len)) << "survey " << n;
      }
    } else {
      ASSERT_EQ(dialogs.boxes.size(), 1u) << "survey " << n;
      EXPECT_EQ(dialogs.beeps, 1);
      EXPECT_FALSE(dialogs.last().text.empty());
      EXPECT_EQ(state.ErrorState & ~kErrorExitMask, 0);
    }
    for (int i = 0; i < survey.PointCount(); ++i) {
      ScriptedDialogs entry;
      bool accepted = CheckEnteredPoint(survey, state, i, entry);
      EXPECT_EQ(entry.boxes.size(), accepted ? 0u : 1u) << "survey " << n << " point " << i;
    }
  }
  // The generator must reach the resolving paths, not only the faults.
  EXPECT_GT(resolved, 500);
}

}  // namespace
}  // namespace plotmeter
