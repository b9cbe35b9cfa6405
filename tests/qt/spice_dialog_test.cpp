// The LTspice export dialog over its page: texts from the page, "Draw"
// writes the file the save dialog names, "Cancel" closes without writing.
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>

#include "qt/spice_dialog.h"
#include "window_fixture.h"

namespace drenik::testing {
namespace {

TEST_F(WindowTest, SpiceDialogDrawsAndCancels) {
  Launch();
  Click(Button(Window().OpeningView(), "cmdStart"));
  Click(Button(Window().DesignView(), "cmdDesign"));

  SpicePage page(D(), *platform);
  SpiceDialog dialog(page, &Window());
  dialog.show();
  EXPECT_EQ(dialog.windowTitle().toStdString(), page.Caption());
  EXPECT_EQ(dialog.findChild<QLabel*>("lblHeading")->text().toStdString(), page.Heading());
  EXPECT_EQ(dialog.CancelButton()->text(), "Cancel");

  QTemporaryDir folder;
  platform->dialogAnswer = QDir(folder.path()).filePath("ladder.ASC").toStdString();
  Click(dialog.DrawButton());
  ASSERT_EQ(platform->dialogs.size(), 1u);
  EXPECT_EQ(platform->dialogs[0].proposedName, "Default.ASC");
  QFile written(QString::fromStdString(platform->dialogAnswer));
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_TRUE(written.readLine().startsWith("Version 4"));
  EXPECT_TRUE(platform->messages.empty());

  Click(dialog.CancelButton());
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(platform->dialogs.size(), 1u);
}

}  // namespace
}  // namespace drenik::testing
