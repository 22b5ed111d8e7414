// The commands of plotmeter-cli, one function each, over the options that the command
// line gave them. Each returns the exit status: 0 when every file loaded and processed
// without a failure box (or was written), 1 otherwise.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "model/Survey.h"
#include "ui/DataListing.h"
#include "ui/MainDisplay.h"

namespace plotmeter {

// Exit statuses.
inline constexpr int kStatusOk = 0;
inline constexpr int kStatusFailed = 1;  // also output that could not be written
inline constexpr int kStatusUsage = 2;

struct CheckOptions {
  std::vector<std::string> files;
  bool yes = false;
};

struct AreaOptions {
  std::vector<std::string> files;
  int unit = kDefaultAreaUnit;  // an index in the area unit list
  int segment = 0;
  bool json = false;
  bool yes = false;
};

struct ListOptions {
  std::string file;
  bool processed = false;
  std::uint8_t showColumns = kShowInput;   // as the window opens
  std::uint8_t includeSets = kIncludeAll;  // bit i ticks `IncludeCkB` box i
  bool yes = false;
  bool terminal = false;  // standard output is a terminal: control bytes are shown harmlessly
};

struct SaveOptions {
  std::string file;
  std::string out;
  int writerOptions = kWriterOptionsDefault;
  bool yes = false;
};

enum class ExportFormat { kCsv, kGeoJson, kKml };

struct ExportOptions {
  std::vector<std::string> files;
  ExportFormat format = ExportFormat::kCsv;
  std::string out;  // empty: standard output
  bool yes = false;
};

int RunCheck(const CheckOptions& options, std::ostream& out, std::ostream& err);
int RunArea(const AreaOptions& options, std::ostream& out, std::ostream& err);
int RunList(const ListOptions& options, std::ostream& out, std::ostream& err);
int RunSave(const SaveOptions& options, std::ostream& out, std::ostream& err);
int RunExport(const ExportOptions& options, std::ostream& out, std::ostream& err);

}  // namespace plotmeter
