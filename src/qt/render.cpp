#include "qt/render.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>

#include "core/atomic_file.h"
#include "qt/painter_canvas.h"

namespace drenik {

namespace {

// Each format is drawn into memory first; the file is then written whole by
// the program's one file writer, which checks every byte reaches the disk.
bool RenderPng(const RecordingCanvas& page, QBuffer& out, int w, int h, std::string& error) {
  QImage image(w, h, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    // Hairlines on a screen-sized image; on larger images the lines grow
    // with the page, as they do in print.
    bool large = std::min(w / 1600.0, h / 1200.0) > 1.25;
    ReplayPage(painter, page, QRectF(0, 0, w, h), large ? PenMode::Scaled : PenMode::Cosmetic);
  }
  QImageWriter writer(&out, "png");
  if (!writer.write(image)) {
    error = "Cannot encode the PNG image: " + writer.errorString().toStdString();
    return false;
  }
  return true;
}

bool RenderSvg(const RecordingCanvas& page, QBuffer& out, int w, int h, std::string& error) {
  QSvgGenerator svg;
  svg.setOutputDevice(&out);
  svg.setSize(QSize(w, h));
  svg.setViewBox(QRect(0, 0, w, h));
  svg.setTitle(QStringLiteral("Drenik Filter Designer"));
  QPainter painter;
  if (!painter.begin(&svg)) {
    error = "Cannot draw the SVG image";
    return false;
  }
  painter.fillRect(QRect(0, 0, w, h), Qt::white);
  ReplayPage(painter, page, QRectF(0, 0, w, h), PenMode::Scaled);
  return painter.end();
}

bool RenderPdf(const RecordingCanvas& page, QBuffer& out, std::string& error) {
  QPdfWriter pdf(&out);
  pdf.setPageSize(QPageSize(QSizeF(kPageWidth / 1440.0, kPageHeight / 1440.0), QPageSize::Inch,
                            QStringLiteral("Page"), QPageSize::ExactMatch));
  pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
  pdf.setResolution(1200);
  pdf.setTitle(QStringLiteral("Drenik Filter Designer"));
  pdf.setCreator(QStringLiteral("Drenik Filter Designer"));
  QPainter painter;
  if (!painter.begin(&pdf)) {
    error = "Cannot draw the PDF page";
    return false;
  }
  QRectF target(0, 0, pdf.width(), pdf.height());
  ReplayPage(painter, page, target, PenMode::Scaled);
  return painter.end();
}

}  // namespace

bool RenderPageToFile(const RecordingCanvas& page, const std::string& path, int widthPx,
                      int heightPx, std::string& error) {
  error.clear();
  PrepareQtDrawing();
  QString ext = QFileInfo(QString::fromStdString(path)).suffix().toLower();
  if (ext != "pdf" && (widthPx < 1 || heightPx < 1 || widthPx > 20000 || heightPx > 20000)) {
    error = "Image size " + std::to_string(widthPx) + "x" + std::to_string(heightPx) +
            " is out of range";
    return false;
  }
  QByteArray bytes;
  QBuffer out(&bytes);
  out.open(QIODevice::WriteOnly);
  bool drawn = false;
  if (ext == "png") {
    drawn = RenderPng(page, out, widthPx, heightPx, error);
  } else if (ext == "svg") {
    drawn = RenderSvg(page, out, widthPx, heightPx, error);
  } else if (ext == "pdf") {
    drawn = RenderPdf(page, out, error);
  } else {
    error = "Unknown file type of " + path + " (use .png, .svg or .pdf)";
    return false;
  }
  out.close();
  if (!drawn) {
    if (error.empty()) error = "Cannot draw the page for " + path;
    return false;
  }
  std::string why;
  if (!WriteWholeFile(path, std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())),
                      &why)) {
    error = "Cannot write " + path + ": " + why;
    return false;
  }
  return true;
}

}  // namespace drenik
