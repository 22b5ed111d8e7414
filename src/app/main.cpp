// The desktop program: the main window, opened on a data file when one is named.
#include <QApplication>
#include <QCommandLineParser>

#include "ui/qt/MainWindow.h"
#include "ui/qt/PlotView.h"
#include "ui/qt/TestIds.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("plotmeter");
  QApplication::setApplicationVersion(PLOTMETER_VERSION);
  plotmeter::qt::InstallTestIdsWhenAsked();
  plotmeter::qt::InstallPlotAccessibility();

  QCommandLineParser parser;
  parser.setApplicationDescription("Works out the area of a plot of land and draws it.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("FILE", "A survey data file to open, as if chosen with Load.");
  parser.process(app);

  plotmeter::qt::MainWindow window;
  window.show();
  if (!parser.positionalArguments().isEmpty())
    window.openFile(parser.positionalArguments().first());
  return QApplication::exec();
}
