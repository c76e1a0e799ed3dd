// Presenters of modal UI on Qt's own widgets, used when a real display is present. On the
// offscreen and minimal platforms (tests, the headless demo) every presenter declines, so
// the scripted or default answer is taken and nothing ever blocks.
#include <QApplication>
#include <QColorDialog>
#include <QCursor>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QStringList>
#include <cstdlib>
#include <vector>

#include "foundation/platform/codepage.h"
#include "foundation/platform/gui/dlg_modal_p.h"
#include "foundation/platform/modal.h"

namespace orlex::detail {
namespace {

QString FromAnsi(const std::string& s) { return QString::fromStdString(orlex::AnsiToUtf8(s.c_str(), static_cast<int>(s.size()))); }
std::string ToAnsi(const QString& s) { return orlex::Utf8ToAnsi(s.toStdString()); }

bool HaveDisplay() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return false;
    const QString p = QGuiApplication::platformName();
    return p != QLatin1String("offscreen") && p != QLatin1String("minimal");
}

// The caption of a MessageBoxA call travels in answerText of the request; AfxMessageBox
// has none and shows the application's name.
bool PresentMessageBox(const ModalRecord& req, ModalAnswer& answer) {
    if (!HaveDisplay()) return false;
    QMessageBox box;
    box.setText(FromAnsi(req.text));
    box.setWindowTitle(req.answerText.empty() ? QCoreApplication::applicationName() : FromAnsi(req.answerText));
    switch (req.style & 0xF0) {
    case MB_ICONSTOP: box.setIcon(QMessageBox::Critical); break;
    case MB_ICONQUESTION: box.setIcon(QMessageBox::Question); break;
    case MB_ICONWARNING: box.setIcon(QMessageBox::Warning); break;
    case MB_ICONINFORMATION: box.setIcon(QMessageBox::Information); break;
    default: break;
    }
    struct B { int id; const char* text; };
    std::vector<B> buttons;
    switch (req.style & 0xF) {
    case MB_OKCANCEL: buttons = {{IDOK, "OK"}, {IDCANCEL, "Cancel"}}; break;
    case MB_ABORTRETRYIGNORE: buttons = {{IDABORT, "&Abort"}, {IDRETRY, "&Retry"}, {IDIGNORE, "&Ignore"}}; break;
    case MB_YESNOCANCEL: buttons = {{IDYES, "&Yes"}, {IDNO, "&No"}, {IDCANCEL, "Cancel"}}; break;
    case MB_YESNO: buttons = {{IDYES, "&Yes"}, {IDNO, "&No"}}; break;
    case MB_RETRYCANCEL: buttons = {{IDRETRY, "&Retry"}, {IDCANCEL, "Cancel"}}; break;
    default: buttons = {{IDOK, "OK"}}; break;
    }
    std::vector<QPushButton*> made;
    for (const B& b : buttons) made.push_back(box.addButton(QString::fromLatin1(b.text), QMessageBox::ActionRole));
    const size_t def = (req.style & MB_DEFBUTTON2) && made.size() > 1 ? 1 : 0;
    box.setDefaultButton(made[def]);
    box.exec();
    answer.value = buttons.back().id;  // closing the box counts as its last button
    for (size_t i = 0; i < made.size(); ++i)
        if (box.clickedButton() == made[i]) answer.value = buttons[i].id;
    return true;
}

// Request text of a file dialog: "Open" or "Save", default extension, file name and the
// filter in the "Text (*.txt)|*.txt||" form, one per line.
bool PresentFileDialog(const ModalRecord& req, ModalAnswer& answer) {
    if (!HaveDisplay()) return false;
    const QStringList lines = FromAnsi(req.text).split(QLatin1Char('\n'));
    const bool open = lines.value(0) == QLatin1String("Open");
    QStringList parts = lines.value(3).split(QLatin1Char('|'));
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2)
        if (!parts[i].isEmpty()) filters << parts[i] + QLatin1String(" (") + parts[i + 1].replace(QLatin1Char(';'), QLatin1Char(' ')) + QLatin1Char(')');
    QFileDialog dlg;
    dlg.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dlg.setFileMode(open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    if (!lines.value(1).isEmpty()) dlg.setDefaultSuffix(lines.value(1));
    if (!lines.value(2).isEmpty()) dlg.selectFile(lines.value(2));
    if (!filters.isEmpty()) dlg.setNameFilters(filters);
    if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) {
        answer.value = IDCANCEL;
        return true;
    }
    answer.value = IDOK;
    answer.text = ToAnsi(dlg.selectedFiles().front());
    return true;
}

// Request text of a colour dialog: the initial COLORREF in hex ("0x00BBGGRR").
bool PresentColorDialog(const ModalRecord& req, ModalAnswer& answer) {
    if (!HaveDisplay()) return false;
    const unsigned long c = std::strtoul(req.text.c_str(), nullptr, 16);
    QColor initial(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
    QColor chosen = QColorDialog::getColor(initial);
    answer.value = chosen.isValid() ? static_cast<long long>(RGB(BYTE(chosen.red()), BYTE(chosen.green()), BYTE(chosen.blue()))) : -1;
    return true;
}

// The answer of a print dialog: IDOK with the printer's name in the text, or IDCANCEL.
bool PresentPrintDialog(const ModalRecord&, ModalAnswer& answer) {
    if (!HaveDisplay()) return false;
    QPrinter printer;
    QPrintDialog dlg(&printer);
    if (dlg.exec() != QDialog::Accepted) {
        answer.value = IDCANCEL;
        return true;
    }
    answer.value = IDOK;
    answer.text = ToAnsi(printer.printerName());
    return true;
}

// Rebuilds a QMenu from the menu's description (DescribeMenu form) and runs it at the
// pointer. The chosen command id is the answer, 0 when the menu was dismissed.
void FillMenu(QMenu* menu, const QStringList& lines, int& i, int depth) {
    while (i < lines.size()) {
        const QString& line = lines[i];
        int indent = 0;
        while (indent < line.size() && line[indent] == QLatin1Char(' ')) ++indent;
        if (line.trimmed().isEmpty()) { ++i; continue; }
        if (indent / 2 < depth) return;
        QString body = line.mid(indent);
        const bool checked = body.contains(QLatin1String(" [checked]"));
        const bool grayed = body.contains(QLatin1String(" [grayed]")) || body.contains(QLatin1String(" [disabled]"));
        int flagsAt = body.indexOf(QLatin1String(" ["));
        if (flagsAt >= 0) body = body.left(flagsAt);
        ++i;
        if (body == QLatin1String("-")) {
            menu->addSeparator();
        } else if (body.endsWith(QLatin1String(" >"))) {
            QMenu* sub = menu->addMenu(body.left(body.size() - 2));
            sub->setEnabled(!grayed);
            FillMenu(sub, lines, i, depth + 1);
        } else {
            int hash = body.lastIndexOf(QLatin1String(" #"));
            QAction* a = menu->addAction(body.left(hash));
            a->setData(body.mid(hash + 2).toInt());
            a->setCheckable(checked);
            a->setChecked(checked);
            a->setEnabled(!grayed);
        }
    }
}

bool PresentPopupMenu(const ModalRecord& req, ModalAnswer& answer) {
    if (!HaveDisplay()) return false;
    QMenu menu;
    const QStringList lines = FromAnsi(req.text).split(QLatin1Char('\n'));
    int i = 0;
    FillMenu(&menu, lines, i, 0);
    QAction* chosen = menu.exec(QCursor::pos());
    answer.value = chosen ? chosen->data().toInt() : 0;
    return true;
}

struct Installer {
    Installer() { InstallModalPresenters(); }
} g_installer;

}  // namespace

void InstallModalPresenters() {
    static bool done = false;
    if (done) return;
    done = true;
    ModalScript::SetPresenter("MessageBox", PresentMessageBox);
    ModalScript::SetPresenter("FileDialog", PresentFileDialog);
    ModalScript::SetPresenter("ColorDialog", PresentColorDialog);
    ModalScript::SetPresenter("PrintDialog", PresentPrintDialog);
    ModalScript::SetPresenter("PopupMenu", PresentPopupMenu);
}

}  // namespace orlex::detail
