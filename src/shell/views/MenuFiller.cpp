#include "shell/views/MenuFiller.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>

#include "panels/views/Symbols.h"

namespace quillmark {

namespace {

/// The toolkit's side of one item.
class Entry : public QAction {
 public:
  Entry(const MenuItem& item, QMenu& menu) : QAction(&menu), kind_(item.kind), title_(item.title) {
    switch (kind_) {
      case MenuItem::Kind::divider:
        setSeparator(true);
        return;
      case MenuItem::Kind::submenu:
        children_ = new QMenu(&menu);
        setMenu(children_);
        break;
      case MenuItem::Kind::action:
        // Queued: the menu has given back the pointer and the keyboard by then, and may be filled anew or go.
        QObject::connect(
            this, &QAction::triggered, this,
            [this] {
              if (const auto trigger = trigger_) {
                trigger();
              }
            },
            Qt::QueuedConnection);
        break;
      case MenuItem::Kind::progress:
        break;
    }
    QString text = QString::fromStdString(item.title);
    setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
  }

  bool stands(const MenuItem& item) const { return item.kind == kind_ && item.title == title_; }

  void update(const MenuItem& item) {
    if (kind_ == MenuItem::Kind::divider) {
      return;
    }
    const std::string& symbol = kind_ == MenuItem::Kind::progress ? progressSymbol : item.symbol;
    if (symbol != symbol_) {
      symbol_ = symbol;
      setIcon(symbol.empty() ? QIcon() : symbols::icon(symbol));
    }
    setEnabled(item.enabled && kind_ != MenuItem::Kind::progress);
    setShortcut(QKeySequence(QString::fromStdString(item.shortcut)));
    trigger_ = item.trigger;
    if (children_) {
      fillMenu(*children_, item.children);
    }
  }

  void removeFrom(QMenu& menu) {
    menu.removeAction(this);
    if (children_) {
      children_->deleteLater();
    }
    deleteLater();
  }

 private:
  inline static const std::string progressSymbol = "progress";

  MenuItem::Kind kind_;
  std::string title_;
  std::string symbol_;
  std::function<void()> trigger_;
  QMenu* children_ = nullptr;  // owned by the menu
};

/// For each item the entry that goes on showing it, or none: the longest run of entries that keep their order.
std::vector<Entry*> keptEntries(const std::vector<Entry*>& present, const std::vector<MenuItem>& items) {
  // longest[i][j]: how many of the entries from i on can show items from j on.
  std::vector<std::vector<std::size_t>> longest(present.size() + 1, std::vector<std::size_t>(items.size() + 1, 0));
  for (std::size_t i = present.size(); i-- > 0;) {
    for (std::size_t j = items.size(); j-- > 0;) {
      longest[i][j] =
          present[i]->stands(items[j]) ? longest[i + 1][j + 1] + 1 : std::max(longest[i + 1][j], longest[i][j + 1]);
    }
  }
  std::vector<Entry*> kept(items.size(), nullptr);
  for (std::size_t i = 0, j = 0; i < present.size() && j < items.size();) {
    if (present[i]->stands(items[j])) {
      kept[j++] = present[i++];
    } else if (longest[i + 1][j] >= longest[i][j + 1]) {
      ++i;
    } else {
      ++j;
    }
  }
  return kept;
}

}  // namespace

void fillMenu(QMenu& menu, const std::vector<MenuItem>& items) {
  std::vector<Entry*> present;
  for (QAction* const action : menu.actions()) {
    present.push_back(static_cast<Entry*>(action));
  }
  const std::vector<Entry*> kept = keptEntries(present, items);
  for (Entry* const entry : present) {
    if (std::ranges::find(kept, entry) == kept.end()) {
      entry->removeFrom(menu);
    }
  }
  QAction* next = nullptr;
  for (std::size_t i = items.size(); i-- > 0;) {
    Entry* entry = kept[i];
    if (!entry) {
      entry = new Entry(items[i], menu);
      menu.insertAction(next, entry);
    }
    entry->update(items[i]);
    next = entry;
  }
}

}  // namespace quillmark
