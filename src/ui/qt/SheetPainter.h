// Paints the sheet that `LayOutSheet` laid out on any paper device (a printer, a PDF, an
// SVG or an image), the drawing through the one scene painter, and writes it to files.
#pragma once

#include <QPainter>
#include <QPrinter>
#include <QString>
#include <optional>

#include "model/UserDialogs.h"
#include "ui/PlotmeterLogic.h"
#include "ui/Sheet.h"

namespace plotmeter::qt {

// Images and SVG drawings have ten dots to the millimetre (254 dots per inch), so that
// every paper size is a whole number of dots.
inline constexpr double kImageDotsPerMm = 10;

// Paints `sheet`, with the drawing of `scene`, on a device whose painter has its origin at
// the paper's top left corner and `dotsPerMm` device units to the millimetre.
void PaintSheet(QPainter& painter, double dotsPerMm, const Sheet& sheet, const PlotScene& scene);

enum class SheetFormat { kPdf, kSvg, kPng };
// By the name's extension, in any letter case; nothing for any other.
std::optional<SheetFormat> SheetFormatOf(const QString& path);

// Writes the sheet whole or leaves `path` as it was; false when it could not be written.
bool WriteSheet(const QString& path, SheetFormat format, const Sheet& sheet,
                const PlotScene& scene);

// Lays out the sheet on the printer's paper and prints it. `scale` as in `SheetOptions`.
void PrintSheet(QPrinter& printer, const PlotmeterLogic& logic, int scale);

// Today, as the sheet shows it: "2024-05-31".
std::string Today();

// Lays out the sheet of `logic` and writes it to `path` in the format of its extension.
// A name with another extension, or a file that cannot be written, gets a box through
// `dialogs`; returns whether the file was written.
bool ExportSheet(const PlotmeterLogic& logic, const SheetOptions& options, const QString& path,
                 UserDialogs& dialogs);

}  // namespace plotmeter::qt
