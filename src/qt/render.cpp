#include "qt/render.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>

#include "qt/painter_canvas.h"

namespace drenik {

namespace {

bool RenderPng(const RecordingCanvas& page, const QString& path, int w, int h, std::string& error) {
  QImage image(w, h, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    // Hairlines on a screen-sized image; on larger images the lines grow
    // with the page, as they do in print.
    bool large = std::min(w / 1600.0, h / 1200.0) > 1.25;
    ReplayPage(painter, page, QRectF(0, 0, w, h), large ? PenMode::Scaled : PenMode::Cosmetic);
  }
  QImageWriter writer(path, "png");
  if (!writer.write(image)) {
    error = "Cannot write " + path.toStdString() + ": " + writer.errorString().toStdString();
    return false;
  }
  return true;
}

bool RenderSvg(const RecordingCanvas& page, const QString& path, int w, int h, std::string& error) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    error = "Cannot write " + path.toStdString() + ": " + file.errorString().toStdString();
    return false;
  }
  QSvgGenerator svg;
  svg.setOutputDevice(&file);
  svg.setSize(QSize(w, h));
  svg.setViewBox(QRect(0, 0, w, h));
  svg.setTitle(QStringLiteral("Drenik Filter Designer"));
  QPainter painter;
  if (!painter.begin(&svg)) {
    error = "Cannot draw the SVG file " + path.toStdString();
    return false;
  }
  painter.fillRect(QRect(0, 0, w, h), Qt::white);
  ReplayPage(painter, page, QRectF(0, 0, w, h), PenMode::Scaled);
  painter.end();
  file.close();
  if (file.error() != QFileDevice::NoError) {
    error = "Cannot write " + path.toStdString() + ": " + file.errorString().toStdString();
    return false;
  }
  return true;
}

bool RenderPdf(const RecordingCanvas& page, const QString& path, std::string& error) {
  QPdfWriter pdf(path);
  pdf.setPageSize(QPageSize(QSizeF(kPageWidth / 1440.0, kPageHeight / 1440.0), QPageSize::Inch,
                            QStringLiteral("Page"), QPageSize::ExactMatch));
  pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
  pdf.setResolution(1200);
  pdf.setTitle(QStringLiteral("Drenik Filter Designer"));
  pdf.setCreator(QStringLiteral("Drenik Filter Designer"));
  QPainter painter;
  if (!painter.begin(&pdf)) {
    error = "Cannot write " + path.toStdString();
    return false;
  }
  QRectF target(0, 0, pdf.width(), pdf.height());
  ReplayPage(painter, page, target, PenMode::Scaled);
  painter.end();
  if (!QFileInfo(path).exists() || QFileInfo(path).size() == 0) {
    error = "Cannot write " + path.toStdString();
    return false;
  }
  return true;
}

}  // namespace

bool RenderPageToFile(const RecordingCanvas& page, const std::string& path, int widthPx,
                      int heightPx, std::string& error) {
  error.clear();
  PrepareQtDrawing();
  QString file = QString::fromStdString(path);
  QString ext = QFileInfo(file).suffix().toLower();
  if (ext != "pdf" && (widthPx < 1 || heightPx < 1 || widthPx > 20000 || heightPx > 20000)) {
    error = "Image size " + std::to_string(widthPx) + "x" + std::to_string(heightPx) +
            " is out of range";
    return false;
  }
  if (ext == "png") return RenderPng(page, file, widthPx, heightPx, error);
  if (ext == "svg") return RenderSvg(page, file, widthPx, heightPx, error);
  if (ext == "pdf") return RenderPdf(page, file, error);
  error = "Unknown file type of " + path + " (use .png, .svg or .pdf)";
  return false;
}

}  // namespace drenik
