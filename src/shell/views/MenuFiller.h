#pragma once

#include <vector>

#include "shell/MenuModel.h"

class QMenu;

namespace quillmark {

/// Makes the menu show these items. Entries that were there before keep their place and identity, so that an open menu
/// changes under the pointer no more than it must. Only for menus that nothing else fills.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& items);

}  // namespace quillmark
