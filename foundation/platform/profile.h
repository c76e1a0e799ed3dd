// Profile files: "[section]" headers and "key=value" lines. The application's profile
// (CWinApp) and the system profile (the printer setting "windows"/"device") are such files.
// Section and key names compare without regard to ASCII case.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex {

// The text of one profile file, edited in place: lines that aren't touched (comments,
// other sections, blank lines) come out as they went in.
class IniDocument {
public:
    IniDocument() = default;
    // Reads a file's text; LF or CR LF line ends. Never fails: lines that aren't headers
    // or "key=value" are kept and ignored.
    explicit IniDocument(const std::string& text);

    // The value of the key, blanks around it removed and one pair of enclosing quotes
    // ("..." or '...') taken off; nothing when the section or key is missing.
    std::optional<std::string> Get(const std::string& section, const std::string& key) const;
    // Sets the value: replaces the key's line, or adds the line after the section's last
    // key, or adds the section at the end.
    void Set(const std::string& section, const std::string& key, const std::string& value);
    // Removes the key's line / the section's header and all its lines. False if missing.
    bool RemoveKey(const std::string& section, const std::string& key);
    bool RemoveSection(const std::string& section);
    // Names of sections, and of the keys of one section, in file order.
    std::vector<std::string> Sections() const;
    std::vector<std::string> Keys(const std::string& section) const;

    // The file's text, each line ended by "\n".
    std::string ToText() const;

private:
    // [begin, end) line range of the section's body; begin-1 is its header. False if none.
    bool FindSection(const std::string& section, size_t& begin, size_t& end) const;
    bool FindKey(size_t begin, size_t end, const std::string& key, size_t& line) const;

    std::vector<std::string> m_lines;
};

// Reads the whole file into doc; a missing or unreadable file gives an empty document
// and false.
bool LoadIniFile(const std::string& path, IniDocument& doc);
// Writes the document to the file through a temporary file and a rename, creating the
// directories above it as needed. False when it can't be written.
bool SaveIniFile(const std::string& path, const IniDocument& doc);

// One value of a profile file, of any length, read under the profile lock; false when the
// file, section or key is missing.
bool ReadProfileValue(const std::string& path, const std::string& section, const std::string& key,
                      std::string& value);

// The system profile (the platform's win.ini): a file, by default
// $XDG_CONFIG_HOME/orlexui/win.ini (~/.config/orlexui/win.ini), whose place a host or test
// may set; an empty path restores the default.
void SetSystemProfilePath(const std::string& path);
std::string SystemProfilePath();
// A value of the system profile that the layer supplies itself (the default printer from
// the printing system); it hides the file's value and is never written. Null value
// removes it.
void SetSystemProfileValue(const std::string& section, const std::string& key, const char* value);

}  // namespace orlex

// Private profile files ---------------------------------------------------------------------
// Copies the value (or `def`, null meaning "") into buf, at most size-1 characters and a
// terminator, and returns the number copied. A null key lists the section's keys, a null
// section the sections, each terminated, with a second terminator at the end.
DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size, LPCSTR file);
// The value as a decimal integer (leading blanks and a sign allowed, reading stops at the
// first non-digit; no digits gives 0), or `def` when the key is missing.
UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR key, INT def, LPCSTR file);
// Sets the value; a null value removes the key, a null key the whole section. The file is
// written at once. FALSE when it can't be written or section is null.
BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR file);

// The system profile -------------------------------------------------------------------------
// As the private forms, on the system profile file.
DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size);
UINT GetProfileIntA(LPCSTR section, LPCSTR key, INT def);
BOOL WriteProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value);

inline DWORD GetPrivateProfileString(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size, LPCSTR file) {
    return GetPrivateProfileStringA(section, key, def, buf, size, file);
}
inline UINT GetPrivateProfileInt(LPCSTR section, LPCSTR key, INT def, LPCSTR file) {
    return GetPrivateProfileIntA(section, key, def, file);
}
inline BOOL WritePrivateProfileString(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR file) {
    return WritePrivateProfileStringA(section, key, value, file);
}
inline DWORD GetProfileString(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size) {
    return GetProfileStringA(section, key, def, buf, size);
}
inline UINT GetProfileInt(LPCSTR section, LPCSTR key, INT def) { return GetProfileIntA(section, key, def); }
inline BOOL WriteProfileString(LPCSTR section, LPCSTR key, LPCSTR value) {
    return WriteProfileStringA(section, key, value);
}
