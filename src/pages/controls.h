#pragma once
// Models of the controls a page shows: option buttons, check boxes, text
// boxes, labels, frames, command buttons and tables of rows to pick from. The page logic works on
// these models only; a window mirrors them (look a control up by its name, subscribe to changes)
// and forwards the user's clicks and typing to them.
//
// Event rules:
// - Select() from code runs the option's handler exactly as a click does,
//   also when the option is already selected; Click() is the user's click and
//   is refused while the option or its frame is disabled.
// - SetText() runs the text box's change handler only when the text changes.
// - Option buttons of one frame exclude each other; check boxes stand alone.
// - SetChecked() and a table's Select() run their handlers only on a change.
// - The outermost event catches any error of the engine and shows its text
//   through the platform; nested events let it travel to that outermost one.
// - One event shows at most one message of the engine: the first notice or
//   fault, when the event is over.
// - A page's load is one event that runs all its steps whatever the engine
//   reports on the way (RunLoad).

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/platform.h"

namespace drenik {

enum class ControlKind { Option, TextBox, Label, Frame, Button, CheckBox, Table };

class ControlSet;

class Control {
 public:
  Control(ControlSet& owner, std::string name, ControlKind kind, std::string caption);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);

  // Back to the state the control has when its page is created.
  virtual void ResetToDefault();

 protected:
  void Changed();
  ControlSet& owner_;

 private:
  std::string name_;
  ControlKind kind_;
  std::string caption_;
  std::string defaultCaption_;
  bool enabled_ = true;
};

class Frame : public Control {
 public:
  Frame(ControlSet& owner, std::string name, std::string caption)
      : Control(owner, std::move(name), ControlKind::Frame, std::move(caption)) {}
};

class Label : public Control {
 public:
  Label(ControlSet& owner, std::string name, std::string caption)
      : Control(owner, std::move(name), ControlKind::Label, std::move(caption)) {}
};

class OptionButton : public Control {
 public:
  OptionButton(ControlSet& owner, std::string name, std::string caption, Frame* frame)
      : Control(owner, std::move(name), ControlKind::Option, std::move(caption)), frame_(frame) {}

  bool Selected() const { return selected_; }
  Frame* GetFrame() const { return frame_; }
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }

  // Selects the option (unselecting the others of its frame) and runs its
  // handler, as a click does.
  void Select();
  // The user's click; false when the option or its frame is disabled.
  bool Click();
  // Selects or unselects without running the handler.
  void SetSelectedQuietly(bool selected);
  void ResetToDefault() override;

 private:
  Frame* frame_;
  bool selected_ = false;
  std::function<void()> handler_;
};

class TextBox : public Control {
 public:
  TextBox(ControlSet& owner, std::string name, std::string defaultText)
      : Control(owner, std::move(name), ControlKind::TextBox, {}),
        text_(defaultText),
        defaultText_(std::move(defaultText)) {}

  const std::string& Text() const { return text_; }
  // Runs the change handler when the text differs from the current one.
  void SetText(const std::string& text);
  // The user's typing; false while the box is disabled.
  bool Type(const std::string& text);
  // Sets the text without running the change handler (a box that shows what
  // another box's change worked out).
  void SetTextQuietly(const std::string& text);
  void SetChangeHandler(std::function<void()> handler) { handler_ = std::move(handler); }
  void ResetToDefault() override;

 private:
  std::string text_;
  std::string defaultText_;
  std::function<void()> handler_;
};

class CommandButton : public Control {
 public:
  CommandButton(ControlSet& owner, std::string name, std::string caption)
      : Control(owner, std::move(name), ControlKind::Button, std::move(caption)) {}
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }
  // The user's click; false while the button is disabled.
  bool Click();

 private:
  std::function<void()> handler_;
};

class CheckBox : public Control {
 public:
  CheckBox(ControlSet& owner, std::string name, std::string caption, bool checked)
      : Control(owner, std::move(name), ControlKind::CheckBox, std::move(caption)),
        checked_(checked),
        defaultChecked_(checked) {}

  bool Checked() const { return checked_; }
  // Runs the handler when the state changes.
  void SetChecked(bool checked);
  void SetCheckedQuietly(bool checked);
  // The user's click turns it over; false while it is disabled.
  bool Click();
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }
  void ResetToDefault() override;

 private:
  bool checked_;
  bool defaultChecked_;
  std::function<void()> handler_;
};

// Rows of text under column headings, of which the user picks one. One row
// may be marked (shown in bold: the page's own pick among them).
class TableList : public Control {
 public:
  TableList(ControlSet& owner, std::string name, std::vector<std::string> headings)
      : Control(owner, std::move(name), ControlKind::Table, {}), headings_(std::move(headings)) {}

  const std::vector<std::string>& Headings() const { return headings_; }
  const std::vector<std::vector<std::string>>& Rows() const { return rows_; }
  int Marked() const { return marked_; }
  int Selected() const { return selected_; }  // -1: none
  // New rows: none selected, none marked but `marked` (-1 for none).
  void SetRows(std::vector<std::vector<std::string>> rows, int marked = -1);
  // Selects a row (-1: none); runs the handler when the selection changes.
  void Select(int row);
  // The user's pick; false while the table is disabled or for no such row.
  bool Click(int row);
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }
  void ResetToDefault() override;

 private:
  std::vector<std::string> headings_;
  std::vector<std::vector<std::string>> rows_;
  int marked_ = -1, selected_ = -1;
  std::function<void()> handler_;
};

// The controls of one page, in creation order, with the event guard and the
// change notification that a view follows.
class ControlSet {
 public:
  explicit ControlSet(Platform& platform) : platform_(platform) {}

  Frame& AddFrame(const std::string& name, const std::string& caption);
  Label& AddLabel(const std::string& name, const std::string& caption);
  OptionButton& AddOption(const std::string& name, const std::string& caption, Frame* frame);
  TextBox& AddTextBox(const std::string& name, const std::string& defaultText);
  CommandButton& AddButton(const std::string& name, const std::string& caption);
  CheckBox& AddCheckBox(const std::string& name, const std::string& caption, bool checked);
  TableList& AddTable(const std::string& name, std::vector<std::string> headings);

  // nullptr when the page has no control of that name (or not of that kind).
  Control* Find(const std::string& name) const;
  OptionButton* FindOption(const std::string& name) const;
  TextBox* FindTextBox(const std::string& name) const;
  Label* FindLabel(const std::string& name) const;
  Frame* FindFrame(const std::string& name) const;
  CommandButton* FindButton(const std::string& name) const;
  CheckBox* FindCheckBox(const std::string& name) const;
  TableList* FindTable(const std::string& name) const;
  const std::vector<std::unique_ptr<Control>>& All() const { return controls_; }
  // The options that belong to a frame, in creation order.
  std::vector<OptionButton*> OptionsOf(const Frame* frame) const;

  void ResetToDefaults();

  // Grows by one on every change of any control's state.
  uint64_t Revision() const { return revision_; }
  // Called after each change, with the control that changed.
  void SetObserver(std::function<void(const Control&)> observer) {
    observer_ = std::move(observer);
  }

  // Runs an event. The outermost event catches engine errors ("Run-time
  // error"); nested events pass them on. When the outermost event is over it
  // shows the first notice or error of the engine in it, if any. Returns
  // false when the event stopped on an error.
  bool RunEvent(const std::function<void()>& event);
  // Runs a page's load as an event. The options it selects from code
  // redesign with the controls half set, so what their handlers report is
  // dropped: each such handler stops on its own fault and the load goes on
  // to the design it ends with, whose report is the one shown. Inside
  // another event of this set, the same as RunEvent.
  bool RunLoad(const std::function<void()>& load);
  // One step of a load: its fault ends the step, not the load. Outside a
  // load, the same as RunEvent.
  bool RunStep(const std::function<void()>& step);
  // A notice of the engine, shown when the event is over (at once outside
  // any event).
  void ShowNotice(const std::string& text);
  Platform& GetPlatform() const { return platform_; }

 private:
  friend class Control;
  void NotifyChanged(const Control& control);
  struct Message {
    std::string text, title;
    MessageIcon icon;
  };
  bool RunOutermost(const std::function<void()>& event, bool load);
  // Runs the step; its error becomes the event's message.
  bool Guarded(const std::function<void()>& step);
  // Keeps the event's message, unless one is kept already.
  void Keep(Message message);

  Platform& platform_;
  std::vector<std::unique_ptr<Control>> controls_;
  uint64_t revision_ = 0;
  int depth_ = 0;
  bool loading_ = false;
  std::optional<Message> kept_;
  std::function<void(const Control&)> observer_;
};

inline constexpr const char* kRunTimeErrorTitle = "Run-time error";

}  // namespace drenik
