// Surveys as a user enters them, for the point resolution tests: written as the dataset
// and point lines of a data file ("H,M", then "1,XJ,,,0,0": number, type, reference,
// target, X or bearing, Y or length, GPS longitude and latitude). Nothing is checked
// and nothing resolved, so a test can hand resolution what the reader would refuse.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/ProcessingState.h"
#include "geometry/ResolvePoints.h"
#include "model/Survey.h"
#include "model/TypeLetters.h"
#include "support/ScriptedDialogs.h"

namespace plotmeter::testing {

// Sets a point's flags and marks from its type field's letters, as written.
inline void ApplyTypeLetters(std::string_view field, Point& point) {
  for (char letter : field) {
    if (const TypeLetter* type = FindTypeLetter(letter)) {
      point.PtFlags |= type->flags;
      point.PtMarks |= type->marks;
    } else if (const FlagLetter* flag = FindFlagLetter(letter)) {
      point.PtFlags |= flag->bit | flag->implies;
      point.PtMarks |= flag->mark;
    }
  }
}

inline Survey Entered(std::string_view lines, int unit = kUnitMeters) {
  Survey survey;
  survey.UnitOfMeasure = unit;
  survey.SubValueSeparator = '\\';
  std::istringstream in{std::string(lines)};
  for (std::string line; std::getline(in, line);) {
    std::vector<std::string> fields;
    std::istringstream fieldsIn(line + ",");
    for (std::string field; std::getline(fieldsIn, field, ',');) fields.push_back(field);
    fields.resize(8);
    if (fields[0] == "H") {
      survey.Datasets.push_back(Dataset{.DatasetType = DatasetTypeFromLetter(fields[1][0]),
                                        .DatasetStart = survey.PointCount()});
      continue;
    }
    Point point;
    point.PtNumber = std::stoi(fields[0]);
    ApplyTypeLetters(fields[1], point);
    if (point.PtFlags & kPtJoin) survey.JoinPointCount++;
    point.PtRef = fields[2].empty() ? 0 : std::stoi(fields[2]);
    point.PtTarget = fields[3].empty() ? 0 : std::stoi(fields[3]);
    point.InXA = fields[4];
    point.InYL = fields[5];
    point.InGPSLong = fields[6];
    point.InGPSLat = fields[7];
    survey.Points.push_back(point);
  }
  return survey;
}

// Resolves surveys on a first pass, keeping the state and the boxes shown.
class ResolveFixture : public ::testing::Test {
 protected:
  bool Resolve(Survey& survey) { return ResolvePoints(survey, state, kFirstPass, dialogs); }

  void ExpectAt(const Survey& survey, int i, float x, float y) {
    EXPECT_NEAR(survey.Points[i].X, x, 1e-4) << "point " << i;
    EXPECT_NEAR(survey.Points[i].Y, y, 1e-4) << "point " << i;
  }

  ProcessingState state;
  ScriptedDialogs dialogs;
};

}  // namespace plotmeter::testing
