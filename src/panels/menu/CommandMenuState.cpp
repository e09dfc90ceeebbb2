#include "panels/menu/CommandMenuState.h"

#include <algorithm>

#include "base/Log.h"
#include "base/TextSearch.h"
#include "panels/menu/CommandPanelViewModel.h"

namespace quillmark {
namespace {

/// The name as people type it, without flag emoji.
std::string withoutFlags(std::string name) {
  constexpr std::string_view letterOfFlag = "\xF0\x9F\x87";  // common to U+1F1E6 to U+1F1FF, one more byte follows
  for (auto at = name.find(letterOfFlag); at != std::string::npos; at = name.find(letterOfFlag, at)) {
    name.erase(at, letterOfFlag.size() + 1);
    if (name.compare(at, 1, " ") == 0) {
      name.erase(at, 1);
    }
  }
  return name;
}

/// The searched text: the stored name, with and without flags, and the row's title if it differs.
std::string foldedNames(const Command& command) {
  std::string folded;
  std::string last;
  for (const auto& name : {command.name, withoutFlags(command.name), command.displayName()}) {
    if (name != last) {
      folded += text::foldedForSearch(name);
      folded += '\n';  // which no search field can contain
      last = name;
    }
  }
  return folded;
}

/// Also after a rebuild of the list, which creates the entries of languages and tones anew.
bool isSameRow(const Command& a, const Command& b) { return a.id == b.id || (a.type.parameter && a.type == b.type); }

}  // namespace

CommandMenuState::CommandMenuState(CommandPanelViewModel& viewModel)
    : viewModel_(viewModel),
      keys_(
          {KeyPressModifier::returnKey, KeyPressModifier::tabKey}, [this](int keyCode) { handleKey(keyCode); },
          [this] { return itemCount(); }, &selectedIndex_),
      search_([this](const Search&) { searchChanged(); }) {
  connections_ += selectedIndex_.observe([this](const Index&) { selectionChanged(); });
  const auto look = [this](const auto&) { search_.update({viewModel_.currentMode(), viewModel_.searchText()}); };
  connections_ += viewModel.searchText().observe(look);
  connections_ += viewModel.currentMode().observe(look);
  connections_ += viewModel.promptStore().searchableCommands.bind([this](const auto&) { listChanged(); });
}

std::size_t CommandMenuState::itemCount() const {
  return viewModel_.currentMode() == CommandMenuMode::freestyle ? 1 : visible_.size();
}

void CommandMenuState::listChanged() {
  enabled_ = viewModel_.enabledCommands();
  foldedNames_.clear();
  const bool hadRows = !visible_.empty();
  rebuild();
  if (!viewModel_.isCommandOpen()) {
    return;
  }
  if (selectedItem_) {
    const auto row = std::ranges::find_if(visible_, [&](const Command* c) { return isSameRow(*c, *selectedItem_); });
    row == visible_.end() ? selectFirst() : selectedIndex_.set(static_cast<std::size_t>(row - visible_.begin()));
  } else if (!hadRows) {
    selectFirst();
  }
}

void CommandMenuState::searchChanged() {
  rebuild();
  if (viewModel_.isCommandOpen()) {
    selectFirst();
  }
}

void CommandMenuState::rebuild() {
  visible_.clear();
  if (viewModel_.currentMode() == CommandMenuMode::filter) {
    if (const std::string part = text::foldedForSearch(viewModel_.searchText().get()); part.empty()) {
      visible_ = enabled_;
    } else {
      if (foldedNames_.empty()) {
        std::ranges::transform(enabled_, std::back_inserter(foldedNames_),
                               [](const Command* command) { return foldedNames(*command); });
      }
      for (std::size_t i = 0; i < enabled_.size(); ++i) {
        if (foldedNames_[i].find(part) != std::string::npos) {
          visible_.push_back(enabled_[i]);
        }
      }
    }
  }
  hoveredIndex_.set({});
  visibleCommandsChanged.emit();
}

void CommandMenuState::selectFirst() { selectedIndex_.set(visible_.empty() ? Index() : Index(0)); }

void CommandMenuState::selectionChanged() {
  if (!viewModel_.isCommandOpen()) {
    return;
  }
  const Index index = selectedIndex_.get();
  selectedItem_ = index && *index < visible_.size() ? std::optional(*visible_[*index]) : std::nullopt;
}

const Command* CommandMenuState::commandOfReturn() const {
  const Index row = selectedItem_ ? selectedIndex_.get() : hoveredIndex_.get();
  return row && *row < visible_.size() ? visible_[*row] : nullptr;
}

void CommandMenuState::hover(Index row) {
  if (!viewModel_.isCommandOpen() || row == hoveredIndex_.get()) {
    return;
  }
  hoveredIndex_.set(row);
  if (row) {
    selectedIndex_.set({});
  }
}

void CommandMenuState::click(std::size_t row) {
  if (row < visible_.size()) {
    const Command command = *visible_[row];
    log("trigger actions " + command.name);
    viewModel_.triggerCommand(command);
  }
}

void CommandMenuState::keyDown(int keyCode) {
  if (viewModel_.isCommandOpen()) {
    keys_.keyDown(keyCode);
  }
}

void CommandMenuState::handleKey(int keyCode) {
  if (keyCode == KeyPressModifier::tabKey) {
    viewModel_.toggleMode();
  } else if (viewModel_.currentMode() == CommandMenuMode::filter) {
    const Command* const command = commandOfReturn();
    viewModel_.triggerCommand(command ? std::optional(*command) : std::nullopt);
  } else {
    viewModel_.executeFreestyle();
  }
}

void CommandMenuState::clearSelection() {
  selectedIndex_.set({});
  selectedItem_.reset();
}

}  // namespace quillmark
