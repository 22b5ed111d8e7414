#include "geometry/PlaneGeometry.h"

#include <cmath>
#include <limits>

namespace plotmeter {

namespace {

constexpr double kHalfCircle = 180;
constexpr float kFullCircle = 360;

double Radians(double degrees) { return degrees * kPi / kHalfCircle; }

}  // namespace

float NarrowToFloat(double value) {
  constexpr double kFloatMax = std::numeric_limits<float>::max();
  if (std::isnan(value)) return std::numeric_limits<float>::quiet_NaN();
  if (value > kFloatMax) return std::numeric_limits<float>::infinity();
  if (value < -kFloatMax) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(value);
}

bool IsFinite(PlanePoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

PlanePoint PointAtBearing(PlanePoint origin, double bearing, float length) {
  double radians = Radians(bearing);
  float east = NarrowToFloat(length * std::sin(radians));
  float north = NarrowToFloat(length * std::cos(radians));
  return {NarrowToFloat(static_cast<double>(origin.x) + east),
          NarrowToFloat(static_cast<double>(origin.y) + north)};
}

BearingLength LineBearingLength(PlanePoint from, PlanePoint to) {
  double dx = static_cast<double>(to.x) - from.x;
  double dy = static_cast<double>(to.y) - from.y;
  if (dx == 0 && dy == 0) return {};
  if (dx == 0) return {dy > 0 ? 0.0f : 180.0f, NarrowToFloat(std::fabs(dy))};
  if (dy == 0) return {dx > 0 ? 90.0f : 270.0f, NarrowToFloat(std::fabs(dx))};
  double angle = std::atan(dx / dy);
  if (dy < 0) angle += kPi;
  float bearing = NarrowToFloat(angle * kHalfCircle / kPi);
  if (bearing < 0) bearing += kFullCircle;
  if (bearing == 0) bearing = 0;  // never -0
  return {bearing, NarrowToFloat(dx / std::sin(angle))};
}

}  // namespace plotmeter
