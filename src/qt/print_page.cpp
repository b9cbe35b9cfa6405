#include "qt/print_page.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPrintDialog>
#include <algorithm>

#include "core/formatters.h"
#include "core/number_text.h"
#include "pages/opening_page.h"
#include "plot/response_plot.h"
#include "qt/painter_canvas.h"
#include "synthesis/families.h"

namespace drenik {

namespace {

QFont PrintFont(double points, bool bold) {
  QFont font(ResolvedFamily("Arial"));
  font.setPointSizeF(points);
  font.setBold(bold);
  return font;
}

// The axis labels over the replayed page, in page units: the main plot's
// two curves share one dB scale.
void DrawAxisLabels(QPainter& painter, const QRectF& target) {
  PainterCanvas canvas(painter, target, PenMode::Scaled);
  canvas.SetFont("Arial", 8, true);
  canvas.SetForeColor(kBlack);
  canvas.SetTextPosition(kPlotLeft, kPlotTop - 330);
  canvas.Print("Transmission, dB");
  const std::string back = "Return, dB";
  canvas.SetTextPosition(kPlotRight - canvas.TextWidth(back), kPlotTop - 330);
  canvas.Print(back);
}

}  // namespace

std::string PrintTitle(const DesignRecord& d) {
  std::string title = std::string(FamilyName(d.Family)) + " filter, order " +
                      std::to_string(d.Order) + ", cutoff " + TrimBlanks(FormatFrequency(d.Width));
  const FamilyInfo* family = FindFamily(d.Family);
  if (family && family->hasRipple) {
    // A fixed design shows the ripple its cutoff label names.
    const double ripple = family->labelRipple > 0 ? family->labelRipple : d.Apass;
    // A ripple chosen beyond the design page's buttons may need more digits
    // (0.001 dB) than the printed title's three decimals give.
    title += ", ripple " +
             (d.ChosenRipple > 0 ? GeneralText(ripple) : TrimBlanks(FormatSmall(ripple))) + " dB";
  }
  if (family && family->stopbandChoice) {
    title += ", stopband " + TrimBlanks(FormatValue(d.Astop)) + " dB";
  }
  return title;
}

bool PrintDisplayPage(const DesignRecord& d, const RecordingCanvas& page, QPrinter& printer,
                      Platform& platform, const RecordingCanvas* after) {
  PrepareQtDrawing();
  QPainter painter;
  if (!printer.isValid() || !painter.begin(&printer)) {
    platform.ShowMessage(kPrinterError);
    return false;
  }
  const QRectF area(0, 0, printer.width(), printer.height());
  const QFont titleFont = PrintFont(14, true);
  const QFont footerFont = PrintFont(9, false);
  const double titleHeight = QFontMetricsF(titleFont, &printer).height();
  const double footerHeight = QFontMetricsF(footerFont, &printer).height();

  painter.setPen(Qt::black);
  painter.setFont(titleFont);
  painter.drawText(QRectF(area.left(), area.top(), area.width(), titleHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(PrintTitle(d)));

  const std::string program = (d.ProgramTitle.empty() ? kProgramTitle : d.ProgramTitle) + " " +
                              (d.Version.empty() ? kProgramVersion : d.Version);
  painter.setFont(footerFont);
  painter.drawText(QRectF(area.left(), area.bottom() - footerHeight, area.width(), footerHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(program));

  const QRectF drawing(area.left(), area.top() + 1.5 * titleHeight, area.width(),
                       area.height() - 1.5 * titleHeight - 1.5 * footerHeight);
  ReplayPage(painter, page, drawing, PenMode::Scaled);
  DrawAxisLabels(painter, drawing);
  if (after && printer.newPage()) {
    const double scale =
        std::min(printer.width() / double{kPageWidth}, printer.height() / double{kPageHeight});
    ReplayPage(painter, *after, QRectF(0, 0, kPageWidth * scale, kPageHeight * scale),
               PenMode::Scaled);
  }
  if (!painter.end()) {
    platform.ShowMessage(kPrinterError);
    return false;
  }
  return true;
}

namespace {

// Landscape by default; false when the user cancels.
bool ChoosePrinter(QPrinter& printer, QWidget* parent) {
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(QString::fromUtf8(kProgramTitle));
  printer.setCreator(QString::fromUtf8(kProgramTitle));
  QPrintDialog dialog(&printer, parent);
  dialog.setWindowTitle(QStringLiteral("Print"));
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace

void PrintDisplayPageWithDialog(const DesignRecord& d, const RecordingCanvas& page,
                                Platform& platform, QWidget* parent, const RecordingCanvas* after) {
  QPrinter printer(QPrinter::HighResolution);
  if (ChoosePrinter(printer, parent)) PrintDisplayPage(d, page, printer, platform, after);
}

bool PrintDrawnPage(const RecordingCanvas& page, QPrinter& printer, Platform& platform) {
  PrepareQtDrawing();
  QPainter painter;
  if (!printer.isValid() || !painter.begin(&printer)) {
    platform.ShowMessage(kPrinterError);
    return false;
  }
  // The whole page at 4:3, as large as the paper takes it.
  const double scale =
      std::min(printer.width() / double{kPageWidth}, printer.height() / double{kPageHeight});
  ReplayPage(painter, page, QRectF(0, 0, kPageWidth * scale, kPageHeight * scale), PenMode::Scaled);
  if (!painter.end()) {
    platform.ShowMessage(kPrinterError);
    return false;
  }
  return true;
}

void PrintDrawnPageWithDialog(const RecordingCanvas& page, Platform& platform, QWidget* parent) {
  QPrinter printer(QPrinter::HighResolution);
  if (ChoosePrinter(printer, parent)) PrintDrawnPage(page, printer, platform);
}

}  // namespace drenik
