// Modal user interface as the library sees it: a message box, a file, colour or print
// dialog, a popup menu. Every one goes through here so that a test (or a host) can
// script the answer and read back what was shown; the window layer installs a presenter
// that shows real dialogs when a display is present.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

// Shows a message box with the text and MB_ style flags. Returns IDOK, IDCANCEL, IDYES,
// IDNO, ...: the scripted answer if one is queued, else the presenter's, else the
// default button of the style (IDOK, or IDYES for yes/no styles, IDABORT for abort/retry).
int AfxMessageBox(const char* text, UINT type = MB_OK, UINT helpId = 0);
int AfxMessageBox(UINT stringId, UINT type = MB_OK, UINT helpId = UINT(-1));
int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type);

namespace orlex {

// One modal appearance: its kind ("MessageBox", "FileDialog", "ColorDialog",
// "PrintDialog", "PopupMenu", "Dialog"), its text (message, title, filter, ...),
// its style flags, and the answer it gave.
struct ModalRecord {
    std::string kind;
    std::string text;
    UINT style = 0;
    long long answer = 0;
    std::string answerText;
};

// A scripted answer for the next modal of a kind: a number (button id, command id,
// colour) and, for file dialogs, a text (the chosen path).
struct ModalAnswer {
    long long value = 0;
    std::string text;
};

// Process-wide script and log of modal UI. Not thread safe: modal UI belongs to the
// thread of the windows.
class ModalScript {
public:
    // Queues an answer for the next modal of this kind; answers are used in order.
    static void Push(const std::string& kind, ModalAnswer answer);
    static void Push(const std::string& kind, long long value) { Push(kind, ModalAnswer{value, {}}); }
    // Takes the next queued answer for the kind; false when none is queued.
    static bool Take(const std::string& kind, ModalAnswer& out);
    // Everything shown so far, oldest first.
    static const std::vector<ModalRecord>& Log();
    static void Record(ModalRecord rec);
    // Forgets queued answers and the log.
    static void Reset();

    // A presenter shows the modal for real and gives the answer; returns false when it
    // can't (no display), and the default answer is used. Installed by the window layer.
    using Presenter = std::function<bool(const ModalRecord& request, ModalAnswer& answer)>;
    static void SetPresenter(const std::string& kind, Presenter presenter);
    static bool Present(const ModalRecord& request, ModalAnswer& answer);

    // Answers the modal of this kind: scripted answer first, then the presenter, else
    // the fallback. The request and the answer are logged.
    static ModalAnswer Ask(const ModalRecord& request, ModalAnswer fallback);
};

}  // namespace orlex
