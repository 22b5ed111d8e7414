// Surveys built directly in resolved form (X and Y set), for the geometry, drawing and
// processing tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Survey.h"

namespace plotmeter::testing {

struct XY {
  float x = 0;
  float y = 0;
};

// Appends a dataset of X/Y points; returns the index in `Points` of its first point.
inline int AddDataset(Survey& survey, std::uint8_t type, const std::vector<XY>& points,
                      std::string tag = "") {
  int start = survey.PointCount();
  survey.Datasets.push_back(
      Dataset{.DatasetType = type, .DatasetStart = start, .DatasetTag = std::move(tag)});
  for (const XY& p : points) {
    Point point;
    point.PtFlags = kPtXY;
    point.PtNumber = survey.PointCount() + 1;
    point.X = p.x;
    point.Y = p.y;
    survey.Points.push_back(point);
  }
  return start;
}

// A survey holding one main perimeter ("M").
inline Survey PerimeterSurvey(const std::vector<XY>& points, int unit = kUnitMeters) {
  Survey survey;
  survey.UnitOfMeasure = unit;
  AddDataset(survey, kTypeM, points);
  return survey;
}

inline void MarkJoins(Survey& survey, int first, int second) {
  survey.Points[first].PtFlags |= kPtJoin;
  survey.Points[second].PtFlags |= kPtJoin;
  survey.JoinPointCount = 2;
}

// The points of `survey` that carry the error-line mark.
inline std::vector<int> ErrorMarked(const Survey& survey) {
  std::vector<int> marked;
  for (int i = 0; i < survey.PointCount(); ++i) {
    if (survey.Points[i].PtMarks & kMarkErrorLine) marked.push_back(i);
  }
  return marked;
}

}  // namespace plotmeter::testing
