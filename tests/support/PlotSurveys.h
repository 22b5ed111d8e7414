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

// A point as processing leaves it: the entered values, and the position, bearing and
// length worked out from them.
inline Point ProcessedPoint(int number, std::uint8_t flags, std::string xa, std::string yl, float x,
                            float y, float bearing, float length) {
  Point point;
  point.PtNumber = number;
  point.PtFlags = flags;
  point.InXA = std::move(xa);
  point.InYL = std::move(yl);
  point.X = x;
  point.Y = y;
  point.Bearing = bearing;
  point.Len = length;
  return point;
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

// The 10 by 10 square (0, 0), (10, 0), (10, 10), (0, 10).
inline const std::vector<XY> kSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

// The perimeter `points` with joins at points `first` and `second`, divided by a
// sub-division that starts from a dummy point: `division` begins at a join.
inline Survey DividedSurvey(const std::vector<XY>& points, int first, int second,
                            const std::vector<XY>& division, std::string tag = "") {
  Survey survey = PerimeterSurvey(points);
  MarkJoins(survey, first, second);
  survey.Points[AddDataset(survey, kTypeS, division, std::move(tag))].PtMarks |= kMarkDummy;
  return survey;
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
