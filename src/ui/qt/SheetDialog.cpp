#include "ui/qt/SheetDialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QVBoxLayout>

#include "ui/qt/SheetPainter.h"
#include "ui/qt/WidgetNames.h"

namespace plotmeter::qt {

namespace {

constexpr const char* kFitToPage = "Fit to page";

bool HasUnitOfLength(const PlotmeterLogic& logic) {
  return MillimetresPerUnit(logic.survey().UnitOfMeasure) > 0;
}

QPageSize::PageSizeId PageSizeOf(Paper paper) {
  switch (paper) {
    case Paper::kA4:
      return QPageSize::A4;
    case Paper::kA3:
      return QPageSize::A3;
    case Paper::kLetter:
      return QPageSize::Letter;
    case Paper::kLegal:
      return QPageSize::Legal;
  }
  return QPageSize::A4;
}

QPageLayout PrinterLayout(Paper paper, bool landscape) {
  return QPageLayout(QPageSize(PageSizeOf(paper)),
                     landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
}

// The file's own name with the extension of the first format offered.
std::string SuggestedName(const PlotmeterLogic& logic) {
  const QFileInfo file(
      QFile::decodeName(QByteArray::fromStdString(logic.survey().CurrentFileName)));
  const QString stem = file.completeBaseName().isEmpty() ? "plot" : file.completeBaseName();
  return QFile::encodeName(file.dir().filePath(stem + ".pdf")).toStdString();
}

bool MayReplace(const QString& path, UserDialogs& dialogs) {
  if (!QFileInfo::exists(path)) return true;
  const std::string name = QFile::encodeName(QFileInfo(path).fileName()).toStdString();
  return dialogs.Show(MessageBox{.title = "Export",
                                 .text = name + " already exists.\nDo you want to replace it?",
                                 .icon = Icon::Question,
                                 .buttons = Buttons::YesNo,
                                 .defaultButton = Button::No}) == Button::Yes;
}

}  // namespace

SheetDialog::SheetDialog(const PlotmeterLogic& logic, Purpose purpose, QWidget* parent)
    : QDialog(parent), logic_(logic) {
  const bool printing = purpose == Purpose::kPrint;
  setObjectName(printing ? "PrintSheet" : "ExportSheet");
  setWindowTitle(printing ? "Print" : "Export");

  SheetScaleCmb = Named(new QComboBox, "SheetScaleCmb");
  SheetPaperCmb = Named(new QComboBox, "SheetPaperCmb");
  for (Paper paper : kPapers) SheetPaperCmb->addItem(QString::fromLatin1(PaperName(paper)));
  SheetLandscapeCkB = Named(new QCheckBox("Landscape"), "SheetLandscapeCkB");
  SheetNoteLbl = Named(new QLabel, "SheetNoteLbl");
  SheetNoteLbl->setWordWrap(true);
  SheetNoteLbl->setMinimumWidth(300);
  fillScales();

  auto* form = new QFormLayout;
  form->addRow("&Scale:", SheetScaleCmb);
  form->addRow("&Paper:", SheetPaperCmb);
  form->addRow("", SheetLandscapeCkB);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("SheetCancelBtn");
  SheetOkBtn =
      Named(buttons->addButton(printing ? "Print..." : "Export...", QDialogButtonBox::AcceptRole),
            "SheetOkBtn");
  if (printing) {
    SheetPreviewBtn =
        Named(buttons->addButton("Preview...", QDialogButtonBox::AcceptRole), "SheetPreviewBtn");
    connect(SheetPreviewBtn, &QPushButton::clicked, this, [this] { previewAsked_ = true; });
  }
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addWidget(SheetNoteLbl);
  column->addWidget(buttons);

  // Once in the dialog, so that Return prints or exports rather than cancels.
  SheetOkBtn->setDefault(true);
  connect(SheetScaleCmb, &QComboBox::currentTextChanged, this, &SheetDialog::showNote);
  connect(SheetPaperCmb, &QComboBox::currentIndexChanged, this, &SheetDialog::showNote);
  connect(SheetLandscapeCkB, &QCheckBox::toggled, this, &SheetDialog::showNote);
  showNote();
}

// A survey without a unit of length can only be fitted; any other takes a usual scale
// or one typed as N or 1:N.
void SheetDialog::fillScales() {
  SheetScaleCmb->addItem(kFitToPage);
  if (!HasUnitOfLength(logic_)) {
    SheetScaleCmb->setEnabled(false);
    return;
  }
  SheetScaleCmb->setEditable(true);
  SheetScaleCmb->setInsertPolicy(QComboBox::NoInsert);
  SheetScaleCmb->lineEdit()->selectAll();  // a scale typed at once replaces "Fit to page"

  for (int scale : UsualScales(logic_.survey().UnitOfMeasure)) {
    SheetScaleCmb->addItem(QString::fromStdString(ScaleText(scale)));
  }
}

std::optional<int> SheetDialog::chosenScale() const {
  return ParseScale(SheetScaleCmb->currentText().toStdString());
}

Paper SheetDialog::paper() const { return kPapers[std::max(0, SheetPaperCmb->currentIndex())]; }

bool SheetDialog::landscape() const { return SheetLandscapeCkB->isChecked(); }

SheetOptions SheetDialog::options() const {
  return {.paper = PaperSize(paper(), landscape()), .scale = chosenScale().value_or(0)};
}

// What the chosen scale gives on the chosen paper: the scale that fits, or that the plot
// will be cut; a typed scale that cannot be read leaves nothing to print.
void SheetDialog::showNote() {
  const std::optional<int> scale = chosenScale();
  SheetOkBtn->setEnabled(scale.has_value());
  if (SheetPreviewBtn) SheetPreviewBtn->setEnabled(scale.has_value());
  if (!scale) {
    SheetNoteLbl->setText("Type a scale as 1:N or N, or choose \"Fit to page\".");
    return;
  }
  if (!HasUnitOfLength(logic_)) {
    SheetNoteLbl->setText(
        "The survey's unit of length is not specified: the plot has no true scale and can "
        "only be fitted to the page.");
    return;
  }
  const Sheet sheet = LayOutSheet(logic_, options(), "");
  const std::string note = FitNote(sheet);
  SheetNoteLbl->setText(QString::fromStdString(
      note.empty() ? "The plot is drawn at " + ScaleText(sheet.scale) + "." : note));
}

void PrintPlot(QWidget* parent, const PlotmeterLogic& logic) {
  SheetDialog choice(logic, SheetDialog::Purpose::kPrint, parent);
  if (choice.exec() != QDialog::Accepted) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(PrinterLayout(choice.paper(), choice.landscape()));
  printer.setDocName(QString::fromLatin1(LayOutSheet(logic, choice.options(), "").title));
  const int scale = choice.options().scale;
  if (choice.previewAsked()) {
    QPrintPreviewDialog preview(&printer, parent);
    preview.setObjectName("PrintPreview");
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested,
                     [&](QPrinter* target) { PrintSheet(*target, logic, scale); });
    preview.exec();
    return;
  }
  QPrintDialog dialog(&printer, parent);
  if (dialog.exec() == QDialog::Accepted) PrintSheet(printer, logic, scale);
}

void ExportPlot(QWidget* parent, const PlotmeterLogic& logic, UserDialogs& dialogs) {
  SheetDialog choice(logic, SheetDialog::Purpose::kExport, parent);
  if (choice.exec() != QDialog::Accepted) return;
  const FileChoice file =
      dialogs.SelectFile({.mode = 1,
                          .filter = "PDF document|*.pdf|SVG drawing|*.svg|PNG image|*.png",
                          .title = "Export",
                          .initialName = SuggestedName(logic),
                          .defaultSuffix = "pdf"});
  if (file.cancelled) return;
  const QString path = QFile::decodeName(QByteArray::fromStdString(file.path));
  if (!MayReplace(path, dialogs)) return;
  ExportSheet(logic, choice.options(), path, dialogs);
}

}  // namespace plotmeter::qt
