#include "model/Survey.h"

#include <array>

namespace plotmeter {

namespace {

constexpr std::array<std::string_view, kUnitCount> kUnitNames = {
    "<Not specified>", "Meters", "Kilometers", "Feet", "Miles", "Chains"};

bool IsUnit(int unit) { return unit >= 0 && unit < kUnitCount; }

}  // namespace

std::uint8_t DatasetTypeFromLetter(char letter) {
  switch (letter) {
    case 'M':
    case 'm':
      return kTypeM;
    case 'N':
    case 'n':
      return kTypeN;
    case 'S':
    case 's':
      return kTypeS;
    case 'L':
    case 'l':
      return kTypeL;
    case 'P':
    case 'p':
      return kTypeP;
    default:
      return 0;
  }
}

char DatasetLetter(std::uint8_t type) {
  if (type & kDatasetMain) return (type & kDatasetPerimeter) ? 'M' : 'N';
  if (type & kDatasetSubDivision) return 'S';
  if (type & kDatasetLine) return 'L';
  if (type & kDatasetPoints) return 'P';
  return '\0';
}

std::string_view DatasetKindWords(char letter, int points) {
  switch (letter) {
    case 'M':
      return "Main (Perimeter)";
    case 'N':
      return "Main (Non-perimeter)";
    case 'S':
      return "Sub-division (or Extension)";
    case 'L':
      return "Line";
    case 'P':
      return points == 1 ? "Single Point" : "Points Collection";
    default:
      return "";
  }
}

std::string_view UnitName(int unit) { return IsUnit(unit) ? kUnitNames[unit] : ""; }

std::string_view SubUnitName(int unit) {
  switch (unit) {
    case kUnitFeet:
      return "Inches";
    case kUnitMiles:
      return "Yards";
    case kUnitChains:
      return "Links";
    default:
      return "";
  }
}

int SubUnitsPerUnit(int unit) {
  switch (unit) {
    case kUnitFeet:
      return 12;
    case kUnitMiles:
      return 1760;
    case kUnitChains:
      return 100;
    default:
      return 0;
  }
}

int Survey::DatasetEnd(int d) const {
  return d + 1 < DatasetCount() ? Datasets[d + 1].DatasetStart : PointCount();
}

int Survey::FindDataset(std::uint8_t kind) const {
  for (int d = 0; d < DatasetCount(); ++d) {
    if (Datasets[d].DatasetType & kind) return d;
  }
  return -1;
}

void ClearSurvey(Survey& survey) {
  // Assigned afresh rather than cleared: a survey emptied after a huge file, refused or
  // replaced, gives its memory back.
  survey.Datasets = {};
  survey.Points = {};
  survey.JoinPointCount = 0;
  survey.UnitOfMeasure = kUnitNotSpecified;
  survey.FileFlags = 0;
  survey.ValueMarks = 0;
}

void CreateNewSurvey(Survey& survey) {
  ClearSurvey(survey);
  survey.FieldSeparator = '\t';
  survey.SubValueSeparator = ' ';
  survey.MagneticDeclination = 0;
  survey.FileTag.clear();
  survey.CurrentFileName.clear();
  survey.UserComments.clear();
  survey.Datasets.push_back(Dataset{.DatasetType = kTypeM});
}

}  // namespace plotmeter
