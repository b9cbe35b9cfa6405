#pragma once
// The body the program's small dialogs share: a note over a form of
// labelled boxes, with OK and Cancel under them.

class QDialog;
class QDialogButtonBox;
class QFormLayout;
class QWidget;

namespace drenik {

// Lays `note` and `form` out in `dialog` with OK (accepts) and Cancel
// (rejects) under them; the buttons are returned for captions of their own.
QDialogButtonBox* LayOutFormDialog(QDialog& dialog, QWidget* note, QFormLayout* form);

}  // namespace drenik
