// Everything a data file reaches, run on one file: the fuzz target and the regression
// test of its findings share it.
//
// The file is loaded twice, once answering every question Yes and once No: reading, the
// load check, point resolution with its repeat passes, processing and the drawing. Then
// the option boxes are clicked through their draw modes, the area shown in every unit and
// segment, the listing built from the file and from the processed survey with every
// column, and the survey saved beside `workFolder` and loaded again.
#pragma once

#include <filesystem>
#include <string>

namespace plotmeter::testing {

// Empty when all went as it must; otherwise what went wrong (a file the program wrote
// that does not load again, when the first load succeeded).
std::string ExerciseDataFile(const std::filesystem::path& file,
                             const std::filesystem::path& workFolder);

}  // namespace plotmeter::testing
