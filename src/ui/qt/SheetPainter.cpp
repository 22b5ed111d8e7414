#include "ui/qt/SheetPainter.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QPolygonF>
#include <QSaveFile>
#include <QSvgGenerator>
#include <algorithm>

#include "datafile/DataFileWriter.h"
#include "ui/qt/ScenePainter.h"

namespace plotmeter::qt {

namespace {

constexpr double kFramePen = 0.35;  // millimetres
constexpr double kThinPen = 0.2;
constexpr double kPadding = 3;
constexpr double kLegendRow = 4.6;
constexpr double kLegendSample = 11;
constexpr double kTitlePoints = 11;
constexpr double kTextPoints = 8;
constexpr double kSmallPoints = 7;
constexpr int kPdfResolution = 1200;

// Millimetres on the paper to device units.
class Paper {
 public:
  explicit Paper(double dotsPerMm) : dots_(dotsPerMm) {}
  double operator()(double mm) const { return mm * dots_; }
  QPointF At(double x, double y) const { return {x * dots_, y * dots_}; }
  QRectF Rect(const RectMm& r) const {
    return {r.left * dots_, r.top * dots_, r.width * dots_, r.height * dots_};
  }
  QPen Pen(double widthMm, QColor colour = Qt::black) const {
    QPen pen(colour, widthMm * dots_);
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
  }

 private:
  double dots_;
};

QFont SheetFont(double points, bool bold = false) {
  QFont font;
  font.setPointSizeF(points);
  font.setBold(bold);
  return font;
}

// Draws `text` at the top of `room` (device units), wrapped to its width, and takes the
// height it used off the top of `room`.
void DrawLines(QPainter& painter, QRectF& room, const QString& text, const QFont& font,
               int flags = Qt::TextWordWrap) {
  painter.setFont(font);
  QRectF used;
  painter.drawText(room, Qt::AlignLeft | Qt::AlignTop | flags, text, &used);
  room.setTop(room.top() + used.height());
}

// The drawing as the sheet shows it: without the tag of a right click, and with the
// selected point's marker at its normal size.
PlotScene SceneForSheet(const PlotScene& scene) {
  PlotScene printed = scene;
  printed.TagDSLbl.visible = false;
  for (SceneMarker& marker : printed.markers) marker.size = printed.markerSize;
  return printed;
}

SceneStyle PaperStyle(const Sheet& sheet, const Paper& paper) {
  return {.lineWidth = paper(sheet.lineWidth),
          .cosmeticPens = false,
          .markerSide = paper(sheet.markerSide),
          .drawLabels = true,
          .drawFrame = false};
}

void PaintDrawing(QPainter& painter, const Paper& paper, const Sheet& sheet,
                  const PlotScene& scene) {
  SceneTransform transform =
      SceneTransform::Centred(paper.Rect(sheet.frame), QPointF(sheet.centreX, sheet.centreY),
                              paper(sheet.millimetresPerDisplayUnit));
  painter.setFont(SheetFont(kTextPoints));
  PaintScene(painter, SceneForSheet(scene), transform, PaperStyle(sheet, paper));
}

// An arrow to grid north (up the sheet) under the letter N, its left half black.
void PaintNorthArrow(QPainter& painter, const Paper& paper, const RectMm& box) {
  const double letter = 5;
  const double middle = box.left + box.width / 2;
  const QPointF tip = paper.At(middle, box.top + letter);
  const QPointF notch = paper.At(middle, box.bottom() - 3);
  const QPointF left = paper.At(box.left + 1.5, box.bottom());
  const QPointF right = paper.At(box.right() - 1.5, box.bottom());
  painter.setPen(paper.Pen(kThinPen));
  painter.setBrush(Qt::black);
  painter.drawPolygon(QPolygonF({tip, left, notch}));
  painter.setBrush(Qt::white);
  painter.drawPolygon(QPolygonF({tip, notch, right}));
  painter.setFont(SheetFont(kTitlePoints, true));
  painter.drawText(paper.Rect({box.left, box.top, box.width, letter}), Qt::AlignCenter, "N");
}

void PaintBlockLines(QPainter& painter, const Paper& paper, const Sheet& sheet) {
  painter.setPen(paper.Pen(kFramePen));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(paper.Rect(sheet.frame));
  painter.drawRect(paper.Rect(sheet.block));
  painter.setPen(paper.Pen(kThinPen));
  for (const RectMm* cell : {&sheet.scaleCell, &sheet.legendCell}) {
    painter.drawLine(paper.At(cell->left, cell->top), paper.At(cell->left, cell->bottom()));
  }
}

QRectF Inside(const Paper& paper, const RectMm& cell) {
  return paper.Rect({cell.left + kPadding, cell.top + kPadding, cell.width - 2 * kPadding,
                     cell.height - 2 * kPadding});
}

void PaintTitle(QPainter& painter, const Paper& paper, const Sheet& sheet) {
  QRectF room = Inside(paper, sheet.titleCell);
  painter.setPen(Qt::black);
  DrawLines(painter, room, QString::fromLatin1(sheet.title), SheetFont(kTitlePoints, true));
  room.setTop(room.top() + paper(1.5));
  const QFont small = SheetFont(kSmallPoints);
  // A long path breaks after a folder's name, not inside one.
  QString file = QFile::decodeName(QByteArray::fromStdString(sheet.fileName));
  file.replace('/', QString("/") + QChar(0x200B));
  DrawLines(painter, room, "File: " + file, small);
  DrawLines(painter, room, "Date: " + QString::fromStdString(sheet.date), small);
}

// Divisions alternately black and white in one outline, "0" under the left end and the
// length under the right.
void PaintScaleBar(QPainter& painter, const Paper& paper, const ScaleBar& bar) {
  if (bar.divisions <= 0) return;
  const RectMm& r = bar.bar;
  const double step = r.width / bar.divisions;
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < bar.divisions; ++i) {
    painter.setBrush(i % 2 == 0 ? Qt::black : Qt::white);
    painter.drawRect(paper.Rect({r.left + i * step, r.top, step, r.height}));
  }
  painter.setPen(paper.Pen(kThinPen));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(paper.Rect(r));
  painter.setFont(SheetFont(kSmallPoints));
  const double labelTop = r.bottom() + 0.5, labelWidth = 20;
  painter.drawText(paper.Rect({r.left - labelWidth / 2, labelTop, labelWidth, 3.5}),
                   Qt::AlignHCenter | Qt::AlignTop, "0");
  painter.drawText(paper.Rect({r.right() - labelWidth / 2, labelTop, labelWidth, 3.5}),
                   Qt::AlignHCenter | Qt::AlignTop, QString::fromLatin1(bar.endLabel));
}

void PaintScaleCell(QPainter& painter, const Paper& paper, const Sheet& sheet) {
  QRectF room = Inside(paper, sheet.scaleCell);
  painter.setPen(Qt::black);
  DrawLines(painter, room, QString::fromLatin1(sheet.areaHeading), SheetFont(kTextPoints, true));
  for (const std::string& line : sheet.areaLines) {
    DrawLines(painter, room, QString::fromLatin1(line), SheetFont(kTextPoints));
  }
  // The scale stands just above its bar.
  const RectMm& bar = sheet.scaleBar.bar;
  const RectMm& cell = sheet.scaleCell;
  painter.setFont(SheetFont(kSmallPoints));
  painter.drawText(paper.Rect({cell.left + kPadding, room.top() / paper(1),
                               cell.width - 2 * kPadding, bar.top - 1.5 - room.top() / paper(1)}),
                   Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap,
                   QString::fromLatin1(sheet.scaleLine));
  PaintScaleBar(painter, paper, sheet.scaleBar);
}

// Each symbol drawn by the scene painter itself, so that the legend shows it as the plot
// does.
void PaintLegend(QPainter& painter, const Paper& paper, const Sheet& sheet) {
  const SceneStyle style = PaperStyle(sheet, paper);
  const RectMm& cell = sheet.legendCell;
  double y = cell.top + kPadding;
  for (const LegendEntry& entry : sheet.legend) {
    const double middle = y + kLegendRow / 2;
    const double left = cell.left + kPadding;
    if (entry.line) {
      PaintLine(painter, paper.At(left, middle), paper.At(left + kLegendSample, middle),
                ColourOf(*entry.line), style);
    }
    if (entry.marker) {
      MarkerColours colours = ColoursOf(*entry.marker);
      PaintMarker(painter, paper.At(left + kLegendSample / 2, middle), style.markerSide,
                  colours.border, colours.fill, style);
    }
    painter.setPen(Qt::black);
    painter.setFont(SheetFont(kSmallPoints));
    const double textLeft = left + kLegendSample + 2;
    painter.drawText(paper.Rect({textLeft, y, cell.right() - kPadding - textLeft, kLegendRow}),
                     Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(entry.text));
    y += kLegendRow;
  }
}

QPageLayout PageLayoutOf(SizeMm paper) {
  const bool landscape = paper.width > paper.height;
  const QSizeF portrait(std::min(paper.width, paper.height), std::max(paper.width, paper.height));
  return QPageLayout(QPageSize(portrait, QPageSize::Millimeter),
                     landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
}

QSize DotsOf(SizeMm paper) {
  return {qRound(paper.width * kImageDotsPerMm), qRound(paper.height * kImageDotsPerMm)};
}

bool PaintPdf(QIODevice& file, const Sheet& sheet, const PlotScene& scene) {
  QPdfWriter writer(&file);
  writer.setResolution(kPdfResolution);
  writer.setPageLayout(PageLayoutOf(sheet.paper));
  writer.setCreator("Plotmeter");
  writer.setTitle(QString::fromLatin1(sheet.title));
  QPainter painter;
  if (!painter.begin(&writer)) return false;
  PaintSheet(painter, writer.resolution() / 25.4, sheet, scene);
  return painter.end();
}

bool PaintSvg(QIODevice& file, const Sheet& sheet, const PlotScene& scene) {
  QSvgGenerator generator;
  generator.setOutputDevice(&file);
  generator.setResolution(qRound(kImageDotsPerMm * 25.4));
  generator.setSize(DotsOf(sheet.paper));
  generator.setViewBox(QRect(QPoint(0, 0), DotsOf(sheet.paper)));
  generator.setTitle(QString::fromLatin1(sheet.title));
  generator.setDescription(QString::fromLatin1(sheet.scaleLine));
  QPainter painter;
  if (!painter.begin(&generator)) return false;
  PaintSheet(painter, kImageDotsPerMm, sheet, scene);
  return painter.end();
}

bool PaintPng(QIODevice& file, const Sheet& sheet, const PlotScene& scene) {
  QImage image(DotsOf(sheet.paper), QImage::Format_RGB32);
  image.setDotsPerMeterX(qRound(kImageDotsPerMm * 1000));
  image.setDotsPerMeterY(qRound(kImageDotsPerMm * 1000));
  image.fill(Qt::white);
  QPainter painter;
  if (!painter.begin(&image)) return false;
  PaintSheet(painter, kImageDotsPerMm, sheet, scene);
  painter.end();
  return image.save(&file, "PNG");
}

void Refuse(UserDialogs& dialogs, const std::string& title, const std::string& text) {
  Alert(dialogs, MessageBox{.title = title,
                            .text = text,
                            .icon = Icon::Critical,
                            .buttons = Buttons::Ok,
                            .defaultButton = Button::Ok});
}

}  // namespace

void PaintSheet(QPainter& painter, double dotsPerMm, const Sheet& sheet, const PlotScene& scene) {
  const Paper paper(dotsPerMm);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  // White paper, so that an SVG reads the same on a dark background.
  painter.fillRect(paper.Rect({0, 0, sheet.paper.width, sheet.paper.height}), Qt::white);
  PaintDrawing(painter, paper, sheet, scene);
  PaintNorthArrow(painter, paper, sheet.northArrow);
  PaintBlockLines(painter, paper, sheet);
  PaintTitle(painter, paper, sheet);
  PaintScaleCell(painter, paper, sheet);
  PaintLegend(painter, paper, sheet);
  painter.restore();
}

std::optional<SheetFormat> SheetFormatOf(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  if (suffix == "pdf") return SheetFormat::kPdf;
  if (suffix == "svg") return SheetFormat::kSvg;
  if (suffix == "png") return SheetFormat::kPng;
  return std::nullopt;
}

bool WriteSheet(const QString& path, SheetFormat format, const Sheet& sheet,
                const PlotScene& scene) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  bool painted = false;
  switch (format) {
    case SheetFormat::kPdf:
      painted = PaintPdf(file, sheet, scene);
      break;
    case SheetFormat::kSvg:
      painted = PaintSvg(file, sheet, scene);
      break;
    case SheetFormat::kPng:
      painted = PaintPng(file, sheet, scene);
      break;
  }
  if (!painted) {
    file.cancelWriting();
    return false;
  }
  return file.commit();
}

void PrintSheet(QPrinter& printer, const PlotmeterLogic& logic, int scale) {
  printer.setFullPage(true);
  const QSizeF paper = printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
  const Sheet sheet =
      LayOutSheet(logic, {.paper = {paper.width(), paper.height()}, .scale = scale}, Today());
  QPainter painter;
  if (!painter.begin(&printer)) return;
  PaintSheet(painter, printer.resolution() / 25.4, sheet, logic.scene());
  painter.end();
}

std::string Today() { return QDate::currentDate().toString(Qt::ISODate).toStdString(); }

bool ExportSheet(const PlotmeterLogic& logic, const SheetOptions& options, const QString& path,
                 UserDialogs& dialogs) {
  const std::optional<SheetFormat> format = SheetFormatOf(path);
  if (!format) {
    Refuse(dialogs, "Export Abort",
           "The file name must end in .pdf, .svg or .png: it chooses what is written.");
    return false;
  }
  const Sheet sheet = LayOutSheet(logic, options, Today());
  if (!WriteSheet(path, *format, sheet, logic.scene())) {
    Refuse(dialogs, "Write File Abort", WriteFaultMessage(kWriteCannotOpen));
    return false;
  }
  return true;
}

}  // namespace plotmeter::qt
