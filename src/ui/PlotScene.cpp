#include "ui/PlotScene.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>

#include "geometry/PartOutlines.h"
#include "model/NumberFormat.h"

namespace plotmeter {

namespace {

bool Drawn(const Survey& survey, int d, std::uint8_t kindMask) {
  return (survey.Datasets[d].DatasetType & kDatasetKindMask & kindMask) != 0;
}

bool HasDistinctAlternate(const Point& point) {
  return point.HasAlternate && (point.AltX != point.X || point.AltY != point.Y);
}

bool ErrorMarked(const Point& point) { return (point.PtMarks & kMarkErrorLine) != 0; }

struct Extent {
  bool empty = true;
  bool finite = true;
  double minX = 0, minY = 0, maxX = 0, maxY = 0;

  void Widen(float x, float y) {
    finite = finite && std::isfinite(x) && std::isfinite(y);
    if (empty) {
      minX = maxX = x;
      minY = maxY = y;
      empty = false;
      return;
    }
    minX = std::min<double>(minX, x);
    maxX = std::max<double>(maxX, x);
    minY = std::min<double>(minY, y);
    maxY = std::max<double>(maxY, y);
  }
  // A range beyond single precision would have overflowed the program's own arithmetic.
  bool LaysOut() const { return finite && maxX - minX <= FLT_MAX && maxY - minY <= FLT_MAX; }
};

// Starts from the first drawn point rather than from a fixed record, so that a point
// that is not drawn never widens the drawing.
Extent DrawnExtent(const Survey& survey, std::uint8_t kindMask) {
  Extent extent;
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    if (!Drawn(survey, d, kindMask)) continue;
    auto [begin, end] = DatasetPoints(survey, d);
    for (int i = begin; i < end; ++i) {
      const Point& point = survey.Points[i];
      extent.Widen(point.X, point.Y);
      if (HasDistinctAlternate(point)) extent.Widen(point.AltX, point.AltY);
    }
  }
  if (extent.empty) extent.Widen(0, 0);
  return extent;
}

// One scale for both axes, from the axis whose range fills its available size first;
// the other axis is centred.
bool Fit(const Extent& extent, PlotScene& scene) {
  double availableWidth = scene.width - 2.0 * scene.margin;
  double availableHeight = scene.height - 2.0 * scene.margin;
  if (!(availableWidth > 0 && availableHeight > 0)) return false;
  double rangeX = extent.maxX - extent.minX, rangeY = extent.maxY - extent.minY;
  if (rangeX == 0 && rangeY == 0) {
    scene.scale = availableWidth;  // one unit of length across
  } else if (rangeX / availableWidth >= rangeY / availableHeight) {
    scene.scale = availableWidth / rangeX;
  } else {
    scene.scale = availableHeight / rangeY;
  }
  if (!std::isfinite(scene.scale) || !(scene.scale > 0)) return false;
  scene.xOffset = scene.margin + (availableWidth - rangeX * scene.scale) / 2;
  scene.yOffset = scene.margin + (availableHeight - rangeY * scene.scale) / 2;
  scene.minX = static_cast<float>(extent.minX);
  scene.minY = static_cast<float>(extent.minY);
  scene.maxX = static_cast<float>(extent.maxX);
  scene.maxY = static_cast<float>(extent.maxY);
  return true;
}

struct ScreenXY {
  float x = 0, y = 0;
};

// The Y axis is turned over so that north (growing Y) is at the top.
ScreenXY OnScreen(const PlotScene& scene, float x, float y) {
  return {static_cast<float>(scene.left + scene.xOffset + (x - scene.minX) * scene.scale),
          static_cast<float>(scene.top + scene.height - scene.yOffset -
                             (y - scene.minY) * scene.scale)};
}

MarkerRole RoleOf(const Survey& survey, int d, int i, bool errorLines) {
  const Point& point = survey.Points[i];
  std::uint8_t type = survey.Datasets[d].DatasetType;
  bool closedKind = (type & (kDatasetMain | kDatasetSubDivision)) != 0;
  if (errorLines && ErrorMarked(point)) return MarkerRole::kError;
  if (closedKind && i == survey.Datasets[d].DatasetStart) return MarkerRole::kStart;
  if (point.PtFlags & kPtIntermediate) return MarkerRole::kIntermediate;
  if (type & kDatasetLine) return MarkerRole::kLine;
  if (type & kDatasetPoints) return MarkerRole::kStandAlone;
  return MarkerRole::kPerimeter;
}

class SceneBuilder {
 public:
  SceneBuilder(const Survey& survey, const ProcessingState& state, std::uint8_t mode,
               PlotScene& scene)
      : survey_(survey),
        state_(state),
        errorLines_((mode & kModeErrorLines) != 0),
        kindMask_(KindMask(mode)),
        scene_(scene) {}

  void DrawDatasets() {
    for (int d = 0; d < survey_.DatasetCount(); ++d) {
      if (!Drawn(survey_, d, kindMask_)) continue;
      DrawMarkers(d);
      DrawLines(d);
    }
    if (path_ && path_->subDataset < 0 && (kindMask_ & kDatasetSubDivision)) {
      Line(path_->startJoin, path_->endJoin, path_->closingOwner, LineRole::kClosing);
    }
  }

  void DrawAlternates() {
    for (int i = 0; i < survey_.PointCount(); ++i) {
      const Point& point = survey_.Points[i];
      if (!scene_.screen[i].drawn || !HasDistinctAlternate(point)) continue;
      ScreenXY at = OnScreen(scene_, point.AltX, point.AltY);
      Rgb magenta = ColourOf(LineRole::kAlternate);
      scene_.markers.push_back(
          {i, at.x, at.y, scene_.markerSize, MarkerRole::kAlternate, magenta, magenta, true});
      scene_.lines.push_back(
          {scene_.screen[i].x, scene_.screen[i].y, at.x, at.y, LineRole::kAlternate, magenta, i});
    }
  }

  // The label stands at the centre of the sub-division's own extent.
  void PlaceSubDivisionLabel() {
    int d = survey_.FindDataset(kDatasetSubDivision);
    if (d < 0 || !Drawn(survey_, d, kindMask_)) return;
    auto [begin, end] = DatasetPoints(survey_, d);
    if (begin >= end) return;
    Extent own;
    for (int i = begin; i < end; ++i) own.Widen(survey_.Points[i].X, survey_.Points[i].Y);
    ScreenXY at = OnScreen(scene_, static_cast<float>((own.minX + own.maxX) / 2),
                           static_cast<float>((own.minY + own.maxY) / 2));
    std::string tag = Trimmed(survey_.Datasets[d].DatasetTag);
    scene_.LotLbl = {tag.empty() ? "Sub-division" : tag, at.x, at.y, LabelAnchor::kCentre, true};
  }

 private:
  static std::string Trimmed(const std::string& text) {
    std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
  }

  void DrawMarkers(int d) {
    auto [begin, end] = DatasetPoints(survey_, d);
    for (int i = begin; i < end; ++i) {
      const Point& point = survey_.Points[i];
      ScreenXY at = OnScreen(scene_, point.X, point.Y);
      MarkerRole role = RoleOf(survey_, d, i, errorLines_);
      MarkerColours colours = ColoursOf(role);
      float size = scene_.markerSize * (i == state_.SelectedPoint ? kSelectedMarkerScale : 1);
      scene_.markers.push_back({i, at.x, at.y, size, role, colours.border, colours.fill, false});
      scene_.screen[i] = {at.x, at.y, true};
    }
  }

  void DrawLines(int d) {
    std::uint8_t type = survey_.Datasets[d].DatasetType;
    if (type & kDatasetPoints) return;
    LineRole role = (type & kDatasetLine) ? LineRole::kOther : LineRole::kPerimeter;
    std::vector<int> shape = ShapePoints(survey_, d);
    if ((type & kDatasetSubDivision) && path_ && path_->subDataset == d) {
      DrawDivision();
      return;
    }
    for (std::size_t k = 1; k < shape.size(); ++k) Line(shape[k - 1], shape[k], shape[k], role);
    bool closed = (type & kDatasetMain) && (type & kDatasetPerimeter);
    if (closed && shape.size() > 1) {
      Line(shape.back(), shape.front(), shape.front(), LineRole::kClosing);
    }
  }

  // From the start join point through the division's shape points; the automatic last
  // line to the end join point is its closing line.
  void DrawDivision() {
    int from = path_->startJoin;
    for (int v : path_->vertices) {
      if (survey_.Points[v].PtFlags & kPtIntermediate) continue;
      Line(from, v, v, LineRole::kPerimeter);
      from = v;
    }
    Line(from, path_->endJoin, path_->closingOwner, LineRole::kClosing);
  }

  void Line(int from, int to, int endsAt, LineRole role) {
    if (errorLines_ && ErrorMarked(survey_.Points[endsAt])) role = LineRole::kError;
    ScreenXY a = OnScreen(scene_, survey_.Points[from].X, survey_.Points[from].Y);
    ScreenXY b = OnScreen(scene_, survey_.Points[to].X, survey_.Points[to].Y);
    scene_.lines.push_back({a.x, a.y, b.x, b.y, role, ColourOf(role), endsAt});
  }

  const Survey& survey_;
  const ProcessingState& state_;
  bool errorLines_;
  std::uint8_t kindMask_;
  PlotScene& scene_;
  std::optional<DivisionPath> path_ = FindDivisionPath(survey_);
};

// The width of the drawing area in the survey's unit of length. The first threshold is
// 0, not 1, so "#0.000" is in effect never chosen; that is the program's way.
std::string ScaleText(const Survey& survey, const PlotScene& scene) {
  double value = scene.width / scene.scale;
  const char* pattern = value < 0     ? "#0.000"
                        : value < 10  ? "#0.00"
                        : value < 100 ? "#0.0"
                                      : "#####0";
  std::string text = "Window Width / Height = " + FormatNumber(value, pattern);
  if (survey.UnitOfMeasure == kUnitNotSpecified) return text + " Units";
  return text + " " + std::string(UnitName(survey.UnitOfMeasure));
}

}  // namespace

MarkerColours ColoursOf(MarkerRole role) {
  switch (role) {
    case MarkerRole::kStart:
      return {kStartGreen, kStartGreen};
    case MarkerRole::kIntermediate:
      return {kIntermediateGrey, kWhite};
    case MarkerRole::kLine:
      return {kLineBrown, kLineBrown};
    case MarkerRole::kStandAlone:
      return {kBlack, kPointsTeal};
    case MarkerRole::kAlternate:
      return {kAlternateMagenta, kAlternateMagenta};
    case MarkerRole::kError:
      return {kErrorRed, kErrorRed};
    case MarkerRole::kPerimeter:
      break;
  }
  return {kBlack, kBlack};
}

Rgb ColourOf(LineRole role) {
  switch (role) {
    case LineRole::kClosing:
      return kStartGreen;
    case LineRole::kOther:
      return kLineBrown;
    case LineRole::kAlternate:
      return kAlternateMagenta;
    case LineRole::kError:
      return kErrorRed;
    case LineRole::kPerimeter:
      break;
  }
  return kBlack;
}

std::uint8_t KindMask(std::uint8_t mode) { return static_cast<std::uint8_t>((mode & 7) * 2 + 1); }

void PlotScene::Clear() {
  markers.clear();
  lines.clear();
  LotLbl.visible = false;
  TagDSLbl.visible = false;
  ScaleLbl.clear();
  screen.clear();
}

bool DrawPlot(const Survey& survey, const ProcessingState& state, std::uint8_t mode,
              std::uint8_t displayOptions, PlotScene& scene) {
  scene.Clear();
  Extent extent = DrawnExtent(survey, KindMask(mode));
  if (!extent.LaysOut() || !Fit(extent, scene)) {
    scene.Clear();
    return false;
  }
  scene.screen.assign(survey.Points.size(), ScreenPoint{});
  SceneBuilder builder(survey, state, mode, scene);
  builder.DrawDatasets();
  if ((displayOptions & kShowAlternateGps) && !state.BadPerimeter) builder.DrawAlternates();
  builder.PlaceSubDivisionLabel();
  scene.ScaleLbl = ScaleText(survey, scene);
  return true;
}

}  // namespace plotmeter
