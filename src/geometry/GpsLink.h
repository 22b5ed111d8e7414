// GPS positions and the survey's plane: the flat-earth offsets between two GPS positions,
// their inverse, and the tie that tells which plane position one GPS position stands at.
#pragma once

#include <cstdint>
#include <optional>

#include "geometry/PlaneGeometry.h"

namespace plotmeter {

// Metres in one minute of arc (one nautical mile), along a parallel and along a meridian.
inline constexpr double kMetresPerMinuteLongitude = 1852.0;
inline constexpr double kMetresPerMinuteLatitude = 1852.0;

// The length of one unit of `UnitOfMeasure` in metres, in single precision as the offsets
// use it; 0 for "<Not specified>" (and any code outside the list), which has no length.
float UnitLengthMetres(int unit);

struct GpsPosition {
  double longitude = 0;  // degrees east, [0, 360)
  double latitude = 0;   // degrees, south negative
};

struct PlaneOffset {
  float east = 0;
  float north = 0;
};

// `longitude` minus `other`, taken the short way round ([-180, 180)), so that a plot that
// straddles the 0 or 180 meridian stays whole.
double LongitudeDifference(double longitude, double other);

// The plane offset of `point` from `other`, in survey units: north = Δlatitude × 1852 ÷ d
// and east = Δlongitude × cos(mean of |latitudes|) × 1852 ÷ d, with d the unit length in
// metres ÷ 60. With no unit length (unit 0) the offset is 0 and `kErrorInvalidData` is
// set in `errorState`.
PlaneOffset GpsOffset(int unit, GpsPosition point, GpsPosition other, std::uint8_t& errorState);

// The inverse of `GpsOffset`: the position whose offset from `origin` is (east, north).
// The latitude is found first, so that the mean latitude of the east offset is the one
// `GpsOffset` will use. nullopt with no unit length, a latitude beyond 90 either way, a
// mean latitude at a pole, or values that are not finite.
std::optional<GpsPosition> GpsAtOffset(int unit, GpsPosition origin, double east, double north);

// One GPS position and the plane position it stands at: the link point, or, in GPS-only
// processing, the first GPS point at the plane's origin.
struct GpsTie {
  GpsPosition gps;
  PlanePoint plane;
};

// The plane position of `gps` through the tie; sets `kErrorInvalidData` as `GpsOffset`.
PlanePoint PlaneFromGps(int unit, const GpsTie& tie, GpsPosition gps, std::uint8_t& errorState);
// The GPS position of the plane position `p` through the tie.
std::optional<GpsPosition> GpsFromPlane(int unit, const GpsTie& tie, PlanePoint p);

}  // namespace plotmeter
