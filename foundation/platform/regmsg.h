// Registered window messages: one number per message literal for the whole process.
#pragma once

#include <string>

#include "foundation/platform/wintypes.h"

// Lowest and highest number a registered message can have.
constexpr UINT ORLEX_REGISTERED_MESSAGE_FIRST = 0xC000;
constexpr UINT ORLEX_REGISTERED_MESSAGE_LAST = 0xFFFF;

// Gives the number of the message literal, in 0xC000..0xFFFF; the same literal gives the
// same number from any module and thread. Names compare without regard to ASCII case, as
// the platform's atom table does. Returns 0 for a null or empty name, a name longer than
// 255 characters, or when all 0x4000 numbers are taken.
UINT RegisterWindowMessageA(LPCSTR name);
inline UINT RegisterWindowMessage(LPCSTR name) { return RegisterWindowMessageA(name); }

namespace orlex {

// The literal under which a message number was first registered; empty for a number
// that no one registered. For diagnostics and tests.
std::string RegisteredMessageName(UINT message);

}  // namespace orlex
