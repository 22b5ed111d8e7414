// `plotmeter --export OUT [--scale N|fit] [--paper A4|A3|Letter|Legal] [--landscape] FILE`:
// the sheet of FILE written to OUT without a window, as plotmeter-cli would work: message
// boxes printed to standard error, exit status 0 written, 1 the file refused or
// processing failed (or OUT not written), 2 a usage error.
#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>

namespace plotmeter::app {

// Before the application starts, when no window will open: Qt's offscreen platform unless
// the caller chose one, and standard error kept for the message boxes.
void PrepareHeadless();

struct ExportCommandLine {
  QCommandLineOption exportTo{"export",
                              "Write the sheet of FILE to OUT (.pdf, .svg or .png) "
                              "without opening a window.",
                              "OUT"};
  QCommandLineOption scale{"scale", "The scale 1:N of the sheet, or fit (the default).", "N|fit",
                           "fit"};
  QCommandLineOption paper{"paper", "Paper: A4 (the default), A3, Letter or Legal.", "PAPER", "A4"};
  QCommandLineOption landscape{"landscape", "Turn the paper to landscape."};

  void AddTo(QCommandLineParser& parser) const;
  // Any of the sheet's options, which mean nothing without --export.
  bool IsAnySet(const QCommandLineParser& parser) const;
};

// A usage error: the message and the usage on standard error; returns status 2.
int UsageError(const QString& message);

// Runs the export that `parser` holds; returns the exit status.
int RunExport(const QCommandLineParser& parser, const ExportCommandLine& options);

}  // namespace plotmeter::app
