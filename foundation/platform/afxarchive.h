// Files and the binary archive. CFile is a file of the operating system, CMemFile a file
// in memory, CStdioFile a text file; CArchive writes and reads the framework's binary
// format (little-endian primitives, length-prefixed strings, objects with class records
// and back-references) through a buffer onto any of them.
#pragma once

#include <cstdio>
#include <memory>
#include <unordered_map>
#include <vector>

#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

// Exceptions of files and archives --------------------------------------------------------

class CFileException : public CException {
public:
    static CRuntimeClass classCFileException;
    static CRuntimeClass* GetThisClass() { return &classCFileException; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCFileException; }

    enum {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };

    explicit CFileException(int cause = none, LONG osError = -1, const char* fileName = nullptr)
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
    {
    }
    // The cause for an errno value of the system.
    static int OsErrorToException(LONG osError);
    BOOL GetErrorMessage(char* text, UINT maxLen, UINT* helpContext = nullptr) const override;

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

// Throws a new CFileException.
[[noreturn]] void AfxThrowFileException(int cause, LONG osError = -1, const char* fileName = nullptr);

class CArchiveException : public CException {
public:
    static CRuntimeClass classCArchiveException;
    static CRuntimeClass* GetThisClass() { return &classCArchiveException; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCArchiveException; }

    enum {
        none = 0,
        genericException = 1,
        readOnly = 2,     // a write on a loading archive
        endOfFile = 3,    // a read past the end, or a count or length larger than the data left
        writeOnly = 4,    // a read on a storing archive
        badIndex = 5,     // a back-reference to nothing, or to a class where an object belongs
        badClass = 6,     // an unknown or uncreatable class, or one of the wrong kind
        badSchema = 7     // a schema that the class doesn't accept
    };

    explicit CArchiveException(int cause = none, const char* fileName = nullptr)
        : m_cause(cause), m_strFileName(fileName)
    {
    }
    BOOL GetErrorMessage(char* text, UINT maxLen, UINT* helpContext = nullptr) const override;

    int m_cause;
    CString m_strFileName;
};

// Throws a new CArchiveException with the cause and the archive's file name.
[[noreturn]] void AfxThrowArchiveException(int cause, const char* fileName = nullptr);

// Files ------------------------------------------------------------------------------------

class CFile : public CObject {
public:
    static CRuntimeClass classCFile;
    static CRuntimeClass* GetThisClass() { return &classCFile; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCFile; }

    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };
    static constexpr int hFileNull = -1;

    CFile() = default;
    // Opens the file; throws CFileException on failure.
    CFile(const char* fileName, UINT openFlags);
    // Closes the file if it is open (errors ignored).
    ~CFile() override;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // Opens the file with the flags above (sharing flags are accepted and not enforced).
    // False on failure, with the cause in *error when given. Never throws.
    virtual BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr);
    // Reads up to `count` bytes; returns how many were read (0 at the end). Throws
    // CFileException on an I/O error.
    virtual UINT Read(void* buffer, UINT count);
    // Writes all bytes; throws CFileException (diskFull, ...) when it cannot.
    virtual void Write(const void* buffer, UINT count);
    // Moves the position and returns the new one; throws badSeek before the start.
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    virtual void SetLength(ULONGLONG newLength);
    virtual void Flush();
    // Closes; throws CFileException if the system reports an error.
    virtual void Close();
    // Closes without ever throwing.
    virtual void Abort();
    // Full path as given to Open, its last component, and that without extension.
    virtual CString GetFilePath() const { return m_strFileName; }
    virtual CString GetFileName() const;
    virtual CString GetFileTitle() const;
    virtual void SetFilePath(const char* newName) { m_strFileName = newName; }
    // True while a file is open.
    bool IsOpen() const { return m_hFile != hFileNull; }

    // Deletes and renames files; throw CFileException on failure.
    static void Remove(const char* fileName);
    static void Rename(const char* oldName, const char* newName);

    int m_hFile = hFileNull;

protected:
    CString m_strFileName;
};

// A file in memory: growable, or attached to a caller's buffer.
class CMemFile : public CFile {
public:
    static CRuntimeClass classCMemFile;
    static CRuntimeClass* GetThisClass() { return &classCMemFile; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCMemFile; }

    // An empty file that grows in steps of growBytes (0 means 1024).
    explicit CMemFile(UINT growBytes = 1024);
    // A file over the caller's buffer of `size` bytes. With growBytes 0 the buffer is the
    // file's data and it cannot grow (a write past the end throws CMemoryException);
    // otherwise the file starts empty, the buffer must come from malloc, the file may
    // reallocate it, and Detach gives back the current one. The file never frees it.
    CMemFile(BYTE* buffer, UINT size, UINT growBytes = 0);
    ~CMemFile() override;

    // Attaches to a buffer as the constructor above; the file must be empty.
    void Attach(BYTE* buffer, UINT size, UINT growBytes = 0);
    // Gives the buffer to the caller (who frees it with free() when the file allocated
    // it) and leaves the file empty. Returns null when there is none.
    BYTE* Detach();

    BOOL Open(const char*, UINT, CFileException* error = nullptr) override { return FALSE; }
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    ULONGLONG GetPosition() const override { return m_nPosition; }
    ULONGLONG GetLength() const override { return m_nFileSize; }
    void SetLength(ULONGLONG newLength) override;
    void Flush() override {}
    void Close() override;
    void Abort() override { Close(); }

protected:
    // Memory of the file; a derived class may take it from elsewhere. Alloc and Realloc
    // return null on failure, which the file turns into CMemoryException.
    virtual BYTE* Alloc(size_t bytes);
    virtual BYTE* Realloc(BYTE* block, size_t bytes);
    virtual void Free(BYTE* block);
    virtual void GrowFile(size_t newLength);

    UINT m_nGrowBytes;
    size_t m_nPosition = 0;
    size_t m_nBufferSize = 0;
    size_t m_nFileSize = 0;
    BYTE* m_lpBuffer = nullptr;
    BOOL m_bAutoDelete = TRUE;
};

// A file read and written as text. Lines end with '\n'; on reading, a "\r\n" ending
// (a file of another system) is taken as '\n'.
class CStdioFile : public CFile {
public:
    static CRuntimeClass classCStdioFile;
    static CRuntimeClass* GetThisClass() { return &classCStdioFile; }
    CRuntimeClass* GetRuntimeClass() const override { return &classCStdioFile; }

    CStdioFile() = default;
    CStdioFile(const char* fileName, UINT openFlags);
    ~CStdioFile() override;

    BOOL Open(const char* fileName, UINT openFlags, CFileException* error = nullptr) override;
    // Writes the text as it is (no terminator added).
    virtual void WriteString(const char* text);
    // Reads one line, or the first maxLen - 1 bytes of it, into `buffer`, keeping the
    // '\n' if it fits, and NUL-terminates. Null at the end of the file. The rest of a
    // long line comes with the next call.
    virtual char* ReadString(char* buffer, UINT maxLen);
    // Reads one whole line without its '\n'; false at the end of the file.
    virtual BOOL ReadString(CString& line);

    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    ULONGLONG GetPosition() const override;
    ULONGLONG GetLength() const override;
    void Flush() override;
    void Close() override;
    void Abort() override;

    FILE* m_pStream = nullptr;

private:
    bool m_bText = false;
};

// The archive ------------------------------------------------------------------------------

class CArchive {
public:
    enum Mode : UINT { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

    // An archive on an open file, storing or loading, with a buffer of bufSize bytes
    // (4096 by default; a caller's buffer may be given and must outlive the archive).
    // The file must outlive the archive too.
    CArchive(CFile* file, UINT mode, int bufSize = 4096, void* buffer = nullptr);
    // Closes (flushing a storing archive) unless bNoFlushOnDelete; never throws.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsLoading() const { return (m_nMode & load) != 0; }
    bool IsStoring() const { return (m_nMode & load) == 0; }
    bool IsByteSwapping() const { return false; }
    // True when a loading archive has no more buffered bytes (the file may have more).
    bool IsBufferEmpty() const { return m_lpBufCur == m_lpBufMax; }
    CFile* GetFile() const { return m_pFile; }

    // Writes the buffer to the file (storing); a loading archive gives back the unread
    // part of its buffer by seeking the file back.
    void Flush();
    // Flushes and detaches from the file; the file stays open.
    void Close();
    // Detaches without flushing or throwing.
    void Abort();

    // Raw blocks. Read fills all `count` bytes or throws endOfFile (after taking what
    // there was); reading 0 bytes never throws. Write copies `count` bytes.
    UINT Read(void* buffer, UINT count);
    void Write(const void* buffer, UINT count);
    // Same as Read, kept for callers that want the throwing read by name.
    void EnsureRead(void* buffer, UINT count) { Read(buffer, count); }

    // Text lines, as on a text file: WriteString writes the bytes (no length), ReadString
    // reads to '\n' (dropping "\r\n" or '\n'); false / null at the end.
    void WriteString(const char* text);
    BOOL ReadString(CString& line);
    char* ReadString(char* buffer, UINT maxLen);

    // Counts of elements: below 0xFFFF a word, else word 0xFFFF and a dword (and for
    // counts that need them, dword 0xFFFFFFFF and 8 bytes).
    void WriteCount(DWORD_PTR count);
    // Reads a count; a count larger than the bytes left in the file is refused with
    // endOfFile before anyone allocates for it.
    DWORD_PTR ReadCount();

    // Objects with class records and back-references. The loading side makes new objects
    // through their runtime classes; the caller owns the object returned (null for a null
    // pointer in the file). An object whose Serialize throws is deleted before the
    // exception goes on. `requested`, when given, must be a base of the object's class.
    void WriteObject(const CObject* object);
    CObject* ReadObject(const CRuntimeClass* requested);
    // A class record alone (storing: the class; loading: the record is read, checked
    // against `cls` and its schema kept for GetObjectSchema).
    void SerializeClass(const CRuntimeClass* cls);
    void WriteClass(const CRuntimeClass* cls);
    // Reads a class record; returns the class. With `schema` the file's schema goes
    // there, otherwise it is kept for GetObjectSchema. With `objectTag`, an object
    // reference found in place of a class record returns null and its index there.
    CRuntimeClass* ReadClass(const CRuntimeClass* requested = nullptr, UINT* schema = nullptr,
                             DWORD* objectTag = nullptr);
    // The schema of the last class record read, once; (UINT)-1 until the next record.
    UINT GetObjectSchema();
    void SetObjectSchema(UINT schema) { m_nObjectSchema = schema; }
    // Bytes that a loading archive can still read (its buffer and the rest of the file),
    // for readers that check a stored size before they allocate for it.
    ULONGLONG GetBytesLeft() const { return bytesLeft(); }

    // Enters an object in this archive's index without writing it, so that later writes
    // or reads of it are back-references.
    void MapObject(const CObject* object);

    CArchive& operator<<(bool v);
    CArchive& operator<<(char v);
    CArchive& operator<<(signed char v);
    CArchive& operator<<(unsigned char v);
    CArchive& operator<<(short v);
    CArchive& operator<<(unsigned short v);
    CArchive& operator<<(int v);
    CArchive& operator<<(unsigned int v);
    // long is 4 bytes in the file, as on the platform whose files these are.
    CArchive& operator<<(long v);
    CArchive& operator<<(unsigned long v);
    CArchive& operator<<(long long v);
    CArchive& operator<<(unsigned long long v);
    CArchive& operator<<(float v);
    CArchive& operator<<(double v);
    CArchive& operator<<(const CObject* object) { WriteObject(object); return *this; }

    CArchive& operator>>(bool& v);
    CArchive& operator>>(char& v);
    CArchive& operator>>(signed char& v);
    CArchive& operator>>(unsigned char& v);
    CArchive& operator>>(short& v);
    CArchive& operator>>(unsigned short& v);
    CArchive& operator>>(int& v);
    CArchive& operator>>(unsigned int& v);
    CArchive& operator>>(long& v);
    CArchive& operator>>(unsigned long& v);
    CArchive& operator>>(long long& v);
    CArchive& operator>>(unsigned long long& v);
    CArchive& operator>>(float& v);
    CArchive& operator>>(double& v);
    CArchive& operator>>(CObject*& object) { object = ReadObject(nullptr); return *this; }
    CArchive& operator>>(const CObject*& object) { object = ReadObject(nullptr); return *this; }

    // The name of the archive's file, given to its exceptions.
    CString m_strFileName;

private:
    template <typename T> void put(T v);
    template <typename T> T get();
    void fillBuffer(UINT need);
    void flushBuffer();
    void checkLoading();
    void checkStoring();
    [[noreturn]] void raise(int cause) const;
    ULONGLONG bytesLeft() const;

    CFile* m_pFile;
    UINT m_nMode;
    bool m_bUserBuf;
    UINT m_nBufSize;
    BYTE* m_lpBufStart;
    BYTE* m_lpBufCur;
    BYTE* m_lpBufMax;
    std::unique_ptr<BYTE[]> m_ownBuffer;
    UINT m_nObjectSchema = static_cast<UINT>(-1);

    // One index space for classes and objects, numbered from 1 (0 is the null pointer).
    DWORD m_nMapCount = 1;
    std::unordered_map<const void*, DWORD> m_storeMap;
    struct LoadEntry {
        void* ptr;
        bool isClass;
        UINT schema;  // for a class: the schema its record gave
    };
    std::vector<LoadEntry> m_loadArray;
};

// The CString rule: byte length below 255; else 0xFF and a word below 0xFFFE; else
// 0xFF, 0xFFFF and a dword; else also 0xFFFFFFFF and 8 bytes.
void AfxWriteStringLength(CArchive& ar, ULONGLONG length, bool wide = false);
// Reads a length in that form; the prefix FF FE FF announces 16-bit characters and
// sets *wide.
ULONGLONG AfxReadStringLength(CArchive& ar, bool* wide);

// A string as length and characters. Reading accepts the wide form (16-bit characters)
// and narrows it: characters 0-255 keep their byte, others become '?'.
CArchive& operator<<(CArchive& ar, const CString& s);
CArchive& operator>>(CArchive& ar, CString& s);
// A text literal is written as a string (without this it would go as a bool byte).
CArchive& operator<<(CArchive& ar, const char* text);

// Points, sizes and rectangles as raw blocks of 8, 8 and 16 bytes.
CArchive& operator<<(CArchive& ar, const POINT& p);
CArchive& operator>>(CArchive& ar, POINT& p);
CArchive& operator<<(CArchive& ar, const SIZE& s);
CArchive& operator>>(CArchive& ar, SIZE& s);
CArchive& operator<<(CArchive& ar, const RECT& r);
CArchive& operator>>(CArchive& ar, RECT& r);
