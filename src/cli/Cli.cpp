#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <vector>

#include "PlotmeterVersion.h"
#include "cli/Commands.h"
#include "cli/TextOutput.h"
#include "geometry/Area.h"
#include "ui/DataListing.h"

namespace plotmeter {

namespace {

constexpr const char* kUsage =
    "Usage: plotmeter-cli COMMAND FILE [options]\n"
    "  check FILE...                     load and process; prints OK\n"
    "  area FILE... [--unit U] [--segment S] [--json]\n"
    "  list FILE [--processed] [--show GROUPS] [--include SETS]\n"
    "  save FILE OUT [--writer-options N]\n"
    "  export FILE... --to geojson|kml|csv [-o OUT]\n"
    "Run 'plotmeter-cli --help' for more.\n";

constexpr const char* kFooter =
    "Message boxes are printed to standard error as blocks headed [TITLE]; questions are\n"
    "answered No (Cancel) unless --yes is given.\n"
    "Exit status: 0 loaded and processed (or written), 1 file refused, processing\n"
    "failed or output not written, 2 usage error.";

struct NamedBit {
  std::string_view name;
  std::uint8_t bit;
};

constexpr std::array<NamedBit, 6> kShowGroups = {{{"input", kShowInput},
                                                  {"xy", kShowXY},
                                                  {"bearing", kShowBearing},
                                                  {"gps", kShowGps},
                                                  {"altgps", kShowAltGps},
                                                  {"none", 0}}};

constexpr std::array<NamedBit, kIncludeCount> kIncludeSets = {
    {{"main", 1 << kIncludeMain},
     {"sub", 1 << kIncludeSubDivision},
     {"intermediate", 1 << kIncludeIntermediate},
     {"lines", 1 << kIncludeLines},
     {"points", 1 << kIncludePoints}}};

template <std::size_t N>
std::vector<std::string> Names(const std::array<NamedBit, N>& table) {
  std::vector<std::string> names;
  for (const NamedBit& entry : table) names.emplace_back(entry.name);
  return names;
}

template <std::size_t N>
std::uint8_t Bits(const std::array<NamedBit, N>& table, const std::vector<std::string>& names) {
  std::uint8_t bits = 0;
  for (const std::string& name : names) {
    for (const NamedBit& entry : table) {
      if (entry.name == name) bits |= entry.bit;
    }
  }
  return bits;
}

// An area unit by its list text ("Hectares") or its index ("1"); -1 for neither.
int AreaUnitIndex(const std::string& text) {
  for (int index = 0; index < kAreaUnitCount; ++index) {
    if (text == AreaUnitName(index) || text == std::to_string(index)) return index;
  }
  return -1;
}

std::string UnitChoices() {
  std::string choices;
  for (int index = 0; index < kAreaUnitCount; ++index) {
    choices += (index ? ", \"" : "\"") + std::string(AreaUnitName(index)) + "\"";
  }
  return choices;
}

// The options of every command, filled by the parser.
struct Parsed {
  bool yes = false;
  CheckOptions check;
  AreaOptions area;
  std::string unit{AreaUnitName(kDefaultAreaUnit)};
  ListOptions list;
  std::vector<std::string> show{"input"};
  std::vector<std::string> include = Names(kIncludeSets);
  SaveOptions save;
  ExportOptions exports;
  std::string to;
};

void AddCheck(CLI::App& app, Parsed& parsed) {
  CLI::App* check = app.add_subcommand("check", "Load and process each FILE; prints OK when good");
  check->add_option("FILE", parsed.check.files, "Data file(s)")->required();
}

void AddArea(CLI::App& app, Parsed& parsed) {
  CLI::App* area = app.add_subcommand("area", "The area of each FILE, as the main window shows it");
  area->add_option("FILE", parsed.area.files, "Data file(s)")->required();
  area->add_option("--unit", parsed.unit, "Area unit: " + UnitChoices() + ", or its index 0-7")
      ->check(CLI::Validator(
          [](std::string& text) {
            return AreaUnitIndex(text) < 0 ? "unknown area unit '" + text + "'" : std::string();
          },
          "UNIT"))
      ->capture_default_str();
  area->add_option("--segment", parsed.area.segment, "Area segment 0-2 of a divided plot")
      ->check(CLI::Range(0, 2))
      ->capture_default_str();
  area->add_flag("--json", parsed.area.json, "Print one JSON object a file");
}

void AddList(CLI::App& app, Parsed& parsed) {
  CLI::App* list = app.add_subcommand("list", "The data listing of FILE");
  list->add_option("FILE", parsed.list.file, "Data file")->required();
  list->add_flag("--processed", parsed.list.processed,
                 "List the processed survey (otherwise the file's own lines)");
  list->add_option("--show", parsed.show, "Column groups: input, xy, bearing, gps, altgps, none")
      ->delimiter(',')
      ->check(CLI::IsMember(Names(kShowGroups)))
      ->capture_default_str();
  list->add_option("--include", parsed.include,
                   "Datasets and points: main, sub, intermediate, lines, points")
      ->delimiter(',')
      ->check(CLI::IsMember(Names(kIncludeSets)))
      ->capture_default_str();
}

void AddSave(CLI::App& app, Parsed& parsed) {
  CLI::App* save = app.add_subcommand("save", "Load and process FILE, then write it to OUT");
  save->add_option("FILE", parsed.save.file, "Data file")->required();
  save->add_option("OUT", parsed.save.out, "File to write")->required();
  save->add_option("--writer-options", parsed.save.writerOptions, "Writer options 0-255")
      ->check(CLI::Range(0, 255))
      ->capture_default_str();
}

// OUT may not be one of the FILEs: the survey would be overwritten by its export.
bool OverwritesAFile(const ExportOptions& options) {
  std::error_code error;
  return std::any_of(options.files.begin(), options.files.end(), [&](const std::string& file) {
    return std::filesystem::equivalent(file, options.out, error);
  });
}

ExportFormat ExportFormatNamed(const std::string& name) {
  if (name == "geojson") return ExportFormat::kGeoJson;
  if (name == "kml") return ExportFormat::kKml;
  return ExportFormat::kCsv;
}

void AddExport(CLI::App& app, Parsed& parsed) {
  CLI::App* exports = app.add_subcommand(
      "export", "Each FILE's points as CSV, or its plot as GeoJSON or KML for maps");
  exports->add_option("FILE", parsed.exports.files, "Data file(s)")->required();
  exports
      ->add_option("--to", parsed.to,
                   "csv: every point; geojson, kml: the plot in WGS 84 longitude and latitude, "
                   "for a survey tied to GPS by a GPS link point")
      ->required()
      ->check(CLI::IsMember({"geojson", "kml", "csv"}));
  exports
      ->add_option("-o,--output", parsed.exports.out,
                   "Write to OUT (replaced whole) instead of standard output; OUT is left "
                   "alone when no FILE could be exported")
      ->type_name("OUT");
  exports->footer(
      "Several FILEs make one document: each CSV row (a first column File), GeoJSON feature "
      "(property file) and KML folder names its file; with -o it is written to OUT. A FILE that "
      "fails is left out and the status is 1.");
  exports->parse_complete_callback([&parsed] {
    if (OverwritesAFile(parsed.exports)) {
      throw CLI::ValidationError("--output", "OUT is one of the FILEs, which it would overwrite");
    }
  });
}

// The first word that is not an option names the command: only flags stand before it.
std::string UnknownCommand(const CLI::App& app, std::span<const std::string> args) {
  for (const std::string& arg : args) {
    if (arg.starts_with("-")) continue;
    for (const CLI::App* command : app.get_subcommands({})) {
      if (command->get_name() == arg) return "";
    }
    return arg;
  }
  return "";
}

int UsageError(std::ostream& err, const std::string& message) {
  err << "plotmeter-cli: " << message << "\n" << kUsage;
  return kStatusUsage;
}

// Like the usual command-line tools, a failed write of the results is an error: output cut
// short by a full disk must not pass for the whole.
int OutputError(std::ostream& err, int error) {
  err << "plotmeter-cli: error writing standard output";
  if (error != 0) err << ": " << std::generic_category().message(error);
  err << '\n';
  return kStatusFailed;
}

int Dispatch(const CLI::App& app, Parsed& parsed, std::ostream& out, std::ostream& err) {
  if (app.got_subcommand("check")) {
    parsed.check.yes = parsed.yes;
    return RunCheck(parsed.check, out, err);
  }
  if (app.got_subcommand("area")) {
    parsed.area.yes = parsed.yes;
    parsed.area.unit = AreaUnitIndex(parsed.unit);
    return RunArea(parsed.area, out, err);
  }
  if (app.got_subcommand("list")) {
    parsed.list.yes = parsed.yes;
    parsed.list.showColumns = Bits(kShowGroups, parsed.show);
    parsed.list.includeSets = Bits(kIncludeSets, parsed.include);
    return RunList(parsed.list, out, err);
  }
  if (app.got_subcommand("export")) {
    parsed.exports.yes = parsed.yes;
    parsed.exports.format = ExportFormatNamed(parsed.to);
    return RunExport(parsed.exports, out, err);
  }
  parsed.save.yes = parsed.yes;
  return RunSave(parsed.save, out, err);
}

}  // namespace

int RunCli(std::span<const std::string> args, std::ostream& out, std::ostream& err,
           bool outIsTerminal) {
  CLI::App app{"Plotmeter: the area of a plot of land from survey data", "plotmeter-cli"};
  app.set_version_flag("--version", "plotmeter-cli " + std::string(kPlotmeterVersion));
  app.footer(kFooter);
  app.require_subcommand(1);
  app.fallthrough();
  Parsed parsed;
  app.add_flag("--yes", parsed.yes, "Answer every question Yes (OK)");
  AddCheck(app, parsed);
  AddArea(app, parsed);
  AddList(app, parsed);
  AddSave(app, parsed);
  AddExport(app, parsed);

  parsed.list.terminal = outIsTerminal;
  const std::string unknown = UnknownCommand(app, args);
  if (!unknown.empty()) return UsageError(err, "unknown command '" + unknown + "'");
  std::vector<std::string> reversed(args.rbegin(), args.rend());
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      return app.exit(e, out, err);  // --help, --version
    }
    return UsageError(err, e.what());
  }
  int status = kStatusOk;
  try {
    status = Dispatch(app, parsed, out, err);
  } catch (const std::bad_alloc&) {
    err << "plotmeter-cli: out of memory\n";
    status = kStatusFailed;
  }
  out.flush();
  if (out) return status;
  const auto* file = dynamic_cast<const OutputFile*>(out.rdbuf());
  return OutputError(err, file ? file->error() : 0);
}

}  // namespace plotmeter
