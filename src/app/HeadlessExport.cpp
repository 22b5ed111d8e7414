#include "app/HeadlessExport.h"

#include <QFile>
#include <iostream>

#include "cli/CliDialogs.h"
#include "ui/PlotmeterLogic.h"
#include "ui/Sheet.h"
#include "ui/qt/SheetPainter.h"

namespace plotmeter::app {

namespace {

constexpr int kStatusWritten = 0;
constexpr int kStatusFailed = 1;
constexpr int kStatusUsage = 2;

constexpr const char* kUsage =
    "Usage: plotmeter [FILE]\n"
    "       plotmeter --export OUT [--scale N|fit] [--paper A4|A3|Letter|Legal] [--landscape] "
    "FILE\n"
    "Run 'plotmeter --help' for more.\n";

void Show(UserDialogs& dialogs, const std::string& title, const std::string& text, Icon icon) {
  Alert(dialogs, MessageBox{.title = title,
                            .text = text,
                            .icon = icon,
                            .buttons = Buttons::Ok,
                            .defaultButton = Button::Ok});
}

struct ExportRequest {
  QString out;
  std::string file;
  SheetOptions options;
};

// The command line checked before any file is read; a message when it is not usable.
QString CheckRequest(const QCommandLineParser& parser, const ExportCommandLine& options,
                     ExportRequest& request) {
  const QStringList files = parser.positionalArguments();
  if (files.size() != 1) return "--export takes exactly one FILE";
  request.file = QFile::encodeName(files.first()).toStdString();
  request.out = parser.value(options.exportTo);
  if (!qt::SheetFormatOf(request.out)) return "OUT must end in .pdf, .svg or .png";
  const std::optional<int> scale = ParseScale(parser.value(options.scale).toStdString());
  if (!scale) return "--scale takes N of 1:N (a whole number from 1) or fit";
  const std::optional<Paper> paper = PaperNamed(parser.value(options.paper).toStdString());
  if (!paper) return "--paper takes A4, A3, Letter or Legal";
  request.options = {.paper = PaperSize(*paper, parser.isSet(options.landscape)), .scale = *scale};
  return {};
}

// Standard error carries the message boxes only: Qt's own notes about the session it
// runs in (no runtime folder, no display) are not for the user of a command.
void KeepQtNotesOffStandardError(QtMsgType type, const QMessageLogContext& context,
                                 const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg) {
    std::cerr << qPrintable(qFormatLogMessage(type, context, message)) << std::endl;
  }
}

}  // namespace

void ExportCommandLine::AddTo(QCommandLineParser& parser) const {
  parser.addOptions({exportTo, scale, paper, landscape});
}

bool ExportCommandLine::IsAnySet(const QCommandLineParser& parser) const {
  return parser.isSet(scale) || parser.isSet(paper) || parser.isSet(landscape);
}

int UsageError(const QString& message) {
  std::cerr << "plotmeter: " << message.toStdString() << "\n" << kUsage << std::flush;
  return kStatusUsage;
}

void PrepareHeadless() {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(KeepQtNotesOffStandardError);
}

int RunExport(const QCommandLineParser& parser, const ExportCommandLine& options) {
  ExportRequest request;
  if (QString problem = CheckRequest(parser, options, request); !problem.isEmpty()) {
    return UsageError(problem);
  }
  CliDialogs dialogs(std::cerr, false);
  PlotmeterLogic logic;
  if (!logic.LoadNamed(request.file, dialogs).Succeeded()) return kStatusFailed;
  if (request.options.scale > 0 && MillimetresPerUnit(logic.survey().UnitOfMeasure) == 0) {
    Show(dialogs, "Export Abort",
         "The survey's unit of length is not specified: the plot has no true scale and can "
         "only be fitted to the page (--scale fit).",
         Icon::Critical);
    return kStatusFailed;
  }
  const std::string note = FitNote(LayOutSheet(logic, request.options, ""));
  if (!note.empty()) Show(dialogs, "Export", note, Icon::Exclamation);
  return qt::ExportSheet(logic, request.options, request.out, dialogs) ? kStatusWritten
                                                                       : kStatusFailed;
}

}  // namespace plotmeter::app
