// Test harness of the window layer, for the library's tests and for hosts' own tests.
//
// Everything runs on the test's thread with the offscreen platform and a clock that only
// the test moves: Pump() runs what is due now (posted messages, paints, timers due at the
// current time), AdvanceClock() walks the clock forward firing timers in the order they
// fall due. Input goes through the same road as the toolkit's events (hit testing,
// capture, WM_SETCURSOR, double-click detection) and is pumped at once.
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/modal.h"

class QWidget;

namespace orlex::test {

// Makes the application (offscreen unless a platform is set), takes the layer's clock (and
// GetTickCount, and Sleep, which then advances it) at `startMs`, and clears input state.
// Safe to call again; each call resets the clock, key state, capture, focus and the modal log.
void Init(ULONGLONG startMs = 100000);
// Runs every message, paint and timer due now; returns how many messages ran.
int Pump();
// Moves the clock by ms, firing each timer when it falls due (in order), pumping between.
void AdvanceClock(ULONGLONG ms);
ULONGLONG Now();

enum class Button { Left, Right, Middle };
// Pointer input at a client point of a window (converted to the screen).
void MouseMove(HWND hwnd, POINT client);
void MouseDown(HWND hwnd, POINT client, Button b = Button::Left);
void MouseUp(HWND hwnd, POINT client, Button b = Button::Left);
void Click(HWND hwnd, POINT client, Button b = Button::Left);
// Two clicks within the double-click time at the same place.
void DoubleClick(HWND hwnd, POINT client, Button b = Button::Left);
// A drag with the button held: press at `from`, moves in `steps`, release at `to`.
void Drag(HWND hwnd, POINT from, POINT to, int steps = 4, Button b = Button::Left);
// Wheel turn by delta (120 a notch) at a client point.
void Wheel(HWND hwnd, POINT client, int delta);
// Keys by virtual key code (WM_CHAR follows for keys that type).
void KeyDown(int vk);
void KeyUp(int vk);
void Key(int vk);
// Types 8-bit text into the focus window: keys where the layout has them, else WM_CHAR.
void TypeText(const char* text);

// The colour of a window's client pixel as the screen shows it (CLR_INVALID outside).
COLORREF Pixel(HWND hwnd, POINT client);
// The client rectangle's pixels, row by row.
std::vector<COLORREF> Pixels(HWND hwnd, const RECT& client);
// Saves the top-level window of hwnd (or, with a rectangle, that client rectangle of hwnd)
// as a PNG file; false when it can't be written.
bool SaveScreenshot(HWND hwnd, const std::string& path, const RECT* client = nullptr);

// The toolkit widget presenting a top-level window (null without one), for tests that send
// toolkit events.
QWidget* PresenterOf(HWND topLevel);

// Queues the answer of the next modal of a kind ("MessageBox", "PopupMenu", ...) and reads
// what was shown.
inline void ScriptAnswer(const std::string& kind, long long value, const std::string& text = {}) {
    orlex::ModalScript::Push(kind, orlex::ModalAnswer{value, text});
}
inline const std::vector<orlex::ModalRecord>& ModalLog() { return orlex::ModalScript::Log(); }

}  // namespace orlex::test
