#pragma once
// The display page on paper or in a PDF file: a title line with the design,
// the plots and the schematic as the page shows them, the axis labels and a
// footer with the program's name.

#include <QPrinter>
#include <QWidget>
#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "plot/recording_canvas.h"

namespace drenik {

inline constexpr const char* kPrinterError = "Printer Error";

// "Chebyshev filter, order 5, cutoff 4.2MHz, ripple .044 dB"; the ripple only
// for the families that have one, the stopband depth only for Cauer.
std::string PrintTitle(const DesignRecord& d);

// Prints the drawn display page on a printer that is already set up, and
// `after` (a page that carries its own title, such as the part stress) on
// the next sheet. A printer that is not valid or cannot be drawn on shows
// "Printer Error" and gives false.
bool PrintDisplayPage(const DesignRecord& d, const RecordingCanvas& page, QPrinter& printer,
                      Platform& platform, const RecordingCanvas* after = nullptr);

// The print dialog (a printer, or a PDF file), landscape by default, then the
// page. A cancelled dialog prints nothing.
void PrintDisplayPageWithDialog(const DesignRecord& d, const RecordingCanvas& page,
                                Platform& platform, QWidget* parent,
                                const RecordingCanvas* after = nullptr);

// A page that carries its own title and footer, as drawn, through the same
// print dialog.
bool PrintDrawnPage(const RecordingCanvas& page, QPrinter& printer, Platform& platform);
void PrintDrawnPageWithDialog(const RecordingCanvas& page, Platform& platform, QWidget* parent);

}  // namespace drenik
