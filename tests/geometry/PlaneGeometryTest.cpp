#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "geometry/PlaneGeometry.h"

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

}  // namespace
}  // namespace plotmeter
