// Point resolution as its tests see it: a survey typed as data lines, resolved on a first
// pass, and its points written out one by one as "x,y bearing/length".
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "support/EnteredSurvey.h"

namespace plotmeter::testing {

// Rounded to 4 decimals, without a minus sign on 0.
inline std::string Rounded(double value) {
  std::ostringstream text;
  text.precision(12);
  text << std::round(value * 1e4) / 1e4 + 0.0;
  return text.str();
}

// "0,0 0/0; 10,0 90/10": each point's position, bearing and length.
inline std::string PointsText(const Survey& survey) {
  std::string text;
  for (const Point& p : survey.Points) {
    if (!text.empty()) text += "; ";
    text += Rounded(p.X) + "," + Rounded(p.Y) + " " + Rounded(p.Bearing) + "/" + Rounded(p.Len);
  }
  return text;
}

class Resolution : public ResolveFixture {
 protected:
  // The points of `survey` once resolved, which it must be without a box.
  std::string Resolved(Survey& survey) {
    EXPECT_TRUE(Resolve(survey));
    EXPECT_TRUE(dialogs.boxes.empty());
    return PointsText(survey);
  }
  std::string Resolved(const std::string& lines) {
    Survey survey = Entered(lines);
    return Resolved(survey);
  }
};

}  // namespace plotmeter::testing
