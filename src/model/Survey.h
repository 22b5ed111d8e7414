// The survey held in memory: file-level settings, datasets and point records.
//
// One plain struct; the window logic owns the one instance and passes it by
// reference, tests build as many as they like. Text fields hold single-byte
// (Latin-1) characters, exactly as they stand in a data file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace plotmeter {

// The program's limit on points, counted over every dataset. A rule checked by
// processing, not a buffer size: `Points` holds whatever a file brings.
inline constexpr int kPointLimit = 210;

// Dataset type bits (the dataset's flag byte).
inline constexpr std::uint8_t kDatasetMain = 1;
inline constexpr std::uint8_t kDatasetSubDivision = 2;
inline constexpr std::uint8_t kDatasetLine = 4;
inline constexpr std::uint8_t kDatasetPoints = 8;
inline constexpr std::uint8_t kDatasetPerimeter = 16;
inline constexpr std::uint8_t kDatasetHasDummy = 32;   // a sub-division that holds "D" points
inline constexpr std::uint8_t kDatasetGenerated = 64;  // a sub-division made by processing
inline constexpr std::uint8_t kDatasetKindMask = 15;   // main, sub-division, line, points

// Dataset type codes as the file writes them, with their bits.
inline constexpr std::uint8_t kTypeM = kDatasetMain | kDatasetPerimeter;
inline constexpr std::uint8_t kTypeN = kDatasetMain;
inline constexpr std::uint8_t kTypeS = kDatasetSubDivision;
inline constexpr std::uint8_t kTypeL = kDatasetLine;
inline constexpr std::uint8_t kTypeP = kDatasetPoints;

// The bits of a dataset type letter ("M", "N", "S", "L", "P", either case); 0 for any other.
std::uint8_t DatasetTypeFromLetter(char letter);
// The letter of a dataset type byte; '\0' when its kind bits name no dataset.
char DatasetLetter(std::uint8_t type);
// The words that name a dataset kind by its letter ("Line", "Main (Perimeter)"), a points
// dataset by its count; empty for a letter of no kind.
std::string_view DatasetKindWords(char letter, int points);

// `PtFlags` bits.
inline constexpr std::uint8_t kPtXY = 1;            // "X", "D"
inline constexpr std::uint8_t kPtBearing = 2;       // "B", "C"
inline constexpr std::uint8_t kPtGps = 4;           // "G", "A", "L"
inline constexpr std::uint8_t kPtIntermediate = 8;  // "I"
inline constexpr std::uint8_t kPtReference = 16;    // "R", "F"
inline constexpr std::uint8_t kPtAltGps = 32;       // "A": given both in the plane and by GPS
inline constexpr std::uint8_t kPtJoin = 64;         // "J"
inline constexpr std::uint8_t kPtLink = 128;        // "L"
inline constexpr std::uint8_t kPtInputMask = 31;    // bits 1 to 16

// `PtMarks` bits.
inline constexpr std::uint8_t kMarkCompass = 2;     // "C" rather than "B"
inline constexpr std::uint8_t kMarkShared = 16;     // "s": shared, or a resequenced intermediate
inline constexpr std::uint8_t kMarkDummy = 32;      // "D": the dummy start of a sub-division
inline constexpr std::uint8_t kMarkErrorLine = 64;  // ends a line that crosses another

// `UnitOfMeasure` codes.
inline constexpr int kUnitNotSpecified = 0;
inline constexpr int kUnitMeters = 1;
inline constexpr int kUnitKilometers = 2;
inline constexpr int kUnitFeet = 3;
inline constexpr int kUnitMiles = 4;
inline constexpr int kUnitChains = 5;
inline constexpr int kUnitCount = 6;

// "<Not specified>", "Meters", "Kilometers", "Feet", "Miles", "Chains"; "" outside 0 to 5.
std::string_view UnitName(int unit);
// "Inches", "Yards", "Links" for Feet, Miles, Chains; "" for the others.
std::string_view SubUnitName(int unit);
// Sub-units to the main unit: 12, 1760, 100 for Feet, Miles, Chains; 0 for the others.
int SubUnitsPerUnit(int unit);

// File flag bits.
inline constexpr std::uint8_t kFileMagnetic = 1;  // `MagneticDeclination` is not zero
inline constexpr std::uint8_t kFileOption = 2;    // bit 0 of header field 4: GPS link established
inline constexpr std::uint8_t kFileGpsOnly = 4;   // processing on a 'GPS Only' basis

// Value marks, set by the value parsers.
inline constexpr std::uint8_t kValueOver60 = 4;      // minutes or seconds of 60 or more
inline constexpr std::uint8_t kValueNotNumber = 16;  // text that is not a number

// `WriterOptions` bits.
inline constexpr std::uint8_t kWriteInProgress = 1;  // text forms wanted: a write is under way
inline constexpr std::uint8_t kWriteBearingMinutes = 2;
inline constexpr std::uint8_t kWriteBearingDecimal = 4;
inline constexpr std::uint8_t kWriteGpsMinutes = 8;
inline constexpr std::uint8_t kWriteGpsDecimal = 16;
inline constexpr std::uint8_t kWritePlainLengths = 32;  // no sub-units, no sub-unit name
inline constexpr std::uint8_t kWritePlainLayout = 64;
inline constexpr std::uint8_t kWriteNoHeadings = 128;
inline constexpr std::uint8_t kWriterOptionsDefault = kWriteBearingMinutes | kWriteGpsMinutes;

inline constexpr char kDegreeSign = '\xB0';  // code 176

struct Point {
  std::uint8_t PtFlags = 0;
  int PtNumber = 0;  // as in the file's "/Pt#" field
  int PtRef = 0;     // number of the reference point, 0 for none
  int PtTarget = 0;  // number of the target point, 0 for none
  // Entered values, kept as typed: X or bearing, Y or length, GPS longitude and latitude.
  std::string InXA, InYL, InGPSLong, InGPSLat;
  // Computed position in the survey's unit, and the bearing (degrees) and length of the
  // line that ends at the point.
  float X = 0, Y = 0, Bearing = 0, Len = 0;
  // Computed GPS values, decimal degrees (longitude east in [0, 360)); the delta is in
  // the survey's unit.
  double GPSLong = 0, GPSLat = 0, AltGPSLong = 0, AltGPSLat = 0, AltGPSDelta = 0;
  // The point's alternate position in the plane, from its GPS values, when it has one.
  float AltX = 0, AltY = 0;
  bool HasAlternate = false;
  std::uint8_t PtMarks = 0;
};

struct Dataset {
  std::uint8_t DatasetType = 0;
  int DatasetStart = 0;  // index in `Points` of the dataset's first point
  std::string DatasetTag;
  // The closing line back to the start point (main and sub-division), from resolution.
  float ClosingBearing = 0, ClosingLen = 0;
};

struct Survey {
  std::vector<Point> Points;
  std::vector<Dataset> Datasets;  // in file order; dataset number = index + 1

  char FieldSeparator = ',';
  char SubValueSeparator = '\\';
  int UnitOfMeasure = kUnitNotSpecified;
  float MagneticDeclination = 0;
  std::string FileTag;
  std::string CurrentFileName;
  char DegreeChar = kDegreeSign;
  std::uint8_t WriterOptions = kWriterOptionsDefault;
  std::uint8_t FileFlags = 0;
  std::uint8_t ValueMarks = 0;
  int JoinPointCount = 0;
  // The user's own "//" lines from the top of the loaded file, kept for the next save.
  std::vector<std::string> UserComments;

  int PointCount() const { return static_cast<int>(Points.size()); }
  int DatasetCount() const { return static_cast<int>(Datasets.size()); }
  // Index in `Points` one past the last point of dataset `d` (0-based).
  int DatasetEnd(int d) const;
  // Index of the first dataset whose kind bits meet `kind`, or -1.
  int FindDataset(std::uint8_t kind) const;
};

// Empties the datasets and points, sets `DatasetCount` and the join-point count to 0,
// `UnitOfMeasure` to 0 and clears the processing flags. Used after a failed load.
void ClearSurvey(Survey& survey);

// A new survey: empty, the new-survey separators (tab and blank), one empty dataset.
void CreateNewSurvey(Survey& survey);

}  // namespace plotmeter
