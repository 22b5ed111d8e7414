// GPS values resolved through the link point; the GPS faults are rows of the fault table
// in ResolvePointsTest.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "geometry/GpsLink.h"
#include "support/EnteredSurvey.h"

namespace plotmeter {
namespace {

using testing::Entered;
using testing::ScriptedDialogs;

constexpr double kMinute = 1.0 / 60;
// One minute of longitude at 33° south, in metres, worked out by hand: 1852 × cos 33°.
constexpr double kMinuteEastAt33 = 1553.2;

std::string Degrees(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.9f", value);
  return text;
}

using GpsResolutionTest = testing::ResolveFixture;

// A link point at (100, 200) standing at 151° E 33° S, then `lines`.
Survey Linked(const std::string& lines) { return Entered("H,M\n1,XL,,,100,200,151,-33\n" + lines); }

TEST_F(GpsResolutionTest, GpsOnlyPointStandsAtItsOffsetFromTheLinkPoint) {
  Survey survey = Linked("2,G,,,,," + Degrees(151 + kMinute) + ",-33\n3,X,,,100,300");
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
  Survey survey = Linked("2,X,,,600,-700\n3,B,,,45,300");
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
  // The link point has no alternate of its own.
  const Point& link = survey.Points[0];
  EXPECT_FALSE(link.HasAlternate);
  EXPECT_EQ(link.AltGPSDelta, 0);
  EXPECT_DOUBLE_EQ(link.GPSLong, 151);
  EXPECT_DOUBLE_EQ(link.GPSLat, -33);
  EXPECT_DOUBLE_EQ(link.AltGPSLong, 151);
}

TEST_F(GpsResolutionTest, PointGivenBothWaysGetsItsAlternatePositionAndDelta) {
  Survey survey = Linked("2,XA,,,100,1200,151," + Degrees(-33 + kMinute) + "\n3,X,,,0,0");
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

TEST_F(GpsResolutionTest, GpsPointsBeforeTheLinkPointWaitForARepeatPass) {
  Survey survey = Entered("H,M\n1,G,,,,," + Degrees(151 + kMinute) +
                          ",-33\n2,B,,,180,50\n3,XL,,,100,200,151,-33");
  ASSERT_TRUE(Resolve(survey));
  EXPECT_NEAR(survey.Points[0].X, 100 + kMinuteEastAt33, 0.05);
  EXPECT_NEAR(survey.Points[1].Y, 150, 1e-3);
  EXPECT_EQ(state.GpsState & kGpsRepassNeeded, 0);
  EXPECT_NE(state.ProcessState & kPassComplete, 0);
}

TEST_F(GpsResolutionTest, AllGpsSurveyStandsOnItsFirstPointAtTheOriginIgnoringALink) {
  for (const char* link : {"", "L"}) {
    Survey survey = Entered("H,M\n1,G,,,,,151,-33\n2,G" + std::string(link) + ",,,,,151," +
                            Degrees(-33 - kMinute) + "\n3,G,,,,," + Degrees(151 + kMinute) + "," +
                            Degrees(-33 - kMinute));
    ASSERT_TRUE(Resolve(survey)) << link;
    EXPECT_TRUE(state.GpsArea);
    EXPECT_EQ(survey.Points[0].X, 0);
    EXPECT_EQ(survey.Points[0].Y, 0);
    EXPECT_NEAR(survey.Points[1].Y, -1852, 1e-2);
    EXPECT_NEAR(survey.Points[1].Bearing, 180, 1e-4);
    EXPECT_NEAR(survey.Points[2].X, 1852 * std::cos((33 + kMinute / 2) * M_PI / 180), 0.05);
  }
}

TEST_F(GpsResolutionTest, GpsOnlyBasisPlacesEveryGpsPointByItsGpsValues) {
  Survey survey = Entered("H,M\n1,G,,,,,151,-33\n2,XL,,,500,500,151," + Degrees(-33 + kMinute) +
                          "\n3,B,,,90,100");
  survey.FileFlags |= kFileGpsOnly;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_TRUE(state.GpsArea);
  EXPECT_NEAR(survey.Points[1].X, 0, 1e-3);
  EXPECT_NEAR(survey.Points[1].Y, 1852, 1e-2);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
  EXPECT_NEAR(survey.Points[2].X, 100, 1e-3);
}

TEST_F(GpsResolutionTest, SurveyWithoutGpsClearsOldGpsValues) {
  Survey survey = Entered("H,M\n1,X,,,0,0\n2,X,,,1,0");
  survey.Points[1].GPSLong = 5;
  survey.Points[1].HasAlternate = true;
  ASSERT_TRUE(Resolve(survey));
  EXPECT_EQ(survey.Points[1].GPSLong, 0);
  EXPECT_FALSE(survey.Points[1].HasAlternate);
}

}  // namespace
}  // namespace plotmeter
