// Layout: controls placed without overlaps, nothing drawn under a button or into
// the plot for any design, scaling by one factor, and screenshots at 1280 x 960.
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QPixmap>

#include <cmath>

#include "core/element_kinds.h"
#include "fixture.h"
#include "plot/frequency_axis.h"
#include "plot/response_plot.h"
#include "synthesis/topologies.h"

namespace drenik::testing {
namespace {

// Widgets shown directly on `parent`; a frame's contents are checked inside it.
void ExpectNoOverlap(QWidget* parent) {
  std::vector<QWidget*> widgets;
  for (QWidget* w : parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    if (!qobject_cast<PageSurface*>(w) && !w->objectName().isEmpty() && !w->isHidden())
      widgets.push_back(w);
  for (size_t i = 0; i < widgets.size(); ++i) {
    std::string name = widgets[i]->objectName().toStdString();
    EXPECT_TRUE(parent->rect().contains(widgets[i]->geometry())) << name << " leaves its parent";
    for (size_t j = 0; j < i; ++j)
      EXPECT_FALSE(widgets[i]->geometry().intersects(widgets[j]->geometry()))
          << name << " overlaps " << widgets[j]->objectName().toStdString();
    if (qobject_cast<QGroupBox*>(widgets[i])) ExpectNoOverlap(widgets[i]);
  }
}

// No text, line or arc under the button (white boxes erase; points are plots).
void ExpectClear(const RecordingCanvas& page, const std::string& name, QRectF button) {
  for (const DrawOp& op : page.Ops()) {
    QRectF drawn;
    if (op.kind == DrawOp::Kind::Text) {
      drawn = QRectF(op.x1, op.y1, op.textWidth, op.fontSize * 20);
    } else if (op.kind == DrawOp::Kind::Line) {
      drawn =
          QRectF(QPointF(op.x1, op.y1), QPointF(op.x2, op.y2)).normalized().adjusted(-1, -1, 1, 1);
    } else if (op.kind == DrawOp::Kind::Arc) {
      drawn = QRectF(op.x1 - op.radius, op.y1 - op.radius, 2 * op.radius, 2 * op.radius);
    }
    EXPECT_FALSE(button.intersects(drawn)) << name << " covers " << op.text;
  }
}

// Where a text's letters stand.
QRectF TextBox(const DrawOp& op) {
  return QRectF(QPointF(op.x1, op.y1 + op.fontSize * 3),
                QPointF(op.x1 + op.textWidth, op.y1 + op.fontSize * 20 * 1.05f));
}

// Where a line or the drawn part of an arc runs.
QRectF StrokeBox(const DrawOp& op) {
  if (op.kind == DrawOp::Kind::Line)
    return QRectF(QPointF(op.x1, op.y1), QPointF(op.x2, op.y2)).normalized().adjusted(-1, -1, 1, 1);
  float span = op.end - op.start;
  while (span < 0) span += 6.2831853f;
  QRectF box;
  for (int k = 0; k <= 16; ++k) {
    const float t = op.start + span * static_cast<float>(k) / 16;
    box |= QRectF(op.x1 + op.radius * std::cos(t) - 1, op.y1 - op.radius * std::sin(t) - 1, 2, 2);
  }
  return box;
}

// Whether two texts stand on one line: they share more than half a line's
// height.
bool OneLine(const QRectF& a, const QRectF& b) {
  return std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) > a.height() / 2;
}

// Every topology of the table, family and order (beyond the design page's
// buttons to the highest), 5% C and 5% L, each with the chosen parts over
// them (an even Chebyshev has a note), the 5% L ones with a winding
// capacitance and the chosen inductors in whole turns on a core. Value texts keep off every wire
// and symbol; texts of two stages on one line stand well apart, so that they are not read as one.
// The page is drawn in page units and the window only scales it (unhinted fonts), so this holds at
// every window size.
TEST(DisplayLayout, NothingCollidesForAnyDesign) {
  PrepareQtDrawing();
  for (const TopologyInfo& topology : Topologies())
    for (const FamilyInfo& f : Families())
      for (int16_t order : {3, 5, 6, 7, 15})
        for (bool inductors : {false, true}) {
          if (f.fixedOrder && order != f.fixedOrder) continue;
          if (topology.band && order == 15) order = 13;  // as long as a band ladder reads
          const int16_t family = f.code;
          SCOPED_TRACE(::testing::Message() << topology.name << family << order << inductors);
          DesignRecord d = FirstStartDesign(family, order);
          d.Topology = topology.name;
          if (topology.band) d.Center = 7.15e6f, d.Width = 3e5f;
          d.Rload = family == kChebyshev && order % 2 == 0 ? 25 : 50;
          d.ShowVSWR = d.ShowDelay = 1;
          // Half the designs with a winding capacitance that resonates every
          // inductor inside the sweep: the self-resonance column and the
          // warning line are drawn too.
          d.WindingCapacitance = inductors ? (topology.band ? 1e-12f : 100e-12f) : 0;
          RecordingCanvas page;
          PartsRequest request;
          if (inductors) request.former = CoreNamed("T50-2");
          if (!DrawDisplayPageLoad(d, page, inductors, true, request)) continue;  // never offered
          EXPECT_EQ(HasText(page, "Self-resonance:"), inductors) << d.Stages;
          for (const ControlPlace& p : DisplayPlaces())
            ExpectClear(page, p.name, QRectF(QPointF(p.x1, p.y1), QPointF(p.x2, p.y2)));

          // The schematic's texts and strokes: above the plot's scale labels.
          std::vector<const DrawOp*> texts;
          std::vector<QRectF> strokes;
          for (const DrawOp& op : page.Ops()) {
            if (op.kind == DrawOp::Kind::Text && !op.text.empty()) texts.push_back(&op);
            if ((op.kind == DrawOp::Kind::Line || op.kind == DrawOp::Kind::Arc) && op.y1 < 3800 &&
                op.y2 < 3800)
              strokes.push_back(StrokeBox(op));
          }
          for (size_t i = 0; i < texts.size(); ++i) {
            const QRectF box = TextBox(*texts[i]);
            const std::string& text = texts[i]->text;
            EXPECT_TRUE(QRectF(0, 0, kPageWidth, kPageHeight).contains(box)) << text;
            EXPECT_FALSE(box.intersects(
                QRectF(QPointF(kPlotLeft, kPlotTop), QPointF(kPlotRight, kPlotBottom))))
                << text << " in the plot";
            for (size_t j = 0; j < i; ++j) {
              const QRectF other = TextBox(*texts[j]);
              EXPECT_FALSE(box.intersects(other)) << "'" << text << "' and '" << texts[j]->text;
              if (texts[i]->color != texts[j]->color && OneLine(box, other)) {
                EXPECT_FALSE(box.adjusted(-200, 0, 200, 0).intersects(other))
                    << "'" << text << "' beside '" << texts[j]->text << "'";
              }
            }
            // A lowpass or highpass ladder's values keep a little room from
            // the lines (a tank's capacitance ran up to the next plates); the
            // band ladders' slots are measured to the line.
            const float room = topology.band ? 0 : 15;
            if (box.top() >= 3800) continue;
            for (const QRectF& stroke : strokes)
              EXPECT_FALSE(box.adjusted(-room, 0, room, 0).intersects(stroke))
                  << "'" << text << "' on a line";
          }
        }
}

// The chosen parts' inductance and capacitance texts, in green, stand inside
// their part's width (as far left as its exact value), at most one row above
// the highest text of the earlier stages and clear of every other text, for
// the Cauer ladders; the inductors wound on a core say their turns.
TEST(DisplayLayout, ChosenValuesStandWithTheirParts) {
  PrepareQtDrawing();
  auto isValue = [](const DrawOp& op) {
    return op.kind == DrawOp::Kind::Text && !op.text.empty() && op.y1 < 3800 &&
           (op.text.back() == 'H' || op.text.back() == 'F' || op.text.ends_with("t"));
  };
  PartsRequest request;
  request.former = CoreNamed("T50-6");
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"})
    for (int16_t order = 3; order <= 7; ++order) {
      SCOPED_TRACE(::testing::Message() << topology << order);
      DesignRecord d = FirstStartDesign(kCauer, order);
      d.Topology = topology;
      RecordingCanvas page;
      ASSERT_TRUE(DrawDisplayPageLoad(d, page, true, true, request));
      std::vector<const DrawOp*> exact, chosen, texts;
      float top = kPageHeight;  // of the earlier stages' schematic texts
      for (const DrawOp& op : page.Ops()) {
        if (op.kind == DrawOp::Kind::Text && !op.text.empty()) texts.push_back(&op);
        if (op.kind == DrawOp::Kind::Text && op.y1 > 300 && op.y1 < 1400 &&
            op.color != kChosenTransmissionColor)
          top = std::min(top, op.y1);
        if (isValue(op) && op.color == kBlack) exact.push_back(&op);
        if (isValue(op) && op.color == kChosenTransmissionColor) chosen.push_back(&op);
      }
      // The parts in drawing order, each element's left edge from its first
      // exact text (a tank's capacitance may stand left of its place).
      size_t k = 0;
      for (int j = 1; j <= d.Stages; ++j) {
        const ElementFacts* f = FactsOf(d.ElementType[j]);
        const LabelPlace* first = f->lLabel ? f->lLabel : f->cLabel;
        ASSERT_LT(k, exact.size());
        const float x0 = exact[k]->x1 - first->dx[0];
        for (const LabelPlace* place : {f->lLabel, f->cLabel}) {
          if (!place) continue;
          ASSERT_LT(k, std::min(exact.size(), chosen.size()));
          const DrawOp& green = *chosen[k];
          EXPECT_GE(green.x1, x0 + std::min(0.f, place->dx[0]))
              << green.text << " left of its part";
          EXPECT_LE(green.x1 + green.textWidth, x0 + f->drawWidth) << green.text;
          EXPECT_GE(green.y1, top - 200) << green.text << " above the schematic";
          if (place == f->lLabel) {
            EXPECT_TRUE(green.text.ends_with("t") && green.text.find("H ") != std::string::npos)
                << green.text << " without its turns";
          }
          for (const DrawOp* other : texts)
            EXPECT_TRUE(other == &green || !TextBox(green).intersects(TextBox(*other)))
                << green.text << " on " << other->text;
          ++k;
        }
      }
      EXPECT_EQ(k, chosen.size());
    }
}

TEST_F(WindowTest, PagesLayOutCleanlyScaleByOneFactorAndAreShot) {
  Launch();
  QDir out(DRENIK_BINARY_DIR "/screenshots");
  out.mkpath(".");
  auto save = [&](const char* name) {
    EXPECT_EQ(window->grab().size(), QSize(1280, 960));
    EXPECT_TRUE(window->grab().save(out.filePath(name)));
  };
  save("opening.png");
  Click(Button(window->OpeningView(), "cmdStart"));
  save("design.png");
  Click(Radio("optZelmar"));
  save("design-zelmar.png");
  ControlPageView& display = window->DisplayView();
  Click(Button(window->DesignView(), "cmdDesign"));
  app->SetPartsRequestService([](PartsRequest&, const std::string&) { return true; });  // no dialog
  for (const char* button : {"cmdVSWR", "cmdTime", "cmdInductors", "cmdChosenParts"})
    Click(Button(display, button));
  MoveMouse(5200, 6100);
  save("display.png");

  for (auto [view, controls] : {std::pair{&window->OpeningView(), &app->Opening().Controls()},
                                {&window->DesignView(), &app->Design().Controls()},
                                {&display, &app->Display().Controls()}}) {
    for (const auto& control : controls->All())
      EXPECT_NE(view->WidgetFor(control->Name()), nullptr) << control->Name();
    view->resize(1280, 960);
    ExpectNoOverlap(view);
  }
  double scale = display.Scale();
  QPoint origin = display.Surface().geometry().topLeft();
  for (const auto& control : app->Display().Controls().All()) {
    QRectF r(display.WidgetFor(control->Name())->geometry().translated(-origin));
    ExpectClear(app->DisplayCanvas(), control->Name(),
                QRectF(r.topLeft() / scale, r.size() / scale));
  }

  // Half the size: positions and fonts halve, the page stays 4:3 and centred.
  QWidget* up = display.WidgetFor("cmdUp");
  QRect big = up->geometry();
  const int bigFont = up->font().pixelSize();
  display.resize(640, 480);
  EXPECT_NEAR(up->geometry().x(), big.x() / 2.0, 1.5);
  EXPECT_NEAR(up->geometry().width(), big.width() / 2.0, 1.5);
  EXPECT_NEAR(up->font().pixelSize(), bigFont / 2.0, 1);
  display.resize(1000, 480);
  EXPECT_EQ(display.Surface().geometry(), QRect(180, 0, 640, 480));
  window->resize(1600, 900);  // wider than 4:3: margins left and right
  EXPECT_TRUE(window->grab().save(out.filePath("display-wide.png")));

  // The design page with the 7.0-7.3 MHz preselector of the user guide.
  window->resize(1280, 960);
  Click(Button(display, "cmdDesign"));
  Click(Radio("optChebycheff"));
  Click(Radio("opt200"));
  Click(Radio("optCoupledbandpass"));
  TypeInto(Widget<QLineEdit>(window->DesignView(), "txtCenter"), "7.1484M");
  TypeInto(Widget<QLineEdit>(window->DesignView(), "txtBandwidth"), "300k");
  save("design-band.png");
}

}  // namespace
}  // namespace drenik::testing

namespace drenik::testing {
namespace {

// Every caption fits its button from a small laptop screen to a large one.
TEST_F(WindowTest, CaptionsFitTheirButtonsFrom1024x700To1920x1080) {
  Start();
  Click(Button(window->DesignView(), "cmdDesign"));
  for (QSize size : {QSize(1024, 700), QSize(1280, 960), QSize(1920, 1080)}) {
    window->resize(size);
    QApplication::processEvents();
    for (QPushButton* b : window->findChildren<QPushButton*>())
      EXPECT_LE(QFontMetrics(b->font()).horizontalAdvance(b->text()) + 8, b->width())
          << b->text().toStdString() << " at " << size.width() << "x" << size.height();
  }
}

}  // namespace
}  // namespace drenik::testing

namespace drenik::testing {
namespace {

// The design-from-a-mask window on a 1366 x 768 laptop screen, for every
// response: no two controls meet, and no caption, label or box is cut off.
TEST_F(WindowTest, DesignFromAMaskWindowIsLegibleAt1366x768ForEveryResponse) {
  Launch();
  Click(Button(window->OpeningView(), "cmdFromMask"));
  SynthWindow* synth = window->Synth();
  ASSERT_TRUE(synth && synth->isVisible());
  ControlPageView& view = synth->View();
  synth->resize(PageWindowSize(QRect(0, 0, 1366, 728)));
  for (const char* response : {"optLowpass", "optHighpass", "optBandpass", "optBandstop"}) {
    Click(Widget<QRadioButton>(view, response));
    QApplication::processEvents();
    ExpectNoOverlap(&view);
    for (QWidget* w : view.findChildren<QWidget*>()) {
      if (!w->isVisibleTo(&view) || w->objectName().isEmpty()) continue;
      const auto* label = qobject_cast<QLabel*>(w);
      const auto* button = qobject_cast<QPushButton*>(w);
      const int needed = button ? QFontMetrics(w->font()).horizontalAdvance(button->text()) + 8
                         : qobject_cast<QAbstractButton*>(w) || (label && !label->wordWrap())
                             ? w->sizeHint().width()
                             : 0;
      EXPECT_LE(needed, w->width() + 1) << w->objectName().toStdString() << " for " << response;
    }
  }
}

}  // namespace
}  // namespace drenik::testing
