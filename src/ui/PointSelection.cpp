#include "ui/PointSelection.h"

#include <cmath>

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

PointHit NearestDrawnPoint(const Survey& survey, const PlotScene& scene,
                           std::uint8_t displayOptions, float x, float y) {
  PointHit hit;
  double nearest = 0;
  const std::uint8_t kinds = KindMask(displayOptions);
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    if (!(survey.Datasets[d].DatasetType & kDatasetKindMask & kinds)) continue;
    for (int i = survey.Datasets[d].DatasetStart; i < survey.DatasetEnd(d); ++i) {
      if (i >= static_cast<int>(scene.screen.size()) || !scene.screen[i].drawn) continue;
      double distance = std::hypot(double{scene.screen[i].x} - x, double{scene.screen[i].y} - y);
      if (hit.point < 0 || distance < nearest) {
        hit = {i, d + 1};
        nearest = distance;
      }
    }
  }
  return hit;
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
