// The checks that need every point of the file: duplicate numbers, references to points
// the file lacks, intermediate points past a line's end and circular references.
#pragma once

#include "datafile/DataFileReader.h"
#include "model/Survey.h"

namespace plotmeter {

// Faults 16, 14, 28, 13, 22 and 20, in that order, or fault 0. Linear after one sort of
// the point numbers, so that a file of a million points is checked at once.
ReadResult CheckPointTable(const Survey& survey);

}  // namespace plotmeter
