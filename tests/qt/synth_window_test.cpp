// The design-from-a-mask window: opened from the design page, a search on a
// worker thread that fills the ranked table and can be cancelled, a row
// drawn when selected, a bad mask named beside Search, and the design taken
// into the pages.
#include <QDir>
#include <QLabel>
#include <QRegularExpression>
#include <QTableWidget>

#include "fixture.h"
#include "pages/synth_table.h"

namespace drenik::testing {
namespace {

class SynthWindowTest : public WindowTest {
 protected:
  // Opens the window from the design page.
  ControlPageView& Open() {
    Start();
    Click(Button(window->DesignView(), "cmdFromMask"));
    EXPECT_TRUE(window->Synth() && window->Synth()->isVisible());
    window->Synth()->resize(1280, 960);
    return window->Synth()->View();
  }
  void Type(ControlPageView& view, const char* box, const QString& text) {
    TypeInto(Widget<QLineEdit>(view, box), text);
  }
  // The 20 m harmonic lowpass of the user guide.
  void TwentyMetres(ControlPageView& view, const char* trials) {
    Type(view, "txtPassEdge", "14.35M");
    Type(view, "txtPassRl", "18");
    Type(view, "txtPassIl", "");
    Type(view, "txtStopFreq1", "28.7M");
    Type(view, "txtStopDepth1", "50");
    for (const char* box : {"txtStopFreq2", "txtStopDepth2", "txtStopFreq3", "txtStopDepth3"})
      Type(view, box, "");
    Type(view, "txtCtol", "5");
    Type(view, "txtLtol", "2");
    Type(view, "txtTrials", trials);
  }
  bool Drawn(const std::string& prefix) {
    for (const DrawOp& op : app->SynthCanvas().Ops())
      if (op.kind == DrawOp::Kind::Text && op.text.rfind(prefix, 0) == 0) return true;
    return false;
  }
};

TEST_F(SynthWindowTest, SearchesFillsTheTableDrawsTheSelectedRowAndUsesIt) {
  ControlPageView& view = Open();
  SynthPage& page = app->Synth();
  // The design the pages hold is the starting mask: a lowpass at 50 ohms.
  EXPECT_TRUE(Widget<QRadioButton>(view, "optLowpass")->isChecked());
  EXPECT_EQ(Widget<QLineEdit>(view, "txtImpedance")->text(), "50");
  EXPECT_FALSE(Widget<QLineEdit>(view, "txtPassEdge")->text().isEmpty());
  EXPECT_EQ(Widget<QLineEdit>(view, "txtYield")->text(), "99");

  // A bad mask is named beside Search, and nothing is searched.
  Type(view, "txtPassEdge", "");
  Click(Button(view, "cmdSearch"));
  EXPECT_FALSE(page.Running());
  EXPECT_NE(Widget<QLabel>(view, "lblFault")->text().indexOf("passband edge"), -1);
  // So is one that contradicts itself (a stopband inside the passband), in
  // words, not the command line's options.
  TwentyMetres(view, "2000");
  Type(view, "txtStopFreq1", "10M");
  Click(Button(view, "cmdSearch"));
  EXPECT_FALSE(page.Running() || page.HasResult());
  EXPECT_TRUE(Widget<QLabel>(view, "lblFault")->text().contains(QRegularExpression("^[A-Z]")));
  EXPECT_FALSE(Widget<QLabel>(view, "lblFault")->text().contains("--"));

  // A mask no design meets: the search's line saying what fails.
  TwentyMetres(view, "2000");
  Type(view, "txtStopFreq1", "14.4M");
  Type(view, "txtStopDepth1", "80");
  Click(Button(view, "cmdSearch"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !page.Running(); }, 60000));
  EXPECT_EQ(page.Result().chosen, -1);
  EXPECT_FALSE(page.Result().failure.empty());
  EXPECT_EQ(Widget<QLabel>(view, "lblFault")->text().toStdString(), page.Result().failure);

  TwentyMetres(view, "2000");
  Click(Button(view, "cmdSearch"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !page.Running(); }, 60000));
  ASSERT_TRUE(page.HasResult());
  const SynthResult& result = page.Result();
  ASSERT_EQ(result.chosen, 0) << Widget<QLabel>(view, "lblFault")->text().toStdString();
  ASSERT_GE(result.candidates.size(), 2u);
  // The chosen design first, marked in bold and selected, and drawn.
  auto* table = Widget<QTableWidget>(view, "tblCandidates");
  EXPECT_EQ(table->rowCount(), static_cast<int>(result.candidates.size()));
  EXPECT_EQ(table->currentRow(), 0);
  EXPECT_TRUE(table->item(0, 1)->font().bold() && !table->item(1, 1)->font().bold());
  EXPECT_EQ(table->item(0, 13)->text(), "chosen");
  EXPECT_EQ(page.Drawn(), 0);
  EXPECT_TRUE(Drawn("#1 " + SynthCandidateName(result.candidates[0])));
  EXPECT_GT(page.Envelope().trials, 0);
  // Screenshot for the user guide.
  QDir out(DRENIK_BINARY_DIR "/screenshots");
  out.mkpath(".");
  EXPECT_TRUE(window->Synth()->grab().save(out.filePath("synth-window.png")));

  // Another row is drawn with its own envelope.
  const QRect second = table->visualItemRect(table->item(1, 1));
  QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, second.center());
  EXPECT_EQ(page.Drawn(), 1);
  EXPECT_TRUE(Drawn("#2 " + SynthCandidateName(result.candidates[1])));

  // Back to the chosen one, into the design and display pages.
  Press(table, Qt::Key_Up);
  EXPECT_EQ(page.Drawn(), 0);
  const DesignChoice& c = result.candidates[0].choice;
  Click(Button(view, "cmdUse"));
  EXPECT_EQ(app->CurrentPage(), PageId::Display);
  EXPECT_EQ(D().Family, c.family);
  EXPECT_EQ(D().Order, c.order);
  EXPECT_EQ(D().Topology, c.topology);
  EXPECT_EQ(D().Width, static_cast<float>(c.width));
  const FamilyInfo& family = *FindFamily(c.family);
  EXPECT_NEAR(D().Apass, family.ripple.Offered() ? c.ripple : D().Apass, 1e-6);
  EXPECT_NEAR(D().Astop, family.depth.Offered() ? c.depth : D().Astop, 1e-4);
  EXPECT_TRUE(platform->messages.empty());
  Click(Button(window->DisplayView(), "cmdDesign"));
  EXPECT_TRUE(Widget<QRadioButton>(window->DesignView(), family.optionName)->isChecked());
}

TEST_F(SynthWindowTest, CancelStopsARunningSearch) {
  ControlPageView& view = Open();
  SynthPage& page = app->Synth();
  TwentyMetres(view, "1000000");
  Click(Button(view, "cmdSearch"));
  ASSERT_TRUE(page.Running());
  EXPECT_FALSE(Button(view, "cmdSearch")->isEnabled());
  EXPECT_TRUE(QTest::qWaitFor([&] { return Drawn("Searching: "); }, 5000));
  Click(Button(view, "cmdCancel"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !page.Running(); }, 20000));
  EXPECT_TRUE(Drawn("Cancelled") && !page.HasResult());
  EXPECT_TRUE(Button(view, "cmdSearch")->isEnabled());
}

}  // namespace
}  // namespace drenik::testing
