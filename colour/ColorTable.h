// The process's list of colour tables: 26 built-in tables (0..25) followed by the host's
// custom tables (26 upward), which live in the file "<drive><dir>CustomColorTables.bin"
// beside the host's executable. Every table has 256 entries of red, green and blue, each
// value with an edit mark of its own (bit 15) that a colour editor uses as a hand-hold.
//
// The free functions below are the list's whole public face; they take no lock and
// belong to the thread of the user interface.
#pragma once

#include <string>
#include <vector>

#include "colour/ColorTableMath.h"
#include "foundation/platform/afxarchive.h"
#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

// One stored table. red/green/blue: bits 0-7 the value, bit 15 the edit mark, other bits 0.
struct ColorTableRecord {
    WORD red[256] = {};
    WORD green[256] = {};
    WORD blue[256] = {};
    bool stepped = false;          // flat colour bands; stored and compared, never acted on
    std::vector<int> auxPoints;    // the host's list, never interpreted
    CString label;                 // the table's number when it was made ("%d")
};

// The edit points of one table as given to and taken from a host: indices 0..255 marked
// in each plane, ascending, with `stepped` and `auxPoints` as in the record.
struct ColorTableEditPointInfo {
    bool stepped = false;
    std::vector<int> redPoints;
    std::vector<int> greenPoints;
    std::vector<int> bluePoints;
    std::vector<int> auxPoints;
};

// The raw numbers of the resource "color.par": 18 tables x 240 entries x red, green, blue,
// as 16-bit patterns (25920 bytes), parsed once.
class ColorTableStore {
public:
    ColorTableStore();
    ~ColorTableStore();
    ColorTableStore(const ColorTableStore&) = delete;
    ColorTableStore& operator=(const ColorTableStore&) = delete;

    // Parses the text unless already parsed; true when the store is ready. `text` null:
    // the library's resource "color.par". On failure m_bParsed stays false.
    bool Parse(const char* text = nullptr, std::size_t length = 0);
    // The parsed values, or null while not parsed.
    const WORD* Values() const { return m_bParsed ? m_values : nullptr; }

    bool m_bParsed = false;

private:
    WORD* m_values;
};

// The list of tables. One instance lives for the whole process and serves the free
// functions; a test or tool may make its own with another file name.
class ColorTable : public CObject {
    DECLARE_SERIAL(ColorTable)
public:
    ColorTable();
    ~ColorTable() override;
    ColorTable(const ColorTable&) = delete;
    ColorTable& operator=(const ColorTable&) = delete;
    // Stores: class record, count, one block per custom table. Loads the same (schema 1
    // or 2), appending the blocks read. Archive errors go to the caller as CArchiveException.
    void Serialize(CArchive& ar) override;

    // Builds the list once: the 26 built-in tables, then the custom tables of the file.
    void Build();
    // Name of the custom table file; empty means the default beside the executable
    // (computed at first use). Set it before Build.
    void SetFileName(const char* name) { m_fileName = name ? name : ""; }
    const std::string& FileName();
    // Text used instead of the resource when the tables 4..21 are first filled (tests of
    // a missing or broken resource); null goes back to the resource.
    void SetResourceOverride(const char* text, std::size_t length);

    // The operations behind the free functions, on this list.
    void Create(int index, tagRGBQUAD* table);
    int Count() const { return static_cast<int>(m_tables.size()); }
    ColorTableEditPointInfo EditPoints(int index);
    int AddCustom(const tagRGBQUAD* table, const ColorTableEditPointInfo& info);
    void DeleteCustom(int index);
    bool IsCustom(int index) const { return index >= orlex::colour::kFirstCustomTable && index < Count(); }
    bool MatchesCustom(const tagRGBQUAD* table, const ColorTableEditPointInfo& info, int* index);
    // The stored record of table `index` (clamped to the list); the list must be built.
    const ColorTableRecord& Record(int index) const;

    // Writes the whole list's file; failures are shown in a message box.
    void WriteFile();

    bool m_bInitialized = false;
    ColorTableStore* m_pStore;
    std::vector<ColorTableRecord> m_tables;

private:
    void ReadFile();
    int Clamp(int index) const;

    std::string m_fileName;
    bool m_bOverride = false;
    std::string m_override;
};

// Builds the process's list if it is not built yet. OrlexUI::Initialize calls it.
void InitializeColorTables();
// Builds the list if needed, then writes the 256 entries of table `index` into `table`
// (room for 256 needed; `count` is not examined): the low bytes of the stored values,
// reserved 255. An index at or above the number of tables selects the last; below 0, the first.
void CreateColorTable(int index, int count, tagRGBQUAD* table);
// The number of tables now; 0 before the list is built (this does not build it).
int GetNumberOfColorTables();
// An empty string, whatever the index: the stored label reaches nobody but the file.
CString GetColorTableLabel(int index);
// Builds the list if needed; the edit points of table `index` (limited as in CreateColorTable).
ColorTableEditPointInfo GetColorTableEditPoints(int index);
// Appends a custom table made of `table` (256 entries) and the marks of `info`, rewrites
// the file and returns the new table's number (-1 for a null table). Point indices
// outside 0..255 are ignored.
int AddCustomColorTable(tagRGBQUAD* const table, ColorTableEditPointInfo& info);
// Removes custom table `index` (26 <= index < count; otherwise nothing) and rewrites the
// file; later custom tables move down by one and keep their labels.
void DeleteCustomColorTable(int index);
// True if 26 <= index < the number of tables.
bool IsCustomColorTable(int index);
// The lowest custom table equal to the candidate in colours (reserved byte ignored),
// edit points, aux points and `stepped`; *index is written only on a match.
bool MatchesCustomColorTable(tagRGBQUAD* const table, ColorTableEditPointInfo& info, int* index);

namespace orlex::colour {

// The process's list behind the free functions.
ColorTable& ProcessColorTables();
// "<drive><dir>CustomColorTables.bin" of the running executable.
std::string DefaultCustomTableFile();

}  // namespace orlex::colour
