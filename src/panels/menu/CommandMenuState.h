#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/ChangeModifier.h"
#include "base/Signal.h"
#include "commands/Command.h"
#include "panels/menu/KeyPressModifier.h"

namespace quillmark {

class CommandPanelViewModel;

/// What the text in the menu's field is: a search among the commands, or a task in the user's own words.
enum class CommandMenuMode { filter, freestyle };

/// The rows of the command menu and the selected one. A view draws them and reports keys and mouse. Keys, mouse and
/// selection mean nothing while the menu is closed. Main thread only.
class CommandMenuState {
 public:
  using Index = KeyPressModifier::Index;

  /// Belongs to this view model, which provides the search text and the mode.
  explicit CommandMenuState(CommandPanelViewModel& viewModel);
  CommandMenuState(const CommandMenuState&) = delete;
  CommandMenuState& operator=(const CommandMenuState&) = delete;

  /// The rows in their order; none in freestyle mode. A row is drawn with the command's icon() and displayName(). The
  /// pointers refer to the store's list and are valid until visibleCommandsChanged.
  const std::vector<const Command*>& visibleCommands() const { return visible_; }
  /// The number of rows for the arrow keys: 1 in freestyle mode.
  std::size_t itemCount() const;
  /// The rows have changed; the selection is updated right after.
  Signal<> visibleCommandsChanged;

  const Observable<Index>& selectedIndex() const {
    return selectedIndex_;
  }  ///< by the keyboard; must be scrolled into view
  /// The row that the mouse entered last and has not left.
  const Observable<Index>& hoveredIndex() const { return hoveredIndex_; }
  const std::optional<Command>& selectedItem() const { return selectedItem_; }
  /// Whether the row of this command is the selected one.
  bool isSelected(const Command& command) const { return selectedItem_ && selectedItem_->id == command.id; }

  /// The command that Return runs: the selected row, or the hovered one once it has taken the selection; null for none.
  const Command* commandOfReturn() const;

  /// The mouse has entered this row, or left all rows. A mouse that moves inside its row changes nothing.
  void hover(Index row);
  void click(std::size_t row);
  void keyDown(int keyCode);

  /// Selects the first row, or nothing where there is none.
  void selectFirst();
  void clearSelection();

 private:
  using Search = std::pair<CommandMenuMode, std::string>;

  void listChanged();
  void searchChanged();
  void selectionChanged();
  void handleKey(int keyCode);
  void rebuild();

  CommandPanelViewModel& viewModel_;
  std::vector<const Command*> enabled_;
  std::vector<std::string> foldedNames_;  // of enabled_; made at the first search in it
  std::vector<const Command*> visible_;
  Observable<Index> selectedIndex_;
  Observable<Index> hoveredIndex_;
  std::optional<Command> selectedItem_;
  KeyPressModifier keys_;
  ChangeModifier<Search> search_;
  Connections connections_;
};

}  // namespace quillmark
