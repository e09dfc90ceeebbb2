#include "shell/views/MenuFiller.h"

#include <QAction>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>

#include "widgets/QtText.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

// Readable on light and dark menus: a contrast of more than 3:1 to white and to a common dark grey.
constexpr QRgb neutral = 0xFF7C7F87;
// The same for what should draw attention.
constexpr QRgb accent = 0xFF387AE5;

/// The title, escaped so that it is shown unchanged.
QString escaped(const std::string& title, MenuPainter painter) {
  QString text = qt(title);
  if (painter == MenuPainter::toolkit) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
  }
  // The host marks access keys by underscores. The toolkit turns the first ampersand into one and leaves the others.
  text.replace(QLatin1Char('_'), QLatin1String("__"));
  if (const qsizetype first = text.indexOf(QLatin1Char('&')); first >= 0) {
    text.insert(first, QLatin1Char('&'));
  }
  return text;
}

/// Menus have one colour for all their texts, so the accent is the icon's alone.
QIcon iconFor(const std::string& symbol, bool isAccented, MenuPainter painter) {
  if (symbol.empty()) {
    return {};
  }
  return painter == MenuPainter::toolkit
             ? symbols::menuIcon(symbol, isAccented ? QPalette::Highlight : QPalette::WindowText)
             : symbols::icon(symbol, QColor(isAccented ? accent : neutral));
}

/// The toolkit's counterpart of one item.
class Entry : public QAction {
 public:
  Entry(const MenuItem& item, QMenu& menu, MenuPainter painter)
      : QAction(&menu), kind_(item.kind), title_(item.title), painter_(painter) {
    switch (kind_) {
      case MenuItem::Kind::divider:
        setSeparator(true);
        return;
      case MenuItem::Kind::submenu:
        children_ = new QMenu(&menu);
        setMenu(children_);
        break;
      case MenuItem::Kind::action:
        // Queued: by then the menu has released the pointer and the keyboard, and may be refilled or destroyed.
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
        // In the accent colour: it is the only activity in a greyed-out menu.
        setIcon(symbols::icon("progress", QGuiApplication::palette().color(QPalette::Highlight)));
        break;
    }
    setText(escaped(title_, painter_));
  }

  bool stands(const MenuItem& item) const { return item.kind == kind_ && item.title == title_; }

  void update(const MenuItem& item) {
    if (kind_ == MenuItem::Kind::divider) {
      return;
    }
    if (item.symbol != symbol_ || item.isAccented != isAccented_) {
      symbol_ = item.symbol;
      isAccented_ = item.isAccented;
      setIcon(iconFor(symbol_, isAccented_, painter_));
    }
    setToolTip(qt(item.help));
    setEnabled(item.enabled && kind_ != MenuItem::Kind::progress);
    setShortcut(QKeySequence(qt(item.shortcut)));
    trigger_ = item.trigger;
    if (children_) {
      fillMenu(*children_, item.children, painter_);
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
  MenuItem::Kind kind_;
  std::string title_;
  MenuPainter painter_;
  std::string symbol_;
  bool isAccented_ = false;
  std::function<void()> trigger_;
  QMenu* children_ = nullptr;  // owned by the menu
};

/// For each item the entry that keeps showing it, or none: the longest sequence of entries that keep their order.
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

void fillMenu(QMenu& menu, const std::vector<MenuItem>& items, MenuPainter painter) {
  menu.setToolTipsVisible(true);  // of entries that have one
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
      entry = new Entry(items[i], menu, painter);
      menu.insertAction(next, entry);
    }
    entry->update(items[i]);
    next = entry;
  }
}

}  // namespace quillmark
