// The sheet as it reaches paper and files: lengths measured in the SVG that is written,
// the page of the PDF and of a printer, the PNG's size, and Print and Export from the window.
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QXmlStreamReader>
#include <cmath>
#include <vector>

#include "support/ScriptedDialogs.h"
#include "ui/PlotmeterLogic.h"
#include "ui/Sheet.h"
#include "ui/qt/MainWindow.h"
#include "ui/qt/SheetDialog.h"
#include "ui/qt/SheetPainter.h"

using plotmeter::PlotmeterLogic;
using plotmeter::testing::ScriptedDialogs;

namespace {

const QString kFarm = PLOTMETER_EXAMPLES_DIR "/farm.csv";

// A straight stroke of the sheet in millimetres, with its colour.
struct Stroke {
  QPointF from, to;
  QString colour;
  double Length() const { return std::hypot(to.x() - from.x(), to.y() - from.y()); }
  bool Horizontal() const { return std::abs(to.y() - from.y()) < 1e-3; }
  bool Vertical() const { return std::abs(to.x() - from.x()) < 1e-3; }
};

struct SvgRect {
  QRectF rect;  // millimetres
  QString stroke, fill;
};

// What a sheet's SVG draws, in millimetres: its straight strokes, rectangles and texts. The
// drawing's scale comes from the document's own width and view box.
struct SvgSheet {
  double widthMm = 0, heightMm = 0;
  std::vector<Stroke> strokes;
  std::vector<SvgRect> rects;
  QStringList texts;
};

double Number(const QXmlStreamAttributes& attributes, const char* name) {
  return attributes.value(name).toDouble();
}

QList<double> Numbers(QStringView text) {
  QList<double> numbers;
  static const QRegularExpression kNumber(R"([-+]?[0-9]*\.?[0-9]+(?:[eE][-+]?[0-9]+)?)");
  for (const QRegularExpressionMatch& match : kNumber.globalMatch(text)) {
    numbers << match.captured().toDouble();
  }
  return numbers;
}

// Reads the groups' transforms and colours and the shapes inside them.
SvgSheet ReadSvg(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  QXmlStreamReader xml(&file);
  SvgSheet sheet;
  double mmPerUnit = 1;
  struct Group {
    QTransform transform;
    QString stroke, fill;
  };
  std::vector<Group> groups{{}};
  auto toMm = [&](double x, double y) {
    return groups.back().transform.map(QPointF(x, y)) * mmPerUnit;
  };
  while (!xml.atEnd()) {
    xml.readNext();
    if (xml.isEndElement() && xml.name() == u"g") groups.pop_back();
    if (!xml.isStartElement()) continue;
    const QXmlStreamAttributes a = xml.attributes();
    const QStringView name = xml.name();
    if (name == u"svg") {
      sheet.widthMm = a.value("width").chopped(2).toDouble();
      sheet.heightMm = a.value("height").chopped(2).toDouble();
      mmPerUnit = sheet.widthMm / Numbers(a.value("viewBox")).at(2);
    } else if (name == u"g") {
      Group group = groups.back();
      if (a.hasAttribute("transform")) {
        QList<double> m = Numbers(a.value("transform"));
        group.transform = QTransform(m[0], m[1], m[2], m[3], m[4], m[5]) * group.transform;
      }
      if (a.hasAttribute("stroke")) group.stroke = a.value("stroke").toString();
      if (a.hasAttribute("fill")) group.fill = a.value("fill").toString();
      groups.push_back(group);
    } else if (name == u"polyline" || name == u"path") {
      QList<double> n = Numbers(a.value(name == u"path" ? "d" : "points"));
      for (qsizetype i = 2; i + 1 < n.size(); i += 2) {
        sheet.strokes.push_back(
            {toMm(n[i - 2], n[i - 1]), toMm(n[i], n[i + 1]), groups.back().stroke});
      }
    } else if (name == u"rect") {
      QPointF topLeft = toMm(Number(a, "x"), Number(a, "y"));
      QPointF bottomRight =
          toMm(Number(a, "x") + Number(a, "width"), Number(a, "y") + Number(a, "height"));
      sheet.rects.push_back(
          {QRectF(topLeft, bottomRight), groups.back().stroke, groups.back().fill});
    } else if (name == u"text") {
      sheet.texts << xml.readElementText();
    }
  }
  return sheet;
}

// The page size a PDF gives in points: its media box. Qt writes it in whole points, so a
// page may be up to half a point (0.18 mm) off the paper's size; the drawing itself is
// placed from the top left corner at the writer's exact resolution.
QSizeF MediaBox(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  static const QRegularExpression kBox(R"(/MediaBox\s*\[\s*0\s+0\s+([0-9.]+)\s+([0-9.]+)\s*\])");
  QRegularExpressionMatch match = kBox.match(QString::fromLatin1(file.readAll()));
  if (!match.hasMatch()) return {};
  return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

constexpr double kPointsPerMm = 72 / 25.4;

// Writes a survey of `unit` as a rectangle `width` by `height` and loads it.
void LoadRectangle(PlotmeterLogic& logic, const QTemporaryDir& folder, int unit, const char* width,
                   const char* height) {
  const QString path = folder.filePath("plot.csv");
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(QString("44,#0092,%1,0,0,58,Rectangle\nH,M,Rectangle\n1,X,,,0,0\n2,X,,,%2,0\n"
                     "3,X,,,%2,%3\n4,X,,,0,%3\n")
                 .arg(unit)
                 .arg(width, height)
                 .toLatin1());
  file.close();
  ScriptedDialogs dialogs;
  QVERIFY(logic.Load(path.toStdString(), dialogs).Succeeded());
}

int Count(const std::vector<Stroke>& strokes, const QString& colour, double length,
          bool horizontal) {
  int count = 0;
  for (const Stroke& stroke : strokes) {
    bool along = horizontal ? stroke.Horizontal() : stroke.Vertical();
    if (stroke.colour == colour && along && std::abs(stroke.Length() - length) <= 0.1) ++count;
  }
  return count;
}

// Closes the next modal dialog with the button named `button`, once it has opened.
void PressWhenOpen(const char* dialog, const char* button) {
  QTimer::singleShot(0, [dialog, button] {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || modal->objectName() != dialog) qFatal("%s did not open", dialog);
    modal->findChild<QPushButton*>(button)->click();
  });
}

}  // namespace

class SheetTest : public QObject {
  Q_OBJECT

 private slots:
  // The rectangle's sides and the scale bar measured in the SVG: exact to 0.1 mm.
  void lengthsOnTheSheetAreExact_data() {
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("width");
    QTest::addColumn<QString>("height");
    QTest::addColumn<int>("scale");
    QTest::addColumn<double>("widthMm");
    QTest::addColumn<double>("heightMm");
    QTest::addColumn<double>("mmPerUnit");  // on the sheet
    QTest::addColumn<QString>("abbreviation");
    // 100 m at 1:1000 is 100 mm; 1:1200 is an inch to 100 feet; 1:7920 an inch to 10 chains.
    QTest::newRow("metres") << 1 << "100"
                            << "60" << 1000 << 100.0 << 60.0 << 1.0 << "m";
    QTest::newRow("feet") << 3 << "300"
                          << "200" << 1200 << 76.2 << 50.8 << 0.254 << "ft";
    QTest::newRow("chains") << 5 << "30"
                            << "20" << 7920 << 76.2 << 50.8 << 2.54 << "ch";
  }
  void lengthsOnTheSheetAreExact() {
    QFETCH(int, unit);
    QFETCH(QString, width);
    QFETCH(QString, height);
    QFETCH(int, scale);
    QFETCH(double, widthMm);
    QFETCH(double, heightMm);
    QFETCH(double, mmPerUnit);
    QFETCH(QString, abbreviation);
    QTemporaryDir folder;
    PlotmeterLogic logic;
    LoadRectangle(logic, folder, unit, qPrintable(width), qPrintable(height));
    const QString out = folder.filePath("sheet.svg");
    ScriptedDialogs dialogs;
    QVERIFY(plotmeter::qt::ExportSheet(logic, {.scale = scale}, out, dialogs));
    QVERIFY(dialogs.boxes.empty());

    const SvgSheet sheet = ReadSvg(out);
    QCOMPARE(sheet.widthMm, 210.0);
    QCOMPARE(sheet.heightMm, 297.0);
    // Two sides across, one up in black; the closing line up in green.
    QCOMPARE(Count(sheet.strokes, "#000000", widthMm, true), 2);
    QCOMPARE(Count(sheet.strokes, "#000000", heightMm, false), 1);
    QCOMPARE(Count(sheet.strokes, "#00c000", heightMm, false), 1);

    // The scale bar: the outline as long as its label says.
    const QRegularExpression kLabel("^([0-9,.]+) " + abbreviation + "$");
    QStringList labels = sheet.texts.filter(kLabel);
    QCOMPARE(labels.size(), 1);
    const double barMm =
        kLabel.match(labels.first()).captured(1).remove(',').toDouble() * mmPerUnit;
    int bars = 0;
    for (const SvgRect& rect : sheet.rects) {
      if (rect.fill == "none" && rect.rect.height() < 3 &&
          std::abs(rect.rect.width() - barMm) <= 0.1) {
        ++bars;
      }
    }
    QCOMPARE(bars, 1);
    QVERIFY(sheet.texts.contains("Scale " + QString::fromStdString(plotmeter::ScaleText(scale)) +
                                 " (lengths in " +
                                 QString::fromLatin1(plotmeter::UnitName(unit).data()) + ")"));
  }

  // At a scale too large for the paper the plot is cut at its frame, in an SVG too (which
  // cannot clip): no line of the drawing reaches the margin or the block.
  void aPlotTooLargeIsCutAtTheFrame() {
    QTemporaryDir folder;
    PlotmeterLogic logic;
    ScriptedDialogs dialogs;
    QVERIFY(logic.LoadNamed(kFarm.toStdString(), dialogs).Succeeded());
    const QString out = folder.filePath("farm.svg");
    QVERIFY(plotmeter::qt::ExportSheet(logic, {.scale = 2000}, out, dialogs));
    const SvgSheet sheet = ReadSvg(out);
    QRectF frame;
    for (const SvgRect& rect : sheet.rects) {
      if (rect.fill == "none" &&
          rect.rect.width() * rect.rect.height() > frame.width() * frame.height()) {
        frame = rect.rect;
      }
    }
    const QRectF within = frame.adjusted(-0.01, -0.01, 0.01, 0.01);
    const QRectF inside = frame.adjusted(0.01, 0.01, -0.01, -0.01);
    int cut = 0;
    for (const Stroke& stroke : sheet.strokes) {
      // A stroke that starts inside the frame stays within it (the block's own lines start
      // on its edge; the legend stands outside it).
      const bool fromInside = inside.contains(stroke.from), toInside = inside.contains(stroke.to);
      if (!fromInside && !toInside) continue;
      QVERIFY(within.contains(stroke.from) && within.contains(stroke.to));
      if (fromInside != toInside) ++cut;
    }
    QVERIFY(cut > 0);  // some line does run to the frame's edge
  }

  // The PDF's page is the paper chosen, and so is a printer's.
  void pagesAreThePaperChosen() {
    QTemporaryDir folder;
    PlotmeterLogic logic;
    ScriptedDialogs dialogs;
    QVERIFY(logic.LoadNamed(kFarm.toStdString(), dialogs).Succeeded());
    const QString pdf = folder.filePath("farm.pdf");
    QVERIFY(plotmeter::qt::ExportSheet(
        logic, {.paper = plotmeter::PaperSize(plotmeter::Paper::kA4, false)}, pdf, dialogs));
    QSizeF a4 = MediaBox(pdf);
    QVERIFY(std::abs(a4.width() - 210 * kPointsPerMm) <= 0.5);
    QVERIFY(std::abs(a4.height() - 297 * kPointsPerMm) <= 0.5);
    QVERIFY(plotmeter::qt::ExportSheet(
        logic, {.paper = plotmeter::PaperSize(plotmeter::Paper::kA3, true), .scale = 1000}, pdf,
        dialogs));
    QSizeF a3 = MediaBox(pdf);
    QVERIFY(std::abs(a3.width() - 420 * kPointsPerMm) <= 0.5);
    QVERIFY(std::abs(a3.height() - 297 * kPointsPerMm) <= 0.5);

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder.filePath("printed.pdf"));
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Landscape, {}));
    plotmeter::qt::PrintSheet(printer, logic, 0);
    QSizeF letter = MediaBox(folder.filePath("printed.pdf"));
    QVERIFY(std::abs(letter.width() - 11 * 72) <= 0.5);
    QVERIFY(std::abs(letter.height() - 8.5 * 72) <= 0.5);
    QVERIFY(dialogs.boxes.empty());
  }

  // Ten dots to the millimetre, recorded in the image so that it prints to scale.
  void pngIsTheSheetAtTenDotsToTheMillimetre() {
    QTemporaryDir folder;
    PlotmeterLogic logic;
    ScriptedDialogs dialogs;
    QVERIFY(logic.LoadNamed(kFarm.toStdString(), dialogs).Succeeded());
    const QString png = folder.filePath("farm.png");
    QVERIFY(plotmeter::qt::ExportSheet(
        logic, {.paper = plotmeter::PaperSize(plotmeter::Paper::kLegal, false)}, png, dialogs));
    QImage image(png);
    QCOMPARE(image.size(), QSize(2159, 3556));
    QCOMPARE(image.dotsPerMeterX(), 10000);
  }

  void anUnknownExtensionOrFolderWritesNothing() {
    QTemporaryDir folder;
    PlotmeterLogic logic;
    ScriptedDialogs dialogs;
    QVERIFY(logic.LoadNamed(kFarm.toStdString(), dialogs).Succeeded());
    QVERIFY(!plotmeter::qt::ExportSheet(logic, {}, folder.filePath("farm.jpg"), dialogs));
    QCOMPARE(dialogs.last().title, std::string("Export Abort"));
    QVERIFY(!plotmeter::qt::ExportSheet(logic, {}, folder.filePath("none/farm.pdf"), dialogs));
    QCOMPARE(dialogs.last().title, std::string("Write File Abort"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 0);
  }

  // From the window: Ctrl+P opens the print choices; Export writes the file chosen.
  void windowPrintsAndExports() {
    QTemporaryDir folder;
    ScriptedDialogs dialogs;
    plotmeter::qt::MainWindow window(&dialogs);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* print = window.findChild<QPushButton*>("PrintBtn");
    auto* exporting = window.findChild<QPushButton*>("ExportBtn");
    QCOMPARE(print->text(), QString("Print..."));
    QCOMPARE(exporting->text(), QString("Export..."));
    QVERIFY(!print->isEnabled());
    QVERIFY(!exporting->isEnabled());

    window.openFile(kFarm);
    QVERIFY(print->isEnabled());
    PressWhenOpen("PrintSheet", "SheetCancelBtn");
    QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier);

    const QString out = folder.filePath("farm.svg");
    dialogs.files.push_back({.cancelled = false, .path = out.toStdString()});
    PressWhenOpen("ExportSheet", "SheetOkBtn");
    exporting->click();
    QCOMPARE(dialogs.fileRequests.back().title, std::string("Export"));
    QVERIFY(ReadSvg(out).texts.contains("Part 1: 7.67 Hectares"));
    QVERIFY(dialogs.boxes.empty());
  }
};

QTEST_MAIN(SheetTest)
#include "SheetTest.moc"
