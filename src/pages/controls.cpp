#include "pages/controls.h"

#include <exception>
#include <utility>

namespace drenik {

Control::Control(ControlSet& owner, std::string name, ControlKind kind, std::string caption)
    : owner_(owner),
      name_(std::move(name)),
      kind_(kind),
      caption_(caption),
      defaultCaption_(std::move(caption)) {}

void Control::SetCaption(const std::string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Changed();
}

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Changed();
}

void Control::ResetToDefault() {
  SetCaption(defaultCaption_);
  SetEnabled(true);
}

void Control::Changed() {
  owner_.NotifyChanged(*this);
}

void OptionButton::Select() {
  SetSelectedQuietly(true);
  if (handler_) owner_.RunEvent(handler_);
}

bool OptionButton::Click() {
  if (!Enabled() || (frame_ && !frame_->Enabled())) return false;
  Select();
  return true;
}

void OptionButton::SetSelectedQuietly(bool selected) {
  if (selected) {
    for (OptionButton* other : owner_.OptionsOf(frame_)) {
      if (other != this) other->SetSelectedQuietly(false);
    }
  }
  if (selected == selected_) return;
  selected_ = selected;
  Changed();
}

void OptionButton::ResetToDefault() {
  Control::ResetToDefault();
  SetSelectedQuietly(false);
}

void TextBox::SetText(const std::string& text) {
  if (text == text_) return;
  text_ = text;
  Changed();
  if (handler_) owner_.RunEvent(handler_);
}

void TextBox::SetTextQuietly(const std::string& text) {
  if (text == text_) return;
  text_ = text;
  Changed();
}

bool TextBox::Type(const std::string& text) {
  if (!Enabled()) return false;
  SetText(text);
  return true;
}

void TextBox::ResetToDefault() {
  Control::ResetToDefault();
  text_ = defaultText_;
  Changed();
}

bool CommandButton::Click() {
  if (!Enabled()) return false;
  if (handler_) owner_.RunEvent(handler_);
  return true;
}

void CheckBox::SetChecked(bool checked) {
  if (checked == checked_) return;
  SetCheckedQuietly(checked);
  if (handler_) owner_.RunEvent(handler_);
}

void CheckBox::SetCheckedQuietly(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  Changed();
}

bool CheckBox::Click() {
  if (!Enabled()) return false;
  SetChecked(!checked_);
  return true;
}

void CheckBox::ResetToDefault() {
  Control::ResetToDefault();
  SetCheckedQuietly(defaultChecked_);
}

void TableList::SetRows(std::vector<std::vector<std::string>> rows, int marked) {
  rows_ = std::move(rows);
  marked_ = marked >= 0 && marked < static_cast<int>(rows_.size()) ? marked : -1;
  selected_ = -1;
  Changed();
}

void TableList::Select(int row) {
  if (row < -1 || row >= static_cast<int>(rows_.size()) || row == selected_) return;
  selected_ = row;
  Changed();
  if (handler_) owner_.RunEvent(handler_);
}

bool TableList::Click(int row) {
  if (!Enabled() || row < 0 || row >= static_cast<int>(rows_.size())) return false;
  Select(row);
  return true;
}

void TableList::ResetToDefault() {
  Control::ResetToDefault();
  SetRows({});
}

Frame& ControlSet::AddFrame(const std::string& name, const std::string& caption) {
  controls_.push_back(std::make_unique<Frame>(*this, name, caption));
  return static_cast<Frame&>(*controls_.back());
}

Label& ControlSet::AddLabel(const std::string& name, const std::string& caption) {
  controls_.push_back(std::make_unique<Label>(*this, name, caption));
  return static_cast<Label&>(*controls_.back());
}

OptionButton& ControlSet::AddOption(const std::string& name, const std::string& caption,
                                    Frame* frame) {
  controls_.push_back(std::make_unique<OptionButton>(*this, name, caption, frame));
  return static_cast<OptionButton&>(*controls_.back());
}

TextBox& ControlSet::AddTextBox(const std::string& name, const std::string& defaultText) {
  controls_.push_back(std::make_unique<TextBox>(*this, name, defaultText));
  return static_cast<TextBox&>(*controls_.back());
}

CommandButton& ControlSet::AddButton(const std::string& name, const std::string& caption) {
  controls_.push_back(std::make_unique<CommandButton>(*this, name, caption));
  return static_cast<CommandButton&>(*controls_.back());
}

CheckBox& ControlSet::AddCheckBox(const std::string& name, const std::string& caption,
                                  bool checked) {
  controls_.push_back(std::make_unique<CheckBox>(*this, name, caption, checked));
  return static_cast<CheckBox&>(*controls_.back());
}

TableList& ControlSet::AddTable(const std::string& name, std::vector<std::string> headings) {
  controls_.push_back(std::make_unique<TableList>(*this, name, std::move(headings)));
  return static_cast<TableList&>(*controls_.back());
}

Control* ControlSet::Find(const std::string& name) const {
  for (const auto& c : controls_) {
    if (c->Name() == name) return c.get();
  }
  return nullptr;
}

namespace {
template <typename T>
T* FindAs(const ControlSet& set, const std::string& name, ControlKind kind) {
  Control* c = set.Find(name);
  return c && c->Kind() == kind ? static_cast<T*>(c) : nullptr;
}
}  // namespace

OptionButton* ControlSet::FindOption(const std::string& name) const {
  return FindAs<OptionButton>(*this, name, ControlKind::Option);
}
TextBox* ControlSet::FindTextBox(const std::string& name) const {
  return FindAs<TextBox>(*this, name, ControlKind::TextBox);
}
Label* ControlSet::FindLabel(const std::string& name) const {
  return FindAs<Label>(*this, name, ControlKind::Label);
}
Frame* ControlSet::FindFrame(const std::string& name) const {
  return FindAs<Frame>(*this, name, ControlKind::Frame);
}
CommandButton* ControlSet::FindButton(const std::string& name) const {
  return FindAs<CommandButton>(*this, name, ControlKind::Button);
}

CheckBox* ControlSet::FindCheckBox(const std::string& name) const {
  return FindAs<CheckBox>(*this, name, ControlKind::CheckBox);
}
TableList* ControlSet::FindTable(const std::string& name) const {
  return FindAs<TableList>(*this, name, ControlKind::Table);
}

std::vector<OptionButton*> ControlSet::OptionsOf(const Frame* frame) const {
  std::vector<OptionButton*> options;
  for (const auto& c : controls_) {
    if (c->Kind() != ControlKind::Option) continue;
    auto* option = static_cast<OptionButton*>(c.get());
    if (option->GetFrame() == frame) options.push_back(option);
  }
  return options;
}

void ControlSet::ResetToDefaults() {
  for (const auto& c : controls_) c->ResetToDefault();
}

void ControlSet::NotifyChanged(const Control& control) {
  ++revision_;
  if (observer_) observer_(control);
}

bool ControlSet::RunEvent(const std::function<void()>& event) {
  if (depth_ == 0) return RunOutermost(event, false);
  ++depth_;
  struct Leave {
    int& depth;
    ~Leave() { --depth; }
  } leave{depth_};
  if (!loading_) {
    event();
    return true;
  }
  try {
    event();
  } catch (...) {
    return false;  // the design the load ends with speaks for it
  }
  return true;
}

bool ControlSet::RunLoad(const std::function<void()>& load) {
  return depth_ == 0 ? RunOutermost(load, true) : RunEvent(load);
}

bool ControlSet::RunStep(const std::function<void()>& step) {
  return loading_ && depth_ == 1 ? Guarded(step) : RunEvent(step);
}

void ControlSet::ShowNotice(const std::string& text) {
  if (depth_ == 0) {
    platform_.ShowMessage(text);
  } else if (!loading_ || depth_ == 1) {
    Keep({text, "", MessageIcon::None});
  }
}

bool ControlSet::RunOutermost(const std::function<void()>& event, bool load) {
  depth_ = 1;
  loading_ = load;
  const bool ok = Guarded(event);
  depth_ = 0;
  loading_ = false;
  const std::optional<Message> message = std::exchange(kept_, std::nullopt);
  if (message) platform_.ShowMessage(message->text, message->title, message->icon);
  return ok;
}

bool ControlSet::Guarded(const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const std::exception& e) {
    Keep({e.what(), kRunTimeErrorTitle, MessageIcon::Critical});
  } catch (...) {
    Keep({"Unknown error", kRunTimeErrorTitle, MessageIcon::Critical});
  }
  return false;
}

void ControlSet::Keep(Message message) {
  if (!kept_) kept_ = std::move(message);
}

}  // namespace drenik
