// Private: installation of the Qt presenters of modal UI (message boxes, common dialogs,
// popup menus). Safe to call more than once; the gui code that raises modal UI calls it.
#pragma once

namespace orlex::detail {
void InstallModalPresenters();
}
