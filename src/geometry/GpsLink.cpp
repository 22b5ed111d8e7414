#include "geometry/GpsLink.h"

#include <array>
#include <cmath>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

namespace {

constexpr std::array<float, kUnitCount> kUnitMetres = {0.0f,    1.0f,      1000.0f,
                                                       0.3048f, 1609.344f, 20.1168f};
constexpr float kMinutesPerDegree = 60.0f;
constexpr double kHalfCircle = 180;
constexpr double kFullCircle = 360;
constexpr double kMaxLatitude = 90;

// The unit length per minute of arc: f ÷ 60, in single precision.
float UnitPerMinute(int unit) { return UnitLengthMetres(unit) / kMinutesPerDegree; }

double MeanLatitudeCosine(double latitude, double other) {
  double mean = (std::fabs(latitude) + std::fabs(other)) / 2;
  return std::cos(mean * kPi / kHalfCircle);
}

double NormalisedLongitude(double longitude) {
  double east = std::fmod(longitude, kFullCircle);
  if (east < 0) east += kFullCircle;
  return east >= kFullCircle ? 0 : east;
}

}  // namespace

float UnitLengthMetres(int unit) {
  return unit >= 0 && unit < kUnitCount ? kUnitMetres[unit] : 0.0f;
}

double LongitudeDifference(double longitude, double other) {
  double difference = std::fmod(longitude - other, kFullCircle);
  if (difference >= kHalfCircle) difference -= kFullCircle;
  if (difference < -kHalfCircle) difference += kFullCircle;
  return difference;
}

PlaneOffset GpsOffset(int unit, GpsPosition point, GpsPosition other, std::uint8_t& errorState) {
  float d = UnitPerMinute(unit);
  if (d == 0) {
    errorState |= kErrorInvalidData;
    return {};
  }
  double north = (point.latitude - other.latitude) * kMetresPerMinuteLatitude / d;
  double east = LongitudeDifference(point.longitude, other.longitude) *
                MeanLatitudeCosine(point.latitude, other.latitude) * kMetresPerMinuteLongitude / d;
  return {NarrowToFloat(east), NarrowToFloat(north)};
}

std::optional<GpsPosition> GpsAtOffset(int unit, GpsPosition origin, double east, double north) {
  float d = UnitPerMinute(unit);
  if (d == 0) return std::nullopt;
  double latitude = origin.latitude + north * d / kMetresPerMinuteLatitude;
  if (!std::isfinite(latitude) || std::fabs(latitude) > kMaxLatitude) return std::nullopt;
  double cosine = MeanLatitudeCosine(latitude, origin.latitude);
  if (!(cosine > 0)) return std::nullopt;
  double longitude = origin.longitude + east * d / (kMetresPerMinuteLongitude * cosine);
  if (!std::isfinite(longitude)) return std::nullopt;
  return GpsPosition{NormalisedLongitude(longitude), latitude};
}

PlanePoint PlaneFromGps(int unit, const GpsTie& tie, GpsPosition gps, std::uint8_t& errorState) {
  PlaneOffset offset = GpsOffset(unit, gps, tie.gps, errorState);
  return {NarrowToFloat(static_cast<double>(tie.plane.x) + offset.east),
          NarrowToFloat(static_cast<double>(tie.plane.y) + offset.north)};
}

std::optional<GpsPosition> GpsFromPlane(int unit, const GpsTie& tie, PlanePoint p) {
  double east = static_cast<double>(p.x) - tie.plane.x;
  double north = static_cast<double>(p.y) - tie.plane.y;
  return GpsAtOffset(unit, tie.gps, east, north);
}

}  // namespace plotmeter
