// "Print..." and "Export...": a small dialog for the sheet's scale and paper, then the
// printer's own dialog (or its preview) or the file dialog.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "model/UserDialogs.h"
#include "ui/PlotmeterLogic.h"
#include "ui/Sheet.h"

namespace plotmeter::qt {

class SheetDialog : public QDialog {
  Q_OBJECT

 public:
  enum class Purpose { kPrint, kExport };

  SheetDialog(const PlotmeterLogic& logic, Purpose purpose, QWidget* parent = nullptr);

  // The choices made; only meaningful after the dialog was accepted.
  SheetOptions options() const;
  Paper paper() const;
  bool landscape() const;
  // "Preview..." closed the dialog rather than "Print...".
  bool previewAsked() const { return previewAsked_; }

 private:
  void fillScales();
  void showNote();
  std::optional<int> chosenScale() const;

  const PlotmeterLogic& logic_;
  bool previewAsked_ = false;
  QComboBox* SheetScaleCmb;
  QComboBox* SheetPaperCmb;
  QCheckBox* SheetLandscapeCkB;
  QLabel* SheetNoteLbl;
  QPushButton* SheetOkBtn;
  QPushButton* SheetPreviewBtn = nullptr;
};

// "Print...": the sheet dialog, then the print dialog or the print preview.
void PrintPlot(QWidget* parent, const PlotmeterLogic& logic);
// "Export...": the sheet dialog, then the file dialog through `dialogs`; PDF, SVG or PNG
// by the chosen name's extension.
void ExportPlot(QWidget* parent, const PlotmeterLogic& logic, UserDialogs& dialogs);

}  // namespace plotmeter::qt
