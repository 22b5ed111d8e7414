// The desktop program: the main window, opened on a data file when one is named; or, with
// --export, the sheet of a data file written without a window or a display.
#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include "PlotmeterVersion.h"
#include "app/HeadlessExport.h"
#include "ui/qt/MainWindow.h"
#include "ui/qt/PlotView.h"
#include "ui/qt/TestIds.h"

namespace {

// With PLOTMETER_QUIT_AFTER_PAINT=1 the program ends once the drawing has first been
// painted: how start-up to first paint is measured.
class QuitAfterPaint : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) QTimer::singleShot(0, qApp, &QApplication::quit);
    return QObject::eventFilter(watched, event);
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Works out the area of a plot of land and draws it.");
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  parser.addPositionalArgument("FILE", "A survey data file to open, as if chosen with Load.");
  const plotmeter::app::ExportCommandLine exportOptions;
  exportOptions.AddTo(parser);
  // Read before the application starts, so that a usage error needs no display.
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
  if (!parser.parse(arguments)) return plotmeter::app::UsageError(parser.errorText());
  const bool exporting = parser.isSet(exportOptions.exportTo);
  if (!exporting && exportOptions.IsAnySet(parser)) {
    return plotmeter::app::UsageError("--scale, --paper and --landscape go with --export");
  }
  // An export, the help and the version need no display.
  const bool helping = parser.isSet(help) || parser.isSet("help-all");
  if (exporting || helping || parser.isSet(version)) {
    plotmeter::app::PrepareHeadless();
  }

  QApplication app(argc, argv);
  QApplication::setApplicationName("plotmeter");
  QApplication::setApplicationVersion(
      QString::fromUtf8(plotmeter::kPlotmeterVersion.data(), plotmeter::kPlotmeterVersion.size()));
  if (helping) parser.process(app);  // shows the help asked for and ends
  if (parser.isSet(version)) parser.showVersion();
  if (exporting) return plotmeter::app::RunExport(parser, exportOptions);

  plotmeter::qt::InstallTestIdsWhenAsked();
  plotmeter::qt::InstallPlotAccessibility();
  plotmeter::qt::MainWindow window;
  if (qEnvironmentVariable("PLOTMETER_QUIT_AFTER_PAINT") == "1") {
    window.findChild<QWidget*>("DisplaySh")->installEventFilter(new QuitAfterPaint(&window));
  }
  window.show();
  if (!parser.positionalArguments().isEmpty())
    window.openFile(parser.positionalArguments().first());
  return QApplication::exec();
}
