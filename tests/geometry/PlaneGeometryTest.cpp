// The plane's arithmetic and the GPS offsets that tie GPS positions to it.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "geometry/GpsLink.h"
#include "geometry/PlaneGeometry.h"
#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {
namespace {

TEST(PointAtBearingTest, RoundsEachProductToSinglePrecisionBeforeAdding) {
  // With the origin far out, adding the unrounded double product would round differently.
  PlanePoint origin{1000.5f, -2000.25f};
  double bearing = 33.3;
  float length = 7.77f;
  double radians = bearing * kPi / 180;
  float east = static_cast<float>(length * std::sin(radians));
  float north = static_cast<float>(length * std::cos(radians));
  PlanePoint p = PointAtBearing(origin, bearing, length);
  EXPECT_EQ(p.x, origin.x + east);
  EXPECT_EQ(p.y, origin.y + north);
}

// Along an axis the arctangent rule would divide by 0: exact bearings and lengths instead.
// Elsewhere the length is the sine rule's, not the square root's.
TEST(LineBearingLengthTest, AxesAreExactAndTheLengthComesFromTheSine) {
  const struct {
    PlanePoint to;
    float bearing, length;
  } rows[] = {
      {{3, 9}, 0, 5}, {{8, 4}, 90, 5}, {{3, -1}, 180, 5}, {{-2.5f, 4}, 270, 5.5f}, {{3, 4}, 0, 0}};
  for (const auto& row : rows) {
    BearingLength line = LineBearingLength({3, 4}, row.to);
    EXPECT_EQ(line.bearing, row.bearing) << row.to.x << ", " << row.to.y;
    EXPECT_EQ(line.length, row.length) << row.to.x << ", " << row.to.y;
  }
  double angle = std::atan(3.0 / 4.0);
  BearingLength line = LineBearingLength({0, 0}, {3, 4});
  EXPECT_EQ(line.length, static_cast<float>(3.0 / std::sin(angle)));
  EXPECT_EQ(line.bearing, static_cast<float>(angle * 180 / kPi));
}

TEST(LineBearingLengthTest, AgreesWithAtan2AndHypotInEveryQuadrant) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> coordinate(-500, 500);
  for (int n = 0; n < 2000; ++n) {
    PlanePoint from{coordinate(random), coordinate(random)};
    PlanePoint to{coordinate(random), coordinate(random)};
    double dx = static_cast<double>(to.x) - from.x;
    double dy = static_cast<double>(to.y) - from.y;
    double expected = std::atan2(dx, dy) * 180 / M_PI;
    if (expected < 0) expected += 360;
    BearingLength line = LineBearingLength(from, to);
    double difference = std::fabs(line.bearing - expected);
    EXPECT_LT(std::min(difference, 360 - difference), 1e-3) << dx << ", " << dy;
    EXPECT_NEAR(line.length, std::hypot(dx, dy), 1e-3 * std::hypot(dx, dy) + 1e-4);
    EXPECT_GE(line.bearing, 0);
    EXPECT_LE(line.bearing, 360);
  }
}

TEST(NarrowToFloatTest, GivesInfinitiesBeyondTheFloatRange) {
  EXPECT_EQ(NarrowToFloat(1e300), std::numeric_limits<float>::infinity());
  EXPECT_EQ(NarrowToFloat(-1e300), -std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(NarrowToFloat(std::nan(""))));
  EXPECT_EQ(NarrowToFloat(0.5), 0.5f);
}

// ---- GPS positions and the plane ----

constexpr double kMinute = 1.0 / 60;

// One minute of latitude is 1852 m; one minute of longitude is 1852 m times the cosine of
// the mean latitude. Hand-computed in the units' own lengths. (Without a unit there is
// no offset: the fault row GpsWithoutAUnit in ResolvePointsTest.)
TEST(GpsOffsetTest, MatchesTheNauticalMileRule) {
  const struct {
    int unit;
    GpsPosition point, other;
    double east, north;  // survey units
  } rows[] = {{kUnitMeters, {0, kMinute}, {0, 0}, 0, 1852},
              {kUnitMeters, {kMinute, 0}, {0, 0}, 1852, 0},
              {kUnitMeters, {150 + kMinute, -60}, {150, -60}, 926, 0},
              {kUnitMeters, {150, -60 - 2 * kMinute}, {150, -60}, 0, -3704},
              {kUnitFeet, {0, kMinute}, {0, 0}, 0, 1852 / 0.3048},
              {kUnitMiles, {0, 10 * kMinute}, {0, 0}, 0, 18520 / 1609.344},
              {kUnitChains, {kMinute, 0}, {0, 0}, 1852 / 20.1168, 0},
              // Across the 0 meridian: 359.999 E is 0.001 W, the short way round.
              {kUnitMeters, {0.001, 0}, {359.999, 0}, 0.002 * 60 * 1852, 0}};
  for (const auto& row : rows) {
    std::uint8_t errors = 0;
    PlaneOffset offset = GpsOffset(row.unit, row.point, row.other, errors);
    EXPECT_NEAR(offset.east, row.east, std::fabs(row.east) * 1e-6 + 1e-3) << row.point.longitude;
    EXPECT_NEAR(offset.north, row.north, std::fabs(row.north) * 1e-6 + 1e-3) << row.unit;
    EXPECT_EQ(errors, 0);
  }
}

TEST(LongitudeDifferenceTest, TakesTheShortWayRound) {
  EXPECT_DOUBLE_EQ(LongitudeDifference(10, 350), 20);
  EXPECT_DOUBLE_EQ(LongitudeDifference(350, 10), -20);
}

TEST(GpsFromPlaneTest, OffsetsBackToThePlanePoint) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> coordinate(-5000, 5000);
  std::uniform_real_distribution<double> latitude(-70, 70);
  std::uniform_real_distribution<double> longitude(0, 360);
  for (int unit = kUnitMeters; unit < kUnitCount; ++unit) {
    for (int n = 0; n < 300; ++n) {
      // Up to some 5 km from the tie in every unit.
      float scale = 1 / UnitLengthMetres(unit);
      GpsTie tie{{longitude(random), latitude(random)},
                 {coordinate(random) * scale, coordinate(random) * scale}};
      PlanePoint p{tie.plane.x + coordinate(random) * scale,
                   tie.plane.y + coordinate(random) * scale};
      std::optional<GpsPosition> gps = GpsFromPlane(unit, tie, p);
      ASSERT_TRUE(gps.has_value());
      EXPECT_GE(gps->longitude, 0);
      EXPECT_LT(gps->longitude, 360);
      std::uint8_t errors = 0;
      PlanePoint back = PlaneFromGps(unit, tie, *gps, errors);
      EXPECT_NEAR(back.x, p.x, 1e-3 * scale) << unit;
      EXPECT_NEAR(back.y, p.y, 1e-3 * scale) << unit;
      EXPECT_EQ(errors, 0);
    }
  }
}

TEST(GpsAtOffsetTest, RefusesPositionsBeyondAPoleAndMissingUnits) {
  GpsPosition origin{10, 89.9};
  EXPECT_FALSE(GpsAtOffset(kUnitMeters, origin, 0, 1e6).has_value());
  EXPECT_FALSE(GpsAtOffset(kUnitNotSpecified, origin, 0, 1).has_value());
  EXPECT_FALSE(GpsAtOffset(kUnitMeters, origin, std::nan(""), 1).has_value());
  EXPECT_TRUE(GpsAtOffset(kUnitMeters, origin, 0, -1e5).has_value());
}

}  // namespace
}  // namespace plotmeter
