#pragma once

#include <vector>

#include "shell/MenuModel.h"

class QMenu;

namespace quillmark {

/// Who draws a menu.
enum class MenuPainter {
  toolkit,  ///< we do, in the colours of the application's palette
  host,     ///< a tray host does (com.canonical.dbusmenu), in colours unknown to us
};

/// Makes the menu show these items. Existing entries keep their place and identity, so that an open menu changes under
/// the pointer no more than it must. Only for menus that nothing else fills.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& items, MenuPainter painter = MenuPainter::toolkit);

}  // namespace quillmark
