// Surveys as a user enters them (entered texts, flags and references, nothing resolved),
// for the point resolution tests.
#pragma once

#include <cstdint>
#include <string>

#include "model/Survey.h"

namespace plotmeter::testing {

class EnteredSurvey {
 public:
  explicit EnteredSurvey(int unit = kUnitMeters) {
    survey_.UnitOfMeasure = unit;
    survey_.SubValueSeparator = '\\';
  }

  EnteredSurvey& Dataset(std::uint8_t type) {
    survey_.Datasets.push_back(
        plotmeter::Dataset{.DatasetType = type, .DatasetStart = survey_.PointCount()});
    return *this;
  }

  // Point inputs; each new point is numbered by its place, counting from 1.
  EnteredSurvey& Xy(std::string x, std::string y) { return Add(kPtXY, x, y); }
  EnteredSurvey& Bearing(std::string bearing, std::string length) {
    return Add(kPtBearing, bearing, length);
  }
  EnteredSurvey& Compass(std::string bearing, std::string length) {
    Add(kPtBearing, bearing, length);
    Last().PtMarks |= kMarkCompass;
    return *this;
  }
  EnteredSurvey& Gps(std::string longitude, std::string latitude) {
    Add(kPtGps, "", "");
    return WithGps(longitude, latitude);
  }
  EnteredSurvey& Reference(int number) {
    Add(kPtReference, "", "");
    Last().PtRef = number;
    return *this;
  }
  EnteredSurvey& Flags(std::uint8_t flags) { return Add(flags, "", ""); }

  // Changes to the point added last.
  EnteredSurvey& WithGps(std::string longitude, std::string latitude) {
    Last().PtFlags |= kPtGps;
    Last().InGPSLong = longitude;
    Last().InGPSLat = latitude;
    return *this;
  }
  EnteredSurvey& Link() {
    Last().PtFlags |= kPtLink | kPtGps;
    return *this;
  }
  EnteredSurvey& From(int number) {
    Last().PtFlags |= kPtReference;
    Last().PtRef = number;
    return *this;
  }
  EnteredSurvey& Ref(int number) {
    Last().PtRef = number;
    return *this;
  }
  EnteredSurvey& Join() {
    Last().PtFlags |= kPtJoin;
    survey_.JoinPointCount++;
    return *this;
  }
  EnteredSurvey& Dummy() {
    Last().PtMarks |= kMarkDummy;
    return *this;
  }
  EnteredSurvey& Intermediate() {
    Last().PtFlags |= kPtIntermediate;
    return *this;
  }
  EnteredSurvey& Target(int number) {
    Last().PtTarget = number;
    return *this;
  }
  EnteredSurvey& Number(int number) {
    Last().PtNumber = number;
    return *this;
  }

  Point& Last() { return survey_.Points.back(); }
  Survey& survey() { return survey_; }
  Survey Build() const { return survey_; }

 private:
  EnteredSurvey& Add(std::uint8_t flags, std::string xa, std::string yl) {
    Point point;
    point.PtFlags = flags;
    point.PtNumber = survey_.PointCount() + 1;
    point.InXA = std::move(xa);
    point.InYL = std::move(yl);
    survey_.Points.push_back(std::move(point));
    return *this;
  }

  Survey survey_;
};

}  // namespace plotmeter::testing
