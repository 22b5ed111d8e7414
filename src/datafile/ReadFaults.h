// The reader's and the load check's fault codes. The numbers are the ones the "File Read
// Abort" box has always reported them by; `ReadFaultMessage` gives each its text.
#pragma once

namespace plotmeter {

inline constexpr int kReadCannotOpen = 1;  // also no header line
inline constexpr int kReadNotThisProgram = 2;
inline constexpr int kReadBadHeader = 3;
inline constexpr int kReadBadData = 4;
inline constexpr int kReadNoMain = 5;
inline constexpr int kReadSecondMain = 6;
inline constexpr int kReadSecondSubDivision = 7;
inline constexpr int kReadBadDatasets = 8;
inline constexpr int kReadSecondLink = 9;
inline constexpr int kReadJoinCount = 10;
inline constexpr int kReadSubDivisionWithoutJoins = 11;
inline constexpr int kReadNotProcessed = 12;
inline constexpr int kReadBadReference = 13;
inline constexpr int kReadMissingReference = 14;
inline constexpr int kReadIntermediateOffLine = 15;
inline constexpr int kReadDuplicateNumber = 16;
inline constexpr int kReadIntermediateLink = 17;
inline constexpr int kReadSharedReference = 18;
inline constexpr int kReadStandAloneReference = 19;
inline constexpr int kReadCircularReference = 20;
inline constexpr int kReadLateSharedReference = 21;
inline constexpr int kReadIntermediatePastEnd = 22;
inline constexpr int kReadFirstPointUnplaced = 23;
inline constexpr int kReadLinkGpsOnly = 24;
inline constexpr int kReadGpsOnlyBeforeLink = 25;
inline constexpr int kReadIntermediateWithoutReference = 26;
inline constexpr int kReadBadFlag = 27;
inline constexpr int kReadBadTarget = 28;
inline constexpr int kReadFlaggedDummy = 29;
inline constexpr int kReadNoDatasets = 30;
inline constexpr int kReadTypeLetters = 32;
inline constexpr int kReadBadDatasetType = 41;
inline constexpr int kReadBadUnit = 42;
inline constexpr int kReadBadSubValueSeparator = 43;
inline constexpr int kReadGpsWithoutUnit = 44;

}  // namespace plotmeter
