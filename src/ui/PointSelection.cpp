#include "ui/PointSelection.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotmeter {

namespace {

std::string Trimmed(const std::string& text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

bool InsideDrawingArea(const PlotScene& scene, float x, float y) {
  return x >= scene.left && x <= scene.left + scene.width && y >= scene.top &&
         y <= scene.top + scene.height;
}

namespace {

// Every point drawn, in point order, among the datasets that `displayOptions` draws.
std::vector<PointHit> DrawnPoints(const Survey& survey, const PlotScene& scene,
                                  std::uint8_t displayOptions) {
  std::vector<PointHit> drawn;
  const std::uint8_t kinds = KindMask(displayOptions);
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    if (!(survey.Datasets[d].DatasetType & kDatasetKindMask & kinds)) continue;
    for (int i = survey.Datasets[d].DatasetStart; i < survey.DatasetEnd(d); ++i) {
      if (i < static_cast<int>(scene.screen.size()) && scene.screen[i].drawn) {
        drawn.push_back({i, d + 1});
      }
    }
  }
  return drawn;
}

}  // namespace

PointHit NearestDrawnPoint(const Survey& survey, const PlotScene& scene,
                           std::uint8_t displayOptions, float x, float y) {
  PointHit hit;
  double nearest = 0;
  for (const PointHit& candidate : DrawnPoints(survey, scene, displayOptions)) {
    const ScreenPoint& at = scene.screen[candidate.point];
    double distance = std::hypot(double{at.x} - x, double{at.y} - y);
    if (hit.point < 0 || distance < nearest) {
      hit = candidate;
      nearest = distance;
    }
  }
  return hit;
}

PointHit AdjacentDrawnPoint(const Survey& survey, const PlotScene& scene,
                            std::uint8_t displayOptions, int from, int step) {
  const std::vector<PointHit> drawn = DrawnPoints(survey, scene, displayOptions);
  if (drawn.empty()) return {};
  const auto count = static_cast<int>(drawn.size());
  const auto at = std::find_if(drawn.begin(), drawn.end(),
                               [from](const PointHit& hit) { return hit.point == from; });
  if (at == drawn.end()) return step >= 0 ? drawn.front() : drawn.back();
  const int place = static_cast<int>(at - drawn.begin());
  return drawn[static_cast<std::size_t>(((place + step) % count + count) % count)];
}

SceneLabel TagLabel(const PlotScene& scene, const ScreenPoint& point, const std::string& tag) {
  std::string text = Trimmed(tag);
  SceneLabel label{.text = text.empty() ? "<No Tag>" : text, .y = point.y - kTagRise};
  float beside = 1.2f * scene.markerSize;
  label.visible = true;
  if (point.x + beside + kTagGap + kTagWidth <= scene.left + scene.width) {
    label.x = point.x + beside + kTagGap;
    label.anchor = LabelAnchor::kTopLeft;
  } else {
    label.x = point.x - beside - kTagGap;
    label.anchor = LabelAnchor::kTopRight;
  }
  return label;
}

void ResizeMarker(PlotScene& scene, int point, float size) {
  for (SceneMarker& marker : scene.markers) {
    if (marker.point == point && !marker.alternate) marker.size = size;
  }
}

}  // namespace plotmeter
