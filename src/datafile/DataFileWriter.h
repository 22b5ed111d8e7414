// Writing the survey as a data file: the entered values beside the results of the last
// processing, in a form that the reader reads back and a spreadsheet opens.
//
// The file, top to bottom: "// Unit of Measure is ..." (with the sub-value separator and
// sub-unit name for Feet, Miles and Chains, unless writer bit 32), the user's own "//"
// lines kept from the loaded file, the "//" separator line, the header, the column
// headings (unless writer bit 128), each dataset with its comment line, header line, data
// lines and, after a main or sub-division dataset, its "/Closing Line" (unless bit 128),
// and "/End data". In the default layout the column-heading comment and "/End data" stand
// behind one separator, and the "//" line ends with the separator; in the plain layout
// (writer bit 64) they stand alone and the header's option number has 2 added.
//
// Computed GPS columns are left empty when the survey holds no GPS values at all, and the
// alternative GPS columns when the point has no alternative position. A dataset without
// points has no lines in a file, so it is left out. Lines end in LF.
#pragma once

#include <ostream>
#include <string>

#include "model/Survey.h"
#include "model/UserDialogs.h"

namespace plotmeter {

// Writer faults.
inline constexpr int kWriteCannotOpen = 1;  // also a folder that does not exist
// Points given by GPS alone beside plane points, with no link point to tie the two and no
// 'GPS Only' processing chosen: the file would be refused when loaded again.
inline constexpr int kWriteGpsWithoutLink = 2;
inline constexpr int kWriteTooFewPoints = 3;  // fewer than 3 points in the whole survey
// The text would not read back as the same survey: a separator or degree mark that cannot
// stand in the file (a line break, or a character of a field the reader needs, such as a
// digit of the header), an entered value holding the separator, a unit code outside 0 to
// 5, or datasets that do not cover the points in order.
inline constexpr int kWriteUnreadable = 4;

// Writes the whole file text to `out`; returns 0, or the fault (nothing is written for
// faults 2 to 4; 1 when the stream fails). `WriterOptions` bit 1 is set for the length
// of the write and cleared after it, also after a fault.
int WriteSurvey(Survey& survey, std::ostream& out);

// Writes the survey to `path` by way of a temporary file (a failure leaves any previous
// file whole; see `ReplaceFileSafely`). True when written; otherwise the fault has been
// shown in a critical "Write File Abort" box, after a beep, with the system's reason and
// the path as its detail where the system gave one.
bool WriteDataFile(Survey& survey, const std::string& path, UserDialogs& dialogs);

// "Cannot open file - check is not being used by another program." (1), "GPS values
// present without a GPS linked point." (2), else "Unidentified processing error".
std::string WriteFaultMessage(int fault);

}  // namespace plotmeter
