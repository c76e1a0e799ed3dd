// The catalogue of registered window messages by which the controls talk to each other and
// to the host. Each variable holds the number of the literal of the same name; all of them
// are filled when the library is loaded, before any other static of the library runs, so
// they can be used anywhere, even in static initialisers. A host that registers the same
// literal with RegisterWindowMessageA gets the same number and needs no header of ours.
#pragma once

#include <cstddef>

#include "foundation/platform/regmsg.h"
#include "foundation/platform/wintypes.h"

// X(name): one entry per literal, in catalogue order. The variable bears the literal's name.
#define ORLEX_MESSAGE_CATALOGUE(X)          \
    X(MESSAGE_CURSOR_NOTIFY_STR)            \
    X(MESSAGE_CURSOR_MOUSE_STR)             \
    X(MESSAGE_REMOVE_CURSOR_STR)            \
    X(MESSAGE_USER_REMOVE_CURSOR_STR)       \
    X(MESSAGE_CREATE_CURSOR_STR)            \
    X(MESSAGE_ZOOM_EVENT_STR)               \
    X(MESSAGE_IMAGEVIEW_PAN_EVENT)          \
    X(UPDATE_PAN_SRC_STR)                   \
    X(ACTIVATE_VIEW_STR)                    \
    X(ZOOM_OUT_STR)                         \
    X(MESSAGE_IMAGEVIEW_DBL_CLICK_STR)      \
    X(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR)    \
    X(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT)   \
    X(MESSAGE_UPDATE_TOOL_TIP)              \
    X(IMAGE_3D_EVENT_STR)                   \
    X(IMAGE_3D_LIGHT_DIRECTION_EVENT_STR)   \
    X(RENDER_DIRECT_2D_STR)                 \
    X(MESSAGE_INVALID_DISP_UPDATE_STR)      \
    X(MESSAGE_USER_CONTROL_MSG)             \
    X(MESSAGE_COLOR_CTRL_STR)               \
    X(MESSAGE_BORDERCON_ADJUST_FOCUS_STR)   \
    X(MESSAGE_BORDERCON_DIALOG_DELETED_STR) \
    X(MESSAGE_GRID_NOTIFY)                  \
    X(MESSAGE_GRID_ZOOM_EVENT)              \
    X(MESSAGE_COLOR_CHANGE)                 \
    X(MESSAGE_ACTIVE_CURVE_CHANGE)          \
    X(MESSAGE_EXPORT_XZ_DATA)               \
    X(MESSAGE_USER_GRID_SCALE_SYNCH)

// The message numbers, 0xC000..0xFFFF once the library is loaded. Read-only for everyone
// but the catalogue itself.
#define ORLEX_DECLARE_MESSAGE(name) extern UINT name;
ORLEX_MESSAGE_CATALOGUE(ORLEX_DECLARE_MESSAGE)
#undef ORLEX_DECLARE_MESSAGE

namespace OrlexUI {

// One literal of the catalogue and the variable that holds its number.
struct MessageCatalogueEntry {
    const char* literal;
    const UINT* number;
};

// The whole catalogue in order; count receives the number of entries (28). The array is
// static and lives for the process.
const MessageCatalogueEntry* MessageCatalogue(std::size_t* count);

// Fills the variables if that has not happened yet. The library does it when it is loaded;
// calling it again changes nothing. Safe from any thread.
void RegisterMessageCatalogue();

}  // namespace OrlexUI
