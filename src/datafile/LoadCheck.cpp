#include "datafile/LoadCheck.h"

#include <string>

namespace plotmeter {

namespace {

constexpr int kNoPoint = -1;
constexpr std::uint8_t kPlaneInput = kPtXY | kPtBearing | kPtReference;

bool IsGpsOnly(const Point& point) { return (point.PtFlags & kPlaneInput) == 0; }

int FirstPointWhere(const Survey& survey, auto predicate) {
  for (int i = 0; i < survey.PointCount(); ++i) {
    if (predicate(survey.Points[i])) return i;
  }
  return kNoPoint;
}

ReadResult CheckDatasets(const Survey& survey) {
  if (survey.DatasetCount() == 0) return {kReadNoDatasets};
  if (survey.FindDataset(kDatasetMain) < 0) return {kReadNoMain};
  if (survey.JoinPointCount == 1 || survey.JoinPointCount > 2) return {kReadJoinCount};
  for (int d = 0; d < survey.DatasetCount(); ++d) {
    const Dataset& dataset = survey.Datasets[d];
    if (!(dataset.DatasetType & (kDatasetLine | kDatasetPoints))) continue;
    int first = dataset.DatasetStart;
    bool placed = first < survey.DatasetEnd(d) &&
                  (survey.Points[first].PtFlags & (kPtXY | kPtGps | kPtReference));
    if (!placed) return {kReadFirstPointUnplaced, first};
  }
  if (survey.UnitOfMeasure == kUnitNotSpecified) {
    int gps = FirstPointWhere(survey, [](const Point& point) {
      return (point.PtFlags & (kPtGps | kPtAltGps | kPtLink)) != 0;
    });
    if (gps != kNoPoint) return {kReadGpsWithoutUnit, gps};
  }
  if (survey.FindDataset(kDatasetSubDivision) >= 0 && survey.JoinPointCount != 2)
    return {kReadSubDivisionWithoutJoins};
  return {};
}

// Plane positions can come from GPS alone when every point of the main dataset has them.
bool GpsOnlyCalculationPossible(const Survey& survey) {
  int main = survey.FindDataset(kDatasetMain);
  for (int i = survey.Datasets[main].DatasetStart; i < survey.DatasetEnd(main); ++i) {
    if (!(survey.Points[i].PtFlags & kPtGps)) return false;
  }
  return true;
}

bool AskToProceedGpsOnly(UserDialogs& dialogs) {
  MessageBox box{.title = "GPS Link issue",
                 .text =
                     "'GPS Only' data precedes first available link point, but a 'GPS "
                     "Only' calculation is possible.\nproceed on a 'GPS Only' basis ?",
                 .icon = Icon::Question,
                 .buttons = Buttons::YesNo,
                 .defaultButton = Button::No};
  return dialogs.Show(box) == Button::Yes;
}

void IgnoreLinkOfAllGpsData(Survey& survey, int link, UserDialogs& dialogs) {
  Point& point = survey.Points[link];
  MessageBox box{.title = "GPS Link issue",
                 .text =
                     "GPS link specification is irrelevant when is 'All GPS Only' data.\n"
                     "Specified link [Point " +
                     std::to_string(point.PtNumber) + "] will be ignored",
                 .icon = Icon::Exclamation,
                 .buttons = Buttons::Ok,
                 .defaultButton = Button::Ok};
  dialogs.Show(box);
  point.PtFlags &= static_cast<std::uint8_t>(~kPtLink);
}

ReadResult CheckGpsLink(Survey& survey, UserDialogs& dialogs) {
  int link = FirstPointWhere(survey, [](const Point& point) { return point.PtFlags & kPtLink; });
  int firstGpsOnly = FirstPointWhere(survey, IsGpsOnly);
  if (firstGpsOnly == kNoPoint) return {};
  bool allGpsOnly =
      FirstPointWhere(survey, [](const Point& p) { return !IsGpsOnly(p); }) == kNoPoint;
  if (allGpsOnly) {
    if (link != kNoPoint) IgnoreLinkOfAllGpsData(survey, link, dialogs);
    return {};
  }
  if (link != kNoPoint && IsGpsOnly(survey.Points[link])) return {kReadLinkGpsOnly, link};
  if (link != kNoPoint && link < firstGpsOnly) return {};
  if (GpsOnlyCalculationPossible(survey) && AskToProceedGpsOnly(dialogs)) {
    survey.FileFlags |= kFileGpsOnly;
    return {};
  }
  return {kReadGpsOnlyBeforeLink, firstGpsOnly};
}

void ReportReadFault(Survey& survey, const ReadResult& read, UserDialogs& dialogs) {
  MessageBox box{.title = "File Read Abort",
                 .text = ReadFaultText(read) + "\nPlease correct for a valid file",
                 .icon = Icon::Critical,
                 .buttons = Buttons::Ok,
                 .defaultButton = Button::Ok,
                 .detail = read.detail};
  Alert(dialogs, box);
  ResetLoadedFile(survey);
}

}  // namespace

bool CheckLoadedData(Survey& survey, const ReadResult& read, UserDialogs& dialogs) {
  ReadResult result = read;
  if (result.fault == 0) result = CheckDatasets(survey);
  if (result.fault == 0) result = CheckGpsLink(survey, dialogs);
  if (result.fault != 0) {
    ReportReadFault(survey, result, dialogs);
    return false;
  }
  if (FirstPointWhere(survey, [](const Point& point) { return point.PtFlags & kPtLink; }) !=
      kNoPoint) {
    survey.FileFlags |= kFileOption;
  }
  return true;
}

}  // namespace plotmeter
