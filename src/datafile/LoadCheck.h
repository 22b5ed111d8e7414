// The load check: after the reader, the file-wide rules that need the whole survey, the
// GPS link questions, and the one box that reports any fault of reading or checking. A
// fault always ends in one "File Read Abort" box and an empty survey.
//
// The load check (`CheckLoadedData`), in this order:
//   30  no dataset;  5  no main dataset;  10  one join point, or more than two
//   23  a line or points dataset whose first point has neither co-ordinates, GPS
//       values nor a reference
//   44  GPS values or a link with unit code 0
//   11  a sub-division without join points
//   24  a GPS link point given by GPS alone in a file that also holds other points
//   25  GPS-only points before the link point (or with none), when the user does not
//       choose GPS-only processing or it is not possible (the main dataset must carry
//       GPS values on every point for it)
#pragma once

#include "datafile/DataFileReader.h"
#include "model/Survey.h"
#include "model/UserDialogs.h"

namespace plotmeter {

// True when the survey is good to process. Otherwise the fault has been shown in a
// "File Read Abort" box (after a beep) and the survey cleared. Asks the GPS link
// questions ("GPS Link issue") where the file needs a decision.
bool CheckLoadedData(Survey& survey, const ReadResult& read, UserDialogs& dialogs);

}  // namespace plotmeter
