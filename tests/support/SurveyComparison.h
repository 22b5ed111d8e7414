// Comparing two surveys by what a data file carries: the settings, the datasets and the
// points as entered. Computed values are left out: the reader does not read them.
#pragma once

#include <gtest/gtest.h>

#include "model/Survey.h"

namespace plotmeter::testing {

// The marks a file keeps; the shared mark ("s") is written but read as nothing.
inline constexpr std::uint8_t kFileMarks = kMarkCompass | kMarkDummy;

inline void ExpectSameEnteredPoint(const Point& a, const Point& b) {
  EXPECT_EQ(a.PtNumber, b.PtNumber);
  EXPECT_EQ(a.PtFlags, b.PtFlags);
  EXPECT_EQ(a.PtMarks & kFileMarks, b.PtMarks & kFileMarks);
  EXPECT_EQ(a.PtRef, b.PtRef);
  EXPECT_EQ(a.PtTarget, b.PtTarget);
  EXPECT_EQ(a.InXA, b.InXA);
  EXPECT_EQ(a.InYL, b.InYL);
  EXPECT_EQ(a.InGPSLong, b.InGPSLong);
  EXPECT_EQ(a.InGPSLat, b.InGPSLat);
}

inline void ExpectSameEnteredSurvey(const Survey& a, const Survey& b) {
  EXPECT_EQ(a.FieldSeparator, b.FieldSeparator);
  EXPECT_EQ(a.SubValueSeparator, b.SubValueSeparator);
  EXPECT_EQ(a.UnitOfMeasure, b.UnitOfMeasure);
  EXPECT_EQ(a.MagneticDeclination, b.MagneticDeclination);
  EXPECT_EQ(a.FileTag, b.FileTag);
  EXPECT_EQ(a.FileFlags, b.FileFlags);
  EXPECT_EQ(a.UserComments, b.UserComments);
  EXPECT_EQ(a.JoinPointCount, b.JoinPointCount);
  ASSERT_EQ(a.DatasetCount(), b.DatasetCount());
  for (int d = 0; d < a.DatasetCount(); ++d) {
    SCOPED_TRACE("dataset " + std::to_string(d + 1));
    EXPECT_EQ(a.Datasets[d].DatasetType, b.Datasets[d].DatasetType);
    EXPECT_EQ(a.Datasets[d].DatasetStart, b.Datasets[d].DatasetStart);
    EXPECT_EQ(a.Datasets[d].DatasetTag, b.Datasets[d].DatasetTag);
  }
  ASSERT_EQ(a.PointCount(), b.PointCount());
  for (int i = 0; i < a.PointCount(); ++i) {
    SCOPED_TRACE("point " + std::to_string(i + 1));
    ExpectSameEnteredPoint(a.Points[i], b.Points[i]);
  }
}

}  // namespace plotmeter::testing
