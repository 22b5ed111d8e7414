#include "geometry/ResolvePoints.h"

#include <string_view>

#include "geometry/PointResolver.h"

namespace plotmeter {

namespace {

using resolution::Fault;
using resolution::FaultKind;

constexpr std::string_view kChangeOrDelete =
    "Please change or delete one of these points to enable processing.";
constexpr std::string_view kRepeatPassFailed =
    "Bad reiterative calculations (for GPS / Inermediate Pt Target data)";

// The number a message gives for point `index`: its number in the file.
int NumberOf(const Survey& survey, int index) {
  if (index < 0 || index >= survey.PointCount()) return 0;
  return survey.Points[index].PtNumber;
}

std::string ResolutionText(const Survey& survey, const Fault& fault) {
  switch (fault.kind) {
    case FaultKind::kBadReference:
      return "Bad Point reference";
    case FaultKind::kNoGpsLink:
      return "Attempting to generate GPS values without a GPS linked point.\n"
             "Ensure one point is flagged as the designated link point.";
    case FaultKind::kNoGpsReference:
      return "Attempting to generate GPS values without a GPS reference point.\n"
             "Ensure at least input data for one point also includes GPS values.";
    case FaultKind::kIdenticalPoints:
      return "Point number " + std::to_string(NumberOf(survey, fault.point)) +
             " is identical to the preceding point\n\n" + std::string(kChangeOrDelete);
    case FaultKind::kBadInterim:
      return "Bad Interim Point data";
    case FaultKind::kUnsettled:
      return std::string(kRepeatPassFailed);
    case FaultKind::kInvalidData:
    case FaultKind::kNone:
      break;
  }
  return "";
}

// Shows the fault of a pass and leaves the state as every failure exit does.
bool Fail(const Survey& survey, ProcessingState& state, const Fault& fault, bool repeatPass,
          UserDialogs& dialogs) {
  MessageBox box{.icon = Icon::Critical, .buttons = Buttons::Ok, .defaultButton = Button::Ok};
  if (fault.kind == FaultKind::kInvalidData) {
    box.title = kInvalidDataTitle;
    box.text = InvalidDataText(state.ErrorState, survey.UnitOfMeasure) + "\nat point " +
               std::to_string(NumberOf(survey, fault.point));
  } else {
    box.title = kResolveFailedTitle;
    box.text = repeatPass ? std::string(kRepeatPassFailed) : ResolutionText(survey, fault);
  }
  Alert(dialogs, box);
  state.ErrorState &= kErrorExitMask;
  state.ProcessState &= ~kPassComplete;
  return false;
}

// Values that waited on a later point or on the link point get at most three more passes,
// each taking what the pass before made final; never a loop until nothing changes.
Fault RepeatPasses(resolution::Resolver& resolver, const ProcessingState& state) {
  if (Fault fault = resolver.RunPass(kRepeatPass)) return fault;
  if (state.GpsState & kGpsRepassNeeded) {
    if (Fault fault = resolver.RunPass(kDependentPass)) return fault;
  }
  if (state.ProcessState & kTargetRepassNeeded) {
    if (Fault fault = resolver.RunPass(kDependentPass)) return fault;
  }
  if (resolver.AnyPending()) return Fault{.kind = FaultKind::kUnsettled};
  return {};
}

std::string EntryFaultText(const Fault& fault) {
  std::string name(fault.valueName);
  switch (fault.code) {
    case resolution::kIdenticalToFollowing:
      return "Point is identical to the following point\n" + std::string(kChangeOrDelete);
    case resolution::kIdenticalToEarlier:
      return "Point is identical to an earlier point\n" + std::string(kChangeOrDelete);
    case resolution::kGpsWithoutLink:
      return "Attempting to generate GPS values without a GPS linked point.";
    case resolution::kInterimTooLong:
      return "Intermediate point's length must be less than that originally set to the next "
             "point.";
    case resolution::kInterimOutOfRange:
      return "Intermediate " + name +
             " value must be between the values for the previous and next points.";
    default:
      return "Intermediate " + name + " without valid input found.";
  }
}

}  // namespace

std::string InvalidDataText(std::uint8_t errorState, int unitOfMeasure) {
  if (errorState & kErrorOver60) return "Minutes or Seconds values found >= 60";
  if ((errorState & kErrorUnitsSeparator) && unitOfMeasure == kUnitNotSpecified) {
    return "Units separator found, invalid with 'Unspecified' Unit of Measure";
  }
  if (errorState & kErrorUnitsSeparator) {
    return "Invalid units separator found, deg/min/sec, feet/inches, etc.";
  }
  if (errorState & kErrorInvalidData) return "Invalid Data found, please check data";
  return "Invalid Data encounted in processing";
}

bool ResolvePoints(Survey& survey, ProcessingState& state, std::uint8_t passMode,
                   UserDialogs& dialogs) {
  resolution::Resolver resolver(survey, state);
  bool firstPass = passMode == kFirstPass;
  if (firstPass) {
    resolver.StartFirstPass();
  } else {
    resolver.TakeValuesAsFinal();
  }
  if (Fault fault = resolver.RunPass(passMode)) {
    return Fail(survey, state, fault, !firstPass, dialogs);
  }
  if (firstPass && resolver.AnyPending()) {
    if (Fault fault = RepeatPasses(resolver, state)) {
      return Fail(survey, state, fault, true, dialogs);
    }
  }
  state.ResetSelection();
  return true;
}

bool CheckEnteredPoint(Survey& survey, ProcessingState& state, int pointIndex,
                       UserDialogs& dialogs) {
  if (pointIndex < 0 || pointIndex >= survey.PointCount()) return false;
  std::uint8_t errorState = state.ErrorState;
  std::uint8_t valueMarks = survey.ValueMarks;
  resolution::Resolver resolver(survey, state);
  Fault fault = resolver.CheckPoint(pointIndex);
  state.ErrorState = errorState;
  survey.ValueMarks = valueMarks;
  if (!fault) return true;
  MessageBox box{.title = kInterimEntryTitle,
                 .text = "Please correct entry for Point " + std::to_string(pointIndex + 1) + "\n" +
                         EntryFaultText(fault),
                 .icon = Icon::Critical,
                 .buttons = Buttons::Ok,
                 .defaultButton = Button::Ok};
  Alert(dialogs, box);
  return false;
}

}  // namespace plotmeter
