#include <gtest/gtest.h>

#include "model/Survey.h"

namespace plotmeter {
namespace {

TEST(SurveyTest, DatasetLettersRoundTrip) {
  for (char letter : {'M', 'N', 'S', 'L', 'P'}) {
    EXPECT_EQ(DatasetLetter(DatasetTypeFromLetter(letter)), letter);
  }
  EXPECT_EQ(DatasetTypeFromLetter('m'), kTypeM);
  EXPECT_EQ(DatasetTypeFromLetter('X'), 0);
  EXPECT_EQ(DatasetLetter(0), '\0');
}

TEST(SurveyTest, MainNonPerimeterCountsAsMain) {
  Survey survey;
  survey.Datasets = {{.DatasetType = kTypeL}, {.DatasetType = kTypeN}};
  EXPECT_EQ(survey.FindDataset(kDatasetMain), 1);
}

TEST(SurveyTest, UnitNamesAndSubUnits) {
  EXPECT_EQ(UnitName(kUnitNotSpecified), "<Not specified>");
  EXPECT_EQ(UnitName(kUnitChains), "Chains");
  EXPECT_EQ(UnitName(6), "");
  EXPECT_EQ(SubUnitName(kUnitFeet), "Inches");
  EXPECT_EQ(SubUnitsPerUnit(kUnitMiles), 1760);
  EXPECT_EQ(SubUnitsPerUnit(kUnitMeters), 0);
}

TEST(SurveyTest, DatasetEndIsNextStartOrPointCount) {
  Survey survey;
  survey.Points.resize(7);
  survey.Datasets = {{.DatasetStart = 0}, {.DatasetStart = 4}};
  EXPECT_EQ(survey.DatasetEnd(0), 4);
  EXPECT_EQ(survey.DatasetEnd(1), 7);
}

TEST(SurveyTest, ClearAndCreateNew) {
  Survey survey;
  survey.Points.resize(3);
  survey.Datasets.resize(2);
  survey.UnitOfMeasure = kUnitFeet;
  survey.JoinPointCount = 2;
  survey.FileFlags = kFileGpsOnly;
  ClearSurvey(survey);
  EXPECT_EQ(survey.PointCount(), 0);
  EXPECT_EQ(survey.DatasetCount(), 0);
  EXPECT_EQ(survey.UnitOfMeasure, kUnitNotSpecified);
  EXPECT_EQ(survey.JoinPointCount, 0);
  EXPECT_EQ(survey.FileFlags, 0);

  CreateNewSurvey(survey);
  EXPECT_EQ(survey.FieldSeparator, '\t');
  EXPECT_EQ(survey.SubValueSeparator, ' ');
  ASSERT_EQ(survey.DatasetCount(), 1);
  EXPECT_EQ(survey.Datasets[0].DatasetType, kTypeM);
}

}  // namespace
}  // namespace plotmeter
