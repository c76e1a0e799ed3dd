#include "foundation/platform/modal.h"

#include <map>
#include <utility>

namespace orlex {
namespace {

struct ScriptState {
    std::map<std::string, std::deque<ModalAnswer>> queued;
    std::vector<ModalRecord> log;
    std::map<std::string, ModalScript::Presenter> presenters;
};

ScriptState& State() {
    static ScriptState s;
    return s;
}

}  // namespace

void ModalScript::Push(const std::string& kind, ModalAnswer answer) { State().queued[kind].push_back(std::move(answer)); }

bool ModalScript::Take(const std::string& kind, ModalAnswer& out) {
    auto it = State().queued.find(kind);
    if (it == State().queued.end() || it->second.empty()) return false;
    out = std::move(it->second.front());
    it->second.pop_front();
    return true;
}

const std::vector<ModalRecord>& ModalScript::Log() { return State().log; }

void ModalScript::Record(ModalRecord rec) { State().log.push_back(std::move(rec)); }

void ModalScript::Reset() {
    State().queued.clear();
    State().log.clear();
}

void ModalScript::SetPresenter(const std::string& kind, Presenter presenter) {
    State().presenters[kind] = std::move(presenter);
}

bool ModalScript::Present(const ModalRecord& request, ModalAnswer& answer) {
    auto it = State().presenters.find(request.kind);
    if (it == State().presenters.end() || !it->second) return false;
    return it->second(request, answer);
}

ModalAnswer ModalScript::Ask(const ModalRecord& request, ModalAnswer fallback) {
    ModalAnswer answer;
    if (!Take(request.kind, answer) && !Present(request, answer)) answer = std::move(fallback);
    ModalRecord rec = request;
    rec.answer = answer.value;
    rec.answerText = answer.text;
    Record(std::move(rec));
    return answer;
}

}  // namespace orlex

namespace {

int DefaultButton(UINT type) {
    switch (type & 0xF) {
    case MB_YESNO:
    case MB_YESNOCANCEL: return (type & MB_DEFBUTTON2) ? IDNO : IDYES;
    case MB_ABORTRETRYIGNORE: return IDABORT;
    case MB_RETRYCANCEL: return (type & MB_DEFBUTTON2) ? IDCANCEL : IDRETRY;
    case MB_OKCANCEL: return (type & MB_DEFBUTTON2) ? IDCANCEL : IDOK;
    default: return IDOK;
    }
}

}  // namespace

int AfxMessageBox(const char* text, UINT type, UINT) {
    orlex::ModalRecord req{"MessageBox", text ? text : "", type, 0, {}};
    return static_cast<int>(orlex::ModalScript::Ask(req, orlex::ModalAnswer{DefaultButton(type), {}}).value);
}

int MessageBoxA(HWND, const char* text, const char* caption, UINT type) {
    orlex::ModalRecord req{"MessageBox", text ? text : "", type, 0, caption ? caption : ""};
    return static_cast<int>(orlex::ModalScript::Ask(req, orlex::ModalAnswer{DefaultButton(type), {}}).value);
}
