#include "colour/ColorTable.h"

#include <cassert>
#include <cstdio>
#include <cstring>

#include "foundation/OrlexUI.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

using namespace orlex::colour;

namespace {

constexpr UINT kTableSchema = 2;
constexpr const char* kInitError = "Error initializing color tables.";

bool Marked(WORD v) { return (v & kEditMark) != 0; }

void MarkPoints(WORD* plane, const std::vector<int>& points)
{
    for (int p : points)
        if (p >= 0 && p < kTableEntries) plane[p] |= kEditMark;
}

std::vector<int> MarkedEntries(const WORD* plane)
{
    std::vector<int> out;
    for (int i = 0; i < kTableEntries; ++i)
        if (Marked(plane[i])) out.push_back(i);
    return out;
}

CString NumberLabel(int n)
{
    CString s;
    s.Format("%d", n);
    return s;
}

void StoreRecord(CArchive& ar, const ColorTableRecord& r)
{
    ar << static_cast<BYTE>(r.stepped ? 1 : 0);
    const int length = r.label.GetLength();
    ar << length;
    if (length > 0) ar << r.label;
    for (int i = 0; i < kTableEntries; ++i) ar << r.red[i] << r.green[i] << r.blue[i];
    ar << static_cast<int>(r.auxPoints.size());
    for (int p : r.auxPoints) ar << p;
}

void LoadRecord(CArchive& ar, ColorTableRecord& r, UINT schema)
{
    BYTE stepped = 0;
    ar >> stepped;
    r.stepped = stepped != 0;
    int length = 0;
    ar >> length;
    if (length > 0) ar >> r.label;  // the string's own length rules; a wide form is narrowed
    for (int i = 0; i < kTableEntries; ++i) ar >> r.red[i] >> r.green[i] >> r.blue[i];
    if (schema < 2) return;
    int count = 0;
    ar >> count;
    // A negative or impossible count is a corrupt file; refuse it before allocating.
    if (count < 0) AfxThrowArchiveException(CArchiveException::genericException, ar.m_strFileName);
    if (ULONGLONG(count) * 4 > ar.GetBytesLeft())
        AfxThrowArchiveException(CArchiveException::endOfFile, ar.m_strFileName);
    r.auxPoints.resize(std::size_t(count));
    for (int& p : r.auxPoints) ar >> p;
}

// Shows a caught exception's message as the platform does, and frees it.
void Report(CException* e)
{
    e->ReportError(MB_OK);
    e->Delete();
}

}  // namespace

// ColorTableStore --------------------------------------------------------------------------

ColorTableStore::ColorTableStore() : m_values(new WORD[kResourceValues]()) {}

ColorTableStore::~ColorTableStore() { delete[] m_values; }

bool ColorTableStore::Parse(const char* text, std::size_t length)
{
    if (m_bParsed) return true;
    std::string copy;
    if (text == nullptr) {
        const HMODULE module = orlex::LibraryModule();
        HRSRC found = FindResourceA(module, "color.par", RT_RCDATA);
        HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
        const void* bytes = loaded ? LockResource(loaded) : nullptr;
        const DWORD size = found ? SizeofResource(module, found) : 0;
        if (bytes == nullptr || size == 0) return false;
        copy.assign(static_cast<const char*>(bytes), size);
        text = copy.data();
        length = copy.size();
    }
    if (length == 0 || !ParseColorParText(text, length, m_values)) return false;
    m_bParsed = true;
    return true;
}

// ColorTable ----------------------------------------------------------------------------------

IMPLEMENT_SERIAL(ColorTable, CObject, VERSIONABLE_SCHEMA | kTableSchema)

ColorTable::ColorTable() : m_pStore(new ColorTableStore) {}

ColorTable::~ColorTable() { delete m_pStore; }

void ColorTable::Serialize(CArchive& ar)
{
    ar.SerializeClass(RUNTIME_CLASS(ColorTable));
    if (ar.IsStoring()) {
        const int count = Count();
        ar << count;
        if (count <= kFirstCustomTable) return;
        for (int n = kFirstCustomTable; n < count; ++n) StoreRecord(ar, m_tables[std::size_t(n)]);
        return;
    }
    const UINT schema = ar.GetObjectSchema();
    if (schema != 1 && schema != kTableSchema) AfxThrowArchiveException(CArchiveException::badSchema, ar.m_strFileName);
    int count = 0;
    ar >> count;
    if (count <= kFirstCustomTable) return;
    // Each block is appended as soon as it is whole, so a file cut short keeps what it had;
    // a count beyond the data ends in the archive's end-of-file error.
    for (int n = kFirstCustomTable; n < count; ++n) {
        ColorTableRecord r;
        LoadRecord(ar, r, schema);
        m_tables.push_back(std::move(r));
    }
}

const std::string& ColorTable::FileName()
{
    if (m_fileName.empty()) m_fileName = DefaultCustomTableFile();
    return m_fileName;
}

void ColorTable::SetResourceOverride(const char* text, std::size_t length)
{
    m_bOverride = text != nullptr;
    m_override = text ? std::string(text, length) : std::string();
}

void ColorTable::Build()
{
    if (m_bInitialized) return;
    m_tables.reserve(kBuiltInTables);
    for (int n = 0; n < kBuiltInTables; ++n) {
        const bool fromResource = n >= kFirstResourceTable && n < kFirstResourceTable + kResourceTables;
        const WORD* store = nullptr;
        if (fromResource) {
            // Every table of the resource asks again, and reports again when it can't.
            const bool ok = m_bOverride ? m_pStore->Parse(m_override.data(), m_override.size()) : m_pStore->Parse();
            if (!ok) AfxMessageBox(kInitError, MB_OK);
            store = m_pStore->Values();
        }
        TablePlanes planes;
        FillBuiltInTable(n, store, planes);
        ColorTableRecord r;
        std::memcpy(r.red, planes.red, sizeof r.red);
        std::memcpy(r.green, planes.green, sizeof r.green);
        std::memcpy(r.blue, planes.blue, sizeof r.blue);
        r.stepped = planes.stepped;
        r.label = NumberLabel(n);
        m_tables.push_back(std::move(r));
    }
    ReadFile();
    m_bInitialized = true;
}

void ColorTable::ReadFile()
{
    CFile file;
    if (!file.Open(FileName().c_str(), CFile::modeRead | CFile::typeBinary)) return;
    try {
        if (file.GetLength() == 0) {
            file.Close();
            return;
        }
        CArchive ar(&file, CArchive::load, 4096);
        ar.m_strFileName = FileName().c_str();
        try {
            Serialize(ar);
            ar.Close();
        } catch (CException* e) {
            ar.Abort();
            Report(e);
        }
        file.Close();
    } catch (CException* e) {
        file.Abort();
        Report(e);
    }
}

void ColorTable::WriteFile()
{
    CFile file;
    CFileException error;
    if (!file.Open(FileName().c_str(), CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary, &error)) {
        error.ReportError(MB_OK);
        return;
    }
    try {
        CArchive ar(&file, CArchive::store, 4096);
        ar.m_strFileName = FileName().c_str();
        try {
            Serialize(ar);
            ar.Close();
        } catch (...) {
            ar.Abort();
            throw;
        }
        file.Close();
    } catch (CException* e) {
        file.Abort();
        Report(e);
    }
}

int ColorTable::Clamp(int index) const
{
    assert(!m_tables.empty());
    if (index >= Count()) return Count() - 1;
    return index < 0 ? 0 : index;
}

const ColorTableRecord& ColorTable::Record(int index) const { return m_tables[std::size_t(Clamp(index))]; }

void ColorTable::Create(int index, tagRGBQUAD* table)
{
    Build();
    if (table == nullptr) return;
    const ColorTableRecord& r = Record(index);
    for (int i = 0; i < kTableEntries; ++i)
        table[i] = tagRGBQUAD{BYTE(r.blue[i] & kValueMask), BYTE(r.green[i] & kValueMask),
                              BYTE(r.red[i] & kValueMask), 255};
}

ColorTableEditPointInfo ColorTable::EditPoints(int index)
{
    Build();
    const ColorTableRecord& r = Record(index);
    ColorTableEditPointInfo info;
    info.stepped = r.stepped;
    info.redPoints = MarkedEntries(r.red);
    info.greenPoints = MarkedEntries(r.green);
    info.bluePoints = MarkedEntries(r.blue);
    info.auxPoints = r.auxPoints;
    return info;
}

int ColorTable::AddCustom(const tagRGBQUAD* table, const ColorTableEditPointInfo& info)
{
    if (table == nullptr) return -1;
    // Custom tables go after the built-in ones, so the list must exist first.
    Build();
    ColorTableRecord r;
    for (int i = 0; i < kTableEntries; ++i) {
        r.red[i] = table[i].rgbRed;
        r.green[i] = table[i].rgbGreen;
        r.blue[i] = table[i].rgbBlue;
    }
    r.stepped = info.stepped;
    r.auxPoints = info.auxPoints;
    MarkPoints(r.red, info.redPoints);
    MarkPoints(r.green, info.greenPoints);
    MarkPoints(r.blue, info.bluePoints);
    r.label = NumberLabel(Count());
    m_tables.push_back(std::move(r));
    WriteFile();
    return Count() - 1;
}

void ColorTable::DeleteCustom(int index)
{
    if (!IsCustom(index)) return;
    m_tables.erase(m_tables.begin() + index);
    WriteFile();
}

bool ColorTable::MatchesCustom(const tagRGBQUAD* table, const ColorTableEditPointInfo& info, int* index)
{
    if (table == nullptr || Count() <= kFirstCustomTable) return false;
    tagRGBQUAD candidate[kTableEntries];
    for (int n = kFirstCustomTable; n < Count(); ++n) {
        Create(n, candidate);
        bool same = true;
        for (int i = 0; i < kTableEntries && same; ++i)
            same = candidate[i].rgbRed == table[i].rgbRed && candidate[i].rgbGreen == table[i].rgbGreen &&
                   candidate[i].rgbBlue == table[i].rgbBlue;
        if (!same) continue;
        const ColorTableEditPointInfo stored = EditPoints(n);
        if (stored.redPoints == info.redPoints && stored.greenPoints == info.greenPoints &&
            stored.bluePoints == info.bluePoints && stored.auxPoints == info.auxPoints &&
            stored.stepped == info.stepped) {
            if (index != nullptr) *index = n;
            return true;
        }
    }
    return false;
}

// The process's list and the free functions ---------------------------------------------------

namespace orlex::colour {

ColorTable& ProcessColorTables()
{
    // Made on first use and kept for the process, so it outlives every control.
    static ColorTable* tables = new ColorTable;
    return *tables;
}

std::string DefaultCustomTableFile()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    char drive[_MAX_DRIVE] = {};
    char dir[_MAX_DIR] = {};
    _splitpath(path, drive, dir, nullptr, nullptr);
    CString name;
    name.Format("%s%sCustomColorTables.bin", drive, dir);
    return name.str();
}

}  // namespace orlex::colour

void InitializeColorTables() { ProcessColorTables().Build(); }

void CreateColorTable(int index, int /*count*/, tagRGBQUAD* table) { ProcessColorTables().Create(index, table); }

int GetNumberOfColorTables() { return ProcessColorTables().Count(); }

CString GetColorTableLabel(int /*index*/) { return CString(); }

ColorTableEditPointInfo GetColorTableEditPoints(int index) { return ProcessColorTables().EditPoints(index); }

int AddCustomColorTable(tagRGBQUAD* const table, ColorTableEditPointInfo& info)
{
    return ProcessColorTables().AddCustom(table, info);
}

void DeleteCustomColorTable(int index) { ProcessColorTables().DeleteCustom(index); }

bool IsCustomColorTable(int index) { return ProcessColorTables().IsCustom(index); }

bool MatchesCustomColorTable(tagRGBQUAD* const table, ColorTableEditPointInfo& info, int* index)
{
    return ProcessColorTables().MatchesCustom(table, info, index);
}

namespace {

// OrlexUI::Initialize builds the tables through this step.
struct RegisterColorTablesStep {
    RegisterColorTablesStep()
    {
        ProcessColorTables();  // the one list exists from the library's load on
        OrlexUI::detail::SetColorTablesStep(&InitializeColorTables);
    }
} g_registerColorTablesStep;

}  // namespace
