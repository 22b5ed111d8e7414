#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "geometry/GpsLink.h"
#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "geometry/ResolveSurveyBuilder.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter {
namespace {

using testing::EnteredSurvey;
using testing::ScriptedDialogs;

constexpr double kMinute = 1.0 / 60;
// One minute of longitude at 33° south, in metres, worked out by hand: 1852 × cos 33°.
constexpr double kMinuteEastAt33 = 1553.2;

std::string Degrees(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.9f", value);
  return text;
}

class GpsResolutionTest : public ::testing::Test {
 protected:
  bool Resolve(Survey& survey) { return ResolvePoints(survey, state, kFirstPass, dialogs); }

  PlanePoint PositionOf(const Survey& survey, int i) {
    return {survey.Points[i].X, survey.Points[i].Y};
  }

  ProcessingState state;
  ScriptedDialogs dialogs;
};

// A link point at (100, 200) standing at 151° E 33° S.
EnteredSurvey LinkedSurvey() {
  EnteredSurvey entered;
  entered.Dataset(kTypeM).Xy("100", "200").WithGps("151", "-33").Link();
  return entered;
}

TEST_F(GpsResolutionTest, GpsOnlyPointStandsAtItsOffsetFromTheLinkPoint) {
  Survey survey = LinkedSurvey().Gps(Degrees(151 + kMinute), "-33").Xy("100", "300").Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[1].X, 100 + kMinuteEastAt33, 0.05);
  EXPECT_NEAR(survey.Points[1].Y, 200, 1e-3);
  EXPECT_NEAR(survey.Points[1].GPSLong, 151 + kMinute, 1e-9);
  EXPECT_DOUBLE_EQ(survey.Points[1].GPSLat, -33);
  EXPECT_NEAR(survey.Points[1].Bearing, 90, 1e-3);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
  EXPECT_FALSE(state.GpsArea);
}

TEST_F(GpsResolutionTest, PlanePointsGetGpsValuesThatOffsetBackToThem) {
  Survey survey = LinkedSurvey().Xy("600", "-700").Bearing("45", "300").Build();
  ASSERT_TRUE(Resolve(survey));
  GpsTie tie{{151, -33}, {100, 200}};
  for (int i = 1; i < 3; ++i) {
    const Point& p = survey.Points[i];
    std::uint8_t errors = 0;
    PlanePoint back = PlaneFromGps(kUnitMeters, tie, {p.GPSLong, p.GPSLat}, errors);
    EXPECT_NEAR(back.x, p.X, 1e-3);
    EXPECT_NEAR(back.y, p.Y, 1e-3);
    EXPECT_FALSE(p.HasAlternate);
  }
  // 900 m south of the link is 900 / 1852 minutes of latitude.
  EXPECT_NEAR(survey.Points[1].GPSLat, -33 - 900.0 / 1852 * kMinute, 1e-9);
}

TEST_F(GpsResolutionTest, PointGivenBothWaysGetsItsAlternatePositionAndDelta) {
  Survey survey =
      LinkedSurvey().Xy("100", "1200").WithGps("151", Degrees(-33 + kMinute)).Xy("0", "0").Build();
  ASSERT_TRUE(Resolve(survey));
  const Point& p = survey.Points[1];
  EXPECT_EQ(p.X, 100);
  EXPECT_EQ(p.Y, 1200);
  EXPECT_TRUE(p.HasAlternate);
  EXPECT_NEAR(p.AltX, 100, 1e-3);
  EXPECT_NEAR(p.AltY, 200 + 1852, 1e-2);
  EXPECT_NEAR(p.AltGPSDelta, 852, 1e-2);
  EXPECT_NEAR(p.GPSLat, -33 + kMinute, 1e-9);
  // The alternative GPS values are those of the plane position.
  EXPECT_NEAR(p.AltGPSLat, -33 + 1000.0 / 1852 * kMinute, 1e-9);
  EXPECT_NEAR(p.AltGPSLong, 151, 1e-9);
}

TEST_F(GpsResolutionTest, LinkPointHasNoAlternateOfItsOwn) {
  Survey survey = LinkedSurvey().Xy("0", "0").Xy("0", "50").Build();
  ASSERT_TRUE(Resolve(survey));
  const Point& link = survey.Points[0];
  EXPECT_FALSE(link.HasAlternate);
  EXPECT_EQ(link.AltGPSDelta, 0);
  EXPECT_DOUBLE_EQ(link.GPSLong, 151);
  EXPECT_DOUBLE_EQ(link.GPSLat, -33);
  EXPECT_DOUBLE_EQ(link.AltGPSLong, 151);
}

TEST_F(GpsResolutionTest, GpsPointsBeforeTheLinkPointWaitForARepeatPass) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Gps(Degrees(151 + kMinute), "-33")
                      .Bearing("180", "50")
                      .Xy("100", "200")
                      .WithGps("151", "-33")
                      .Link()
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[0].X, 100 + kMinuteEastAt33, 0.05);
  EXPECT_NEAR(survey.Points[1].Y, 150, 1e-3);
  EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
}

TEST_F(GpsResolutionTest, LinkThatHangsOnAGpsPointCannotBeSettled) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Xy("0", "0")
                      .Gps("151", "-33")
                      .Bearing("90", "10")
                      .WithGps("151.1", "-33")
                      .Link()
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, kResolveFailedTitle);
  EXPECT_EQ(dialogs.last().text,
            "Bad reiterative calculations (for GPS / Inermediate Pt Target data)");
  EXPECT_NE(state.GpsState & kGpsRepassNeeded, 0);
}

TEST_F(GpsResolutionTest, MixedDataWithoutALinkPointIsRefused) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Gps("151", "-33").Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, kResolveFailedTitle);
  EXPECT_EQ(dialogs.last().text,
            "Attempting to generate GPS values without a GPS linked point.\n"
            "Ensure one point is flagged as the designated link point.");
  EXPECT_EQ(dialogs.last().icon, Icon::Critical);
  EXPECT_EQ(dialogs.beeps, 1);
}

TEST_F(GpsResolutionTest, GpsNeededWithoutAnyGpsInputIsRefused) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("1", "0").Build();
  survey.FileFlags |= kFileGpsOnly;
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().text,
            "Attempting to generate GPS values without a GPS reference point.\n"
            "Ensure at least input data for one point also includes GPS values.");
}

TEST_F(GpsResolutionTest, AllGpsSurveyStandsOnItsFirstPointAtTheOrigin) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Gps("151", "-33")
                      .Gps("151", Degrees(-33 - kMinute))
                      .Gps(Degrees(151 + kMinute), Degrees(-33 - kMinute))
                      .Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_TRUE(state.GpsArea);
  EXPECT_EQ(survey.Points[0].X, 0);
  EXPECT_EQ(survey.Points[0].Y, 0);
  EXPECT_NEAR(survey.Points[1].Y, -1852, 1e-2);
  EXPECT_NEAR(survey.Points[1].Bearing, 180, 1e-4);
  EXPECT_NEAR(survey.Points[2].X, 1852 * std::cos((33 + kMinute / 2) * M_PI / 180), 0.05);
}

TEST_F(GpsResolutionTest, LinkNominatedInAllGpsDataIsIgnored) {
  EnteredSurvey entered;
  entered.Dataset(kTypeM).Gps("151", "-33").Gps("151", Degrees(-33 - kMinute)).Link();
  Survey survey = entered.Build();
  ASSERT_TRUE(Resolve(survey));
  EXPECT_TRUE(state.GpsArea);
  EXPECT_EQ(survey.Points[0].X, 0);
  EXPECT_NEAR(survey.Points[1].Y, -1852, 1e-2);
}

TEST_F(GpsResolutionTest, GpsOnlyBasisPlacesEveryGpsPointByItsGpsValues) {
  Survey survey = EnteredSurvey()
                      .Dataset(kTypeM)
                      .Gps("151", "-33")
                      .Xy("500", "500")
                      .WithGps("151", Degrees(-33 + kMinute))
                      .Link()
                      .Bearing("90", "100")
                      .Build();
  survey.FileFlags |= kFileGpsOnly;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_TRUE(state.GpsArea);
  EXPECT_NEAR(survey.Points[1].X, 0, 1e-3);
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
  EXPECT_NEAR(survey.Points[2].X, 100, 1e-3);
}

TEST_F(GpsResolutionTest, GpsWithoutAUnitIsInvalidData) {
  Survey survey = EnteredSurvey(kUnitNotSpecified)
                      .Dataset(kTypeM)
                      .Gps("151", "-33")
                      .Gps("151.1", "-33")
                      .Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().title, kInvalidDataTitle);
  EXPECT_EQ(dialogs.last().text, "Invalid Data found, please check data\nat point 1");
}

TEST_F(GpsResolutionTest, UnreadableGpsTextIsInvalidData) {
  Survey survey = LinkedSurvey().Gps("151", "south").Build();
  EXPECT_FALSE(Resolve(survey));
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.last().text, "Invalid Data found, please check data\nat point 2");
}

TEST_F(GpsResolutionTest, SurveyWithoutGpsClearsOldGpsValues) {
  Survey survey = EnteredSurvey().Dataset(kTypeM).Xy("0", "0").Xy("1", "0").Build();
  survey.Points[1].GPSLong = 5;
  survey.Points[1].HasAlternate = true;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].GPSLong, 0);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
}

}  // namespace
}  // namespace plotmeter
