// What `plotmeter-cli export` takes from a processed survey, before any file format:
// every point as a table row, and, for a survey tied to GPS, the features of a map (the
// perimeter and the parts of a divided plot as rings, lines, stand-alone points) in
// WGS 84 longitude and latitude. Text is UTF-8.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "geometry/ProcessingState.h"
#include "model/Survey.h"

namespace plotmeter {

// Decimal degrees: longitude east in [-180, 180), latitude north.
struct LonLat {
  double longitude = 0;
  double latitude = 0;
};

struct ExportPoint {
  int number = 0;
  std::string type;  // as the listing shows it: "XL", "G"
  int dataset = 0;   // dataset number, from 1
  char datasetType = 0;
  std::string datasetTag;
  float x = 0, y = 0, bearing = 0, length = 0;
  // The point's GPS values as saved (GPSLong, GPSLat); none when not tied to GPS.
  std::optional<LonLat> gps;
};

enum class Geometry { kPolygon, kLineString, kPoint };

struct ExportFeature {
  Geometry geometry = Geometry::kPoint;
  // Each point where the plot is drawn and measured: its plane position through the GPS
  // tie. A polygon's ring is closed (its last position repeats its first) and runs
  // counter-clockwise.
  std::vector<LonLat> positions;
  char datasetType = 0;
  std::string tag;
  std::optional<double> area;  // polygons: in the survey's area unit
  int part = 0;                // 1 or 2 for the parts of a divided plot, else 0
  int number = 0;              // a stand-alone point's number, else 0
};

struct ExportedSurvey {
  std::string file;  // names the file when several share one document, else empty
  std::string fileTag;
  std::string areaUnit;  // the area unit's list text: "Hectares"
  std::vector<ExportPoint> points;
  bool tiedToGps = false;
  std::vector<ExportFeature> features;  // empty unless tied to GPS
};

// True when the survey's points have GPS values: some point carries GPS input, which
// processing ties to the plane through the GPS link point (or, in GPS-only processing,
// through the first GPS point).
bool TiedToGps(const Survey& survey);

// `longitude` east in degrees, any turn, as a longitude in [-180, 180).
double SignedLongitude(double longitude);

// Reverses a closed ring that runs clockwise. Longitudes are taken relative to the first
// position, so that a ring across the 180 meridian keeps its sense.
void MakeCounterClockwise(std::vector<LonLat>& ring);

// Everything the export needs from a survey that processing has resolved, its areas in
// the area unit `areaUnit` (an index in the main window's list).
ExportedSurvey CollectExport(const Survey& survey, const ProcessingState& state, int areaUnit);

}  // namespace plotmeter
