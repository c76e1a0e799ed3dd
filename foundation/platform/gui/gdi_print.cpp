// Printing: a printer context draws each page into a page image of the printer's resolution
// (the same pixel rules as the screen), and EndPage puts the page into a PDF document
// through the toolkit's printer, or sends it to a printer of the system. The printer "PDF"
// (the default when the system lists no printer) writes the files; its resolution, paper
// and output place are settings of the process.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>

#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/gui/gdi_printers_p.h"
#include "foundation/platform/profile.h"

namespace orlex {
namespace {

std::mutex g_mu;
PrinterSettings g_settings;
std::vector<std::string> g_documents;
QImage g_lastPage;

}  // namespace

void SetPrinterSettings(const PrinterSettings& s) {
    std::lock_guard lock(g_mu);
    g_settings = s;
    if (g_settings.dpi < 36) g_settings.dpi = 36;
    if (g_settings.dpi > 1200) g_settings.dpi = 1200;
    if (g_settings.paperWidth < 100) g_settings.paperWidth = 100;
    if (g_settings.paperHeight < 100) g_settings.paperHeight = 100;
}

PrinterSettings GetPrinterSettings() {
    std::lock_guard lock(g_mu);
    return g_settings;
}

std::vector<std::string> PrintedDocuments() {
    std::lock_guard lock(g_mu);
    return g_documents;
}

bool LastPrintedPage(std::vector<DWORD>& pixels, int& width, int& height) {
    std::lock_guard lock(g_mu);
    if (g_lastPage.isNull()) return false;
    width = g_lastPage.width();
    height = g_lastPage.height();
    pixels.resize(static_cast<std::size_t>(width) * height);
    for (int y = 0; y < height; ++y)
        std::memcpy(pixels.data() + static_cast<std::size_t>(y) * width, g_lastPage.constScanLine(y),
                    static_cast<std::size_t>(width) * 4);
    return true;
}

}  // namespace orlex

namespace orlex::gdi {

std::string PickDefaultPrinter(const SystemPrinters& printers) {
    if (printers.names.empty()) return kPdfPrinter;
    if (IsSystemPrinter(printers, printers.defaultName)) return printers.defaultName;
    return printers.names.front();
}

bool IsSystemPrinter(const SystemPrinters& printers, const std::string& name) {
    return !name.empty() && std::find(printers.names.begin(), printers.names.end(), name) != printers.names.end();
}

bool IsKnownPrinter(const SystemPrinters& printers, const std::string& name) {
    return name == kPdfPrinter || IsSystemPrinter(printers, name);
}

namespace {

// The toolkit's printer list as it stands (the application object must exist).
SystemPrinters ListSystemPrinters() {
    SystemPrinters p;
    for (const QString& n : QPrinterInfo::availablePrinterNames()) {
        const std::string name = n.toStdString();
        // A system printer named like the layer's own would be unreachable: left out.
        if (!name.empty() && name != kPdfPrinter) p.names.push_back(name);
    }
    p.defaultName = QPrinterInfo::defaultPrinterName().toStdString();
    return p;
}

}  // namespace

const SystemPrinters& QuerySystemPrinters() {
    static const SystemPrinters printers = [] {
        NeedApplication();
        return ListSystemPrinters();
    }();
    return printers;
}

namespace {

// What a system printer offers by default, in the settings' terms; false for "PDF".
bool SystemPrinterDefaults(const std::string& name, orlex::PrinterSettings& s) {
    if (!IsSystemPrinter(QuerySystemPrinters(), name)) return false;
    const QPrinterInfo info = QPrinterInfo::printerInfo(QString::fromStdString(name));
    if (info.isNull()) return false;
    const QSizeF mm = info.defaultPageSize().size(QPageSize::Millimeter);
    if (mm.width() >= 10 && mm.height() >= 10) {
        s.paperWidth = static_cast<int>(std::lround(mm.width() * 10));
        s.paperHeight = static_cast<int>(std::lround(mm.height() * 10));
    }
    const QList<int> dpis = info.supportedResolutions();
    if (!dpis.isEmpty()) s.dpi = std::clamp(*std::max_element(dpis.begin(), dpis.end()), 36, 1200);
    s.colour = info.defaultColorMode() == QPrinter::Color;
    return true;
}
}  // namespace

PrintJob::~PrintJob() {
    if (painter && painter->isActive()) painter->end();
}

std::unique_ptr<PrintJob> NewPrintJob(const char* device, const DEVMODEA* dm) {
    auto job = std::make_unique<PrintJob>();
    job->settings = GetPrinterSettings();
    job->device = device ? device : PickDefaultPrinter(QuerySystemPrinters());
    SystemPrinterDefaults(job->device, job->settings);
    PrinterSettings& s = job->settings;
    if (dm) {
        if ((dm->dmFields & DM_ORIENTATION) && dm->dmOrientation) s.landscape = dm->dmOrientation == DMORIENT_LANDSCAPE;
        if ((dm->dmFields & DM_COLOR) && dm->dmColor) s.colour = dm->dmColor == DMCOLOR_COLOR;
        if ((dm->dmFields & DM_PRINTQUALITY) && dm->dmPrintQuality > 0) s.dpi = std::clamp<int>(dm->dmPrintQuality, 36, 1200);
        if (dm->dmFields & DM_PAPERSIZE) {
            if (dm->dmPaperSize == DMPAPER_LETTER) { s.paperWidth = 2159; s.paperHeight = 2794; }
            else if (dm->dmPaperSize == DMPAPER_A4) { s.paperWidth = 2100; s.paperHeight = 2970; }
        }
    }
    int w = static_cast<int>(std::lround(s.paperWidth / 254.0 * s.dpi));
    int h = static_cast<int>(std::lround(s.paperHeight / 254.0 * s.dpi));
    if (s.landscape) std::swap(w, h);
    job->pageW = w;
    job->pageH = h;
    return job;
}

namespace {

Dc* PrinterDc(HDC hdc) {
    Dc* dc = LookupDc(hdc);
    return dc && dc->kind == DcKind::Printer && dc->print ? dc : nullptr;
}

std::string OutputFor(const PrinterSettings& s, const char* docName, const char* explicitOut) {
    if (explicitOut && *explicitOut) return explicitOut;
    std::string name = docName && *docName ? docName : "document";
    for (char& c : name)
        if (c == '/' || c == '\\' || c == ':' || c == '*' || c == '?' || c == '"' || c == '<' || c == '>' || c == '|') c = '_';
    name += ".pdf";
    if (s.outputPath.empty()) return name;
    const QFileInfo info(QString::fromStdString(s.outputPath));
    if (info.isDir() || s.outputPath.back() == '/') return QDir(info.filePath()).filePath(QString::fromStdString(name)).toStdString();
    return s.outputPath;
}

}  // namespace
}  // namespace orlex::gdi

using namespace orlex::gdi;

int StartDocA(HDC hdc, const DOCINFOA* info) {
    Dc* dc = PrinterDc(hdc);
    if (!dc || dc->print->docStarted) return SP_ERROR;
    NeedApplication();
    PrintJob& job = *dc->print;
    const bool toFile = info && info->lpszOutput && *info->lpszOutput;
    job.printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    if (IsSystemPrinter(QuerySystemPrinters(), job.device) && !toFile) {
        // The system's printer gets the pages; no file is written.
        job.outputFile.clear();
        job.printer->setPrinterName(QString::fromStdString(job.device));
        job.printer->setOutputFormat(QPrinter::NativeFormat);
    } else {
        job.outputFile = OutputFor(job.settings, info ? info->lpszDocName : nullptr, info ? info->lpszOutput : nullptr);
        job.printer->setOutputFormat(QPrinter::PdfFormat);
        job.printer->setOutputFileName(QString::fromStdString(job.outputFile));
    }
    job.printer->setResolution(job.settings.dpi);
    job.printer->setFullPage(true);
    job.printer->setColorMode(job.settings.colour ? QPrinter::Color : QPrinter::GrayScale);
    const QPageSize size(QSizeF(job.settings.paperWidth / 10.0, job.settings.paperHeight / 10.0), QPageSize::Millimeter);
    job.printer->setPageLayout(QPageLayout(size, job.settings.landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                           QMarginsF(0, 0, 0, 0)));
    if (info && info->lpszDocName) job.printer->setDocName(QString::fromLatin1(info->lpszDocName));
    job.docStarted = true;
    job.anyPage = false;
    return 1;
}

int StartPage(HDC hdc) {
    Dc* dc = PrinterDc(hdc);
    if (!dc || !dc->print->docStarted || dc->print->pageStarted) return SP_ERROR;
    PrintJob& job = *dc->print;
    job.page = QImage(job.pageW, job.pageH, QImage::Format_RGB32);
    if (job.page.isNull()) return SP_OUTOFMEMORY;
    job.page.fill(0xFFFFFFFFu);
    job.pageStarted = true;
    return 1;
}

int EndPage(HDC hdc) {
    Dc* dc = PrinterDc(hdc);
    if (!dc || !dc->print->pageStarted) return SP_ERROR;
    PrintJob& job = *dc->print;
    if (!job.painter) {
        job.painter = std::make_unique<QPainter>();
        if (!job.painter->begin(job.printer.get())) {
            job.painter.reset();
            return SP_ERROR;
        }
    } else if (!job.printer->newPage()) {
        return SP_ERROR;
    }
    const QImage page = job.settings.colour ? job.page : job.page.convertToFormat(QImage::Format_Grayscale8);
    job.painter->drawImage(QRect(0, 0, job.pageW, job.pageH), page);
    {
        std::lock_guard lock(orlex::g_mu);
        orlex::g_lastPage = job.page;
    }
    job.page = QImage();
    job.pageStarted = false;
    job.anyPage = true;
    return 1;
}

int EndDoc(HDC hdc) {
    Dc* dc = PrinterDc(hdc);
    if (!dc || !dc->print->docStarted) return SP_ERROR;
    PrintJob& job = *dc->print;
    if (job.pageStarted) EndPage(hdc);
    bool ok = true;
    if (job.painter) ok = job.painter->end();
    job.painter.reset();
    job.printer.reset();
    job.docStarted = false;
    if (ok && job.anyPage && !job.outputFile.empty()) {
        std::lock_guard lock(orlex::g_mu);
        orlex::g_documents.push_back(job.outputFile);
    }
    return ok ? 1 : SP_ERROR;
}

int AbortDoc(HDC hdc) {
    Dc* dc = PrinterDc(hdc);
    if (!dc || !dc->print->docStarted) return SP_ERROR;
    PrintJob& job = *dc->print;
    if (job.painter) job.painter->end();
    job.painter.reset();
    job.printer.reset();
    // Nothing of an abandoned document is kept.
    if (!job.outputFile.empty()) QFile::remove(QString::fromStdString(job.outputFile));
    job.docStarted = job.pageStarted = false;
    job.page = QImage();
    return 1;
}

// Printers ----------------------------------------------------------------------------------------------
namespace {
struct PrinterHandle {
    std::string name;
};

}  // namespace

BOOL OpenPrinterA(LPSTR name, HANDLE* printer, void*) {
    if (!printer) return FALSE;
    *printer = nullptr;
    const std::string want = name ? name : PickDefaultPrinter(QuerySystemPrinters());
    // As the platform: a printer that isn't there can't be opened.
    if (!IsKnownPrinter(QuerySystemPrinters(), want)) return FALSE;
    *printer = new PrinterHandle{want};
    return TRUE;
}

BOOL ClosePrinter(HANDLE printer) {
    delete static_cast<PrinterHandle*>(printer);
    return printer != nullptr;
}

LONG DocumentPropertiesA(HWND, HANDLE printer, LPSTR device, DEVMODEA* out, const DEVMODEA* in, DWORD mode) {
    if (!printer) return -1;
    if (mode == 0) return sizeof(DEVMODEA);
    DEVMODEA dm{};
    orlex::PrinterSettings s = orlex::GetPrinterSettings();
    const char* name = device ? device : static_cast<PrinterHandle*>(printer)->name.c_str();
    const bool system = orlex::gdi::SystemPrinterDefaults(static_cast<PrinterHandle*>(printer)->name, s);
    std::strncpy(reinterpret_cast<char*>(dm.dmDeviceName), name, CCHDEVICENAME - 1);
    dm.dmSpecVersion = 0x401;
    dm.dmSize = sizeof(DEVMODEA);
    dm.dmFields = DM_ORIENTATION | DM_PAPERSIZE | DM_SCALE | DM_COPIES | DM_PRINTQUALITY | DM_COLOR;
    dm.dmOrientation = s.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
    dm.dmPaperSize = system && s.paperWidth == 2159 && s.paperHeight == 2794 ? DMPAPER_LETTER : DMPAPER_A4;
    dm.dmPaperWidth = static_cast<short>(s.paperWidth);
    dm.dmPaperLength = static_cast<short>(s.paperHeight);
    dm.dmScale = 100;
    dm.dmCopies = 1;
    dm.dmPrintQuality = static_cast<short>(s.dpi);
    dm.dmYResolution = static_cast<short>(s.dpi);
    dm.dmColor = s.colour ? DMCOLOR_COLOR : DMCOLOR_MONOCHROME;
    if ((mode & DM_IN_BUFFER) && in) {
        if (in->dmFields & DM_ORIENTATION) dm.dmOrientation = in->dmOrientation;
        if (in->dmFields & DM_PAPERSIZE) dm.dmPaperSize = in->dmPaperSize;
        if (in->dmFields & DM_SCALE) dm.dmScale = in->dmScale;
        if (in->dmFields & DM_COPIES) dm.dmCopies = in->dmCopies;
        if (in->dmFields & DM_PRINTQUALITY) dm.dmPrintQuality = in->dmPrintQuality;
        if (in->dmFields & DM_COLOR) dm.dmColor = in->dmColor;
    }
    if ((mode & DM_OUT_BUFFER) && out) *out = dm;
    return IDOK;
}

void orlex::gdi::PublishDefaultPrinter() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Listed afresh: this runs while the application is being made, which the cached
        // list may itself be waiting for.
        const std::string name = PickDefaultPrinter(ListSystemPrinters());
        const std::string port = name == kPdfPrinter ? "PDF:" : "CUPS:";
        orlex::SetSystemProfileValue("windows", "device", (name + ",winspool," + port).c_str());
    });
}

BOOL GetDefaultPrinterA(LPSTR buffer, LPDWORD size) {
    if (!size) return FALSE;
    const std::string name = PickDefaultPrinter(QuerySystemPrinters());
    const DWORD need = static_cast<DWORD>(name.size() + 1);
    if (!buffer || *size < need) {
        *size = need;
        return FALSE;
    }
    std::memcpy(buffer, name.c_str(), need);
    *size = need;
    return TRUE;
}

// CDC printing members ------------------------------------------------------------------------------------
int CDC::StartDoc(LPDOCINFO info) { return StartDocA(m_hDC, info); }
int CDC::StartDoc(LPCSTR docName) {
    DOCINFOA info{static_cast<int>(sizeof(DOCINFOA)), docName, nullptr, nullptr, 0};
    return StartDocA(m_hDC, &info);
}
int CDC::StartPage() { return ::StartPage(m_hDC); }
int CDC::EndPage() { return ::EndPage(m_hDC); }
int CDC::EndDoc() { return ::EndDoc(m_hDC); }
int CDC::AbortDoc() { return ::AbortDoc(m_hDC); }
