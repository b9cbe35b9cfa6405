#include "qt/painter_canvas.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLineF>
#include <QPen>
#include <QVector>
#include <cmath>
#include <map>
#include <memory>
#include <tuple>

namespace drenik {

namespace {

// Pen width in page units on vector devices: what one pixel of a
// 1600-pixel-wide image covers.
constexpr double kScaledPenUnit = 12000.0 / 1600.0;
constexpr double kTwoPi = 6.283185307179586;

// Square caps close the corners of frames; bevel joins keep curves of many
// short segments cheap to stroke.
QPen MakePen(int32_t color, int width, PenMode mode) {
  QPen pen(PageColor(color));
  pen.setCapStyle(Qt::SquareCap);
  pen.setJoinStyle(Qt::BevelJoin);
  int w = std::max(1, width);
  if (mode == PenMode::Cosmetic) {
    pen.setCosmetic(true);
    pen.setWidthF(w);
  } else {
    pen.setWidthF(w * kScaledPenUnit);
  }
  return pen;
}

const QFontMetricsF& MetricsFor(const std::string& family, float pointSize, bool bold) {
  static std::map<std::tuple<std::string, float, bool>, std::unique_ptr<QFontMetricsF>> cache;
  auto& slot = cache[{family, pointSize, bold}];
  if (!slot) slot = std::make_unique<QFontMetricsF>(PageFont(family, pointSize, bold));
  return *slot;
}

float QtMeasure(const std::string& text, const std::string& family, float pointSize, bool bold) {
  if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
    return EstimateTextWidth(text, pointSize, bold);
  return static_cast<float>(
      MetricsFor(family, pointSize, bold).horizontalAdvance(QString::fromStdString(text)));
}

void DrawText(QPainter& painter, float x, float y, const std::string& text,
              const std::string& family, float size, bool bold, int32_t color) {
  QFont font = PageFont(family, size, bold);
  painter.setFont(font);
  painter.setPen(PageColor(color));
  double ascent = MetricsFor(family, size, bold).ascent();
  painter.drawText(QPointF(x, y + ascent), QString::fromStdString(text));
}

void DrawArc(QPainter& painter, float cx, float cy, float r, float start, float end) {
  // Counter-clockwise from start to end as the user sees it, which is also
  // QPainter's positive direction.
  double span = static_cast<double>(end) - start;
  if (span < 0) span += kTwoPi * std::ceil(-span / kTwoPi);
  QRectF box(cx - r, cy - r, 2.0 * r, 2.0 * r);
  painter.drawArc(box, static_cast<int>(std::lround(start * 180.0 / M_PI * 16)),
                  static_cast<int>(std::lround(span * 180.0 / M_PI * 16)));
}

// A headless run speaks only through the command line's own messages: Qt's
// notes about the desktop it does not have ("XDG_RUNTIME_DIR not set" for
// root) are nothing its user can act on. Errors still get through.
QtMessageHandler qtHandler = nullptr;
void HeadlessMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if ((type == QtCriticalMsg || type == QtFatalMsg) && qtHandler) qtHandler(type, context, text);
}

}  // namespace

void PrepareQtDrawing() {
  if (!QCoreApplication::instance()) {
    qtHandler = qInstallMessageHandler(HeadlessMessage);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "drenik";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);  // lives until the process ends
  }
  QFont::insertSubstitution("Arial", "Liberation Sans");
  QFont::insertSubstitution("Times New Roman", "Liberation Serif");
  SetTextMeasure(&QtMeasure);
}

QString ResolvedFamily(const std::string& family) {
  if (family == "Arial") return QStringLiteral("Liberation Sans");
  if (family == "Times New Roman") return QStringLiteral("Liberation Serif");
  return QString::fromStdString(family);
}

QFont PageFont(const std::string& family, float pointSize, bool bold) {
  QFont font(ResolvedFamily(family));
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(pointSize * 20))));
  font.setBold(bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setKerning(false);
  return font;
}

QColor PageColor(int32_t color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

QTransform PageTransform(const QRectF& target) {
  double scale = std::min(target.width() / kPageWidth, target.height() / kPageHeight);
  double dx = target.left() + (target.width() - kPageWidth * scale) / 2;
  double dy = target.top() + (target.height() - kPageHeight * scale) / 2;
  return QTransform(scale, 0, 0, scale, dx, dy);
}

void ReplayPage(QPainter& painter, const RecordingCanvas& page, const QRectF& target,
                PenMode pens) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setRenderHint(QPainter::TextAntialiasing, true);
  painter.setWorldTransform(PageTransform(target), true);
  painter.setClipRect(QRectF(0, 0, kPageWidth, kPageHeight), Qt::IntersectClip);
  painter.setBrush(Qt::NoBrush);

  // Runs of lines in one colour and width go out in one call, joined ones
  // (a curve) as one polyline.
  QVector<QPointF> chain;
  QVector<QLineF> loose;
  int32_t runColor = 0;
  int runWidth = 1;
  // On raster devices a curve drops the points that lie within 0.7 device
  // pixels of the last one kept: the picture is the same, the stroking cheaper.
  const QTransform device = painter.combinedTransform();
  QVector<QPointF> kept;
  auto flushChain = [&] {
    if (chain.size() >= 2) {
      painter.setPen(MakePen(runColor, runWidth, pens));
      const QVector<QPointF>* points = &chain;
      if (pens == PenMode::Cosmetic && chain.size() > 8) {
        kept.clear();
        kept.append(chain.front());
        QPointF last = device.map(chain.front());
        for (qsizetype i = 1; i + 1 < chain.size(); ++i) {
          QPointF p = device.map(chain[i]);
          if (std::abs(p.x() - last.x()) >= 0.7 || std::abs(p.y() - last.y()) >= 0.7) {
            kept.append(chain[i]);
            last = p;
          }
        }
        kept.append(chain.back());
        points = &kept;
      }
      if (points->size() == 2 && (*points)[0] == (*points)[1])
        painter.drawPoint((*points)[0]);
      else
        painter.drawPolyline(points->constData(), static_cast<int>(points->size()));
    }
    chain.clear();
  };
  auto flush = [&] {
    flushChain();
    if (!loose.isEmpty()) {
      painter.setPen(MakePen(runColor, runWidth, pens));
      painter.drawLines(loose);
      loose.clear();
    }
  };

  for (const DrawOp& op : page.Ops()) {
    if (op.kind == DrawOp::Kind::Line) {
      if ((!chain.isEmpty() || !loose.isEmpty()) && (op.color != runColor || op.width != runWidth))
        flush();
      runColor = op.color;
      runWidth = op.width;
      QPointF a(op.x1, op.y1), b(op.x2, op.y2);
      if (!chain.isEmpty() && chain.back() == a) {
        chain.append(b);
      } else {
        if (chain.size() == 2 && chain[0] != chain[1])
          loose.append(QLineF(chain[0], chain[1]));
        else
          flushChain();
        chain.clear();
        chain.append(a);
        chain.append(b);
      }
      continue;
    }
    flush();
    switch (op.kind) {
      case DrawOp::Kind::Box:
        painter.fillRect(QRectF(QPointF(op.x1, op.y1), QPointF(op.x2, op.y2)).normalized(),
                         PageColor(op.color));
        break;
      case DrawOp::Kind::Point:
        painter.setPen(MakePen(op.color, op.width, pens));
        painter.drawPoint(QPointF(op.x1, op.y1));
        break;
      case DrawOp::Kind::Arc:
        painter.setPen(MakePen(op.color, op.width, pens));
        DrawArc(painter, op.x1, op.y1, op.radius, op.start, op.end);
        break;
      case DrawOp::Kind::Text:
        DrawText(painter, op.x1, op.y1, op.text, op.fontFamily, op.fontSize, op.bold, op.color);
        break;
      case DrawOp::Kind::Line:
        break;
    }
  }
  flush();
  painter.restore();
}

PainterCanvas::PainterCanvas(QPainter& painter, const QRectF& target, PenMode pens)
    : painter_(painter), target_(target), pens_(pens) {
  painter_.setRenderHint(QPainter::Antialiasing, true);
  painter_.setRenderHint(QPainter::TextAntialiasing, true);
  painter_.setWorldTransform(PageTransform(target));
  painter_.setBrush(Qt::NoBrush);
}

void PainterCanvas::SetFont(const std::string& family, float pointSize, bool bold) {
  family_ = family;
  size_ = pointSize;
  bold_ = bold;
}

void PainterCanvas::UsePen(int32_t color, int width) {
  painter_.setPen(MakePen(color, width, pens_));
}

void PainterCanvas::Line(float x1, float y1, float x2, float y2) {
  UsePen(color_, width_);
  painter_.drawLine(QLineF(x1, y1, x2, y2));
}

void PainterCanvas::FilledBox(float x1, float y1, float x2, float y2, int32_t color) {
  painter_.fillRect(QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized(), PageColor(color));
}

void PainterCanvas::Point(float x, float y, int32_t color) {
  UsePen(color, width_);
  painter_.drawPoint(QPointF(x, y));
}

void PainterCanvas::Arc(float cx, float cy, float radius, float startAngle, float endAngle) {
  UsePen(color_, width_);
  DrawArc(painter_, cx, cy, radius, startAngle, endAngle);
}

void PainterCanvas::SetTextPosition(float x, float y) {
  textX_ = x;
  textY_ = y;
}

void PainterCanvas::Print(const std::string& text) {
  DrawText(painter_, textX_, textY_, text, family_, size_, bold_, color_);
  textY_ += TextHeight();
}

float PainterCanvas::TextWidth(const std::string& text) const {
  return static_cast<float>(
      MetricsFor(family_, size_, bold_).horizontalAdvance(QString::fromStdString(text)));
}

float PainterCanvas::TextHeight() const {
  return size_ * 20 * 1.15f;
}

void PainterCanvas::Clear() {
  painter_.fillRect(QRectF(0, 0, kPageWidth, kPageHeight), Qt::white);
  textX_ = 0;
  textY_ = 0;
}

}  // namespace drenik
