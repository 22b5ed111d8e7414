#include "cli/SurveyExport.h"

#include <algorithm>
#include <utility>

#include "cli/TextOutput.h"
#include "geometry/Area.h"
#include "geometry/GpsLink.h"
#include "geometry/PartOutlines.h"
#include "model/TypeLetters.h"
#include "ui/DataListing.h"

namespace plotmeter {

namespace {

LonLat GpsOf(const Point& point) { return {SignedLongitude(point.GPSLong), point.GPSLat}; }

// Where the plot is drawn and measured: the plane position through the tie. A point given
// both in the plane and by GPS keeps its entered GPS values; its plane position's are the
// alternate ones.
LonLat MapPositionOf(const Point& point) {
  if (!point.HasAlternate) return GpsOf(point);
  return {SignedLongitude(point.AltGPSLong), point.AltGPSLat};
}

std::vector<int> AllPoints(const Survey& survey, int d) {
  const PointRange range = DatasetPoints(survey, d);
  std::vector<int> indexes;
  for (int i = range.begin; i < range.end; ++i) indexes.push_back(i);
  return indexes;
}

class ExportCollector {
 public:
  ExportCollector(const Survey& survey, const ProcessingState& state, int areaUnit)
      : survey_(survey), state_(state), areaUnit_(areaUnit) {}

  ExportedSurvey Collect() {
    ExportedSurvey exported;
    exported.fileTag = Utf8FromLatin1(survey_.FileTag);
    exported.areaUnit = std::string(AreaUnitName(areaUnit_));
    exported.tiedToGps = TiedToGps(survey_);
    for (int d = 0; d < survey_.DatasetCount(); ++d) {
      AddPoints(d, exported);
      if (exported.tiedToGps) AddFeatures(d, exported.features);
    }
    return exported;
  }

 private:
  void AddPoints(int d, ExportedSurvey& exported) const {
    const Dataset& set = survey_.Datasets[d];
    for (int i : AllPoints(survey_, d)) {
      const Point& point = survey_.Points[i];
      ExportPoint& row = exported.points.emplace_back();
      row.number = point.PtNumber;
      row.type = PointTypeField(point);
      row.dataset = d + 1;
      row.datasetType = DatasetLetter(set.DatasetType);
      row.datasetTag = Utf8FromLatin1(set.DatasetTag);
      row.x = point.X;
      row.y = point.Y;
      row.bearing = point.Bearing;
      row.length = point.Len;
      if (exported.tiedToGps) row.gps = GpsOf(point);
    }
  }

  // The main perimeter as a ring and a divided plot's parts beside it; a sub-division
  // that divides the plot is shown by those parts. Other datasets as drawn: lines through
  // their shape points, stand-alone points one by one.
  void AddFeatures(int d, std::vector<ExportFeature>& features) const {
    const std::uint8_t type = survey_.Datasets[d].DatasetType;
    if ((type & kDatasetMain) && (type & kDatasetPerimeter)) {
      AddShape(d, ShapePoints(survey_, d), AllPoints(survey_, d), 0, features);
      if (Divided()) {
        for (int part = 1; part <= 2; ++part) AddPart(part, features);
      }
    } else if (type & kDatasetPoints) {
      for (int i : AllPoints(survey_, d)) {
        ExportFeature& feature = Add(d, {MapPositionOf(survey_.Points[i])}, features);
        feature.number = survey_.Points[i].PtNumber;
      }
    } else if (!((type & kDatasetSubDivision) && Divided())) {
      AddShape(d, ShapePoints(survey_, d), {}, 0, features);
    }
  }

  bool Divided() const {
    return (state_.AreaState & kAreaSegmentCount) && !state_.PartOutlines[0].empty() &&
           !state_.PartOutlines[1].empty();
  }

  void AddPart(int part, std::vector<ExportFeature>& features) const {
    const std::vector<int>& outline = state_.PartOutlines[part - 1];
    int sub = survey_.FindDataset(kDatasetSubDivision);
    ExportFeature* feature = AddShape(sub, outline, outline, part, features);
    if (feature && sub < 0) feature->datasetType = DatasetLetter(kTypeS);
  }

  // A closed shape (one with an outline for its area) becomes a polygon when it has three
  // corners or more; fewer make a line or a point, and no area.
  ExportFeature* AddShape(int d, const std::vector<int>& shape, const std::vector<int>& outline,
                          int part, std::vector<ExportFeature>& features) const {
    if (shape.empty()) return nullptr;
    std::vector<LonLat> positions;
    for (int i : shape) positions.push_back(MapPositionOf(survey_.Points[i]));
    const bool polygon = !outline.empty() && positions.size() >= 3;
    if (polygon) positions.push_back(positions.front());
    ExportFeature& feature = Add(d, std::move(positions), features);
    feature.part = part;
    if (polygon) {
      feature.geometry = Geometry::kPolygon;
      MakeCounterClockwise(feature.positions);
      feature.area = ConvertArea(OutlineArea(survey_, outline), survey_.UnitOfMeasure, areaUnit_);
    } else if (feature.positions.size() > 1) {
      feature.geometry = Geometry::kLineString;
    }
    return &feature;
  }

  // A feature of dataset `d` (none when `d` is -1), a point until told otherwise.
  ExportFeature& Add(int d, std::vector<LonLat> positions,
                     std::vector<ExportFeature>& features) const {
    ExportFeature& feature = features.emplace_back();
    feature.positions = std::move(positions);
    if (d >= 0) {
      feature.datasetType = DatasetLetter(survey_.Datasets[d].DatasetType);
      feature.tag = Utf8FromLatin1(survey_.Datasets[d].DatasetTag);
    }
    return feature;
  }

  const Survey& survey_;
  const ProcessingState& state_;
  int areaUnit_;
};

}  // namespace

bool TiedToGps(const Survey& survey) {
  return std::any_of(survey.Points.begin(), survey.Points.end(),
                     [](const Point& point) { return (point.PtFlags & kPtGps) != 0; });
}

double SignedLongitude(double longitude) { return LongitudeDifference(longitude, 0); }

void MakeCounterClockwise(std::vector<LonLat>& ring) {
  if (ring.empty()) return;
  const LonLat first = ring.front();
  // Twice the signed area (shoelace), positive for a counter-clockwise ring.
  double twiceArea = 0;
  for (std::size_t k = 0; k + 1 < ring.size(); ++k) {
    double x0 = LongitudeDifference(ring[k].longitude, first.longitude);
    double x1 = LongitudeDifference(ring[k + 1].longitude, first.longitude);
    twiceArea +=
        x0 * (ring[k + 1].latitude - first.latitude) - x1 * (ring[k].latitude - first.latitude);
  }
  if (twiceArea < 0) std::reverse(ring.begin(), ring.end());
}

ExportedSurvey CollectExport(const Survey& survey, const ProcessingState& state, int areaUnit) {
  return ExportCollector(survey, state, areaUnit).Collect();
}

}  // namespace plotmeter
