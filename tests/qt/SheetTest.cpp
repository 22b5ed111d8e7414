// The sheet as it reaches paper and files: lengths measured in the SVG that is written,
// the page of the PDF, of a printer and of the PNG, and Print and Export from the window.
#include <QImage>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>

#include "qt/WindowDriver.h"
#include "ui/qt/SheetPainter.h"

using plotmeter::Paper;
using plotmeter::PaperSize;
using plotmeter::qt::ExportSheet;

namespace {

// What a sheet's SVG draws, in millimetres: straight strokes, texts and the widths of
// unfilled rectangles (to the tenth).
struct SvgSheet {
  QList<std::pair<QLineF, QString>> strokes;
  QList<double> outlines;
  QStringList texts;
};

QList<double> Numbers(QStringView text) {
  static const QRegularExpression kNumber(R"([-+]?[0-9]*\.?[0-9]+(?:[eE][-+]?[0-9]+)?)");
  QList<double> numbers;
  for (const auto& match : kNumber.globalMatch(text)) numbers << match.captured().toDouble();
  return numbers;
}

// Qt writes the groups one after another, each with its colours, and the shapes in the
// units of the view box: millimetres by the document's width.
SvgSheet ReadSvg(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  QXmlStreamReader xml(&file);
  SvgSheet sheet;
  double mm = 1;  // to a unit
  QString stroke, fill;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    const QXmlStreamAttributes a = xml.attributes();
    if (xml.name() == u"svg") {
      mm = a.value("width").chopped(2).toDouble() / Numbers(a.value("viewBox")).at(2);
    } else if (xml.name() == u"g") {
      stroke = a.value("stroke").toString();
      fill = a.value("fill").toString();
    } else if (xml.name() == u"polyline" || xml.name() == u"path") {
      const QList<double> n = Numbers(a.value(xml.name() == u"path" ? "d" : "points"));
      for (qsizetype i = 3; i < n.size(); i += 2) {
        sheet.strokes.append(
            {{QPointF(n[i - 3], n[i - 2]) * mm, QPointF(n[i - 1], n[i]) * mm}, stroke});
      }
    } else if (xml.name() == u"rect" && fill == "none") {
      sheet.outlines << std::round(a.value("width").toDouble() * mm * 10) / 10;
    } else if (xml.name() == u"text") {
      sheet.texts << xml.readElementText();
    }
  }
  return sheet;
}

// The strokes of `colour` as long as `mm`, across the sheet or up it.
int Count(const SvgSheet& sheet, const QString& colour, double mm, bool across) {
  return std::count_if(sheet.strokes.begin(), sheet.strokes.end(), [&](const auto& stroke) {
    const auto& [line, lineColour] = stroke;
    return lineColour == colour && std::abs(across ? line.dy() : line.dx()) < 1e-3 &&
           std::abs(line.length() - mm) <= 0.1;
  });
}

// A PDF's page is its media box, in whole points: within half a point (0.18 mm) of the paper.
void ExpectPage(const QString& pdf, double widthMm, double heightMm) {
  QFile file(pdf);
  QVERIFY(file.open(QIODevice::ReadOnly));
  static const QRegularExpression kBox(R"(/MediaBox\s*\[\s*0\s+0\s+([0-9.]+)\s+([0-9.]+)\s*\])");
  const QRegularExpressionMatch box = kBox.match(QString::fromLatin1(file.readAll()));
  QVERIFY(box.hasMatch());
  QVERIFY(std::abs(box.captured(1).toDouble() - widthMm * 72 / 25.4) <= 0.5);
  QVERIFY(std::abs(box.captured(2).toDouble() - heightMm * 72 / 25.4) <= 0.5);
}

}  // namespace

class SheetTest : public QObject, plotmeter::testing::WindowDriver {
  Q_OBJECT

 private slots:
  void init() { ShowWindow(); }

  // A rectangle's sides and the scale bar measured in the SVG: exact to 0.1 mm. At 1:1200
  // an inch is 100 feet, so 300 by 200 feet is 76.2 by 50.8 mm.
  void lengthsOnTheSheetAreExact() {
    OpenRectangle("3", "300", "200");  // in feet
    const QString out = folder_.filePath("sheet.svg");
    QVERIFY(ExportSheet(window_->logic(), {.scale = 1200}, out, dialogs_));
    const SvgSheet sheet = ReadSvg(out);
    // Two sides across and one up in black; the closing line up in green.
    QCOMPARE(Count(sheet, "#000000", 76.2, true), 2);
    QCOMPARE(Count(sheet, "#000000", 50.8, false), 1);
    QCOMPARE(Count(sheet, "#00c000", 50.8, false), 1);
    // The scale bar's outline is as long as its label says, and the scale is written above.
    QVERIFY(sheet.texts.contains("100 ft"));
    QCOMPARE(sheet.outlines.count(25.4), 1);
    QVERIFY(sheet.texts.contains("Scale 1:1,200 (lengths in Feet)"));
  }

  // At too large a scale the plot is cut at its frame, in an SVG too (which cannot clip): a
  // stroke that starts inside the frame stays within it (the block's lines start on its edge).
  void aPlotTooLargeIsCutAtTheFrame() {
    window_->openFile(kFarm);
    const QString out = folder_.filePath("farm.svg");
    QVERIFY(ExportSheet(window_->logic(), {.scale = 2000}, out, dialogs_));
    const SvgSheet sheet = ReadSvg(out);
    const plotmeter::RectMm f = LayOutSheet(window_->logic(), {.scale = 2000}, "").frame;
    const QRectF within = QRectF(f.left, f.top, f.width, f.height).adjusted(-.01, -.01, .01, .01);
    const QRectF inside = within.adjusted(.02, .02, -.02, -.02);
    int cut = 0;
    for (const auto& [line, colour] : sheet.strokes) {
      const bool from = inside.contains(line.p1()), to = inside.contains(line.p2());
      if (from || to) QVERIFY(within.contains(line.p1()) && within.contains(line.p2()));
      cut += from != to;
    }
    QVERIFY(cut > 0);  // some line does run to the frame's edge
  }

  // Each file's page is the paper chosen, and so is a printer's; a PNG has ten dots to the
  // millimetre, recorded so that it prints to scale. Another extension is refused.
  void pagesAreThePaperChosen() {
    window_->openFile(kFarm);
    const auto& logic = window_->logic();
    const QString pdf = folder_.filePath("farm.pdf"), png = folder_.filePath("farm.png");
    QVERIFY(ExportSheet(logic, {.paper = PaperSize(Paper::kA4, false)}, pdf, dialogs_));
    ExpectPage(pdf, 210, 297);
    QVERIFY(ExportSheet(logic, {.paper = PaperSize(Paper::kA3, true)}, pdf, dialogs_));
    ExpectPage(pdf, 420, 297);
    QVERIFY(ExportSheet(logic, {.paper = PaperSize(Paper::kLegal, false)}, png, dialogs_));
    QCOMPARE(QImage(png).size(), QSize(2159, 3556));
    QCOMPARE(QImage(png).dotsPerMeterX(), 10000);

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder_.filePath("printed.pdf"));
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Landscape, {}));
    plotmeter::qt::PrintSheet(printer, logic, 0);
    ExpectPage(printer.outputFileName(), 279.4, 215.9);

    QVERIFY(!ExportSheet(logic, {}, folder_.filePath("farm.jpg"), dialogs_));
    QCOMPARE(dialogs_.last().title, "Export Abort");
  }

  // From the window: Ctrl+P opens the print choices; Export writes the file chosen.
  void windowPrintsAndExports() {
    window_->openFile(kFarm);
    InDialog([this] { QTest::keyClick(window_.get(), Qt::Key_P, Qt::ControlModifier); },
             [](QDialog* dialog) {
               QCOMPARE(dialog->objectName(), "PrintSheet");
               Click(Find(dialog, "SheetCancelBtn"));
             });

    const QString out = folder_.filePath("exported.svg");
    dialogs_.files.push_back({.cancelled = false, .path = out.toStdString()});
    InDialog("ExportBtn", [](QDialog* d) { Click(Find(d, "SheetOkBtn")); });
    QCOMPARE(dialogs_.fileRequests.at(0).title, "Export");
    QVERIFY(ReadSvg(out).texts.contains("Part 1: 7.67 Hectares"));
  }
};

QTEST_MAIN(SheetTest)
#include "SheetTest.moc"
