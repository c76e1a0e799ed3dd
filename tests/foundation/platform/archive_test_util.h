// Helpers of the archive tests: store into memory, load from bytes, catch causes.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "foundation/platform/afx.h"

namespace archive_test {

using Bytes = std::vector<BYTE>;

// Bytes as "FF FF 01 00", for readable failures.
inline std::string Hex(const Bytes& b)
{
    std::string s;
    char t[4];
    for (BYTE v : b) {
        std::snprintf(t, sizeof t, "%02X ", v);
        s += t;
    }
    if (!s.empty())
        s.pop_back();
    return s;
}

inline Bytes Cat(std::initializer_list<Bytes> parts)
{
    Bytes r;
    for (const Bytes& p : parts)
        r.insert(r.end(), p.begin(), p.end());
    return r;
}

inline Bytes Text(const char* s)
{
    return Bytes(s, s + std::char_traits<char>::length(s));
}

// What a storing archive wrote, with the buffer of the given size.
inline Bytes Store(const std::function<void(CArchive&)>& write, int bufSize = 4096)
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store, bufSize);
        write(ar);
        ar.Close();
    }
    Bytes out(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!out.empty())
        file.Read(out.data(), static_cast<UINT>(out.size()));
    return out;
}

// Runs `read` on a loading archive over the bytes.
inline void Load(const Bytes& bytes, const std::function<void(CArchive&)>& read, int bufSize = 4096)
{
    Bytes copy = bytes;
    CMemFile file(copy.empty() ? nullptr : copy.data(), static_cast<UINT>(copy.size()));
    file.SetFilePath("memory.bin");
    CArchive ar(&file, CArchive::load, bufSize);
    read(ar);
}

// The cause of the CArchiveException that `f` raises, or -1 when it raises none.
inline int ArchiveCause(const std::function<void()>& f)
{
    try {
        f();
    } catch (CArchiveException* e) {
        const int c = e->m_cause;
        e->Delete();
        return c;
    }
    return -1;
}

}  // namespace archive_test
