// The documents of `plotmeter-cli export`: a CSV table of every point (RFC 4180), and the
// map features as GeoJSON (RFC 7946) or KML 2.2. One document holds every survey given;
// when there are several, each row, feature or folder names its file.
#pragma once

#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/SurveyExport.h"

namespace plotmeter {

// GeoJSON and KML place the survey on a map: only a survey tied to GPS can be written.
bool NeedsGps(ExportFormat format);

// The whole document, in UTF-8.
std::string ExportText(ExportFormat format, const std::vector<ExportedSurvey>& surveys);

}  // namespace plotmeter
