// Reading a data file into the survey, and the load check that follows it.
//
// The reader fills the survey from the file and stops at the first fault with its code
// (datafile/ReadFaults.h); `CheckLoadedData` (datafile/LoadCheck.h) then reports it. A fault always
// ends in one "File Read Abort" box and an empty survey. The reader does not resolve points:
// co-ordinates, bearings and lengths are left to processing, and the computed columns of the file
// are not read.
//
// What the reader fills: `Points` in file order (as many as the file holds; the point
// limit belongs to processing), `Datasets` with their type bits, first point and tag,
// `JoinPointCount`, the header's settings, and `UserComments` (the "//" lines at the top
// that are the user's own, without the writer's generated ones).
//
// Point numbers: the "/Pt#" field is a whole number from 1 up, used once in a file.
// "PtRef#" and "PtTgt#" are empty (or 0) for none, else the number of a point of the file.
//
// The checks and their codes, in the order they are made. Codes of the header and
// datasets carry no point; all others name the point they were found on.
//
//   While reading the header and the dataset lines:
//     1   no header: the file is empty, or only "//" lines, or a blank line before it
//     3   the header's separator code, unit, file options or declination is not readable
//     2   the second header field is not "#0092"
//     42  unit code outside 0 to 5;  43  sub-value separator code empty or outside 0 to 255
//     8   no dataset header after the header's comments, a blank line there, or a
//         dataset without points
//     41  a dataset type other than M, N, S, L, P;  6  a second main;  7  a second "S"
//   For each data line, in turn:
//     4   the point number is not a whole number from 1 up, or a reference field holds
//         anything but a point number; also a file of more than `kMaxReadPoints` points
//     32  not exactly one type letter (X, B, C, G, R, D), or "D" anywhere but as the
//         first point of a sub-division (its dummy start)
//     27  a letter that is neither type nor flag ("s" is allowed and ignored), "F" on a
//         point that has no bearing, or "A", "I", "L" on a reference ("R") point
//     29  a flag on the dummy start ("D"): it is not a point of the survey of its own
//     17  "I" together with "L"
//     15  "I" in a points ("P") dataset;  23  "I" on the first point of a dataset
//     26  "I" on a bearing point without a reference point
//     13  a reference to the point itself, or "R" or "F" without a reference
//     28  a target that is the point itself
//     18  a reference in a main or sub-division dataset, other than the reference start
//         of a sub-division or the reference of an intermediate bearing point
//     21  "R" after the first point of a line or sub-division dataset
//     19  a reference on a stand-alone ("P") point that has no bearing (so also "R")
//     10  a third join point ("J");  9  a second GPS link point ("L")
//   Over all points, once the file is read:
//     16  a point number used twice (named on its second use)
//   then for each point in file order:
//     14  a reference to a point number the file does not hold
//     28  a target point number the file does not hold
//     13  an "R" point that refers to a point of its own dataset
//   then:
//     22  an intermediate point after the last shape point of a line or of a main
//         non-perimeter dataset (it would lie past the line's end)
//     20  references that go round in a circle: a point that needs itself, through its
//         reference, target, or the shape points that its line is measured between
#pragma once

#include <istream>
#include <string>
#include <string_view>

#include "datafile/ReadFaults.h"
#include "model/Survey.h"

namespace plotmeter {

// More points than any survey could mean; a file beyond it is refused as invalid data
// rather than filling memory.
inline constexpr int kMaxReadPoints = 2'000'000;
// Larger files are not read at all (reported as a file that cannot be opened).
inline constexpr std::size_t kMaxReadBytes = std::size_t{512} << 20;

struct ReadResult {
  int fault = 0;
  // 0-based position, in file order, of the point in hand when the fault was found
  // (-1 none); shown as " [Point " + (point + 1) + "]".
  int point = -1;
  // For fault 14: the point number that the reference names.
  int reference = 0;
  // For fault 1, when the input could not be read: the path and the system's reason
  // ("No such file or directory"), shown beside the fault's message.
  std::string detail;
};

// The whole text of the data file at `path`, read once, as the reader takes it: a file
// saved as UTF-8 by a text editor reads as its single-byte form. A file larger than
// `kMaxReadBytes` is refused before it is read, and a stream (a pipe, a device) as soon as
// it passes that size. Fault 1, with its detail, when the file cannot be read; `text` is
// then empty.
ReadResult ReadDataFileText(const std::string& path, std::string& text);

// Reads the text of a data file (as `ReadDataFileText` gives it) into `survey`, replacing
// what it held (the degree mark, writer options and current file name stay). On a fault
// the survey is partly filled; `CheckLoadedData` reports it and clears the survey. Memory
// that runs out is fault 1, with an empty survey.
ReadResult ReadDataText(Survey& survey, std::string_view text);
// The same from a stream, read to its end.
ReadResult ReadDataFile(Survey& survey, std::istream& in);
// Sets `survey.CurrentFileName` to `path` and reads that file.
ReadResult ReadDataFile(Survey& survey, const std::string& path);

// The message of a fault code; "Unidentified data parsing error." for codes without
// one. `reference` is the point number that message 14 names.
std::string ReadFaultMessage(int code, int reference = 0);
// The message with the point appended: "... [Point 3]".
std::string ReadFaultText(const ReadResult& read);

// Resets the file-level settings, points and datasets to those of no file loaded,
// keeping the program's own settings (degree mark, writer options, current file name).
void ResetLoadedFile(Survey& survey);

}  // namespace plotmeter
