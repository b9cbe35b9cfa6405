#include "qt/control_page_view.h"

#include <QCheckBox>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QResizeEvent>
#include <QScreen>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace drenik {

namespace {

// Pixels a push button's frame and margins take from its caption's width.
constexpr int kCaptionPadding = 8;

QString Q(const std::string& s) {
  return QString::fromStdString(s);
}

QString LinkText(const std::string& caption) {
  return QStringLiteral("<a href=\"#\">%1</a>").arg(Q(caption).toHtmlEscaped());
}

// Whether the widget already shows the model's headings and rows.
bool SameRows(const QTableWidget& table, const TableList& list) {
  const auto& rows = list.Rows();
  const int columns = static_cast<int>(list.Headings().size());
  if (table.rowCount() != static_cast<int>(rows.size()) || table.columnCount() != columns)
    return false;
  for (int r = 0; r < table.rowCount(); ++r) {
    for (int c = 0; c < columns; ++c) {
      const QTableWidgetItem* item = table.item(r, c);
      const auto& row = rows[static_cast<size_t>(r)];
      const QString text = c < static_cast<int>(row.size()) ? Q(row[static_cast<size_t>(c)]) : "";
      if (!item || item->text() != text || item->font().bold() != (r == list.Marked()))
        return false;
    }
  }
  return true;
}

void FillTable(QTableWidget& table, const TableList& list) {
  QSignalBlocker block(&table);
  QStringList headings;
  for (const std::string& h : list.Headings()) headings << Q(h);
  table.setColumnCount(static_cast<int>(headings.size()));
  table.setHorizontalHeaderLabels(headings);
  const auto& rows = list.Rows();
  table.setRowCount(static_cast<int>(rows.size()));
  for (int r = 0; r < table.rowCount(); ++r) {
    const auto& row = rows[static_cast<size_t>(r)];
    for (int c = 0; c < table.columnCount(); ++c) {
      auto* item = new QTableWidgetItem(
          c < static_cast<int>(row.size()) ? Q(row[static_cast<size_t>(c)]) : "");
      QFont font = table.font();
      font.setBold(r == list.Marked());
      item->setFont(font);
      table.setItem(r, c, item);
    }
  }
  table.resizeColumnsToContents();
}

}  // namespace

ControlPageView::ControlPageView(ControlSet& controls, PageCanvas& drawing,
                                 std::vector<ControlPlace> places, QWidget* parent)
    : QWidget(parent), controls_(controls), surface_(new PageSurface(drawing, this)) {
  setAutoFillBackground(true);
  QPalette margins = palette();
  margins.setColor(QPalette::Window, QColor(0xE4, 0xE4, 0xE4));
  setPalette(margins);
  drawing.SetObserver([this] { surface_->update(); });

  entries_.reserve(places.size());
  for (const ControlPlace& place : places) {
    Control* control = controls_.Find(place.name);
    if (!control) continue;  // a place for a control this page does not have
    Entry entry{place, control, nullptr, false};
    entries_.push_back(entry);
    byControl_[control] = entries_.size() - 1;
    byName_[place.name] = entries_.size() - 1;
  }
  for (Entry& entry : entries_) entry.widget = Create(entry);
  controls_.SetObserver([this](const Control& c) { Mirror(c); });
  SyncAll();
}

QWidget* ControlPageView::Create(Entry& entry) {
  QWidget* parent = this;
  if (entry.place.frame) {
    auto it = byName_.find(entry.place.frame);
    if (it == byName_.end() || !entries_[it->second].widget) {
      throw std::logic_error(std::string("frame placed after its control: ") + entry.place.name);
    }
    parent = entries_[it->second].widget;
  }
  Control* control = entry.control;
  QWidget* widget = nullptr;
  switch (control->Kind()) {
    case ControlKind::Frame:
      widget = new QGroupBox(parent);
      break;
    case ControlKind::Label: {
      auto* label = new QLabel(parent);
      label->setTextFormat(Qt::PlainText);
      label->setAlignment(entry.place.align);
      label->setWordWrap(entry.place.wordWrap);
      widget = label;
      break;
    }
    case ControlKind::Option: {
      auto* radio = new QRadioButton(parent);
      radio->installEventFilter(this);
      auto* option = static_cast<OptionButton*>(control);
      // A click on an option that is already selected is no change.
      connect(radio, &QRadioButton::clicked, this, [this, option] {
        if (!option->Selected()) option->Click();
        SyncAll();
      });
      widget = radio;
      break;
    }
    case ControlKind::TextBox: {
      auto* edit = new QLineEdit(parent);
      auto* box = static_cast<TextBox*>(control);
      connect(edit, &QLineEdit::textEdited, this, [this, box](const QString& text) {
        box->Type(text.toStdString());
        SyncAll();
      });
      widget = edit;
      break;
    }
    case ControlKind::Button: {
      auto* button = new QPushButton(parent);
      button->setAutoDefault(true);  // Enter clicks the focused button
      auto* command = static_cast<CommandButton*>(control);
      connect(button, &QPushButton::clicked, this, [command] { command->Click(); });
      widget = button;
      break;
    }
    case ControlKind::CheckBox: {
      auto* check = new QCheckBox(parent);
      auto* box = static_cast<CheckBox*>(control);
      connect(check, &QCheckBox::clicked, this, [this, box] {
        box->Click();
        SyncAll();
      });
      widget = check;
      break;
    }
    case ControlKind::Table: {
      auto* table = new QTableWidget(parent);
      table->setEditTriggers(QAbstractItemView::NoEditTriggers);
      table->setSelectionBehavior(QAbstractItemView::SelectRows);
      table->setSelectionMode(QAbstractItemView::SingleSelection);
      table->verticalHeader()->setVisible(false);
      table->horizontalHeader()->setStretchLastSection(true);
      auto* list = static_cast<TableList*>(control);
      // Mouse and arrow keys both move the current row.
      connect(table, &QTableWidget::currentCellChanged, this, [this, list](int row) {
        if (row >= 0 && row != list->Selected()) list->Click(row);
        SyncAll();
      });
      widget = table;
      break;
    }
  }
  widget->setObjectName(Q(control->Name()));
  return widget;
}

QWidget* ControlPageView::WidgetFor(const std::string& name) const {
  auto it = byName_.find(name);
  return it == byName_.end() ? nullptr : entries_[it->second].widget;
}

void ControlPageView::MakeLink(const std::string& name, std::function<void()> activate) {
  auto it = byName_.find(name);
  if (it == byName_.end()) return;
  Entry& entry = entries_[it->second];
  auto* label = qobject_cast<QLabel*>(entry.widget);
  if (!label) return;
  entry.link = true;
  label->setTextFormat(Qt::RichText);
  label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  label->setFocusPolicy(Qt::StrongFocus);
  label->setCursor(Qt::PointingHandCursor);
  connect(label, &QLabel::linkActivated, this, [activate] { activate(); });
  MirrorEntry(entry);
}

void ControlPageView::Mirror(const Control& control) {
  auto it = byControl_.find(&control);
  if (it != byControl_.end()) MirrorEntry(entries_[it->second]);
}

void ControlPageView::SyncAll() {
  for (Entry& entry : entries_) MirrorEntry(entry);
}

void ControlPageView::SetPlaces(const std::vector<ControlPlace>& places) {
  for (Entry& entry : entries_) {
    const auto place = std::find_if(places.begin(), places.end(), [&](const ControlPlace& p) {
      return p.name == entry.place.name;
    });
    if (place != places.end()) {
      const char* frame = entry.place.frame;
      entry.place = *place;
      entry.place.frame = frame;
    }
    entry.widget->setHidden(place == places.end());
  }
  Relayout();
}

void ControlPageView::MirrorEntry(Entry& entry) {
  const Control& control = *entry.control;
  QWidget* widget = entry.widget;
  if (!widget) return;
  if (widget->isEnabledTo(widget->parentWidget()) != control.Enabled()) {
    widget->setEnabled(control.Enabled());
  }
  switch (control.Kind()) {
    case ControlKind::Frame: {
      auto* group = static_cast<QGroupBox*>(widget);
      if (group->title() != Q(control.Caption())) group->setTitle(Q(control.Caption()));
      break;
    }
    case ControlKind::Label: {
      auto* label = static_cast<QLabel*>(widget);
      QString text = entry.link ? LinkText(control.Caption()) : Q(control.Caption());
      if (label->text() != text) label->setText(text);
      break;
    }
    case ControlKind::Option: {
      auto* radio = static_cast<QRadioButton*>(widget);
      const auto& option = static_cast<const OptionButton&>(control);
      if (radio->text() != Q(control.Caption())) radio->setText(Q(control.Caption()));
      if (radio->isChecked() != option.Selected()) {
        QSignalBlocker block(radio);
        // An exclusive radio button cannot be unchecked directly; the model
        // may leave a whole group without a selection.
        radio->setAutoExclusive(false);
        radio->setChecked(option.Selected());
        radio->setAutoExclusive(true);
      }
      break;
    }
    case ControlKind::TextBox: {
      auto* edit = static_cast<QLineEdit*>(widget);
      const auto& box = static_cast<const TextBox&>(control);
      if (edit->text() != Q(box.Text())) {
        QSignalBlocker block(edit);
        edit->setText(Q(box.Text()));
      }
      break;
    }
    case ControlKind::Button: {
      auto* button = static_cast<QPushButton*>(widget);
      if (button->text() != Q(control.Caption())) button->setText(Q(control.Caption()));
      break;
    }
    case ControlKind::CheckBox: {
      auto* check = static_cast<QCheckBox*>(widget);
      const auto& box = static_cast<const CheckBox&>(control);
      if (check->text() != Q(control.Caption())) check->setText(Q(control.Caption()));
      if (check->isChecked() != box.Checked()) {
        QSignalBlocker block(check);
        check->setChecked(box.Checked());
      }
      break;
    }
    case ControlKind::Table: {
      auto* table = static_cast<QTableWidget*>(widget);
      const auto& list = static_cast<const TableList&>(control);
      if (!SameRows(*table, list)) FillTable(*table, list);
      if (table->currentRow() != list.Selected()) {
        QSignalBlocker block(table);
        if (list.Selected() < 0) {
          table->clearSelection();
          table->setCurrentCell(-1, -1);
        } else {
          table->setCurrentCell(list.Selected(), 0);
          table->selectRow(list.Selected());
        }
      }
      break;
    }
  }
}

bool ControlPageView::eventFilter(QObject* watched, QEvent* event) {
  // Tabbing into a group of options lands on its selected option.
  if (event->type() == QEvent::FocusIn) {
    auto reason = static_cast<QFocusEvent*>(event)->reason();
    auto* radio = qobject_cast<QRadioButton*>(watched);
    if (radio && !radio->isChecked() &&
        (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)) {
      for (QRadioButton* other :
           radio->parentWidget()->findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly)) {
        if (other->isChecked() && other->isEnabled()) {
          other->setFocus(reason);
          break;
        }
      }
    }
  }
  return QWidget::eventFilter(watched, event);
}

void ControlPageView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Relayout();
}

void ControlPageView::Relayout() {
  scale_ = std::min(width() / double{kPageWidth}, height() / double{kPageHeight});
  if (scale_ <= 0) return;
  double left = (width() - kPageWidth * scale_) / 2;
  double top = (height() - kPageHeight * scale_) / 2;
  auto toPixels = [this](double x1, double y1, double x2, double y2, double ox, double oy) {
    QPoint a(static_cast<int>(std::lround(ox + x1 * scale_)),
             static_cast<int>(std::lround(oy + y1 * scale_)));
    QPoint b(static_cast<int>(std::lround(ox + x2 * scale_)),
             static_cast<int>(std::lround(oy + y2 * scale_)));
    return QRect(a, b - QPoint(1, 1));
  };
  surface_->setGeometry(toPixels(0, 0, kPageWidth, kPageHeight, left, top));
  for (Entry& entry : entries_) {
    const ControlPlace& p = entry.place;
    double ox = left, oy = top;
    if (p.frame) {
      const ControlPlace& frame = entries_[byName_.at(p.frame)].place;
      ox = -frame.x1 * scale_;
      oy = -frame.y1 * scale_;
    }
    entry.widget->setGeometry(toPixels(p.x1, p.y1, p.x2, p.y2, ox, oy));
    QFont font(QString::fromLatin1(p.fontFamily));
    // One point is 20 page units.
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(p.pointSize * 20 * scale_))));
    font.setBold(p.bold);
    // Pixel sizes round, and a small window can leave a caption a few pixels
    // wider than its button: such a caption steps down until it fits.
    if (auto* button = qobject_cast<QPushButton*>(entry.widget)) {
      const int room = button->width() - kCaptionPadding;
      while (font.pixelSize() > 1 && QFontMetrics(font).horizontalAdvance(button->text()) > room)
        font.setPixelSize(font.pixelSize() - 1);
    }
    entry.widget->setFont(font);
    // A table's rows and columns follow its font.
    if (auto* table = qobject_cast<QTableWidget*>(entry.widget)) {
      table->horizontalHeader()->setFont(font);
      table->verticalHeader()->setMinimumSectionSize(1);
      table->verticalHeader()->setDefaultSectionSize(font.pixelSize() * 3 / 2 + 2);
      FillTable(*table, static_cast<const TableList&>(*entry.control));
      MirrorEntry(entry);
    }
  }
}

void HoldPageView(QWidget& window, ControlPageView& view, const std::string& caption,
                  QWidget* parent) {
  window.setWindowTitle(Q(caption));
  auto* layout = new QVBoxLayout(&window);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&view);
  window.setMinimumSize(400, 300);
  if (QScreen* screen = parent ? parent->screen() : window.screen())
    window.resize(PageWindowSize(screen->availableGeometry()));
}

}  // namespace drenik
