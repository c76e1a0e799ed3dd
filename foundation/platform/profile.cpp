#include "foundation/platform/profile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

namespace orlex {

namespace {

bool EqualNoCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

std::string Trim(const std::string& s) {
    size_t b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t')) ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
    return s.substr(b, e - b);
}

// The name of a "[name]" line, or false.
bool HeaderName(const std::string& line, std::string& name) {
    const std::string t = Trim(line);
    if (t.size() < 2 || t.front() != '[') return false;
    const size_t close = t.find(']');
    if (close == std::string::npos) return false;
    name = Trim(t.substr(1, close - 1));
    return true;
}

// The key of a "key=value" line, or false.
bool KeyName(const std::string& line, std::string& key, std::string* value = nullptr) {
    const std::string t = Trim(line);
    if (t.empty() || t[0] == ';' || t[0] == '[') return false;
    const size_t eq = t.find('=');
    if (eq == std::string::npos) return false;
    key = Trim(t.substr(0, eq));
    if (value) *value = Trim(t.substr(eq + 1));
    return true;
}

}  // namespace

IniDocument::IniDocument(const std::string& text) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        m_lines.push_back(std::move(line));
        pos = end + 1;
    }
}

bool IniDocument::FindSection(const std::string& section, size_t& begin, size_t& end) const {
    std::string name;
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (!HeaderName(m_lines[i], name) || !EqualNoCase(name, section)) continue;
        begin = i + 1;
        end = begin;
        while (end < m_lines.size() && !HeaderName(m_lines[end], name)) ++end;
        return true;
    }
    return false;
}

bool IniDocument::FindKey(size_t begin, size_t end, const std::string& key, size_t& line) const {
    std::string name;
    for (size_t i = begin; i < end; ++i) {
        if (KeyName(m_lines[i], name) && EqualNoCase(name, key)) {
            line = i;
            return true;
        }
    }
    return false;
}

std::optional<std::string> IniDocument::Get(const std::string& section, const std::string& key) const {
    size_t begin, end, line;
    if (!FindSection(section, begin, end) || !FindKey(begin, end, key, line)) return std::nullopt;
    std::string name, value;
    KeyName(m_lines[line], name, &value);
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return value;
}

void IniDocument::Set(const std::string& section, const std::string& key, const std::string& value) {
    const std::string line = key + "=" + value;
    size_t begin, end, at;
    if (!FindSection(section, begin, end)) {
        m_lines.push_back("[" + section + "]");
        m_lines.push_back(line);
        return;
    }
    if (FindKey(begin, end, key, at)) {
        std::string existing;
        KeyName(m_lines[at], existing);  // the file's spelling of the name stays
        m_lines[at] = existing + "=" + value;
        return;
    }
    // After the last non-blank line of the section, so blank separators stay below it.
    size_t insert = end;
    while (insert > begin && Trim(m_lines[insert - 1]).empty()) --insert;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(insert), line);
}

bool IniDocument::RemoveKey(const std::string& section, const std::string& key) {
    size_t begin, end, at;
    if (!FindSection(section, begin, end) || !FindKey(begin, end, key, at)) return false;
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}

bool IniDocument::RemoveSection(const std::string& section) {
    size_t begin, end;
    if (!FindSection(section, begin, end)) return false;
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(begin - 1),
                  m_lines.begin() + static_cast<std::ptrdiff_t>(end));
    return true;
}

std::vector<std::string> IniDocument::Sections() const {
    std::vector<std::string> out;
    std::string name;
    for (const std::string& l : m_lines)
        if (HeaderName(l, name)) out.push_back(name);
    return out;
}

std::vector<std::string> IniDocument::Keys(const std::string& section) const {
    std::vector<std::string> out;
    size_t begin, end;
    if (!FindSection(section, begin, end)) return out;
    std::string name;
    for (size_t i = begin; i < end; ++i)
        if (KeyName(m_lines[i], name)) out.push_back(name);
    return out;
}

std::string IniDocument::ToText() const {
    std::string out;
    for (const std::string& l : m_lines) {
        out += l;
        out += '\n';
    }
    return out;
}

bool LoadIniFile(const std::string& path, IniDocument& doc) {
    doc = IniDocument();
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    std::string text;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) text.append(buf, n);
    std::fclose(f);
    doc = IniDocument(text);
    return true;
}

namespace {

void MakeParentDirectories(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        ::mkdir(path.substr(0, slash).c_str(), 0755);  // existing ones just fail
}

}  // namespace

bool SaveIniFile(const std::string& path, const IniDocument& doc) {
    if (path.empty()) return false;
    MakeParentDirectories(path);
    const std::string tmp = path + ".tmp" + std::to_string(::getpid());
    FILE* f = std::fopen(tmp.c_str(), "wb");
    if (!f) return false;
    const std::string text = doc.ToText();
    const bool written = std::fwrite(text.data(), 1, text.size(), f) == text.size();
    const bool closed = std::fclose(f) == 0;
    if (!written || !closed || std::rename(tmp.c_str(), path.c_str()) != 0) {
        std::remove(tmp.c_str());
        return false;
    }
    return true;
}

namespace {

struct SystemProfile {
    std::string path;
    std::map<std::pair<std::string, std::string>, std::string> supplied;  // lower-cased keys
};

// One lock for every profile file: reads and writes of a file never interleave.
std::mutex& FileLock() {
    static std::mutex* lock = new std::mutex;
    return *lock;
}

SystemProfile& System() {
    static SystemProfile* s = new SystemProfile;
    return *s;
}

std::string Lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string DefaultSystemProfilePath() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg) return std::string(xdg) + "/orlexui/win.ini";
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.config/orlexui/win.ini";
}

}  // namespace

bool ReadProfileValue(const std::string& path, const std::string& section, const std::string& key,
                      std::string& value) {
    std::lock_guard<std::mutex> guard(FileLock());
    IniDocument doc;
    if (!LoadIniFile(path, doc)) return false;
    const std::optional<std::string> v = doc.Get(section, key);
    if (!v) return false;
    value = *v;
    return true;
}

void SetSystemProfilePath(const std::string& path) {
    std::lock_guard<std::mutex> guard(FileLock());
    System().path = path;
}

std::string SystemProfilePath() {
    std::lock_guard<std::mutex> guard(FileLock());
    return System().path.empty() ? DefaultSystemProfilePath() : System().path;
}

void SetSystemProfileValue(const std::string& section, const std::string& key, const char* value) {
    std::lock_guard<std::mutex> guard(FileLock());
    auto k = std::make_pair(Lower(section), Lower(key));
    if (value)
        System().supplied[k] = value;
    else
        System().supplied.erase(k);
}

}  // namespace orlex

// The file functions -------------------------------------------------------------------------------

namespace {

DWORD CopyOut(const std::string& s, LPSTR buf, DWORD size) {
    if (!buf || size == 0) return 0;
    const size_t n = s.size() < size - 1 ? s.size() : size - 1;
    std::memcpy(buf, s.data(), n);
    buf[n] = '\0';
    return static_cast<DWORD>(n);
}

// A list of names, each terminated, and one more terminator; cut to fit as the platform
// does (the result then counts size-2).
DWORD CopyList(const std::vector<std::string>& names, LPSTR buf, DWORD size) {
    if (!buf || size == 0) return 0;
    if (size == 1) {
        buf[0] = '\0';
        return 0;
    }
    std::string all;
    for (const std::string& n : names) {
        all += n;
        all += '\0';
    }
    if (all.size() + 1 <= size) {
        std::memcpy(buf, all.data(), all.size());
        buf[all.size()] = '\0';
        return static_cast<DWORD>(all.size());
    }
    std::memcpy(buf, all.data(), size - 2);
    buf[size - 2] = '\0';
    buf[size - 1] = '\0';
    return size - 2;
}

UINT ParseProfileInt(const std::string& s) {
    size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';
    unsigned long long v = 0;
    for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) v = (v * 10 + static_cast<unsigned>(s[i] - '0')) & 0xFFFFFFFFull;
    const UINT u = static_cast<UINT>(v);
    return negative ? 0u - u : u;
}

DWORD ReadProfile(const orlex::IniDocument& doc, LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size) {
    if (!section) return CopyList(doc.Sections(), buf, size);
    if (!key) return CopyList(doc.Keys(section), buf, size);
    const std::optional<std::string> v = doc.Get(section, key);
    return CopyOut(v ? *v : orlex::Trim(def ? def : ""), buf, size);
}

bool WriteProfile(const std::string& path, LPCSTR section, LPCSTR key, LPCSTR value) {
    orlex::IniDocument doc;
    orlex::LoadIniFile(path, doc);
    if (!key)
        doc.RemoveSection(section);
    else if (!value)
        doc.RemoveKey(section, key);
    else
        doc.Set(section, key, value);
    return orlex::SaveIniFile(path, doc);
}

}  // namespace

DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size, LPCSTR file) {
    if (!file) return CopyOut(def ? def : "", buf, size);
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    orlex::IniDocument doc;
    orlex::LoadIniFile(file, doc);
    return ReadProfile(doc, section, key, def, buf, size);
}

UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR key, INT def, LPCSTR file) {
    if (!section || !key || !file) return static_cast<UINT>(def);
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    orlex::IniDocument doc;
    orlex::LoadIniFile(file, doc);
    const std::optional<std::string> v = doc.Get(section, key);
    return v ? ParseProfileInt(*v) : static_cast<UINT>(def);
}

BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR file) {
    if (!section || !file || !*file) return FALSE;
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    return WriteProfile(file, section, key, value) ? TRUE : FALSE;
}

namespace {

// The system profile as read now: the file with the supplied values laid over it.
orlex::IniDocument SystemDocument() {
    orlex::SystemProfile& s = orlex::System();
    orlex::IniDocument doc;
    orlex::LoadIniFile(s.path.empty() ? orlex::DefaultSystemProfilePath() : s.path, doc);
    for (const auto& [k, v] : s.supplied) doc.Set(k.first, k.second, v);
    return doc;
}

}  // namespace

DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR def, LPSTR buf, DWORD size) {
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    return ReadProfile(SystemDocument(), section, key, def, buf, size);
}

UINT GetProfileIntA(LPCSTR section, LPCSTR key, INT def) {
    if (!section || !key) return static_cast<UINT>(def);
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    const std::optional<std::string> v = SystemDocument().Get(section, key);
    return v ? ParseProfileInt(*v) : static_cast<UINT>(def);
}

BOOL WriteProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value) {
    if (!section) return FALSE;
    std::lock_guard<std::mutex> guard(orlex::FileLock());
    orlex::SystemProfile& s = orlex::System();
    return WriteProfile(s.path.empty() ? orlex::DefaultSystemProfilePath() : s.path, section, key, value) ? TRUE
                                                                                                          : FALSE;
}
