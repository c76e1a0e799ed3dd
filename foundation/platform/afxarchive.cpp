#include "foundation/platform/afxarchive.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(std::endian::native == std::endian::little, "the archive copies little-endian values as they lie");

CRuntimeClass CFileException::classCFileException = {"CFileException", static_cast<int>(sizeof(CFileException)),
                                                     0xFFFF, nullptr, RUNTIME_CLASS(CException), nullptr};
CRuntimeClass CArchiveException::classCArchiveException = {"CArchiveException",
                                                           static_cast<int>(sizeof(CArchiveException)), 0xFFFF,
                                                           nullptr, RUNTIME_CLASS(CException), nullptr};
CRuntimeClass CFile::classCFile = {"CFile", static_cast<int>(sizeof(CFile)), 0xFFFF, nullptr, RUNTIME_CLASS(CObject),
                                   nullptr};
CRuntimeClass CMemFile::classCMemFile = {"CMemFile", static_cast<int>(sizeof(CMemFile)), 0xFFFF, nullptr,
                                         RUNTIME_CLASS(CFile), nullptr};
CRuntimeClass CStdioFile::classCStdioFile = {"CStdioFile", static_cast<int>(sizeof(CStdioFile)), 0xFFFF, nullptr,
                                             RUNTIME_CLASS(CFile), nullptr};

namespace {

const AFX_CLASSINIT g_initFileClasses[] = {
    AFX_CLASSINIT(RUNTIME_CLASS(CFileException)), AFX_CLASSINIT(RUNTIME_CLASS(CArchiveException)),
    AFX_CLASSINIT(RUNTIME_CLASS(CFile)), AFX_CLASSINIT(RUNTIME_CLASS(CMemFile)), AFX_CLASSINIT(RUNTIME_CLASS(CStdioFile))};

// Tags of the object format.
constexpr WORD kNullTag = 0;
constexpr WORD kNewClassTag = 0xFFFF;
constexpr WORD kClassTag = 0x8000;
constexpr DWORD kBigClassTag = 0x80000000u;
constexpr WORD kBigObjectTag = 0x7FFF;
constexpr DWORD kMaxMapCount = 0x3FFFFFFE;

}  // namespace

// Exceptions ---------------------------------------------------------------------------------

int CFileException::OsErrorToException(LONG osError)
{
    switch (osError) {
    case 0: return none;
    case ENOENT: return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP: return badPath;
    case EMFILE:
    case ENFILE: return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS: return accessDenied;
    case EBADF: return invalidFile;
    case EBUSY:
    case ETXTBSY: return sharingViolation;
    case ENOSPC:
    case EFBIG:
    case EDQUOT: return diskFull;
    case ESPIPE:
    case EINVAL: return badSeek;
    case EIO: return hardIO;
    default: return genericException;
    }
}

BOOL CFileException::GetErrorMessage(char* text, UINT maxLen, UINT* helpContext) const
{
    if (helpContext)
        *helpContext = 0;
    if (!text || !maxLen)
        return FALSE;
    const char* name = m_strFileName.IsEmpty() ? "an unnamed file" : m_strFileName.GetString();
    const char* form;
    switch (m_cause) {
    case fileNotFound: form = "%s was not found."; break;
    case badPath: form = "%s contains an incorrect path."; break;
    case tooManyOpenFiles: form = "%s could not be opened because there are too many open files."; break;
    case accessDenied: form = "Access to %s was denied."; break;
    case invalidFile: form = "An incorrect file handle was associated with %s."; break;
    case badSeek: form = "An error occurred while setting the file position for %s."; break;
    case hardIO: form = "A hardware I/O error was reported while accessing %s."; break;
    case sharingViolation: form = "A sharing violation occurred while accessing %s."; break;
    case lockViolation: form = "A locking violation occurred while accessing %s."; break;
    case diskFull: form = "Disk full while accessing %s."; break;
    case endOfFile: form = "An attempt was made to access %s past its end."; break;
    default: form = "An unexpected error occurred while accessing %s."; break;
    }
    std::snprintf(text, maxLen, form, name);
    return TRUE;
}

void AfxThrowFileException(int cause, LONG osError, const char* fileName)
{
    throw new CFileException(cause, osError, fileName);
}

BOOL CArchiveException::GetErrorMessage(char* text, UINT maxLen, UINT* helpContext) const
{
    if (helpContext)
        *helpContext = 0;
    if (!text || !maxLen)
        return FALSE;
    const char* name = m_strFileName.IsEmpty() ? "an unnamed file" : m_strFileName.GetString();
    const char* form;
    switch (m_cause) {
    case readOnly: form = "Attempted to write to %s while it was being read."; break;
    case endOfFile: form = "Unexpected end of file while reading %s."; break;
    case writeOnly: form = "Attempted to read from %s while it was being written."; break;
    case badIndex:
    case badClass:
    case badSchema: form = "Unexpected file format of %s."; break;
    default: form = "An unexpected error occurred while reading or writing %s."; break;
    }
    std::snprintf(text, maxLen, form, name);
    return TRUE;
}

void AfxThrowArchiveException(int cause, const char* fileName)
{
    throw new CArchiveException(cause, fileName);
}

// CFile --------------------------------------------------------------------------------------

CFile::CFile(const char* fileName, UINT openFlags)
{
    CFileException error;
    if (!Open(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CFile::~CFile()
{
    if (m_hFile != hFileNull)
        ::close(m_hFile);
}

BOOL CFile::Open(const char* fileName, UINT openFlags, CFileException* error)
{
    if (m_hFile != hFileNull)
        Abort();
    m_strFileName = fileName;
    if (!fileName || !*fileName) {
        if (error) {
            error->m_cause = CFileException::badPath;
            error->m_lOsError = ENOENT;
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    int flags = O_CLOEXEC;
    switch (openFlags & 3) {
    case modeWrite: flags |= O_WRONLY; break;
    case modeReadWrite: flags |= O_RDWR; break;
    default: flags |= O_RDONLY; break;
    }
    if (openFlags & modeCreate) {
        flags |= O_CREAT;
        if (!(openFlags & modeNoTruncate))
            flags |= O_TRUNC;
    }
    int fd;
    do
        fd = ::open(fileName, flags, 0666);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        if (error) {
            error->m_lOsError = errno;
            error->m_cause = CFileException::OsErrorToException(errno);
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
        ::close(fd);
        if (error) {
            error->m_lOsError = EISDIR;
            error->m_cause = CFileException::accessDenied;
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    m_hFile = fd;
    return TRUE;
}

UINT CFile::Read(void* buffer, UINT count)
{
    if (m_hFile == hFileNull)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    auto* p = static_cast<BYTE*>(buffer);
    UINT done = 0;
    while (done < count) {
        const ssize_t n = ::read(m_hFile, p + done, count - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
        }
        if (n == 0)
            break;
        done += static_cast<UINT>(n);
    }
    return done;
}

void CFile::Write(const void* buffer, UINT count)
{
    if (m_hFile == hFileNull)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    const auto* p = static_cast<const BYTE*>(buffer);
    UINT done = 0;
    while (done < count) {
        const ssize_t n = ::write(m_hFile, p + done, count - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
        }
        if (n == 0)
            AfxThrowFileException(CFileException::diskFull, ENOSPC, m_strFileName);
        done += static_cast<UINT>(n);
    }
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from)
{
    if (m_hFile == hFileNull)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    const int whence = from == current ? SEEK_CUR : from == end ? SEEK_END : SEEK_SET;
    const off_t r = ::lseek(m_hFile, static_cast<off_t>(offset), whence);
    if (r < 0)
        AfxThrowFileException(CFileException::badSeek, errno, m_strFileName);
    return static_cast<ULONGLONG>(r);
}

ULONGLONG CFile::GetPosition() const
{
    if (m_hFile == hFileNull)
        return 0;
    const off_t r = ::lseek(m_hFile, 0, SEEK_CUR);
    return r < 0 ? 0 : static_cast<ULONGLONG>(r);
}

ULONGLONG CFile::GetLength() const
{
    struct stat st {};
    if (m_hFile == hFileNull || ::fstat(m_hFile, &st) != 0)
        return 0;
    return static_cast<ULONGLONG>(st.st_size);
}

void CFile::SetLength(ULONGLONG newLength)
{
    if (m_hFile == hFileNull || ::ftruncate(m_hFile, static_cast<off_t>(newLength)) != 0)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
}

void CFile::Flush() {}

void CFile::Close()
{
    if (m_hFile == hFileNull)
        return;
    const int r = ::close(m_hFile);
    m_hFile = hFileNull;
    if (r != 0 && errno != EINTR)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
}

void CFile::Abort()
{
    if (m_hFile != hFileNull)
        ::close(m_hFile);
    m_hFile = hFileNull;
}

CString CFile::GetFileName() const
{
    const int slash = std::max(m_strFileName.ReverseFind('/'), m_strFileName.ReverseFind('\\'));
    return m_strFileName.Mid(slash + 1);
}

CString CFile::GetFileTitle() const
{
    CString name = GetFileName();
    const int dot = name.ReverseFind('.');
    return dot > 0 ? name.Left(dot) : name;
}

void CFile::Remove(const char* fileName)
{
    if (!fileName || ::unlink(fileName) != 0)
        AfxThrowFileException(CFileException::OsErrorToException(fileName ? errno : ENOENT), errno, fileName);
}

void CFile::Rename(const char* oldName, const char* newName)
{
    if (!oldName || !newName || ::rename(oldName, newName) != 0)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, oldName);
}

// CMemFile -----------------------------------------------------------------------------------

CMemFile::CMemFile(UINT growBytes) : m_nGrowBytes(growBytes ? growBytes : 1024) {}

CMemFile::CMemFile(BYTE* buffer, UINT size, UINT growBytes) : m_nGrowBytes(growBytes)
{
    Attach(buffer, size, growBytes);
}

CMemFile::~CMemFile()
{
    CMemFile::Close();
}

void CMemFile::Attach(BYTE* buffer, UINT size, UINT growBytes)
{
    assert(m_lpBuffer == nullptr);
    if (m_lpBuffer && m_bAutoDelete)
        Free(m_lpBuffer);
    m_lpBuffer = buffer;
    m_nBufferSize = buffer ? size : 0;
    m_nGrowBytes = growBytes;
    m_nFileSize = growBytes == 0 ? m_nBufferSize : 0;
    m_nPosition = 0;
    m_bAutoDelete = FALSE;
}

BYTE* CMemFile::Detach()
{
    BYTE* b = m_lpBuffer;
    m_lpBuffer = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
    m_bAutoDelete = TRUE;
    if (m_nGrowBytes == 0)
        m_nGrowBytes = 1024;
    return b;
}

BYTE* CMemFile::Alloc(size_t bytes) { return static_cast<BYTE*>(std::malloc(bytes)); }
BYTE* CMemFile::Realloc(BYTE* block, size_t bytes) { return static_cast<BYTE*>(std::realloc(block, bytes)); }
void CMemFile::Free(BYTE* block) { std::free(block); }

void CMemFile::GrowFile(size_t newLength)
{
    if (newLength <= m_nBufferSize)
        return;
    if (m_nGrowBytes == 0)
        AfxThrowMemoryException();
    size_t want = m_nBufferSize;
    while (want < newLength) {
        if (want > SIZE_MAX - m_nGrowBytes)
            AfxThrowMemoryException();
        want += m_nGrowBytes;
    }
    BYTE* b = m_lpBuffer ? Realloc(m_lpBuffer, want) : Alloc(want);
    if (!b)
        AfxThrowMemoryException();
    m_lpBuffer = b;
    m_nBufferSize = want;
}

UINT CMemFile::Read(void* buffer, UINT count)
{
    if (m_nPosition >= m_nFileSize || count == 0)
        return 0;
    const size_t n = std::min<size_t>(count, m_nFileSize - m_nPosition);
    std::memcpy(buffer, m_lpBuffer + m_nPosition, n);
    m_nPosition += n;
    return static_cast<UINT>(n);
}

void CMemFile::Write(const void* buffer, UINT count)
{
    if (count == 0)
        return;
    const size_t end = m_nPosition + count;
    GrowFile(end);
    if (m_nPosition > m_nFileSize)  // a seek past the end leaves a gap of zeros
        std::memset(m_lpBuffer + m_nFileSize, 0, m_nPosition - m_nFileSize);
    std::memcpy(m_lpBuffer + m_nPosition, buffer, count);
    m_nPosition = end;
    m_nFileSize = std::max(m_nFileSize, end);
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from)
{
    const LONGLONG base = from == current ? static_cast<LONGLONG>(m_nPosition)
                          : from == end   ? static_cast<LONGLONG>(m_nFileSize)
                                          : 0;
    const LONGLONG pos = base + offset;
    if (pos < 0)
        AfxThrowFileException(CFileException::badSeek, EINVAL, m_strFileName);
    m_nPosition = static_cast<size_t>(pos);
    return static_cast<ULONGLONG>(pos);
}

void CMemFile::SetLength(ULONGLONG newLength)
{
    if (newLength > m_nBufferSize)
        GrowFile(static_cast<size_t>(newLength));
    if (newLength > m_nFileSize)
        std::memset(m_lpBuffer + m_nFileSize, 0, static_cast<size_t>(newLength) - m_nFileSize);
    m_nFileSize = static_cast<size_t>(newLength);
    m_nPosition = std::min(m_nPosition, m_nFileSize);
}

void CMemFile::Close()
{
    if (m_lpBuffer && m_bAutoDelete)
        Free(m_lpBuffer);
    m_lpBuffer = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
}

// CStdioFile ---------------------------------------------------------------------------------

CStdioFile::CStdioFile(const char* fileName, UINT openFlags)
{
    CFileException error;
    if (!Open(fileName, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
}

CStdioFile::~CStdioFile()
{
    CStdioFile::Abort();
}

BOOL CStdioFile::Open(const char* fileName, UINT openFlags, CFileException* error)
{
    if (m_pStream)
        Abort();
    if (!CFile::Open(fileName, openFlags & ~UINT(typeText | typeBinary), error))
        return FALSE;
    const char* mode = (openFlags & 3) == modeWrite ? "wb" : (openFlags & 3) == modeReadWrite ? "r+b" : "rb";
    m_pStream = ::fdopen(m_hFile, mode);
    if (!m_pStream) {
        const int e = errno;
        CFile::Abort();
        if (error) {
            error->m_lOsError = e;
            error->m_cause = CFileException::OsErrorToException(e);
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    m_bText = (openFlags & typeBinary) == 0;
    return TRUE;
}

void CStdioFile::WriteString(const char* text)
{
    if (text)
        Write(text, static_cast<UINT>(std::strlen(text)));
}

char* CStdioFile::ReadString(char* buffer, UINT maxLen)
{
    if (!m_pStream || !buffer || maxLen == 0)
        return nullptr;
    if (maxLen > static_cast<UINT>(INT32_MAX))
        maxLen = INT32_MAX;
    if (!std::fgets(buffer, static_cast<int>(maxLen), m_pStream)) {
        if (std::ferror(m_pStream))
            AfxThrowFileException(CFileException::hardIO, errno, m_strFileName);
        buffer[0] = '\0';
        return nullptr;
    }
    if (m_bText) {
        const size_t n = std::strlen(buffer);
        if (n >= 2 && buffer[n - 2] == '\r' && buffer[n - 1] == '\n') {
            buffer[n - 2] = '\n';
            buffer[n - 1] = '\0';
        }
    }
    return buffer;
}

BOOL CStdioFile::ReadString(CString& line)
{
    line.Empty();
    if (!m_pStream)
        return FALSE;
    char piece[256];
    bool any = false;
    while (std::fgets(piece, sizeof piece, m_pStream)) {
        any = true;
        const size_t n = std::strlen(piece);
        if (n && piece[n - 1] == '\n') {
            line.Append(piece, static_cast<int>(n - 1));
            if (m_bText && !line.IsEmpty() && line[line.GetLength() - 1] == '\r')
                line.Delete(line.GetLength() - 1);
            return TRUE;
        }
        line.Append(piece, static_cast<int>(n));
    }
    if (std::ferror(m_pStream))
        AfxThrowFileException(CFileException::hardIO, errno, m_strFileName);
    return any ? TRUE : FALSE;
}

UINT CStdioFile::Read(void* buffer, UINT count)
{
    if (!m_pStream)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    const size_t n = std::fread(buffer, 1, count, m_pStream);
    if (n < count && std::ferror(m_pStream))
        AfxThrowFileException(CFileException::hardIO, errno, m_strFileName);
    return static_cast<UINT>(n);
}

void CStdioFile::Write(const void* buffer, UINT count)
{
    if (!m_pStream)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    if (std::fwrite(buffer, 1, count, m_pStream) != count)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
}

ULONGLONG CStdioFile::Seek(LONGLONG offset, UINT from)
{
    if (!m_pStream)
        AfxThrowFileException(CFileException::invalidFile, EBADF, m_strFileName);
    const int whence = from == current ? SEEK_CUR : from == end ? SEEK_END : SEEK_SET;
    if (::fseeko(m_pStream, static_cast<off_t>(offset), whence) != 0)
        AfxThrowFileException(CFileException::badSeek, errno, m_strFileName);
    return GetPosition();
}

ULONGLONG CStdioFile::GetPosition() const
{
    if (!m_pStream)
        return 0;
    const off_t p = ::ftello(m_pStream);
    return p < 0 ? 0 : static_cast<ULONGLONG>(p);
}

ULONGLONG CStdioFile::GetLength() const
{
    if (!m_pStream)
        return 0;
    std::fflush(m_pStream);
    return CFile::GetLength();
}

void CStdioFile::Flush()
{
    if (m_pStream && std::fflush(m_pStream) != 0)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
}

void CStdioFile::Close()
{
    if (!m_pStream)
        return;
    const int r = std::fclose(m_pStream);
    m_pStream = nullptr;
    m_hFile = hFileNull;
    if (r != 0)
        AfxThrowFileException(CFileException::OsErrorToException(errno), errno, m_strFileName);
}

void CStdioFile::Abort()
{
    if (m_pStream)
        std::fclose(m_pStream);
    m_pStream = nullptr;
    m_hFile = hFileNull;
}

// CArchive -----------------------------------------------------------------------------------

CArchive::CArchive(CFile* file, UINT mode, int bufSize, void* buffer)
    : m_pFile(file), m_nMode(mode), m_bUserBuf(buffer != nullptr)
{
    assert(file != nullptr);
    // A tiny buffer would only slow things; the format doesn't depend on its size.
    m_nBufSize = static_cast<UINT>(std::max(bufSize, 128));
    if (buffer && bufSize >= 128) {
        m_lpBufStart = static_cast<BYTE*>(buffer);
    } else {
        m_ownBuffer.reset(new BYTE[m_nBufSize]);
        m_lpBufStart = m_ownBuffer.get();
    }
    m_lpBufCur = m_lpBufStart;
    // A loading archive starts empty and fills on demand; a storing one has all of its
    // buffer free.
    m_lpBufMax = IsLoading() ? m_lpBufStart : m_lpBufStart + m_nBufSize;
    m_strFileName = file ? file->GetFilePath() : CString();
    m_loadArray.push_back(LoadEntry{nullptr, false, 0});
}

CArchive::~CArchive()
{
    if (!m_pFile)
        return;
    if (m_nMode & bNoFlushOnDelete) {
        Abort();
        return;
    }
    try {
        Close();
    } catch (CException* e) {
        e->Delete();
        m_pFile = nullptr;
    } catch (...) {
        m_pFile = nullptr;
    }
}

void CArchive::raise(int cause) const
{
    AfxThrowArchiveException(cause, m_strFileName);
}

void CArchive::checkLoading()
{
    if (!IsLoading())
        raise(CArchiveException::writeOnly);
}

void CArchive::checkStoring()
{
    if (!IsStoring())
        raise(CArchiveException::readOnly);
}

void CArchive::flushBuffer()
{
    if (m_lpBufCur != m_lpBufStart) {
        const UINT n = static_cast<UINT>(m_lpBufCur - m_lpBufStart);
        m_lpBufCur = m_lpBufStart;
        m_pFile->Write(m_lpBufStart, n);
    }
}

// Makes at least `need` bytes (at most the buffer's size) available at m_lpBufCur unless
// the file ends first; never throws for a short file.
void CArchive::fillBuffer(UINT need)
{
    assert(need <= m_nBufSize);
    const UINT have = static_cast<UINT>(m_lpBufMax - m_lpBufCur);
    if (have >= need)
        return;
    if (have && m_lpBufCur != m_lpBufStart)
        std::memmove(m_lpBufStart, m_lpBufCur, have);
    m_lpBufCur = m_lpBufStart;
    m_lpBufMax = m_lpBufStart + have;
    while (static_cast<UINT>(m_lpBufMax - m_lpBufStart) < need) {
        const UINT room = m_nBufSize - static_cast<UINT>(m_lpBufMax - m_lpBufStart);
        const UINT got = m_pFile->Read(m_lpBufMax, room);
        if (got == 0)
            break;
        m_lpBufMax += got;
    }
}

ULONGLONG CArchive::bytesLeft() const
{
    const ULONGLONG inBuffer = static_cast<ULONGLONG>(m_lpBufMax - m_lpBufCur);
    const ULONGLONG len = m_pFile->GetLength(), pos = m_pFile->GetPosition();
    return inBuffer + (len > pos ? len - pos : 0);
}

void CArchive::Flush()
{
    if (!m_pFile)
        return;
    if (IsStoring()) {
        flushBuffer();
        m_pFile->Flush();
    } else if (m_lpBufMax != m_lpBufCur) {
        // Hand the unread part back so the file's position is where reading stopped.
        m_pFile->Seek(-static_cast<LONGLONG>(m_lpBufMax - m_lpBufCur), CFile::current);
        m_lpBufCur = m_lpBufMax = m_lpBufStart;
    }
}

void CArchive::Close()
{
    if (!m_pFile)
        return;
    Flush();
    m_pFile = nullptr;
}

void CArchive::Abort()
{
    m_pFile = nullptr;
}

UINT CArchive::Read(void* buffer, UINT count)
{
    checkLoading();
    if (count == 0)
        return 0;
    auto* out = static_cast<BYTE*>(buffer);
    UINT done = 0;
    // What is buffered first, then big remainders straight from the file.
    const UINT buffered = std::min(count, static_cast<UINT>(m_lpBufMax - m_lpBufCur));
    std::memcpy(out, m_lpBufCur, buffered);
    m_lpBufCur += buffered;
    done = buffered;
    while (done < count) {
        const UINT left = count - done;
        if (left >= m_nBufSize) {
            const UINT got = m_pFile->Read(out + done, left - left % m_nBufSize);
            if (got == 0)
                break;
            done += got;
        } else {
            fillBuffer(left);
            const UINT n = std::min(left, static_cast<UINT>(m_lpBufMax - m_lpBufCur));
            if (n == 0)
                break;
            std::memcpy(out + done, m_lpBufCur, n);
            m_lpBufCur += n;
            done += n;
        }
    }
    if (done < count)
        raise(CArchiveException::endOfFile);
    return done;
}

void CArchive::Write(const void* buffer, UINT count)
{
    checkStoring();
    const auto* in = static_cast<const BYTE*>(buffer);
    while (count) {
        if (m_lpBufCur == m_lpBufMax)
            flushBuffer();
        const UINT n = std::min(count, static_cast<UINT>(m_lpBufMax - m_lpBufCur));
        std::memcpy(m_lpBufCur, in, n);
        m_lpBufCur += n;
        in += n;
        count -= n;
    }
}

template <typename T> void CArchive::put(T v)
{
    checkStoring();
    if (static_cast<size_t>(m_lpBufMax - m_lpBufCur) < sizeof(T))
        flushBuffer();
    std::memcpy(m_lpBufCur, &v, sizeof(T));
    m_lpBufCur += sizeof(T);
}

template <typename T> T CArchive::get()
{
    checkLoading();
    if (static_cast<size_t>(m_lpBufMax - m_lpBufCur) < sizeof(T)) {
        fillBuffer(sizeof(T));
        if (static_cast<size_t>(m_lpBufMax - m_lpBufCur) < sizeof(T)) {
            m_lpBufCur = m_lpBufMax;  // what was there is used up by the failed read
            raise(CArchiveException::endOfFile);
        }
    }
    T v;
    std::memcpy(&v, m_lpBufCur, sizeof(T));
    m_lpBufCur += sizeof(T);
    return v;
}

CArchive& CArchive::operator<<(bool v) { put<BYTE>(v ? 1 : 0); return *this; }
CArchive& CArchive::operator<<(char v) { put(v); return *this; }
CArchive& CArchive::operator<<(signed char v) { put(v); return *this; }
CArchive& CArchive::operator<<(unsigned char v) { put(v); return *this; }
CArchive& CArchive::operator<<(short v) { put(v); return *this; }
CArchive& CArchive::operator<<(unsigned short v) { put(v); return *this; }
CArchive& CArchive::operator<<(int v) { put(v); return *this; }
CArchive& CArchive::operator<<(unsigned int v) { put(v); return *this; }
CArchive& CArchive::operator<<(long v) { put(static_cast<std::int32_t>(v)); return *this; }
CArchive& CArchive::operator<<(unsigned long v) { put(static_cast<std::uint32_t>(v)); return *this; }
CArchive& CArchive::operator<<(long long v) { put(v); return *this; }
CArchive& CArchive::operator<<(unsigned long long v) { put(v); return *this; }
CArchive& CArchive::operator<<(float v) { put(v); return *this; }
CArchive& CArchive::operator<<(double v) { put(v); return *this; }

CArchive& CArchive::operator>>(bool& v) { v = get<BYTE>() != 0; return *this; }
CArchive& CArchive::operator>>(char& v) { v = get<char>(); return *this; }
CArchive& CArchive::operator>>(signed char& v) { v = get<signed char>(); return *this; }
CArchive& CArchive::operator>>(unsigned char& v) { v = get<unsigned char>(); return *this; }
CArchive& CArchive::operator>>(short& v) { v = get<short>(); return *this; }
CArchive& CArchive::operator>>(unsigned short& v) { v = get<unsigned short>(); return *this; }
CArchive& CArchive::operator>>(int& v) { v = get<int>(); return *this; }
CArchive& CArchive::operator>>(unsigned int& v) { v = get<unsigned int>(); return *this; }
CArchive& CArchive::operator>>(long& v) { v = get<std::int32_t>(); return *this; }
CArchive& CArchive::operator>>(unsigned long& v) { v = get<std::uint32_t>(); return *this; }
CArchive& CArchive::operator>>(long long& v) { v = get<long long>(); return *this; }
CArchive& CArchive::operator>>(unsigned long long& v) { v = get<unsigned long long>(); return *this; }
CArchive& CArchive::operator>>(float& v) { v = get<float>(); return *this; }
CArchive& CArchive::operator>>(double& v) { v = get<double>(); return *this; }

void CArchive::WriteString(const char* text)
{
    if (text)
        Write(text, static_cast<UINT>(std::strlen(text)));
}

char* CArchive::ReadString(char* buffer, UINT maxLen)
{
    checkLoading();
    if (!buffer || maxLen == 0)
        return nullptr;
    UINT n = 0;
    bool any = false;
    while (n + 1 < maxLen) {
        fillBuffer(1);
        if (m_lpBufCur == m_lpBufMax)
            break;
        any = true;
        const char c = static_cast<char>(*m_lpBufCur++);
        if (c == '\r') {
            fillBuffer(1);
            if (m_lpBufCur != m_lpBufMax && *m_lpBufCur == '\n')
                continue;  // the '\n' ends the line next time round
        }
        buffer[n++] = c;
        if (c == '\n')
            break;
    }
    buffer[n] = '\0';
    return any ? buffer : nullptr;
}

BOOL CArchive::ReadString(CString& line)
{
    line.Empty();
    char piece[128];
    bool any = false;
    while (char* p = ReadString(piece, sizeof piece)) {
        any = true;
        const size_t n = std::strlen(p);
        if (n && p[n - 1] == '\n') {
            line.Append(p, static_cast<int>(n - 1));
            return TRUE;
        }
        line.Append(p, static_cast<int>(n));
    }
    return any ? TRUE : FALSE;
}

void CArchive::WriteCount(DWORD_PTR count)
{
    if (count < 0xFFFF) {
        put<WORD>(static_cast<WORD>(count));
        return;
    }
    put<WORD>(0xFFFF);
    if (count < 0xFFFFFFFFu) {
        put<DWORD>(static_cast<DWORD>(count));
        return;
    }
    put<DWORD>(0xFFFFFFFFu);
    put<ULONGLONG>(static_cast<ULONGLONG>(count));
}

DWORD_PTR CArchive::ReadCount()
{
    ULONGLONG count = get<WORD>();
    if (count == 0xFFFF) {
        count = get<DWORD>();
        if (count == 0xFFFFFFFFu)
            count = get<ULONGLONG>();
    }
    // Every element takes at least one byte, so a larger count can only be corrupt.
    if (count > bytesLeft())
        raise(CArchiveException::endOfFile);
    return static_cast<DWORD_PTR>(count);
}

UINT CArchive::GetObjectSchema()
{
    const UINT s = m_nObjectSchema;
    m_nObjectSchema = static_cast<UINT>(-1);
    return s;
}

void CArchive::MapObject(const CObject* object)
{
    if (IsStoring()) {
        if (object && m_storeMap.emplace(object, m_nMapCount).second)
            ++m_nMapCount;
    } else {
        if (m_nMapCount >= kMaxMapCount)
            raise(CArchiveException::badIndex);
        m_loadArray.push_back(LoadEntry{const_cast<CObject*>(object), false, 0});
        ++m_nMapCount;
    }
}

void CArchive::WriteClass(const CRuntimeClass* cls)
{
    checkStoring();
    assert(cls != nullptr);
    const auto it = m_storeMap.find(cls);
    if (it != m_storeMap.end()) {
        if (it->second < kBigObjectTag) {
            put<WORD>(static_cast<WORD>(kClassTag | it->second));
        } else {
            put<WORD>(kBigObjectTag);
            put<DWORD>(kBigClassTag | it->second);
        }
        return;
    }
    put<WORD>(kNewClassTag);
    cls->Store(*this);
    if (m_nMapCount >= kMaxMapCount)
        raise(CArchiveException::badIndex);
    m_storeMap.emplace(cls, m_nMapCount++);
}

void CArchive::WriteObject(const CObject* object)
{
    checkStoring();
    if (!object) {
        put<WORD>(kNullTag);
        return;
    }
    const auto it = m_storeMap.find(object);
    if (it != m_storeMap.end()) {
        if (it->second < kBigObjectTag) {
            put<WORD>(static_cast<WORD>(it->second));
        } else {
            put<WORD>(kBigObjectTag);
            put<DWORD>(it->second);
        }
        return;
    }
    WriteClass(object->GetRuntimeClass());
    if (m_nMapCount >= kMaxMapCount)
        raise(CArchiveException::badIndex);
    // Entered before its own list is written, so references to it from inside are
    // back-references.
    m_storeMap.emplace(object, m_nMapCount++);
    const_cast<CObject*>(object)->Serialize(*this);
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* requested, UINT* schema, DWORD* objectTag)
{
    checkLoading();
    const WORD tag = get<WORD>();
    const DWORD obTag = tag == kBigObjectTag ? get<DWORD>()
                                             : (static_cast<DWORD>(tag & kClassTag) << 16) | (tag & ~kClassTag & 0xFFFF);
    if (!(obTag & kBigClassTag)) {
        if (!objectTag)
            raise(CArchiveException::badIndex);
        *objectTag = obTag;
        return nullptr;
    }
    CRuntimeClass* cls;
    UINT fileSchema;
    if (tag == kNewClassTag) {
        cls = CRuntimeClass::Load(*this, &fileSchema);
        if (!cls)
            raise(CArchiveException::badClass);
        if ((cls->m_wSchema & ~VERSIONABLE_SCHEMA) != fileSchema && !(cls->m_wSchema & VERSIONABLE_SCHEMA))
            raise(CArchiveException::badSchema);
        if (m_nMapCount >= kMaxMapCount)
            raise(CArchiveException::badIndex);
        m_loadArray.push_back(LoadEntry{cls, true, fileSchema});
        ++m_nMapCount;
    } else {
        const DWORD index = obTag & ~kBigClassTag;
        if (index == 0 || index >= m_loadArray.size() || !m_loadArray[index].isClass)
            raise(CArchiveException::badIndex);
        cls = static_cast<CRuntimeClass*>(m_loadArray[index].ptr);
        fileSchema = m_loadArray[index].schema;
    }
    if (requested && !cls->IsDerivedFrom(requested))
        raise(CArchiveException::badClass);
    if (schema)
        *schema = fileSchema;
    else
        m_nObjectSchema = fileSchema;
    if (objectTag)
        *objectTag = obTag;
    return cls;
}

void CArchive::SerializeClass(const CRuntimeClass* cls)
{
    if (IsStoring())
        WriteClass(cls);
    else
        ReadClass(cls, nullptr, nullptr);
}

CObject* CArchive::ReadObject(const CRuntimeClass* requested)
{
    UINT schema = 0;
    DWORD obTag = 0;
    CRuntimeClass* cls = ReadClass(requested, &schema, &obTag);
    if (!cls) {
        if (obTag >= m_loadArray.size() || m_loadArray[obTag].isClass)
            raise(CArchiveException::badIndex);
        auto* object = static_cast<CObject*>(m_loadArray[obTag].ptr);
        if (object && requested && !object->IsKindOf(requested))
            raise(CArchiveException::badClass);
        return object;
    }
    CObject* object = cls->CreateObject();
    if (!object)
        raise(CArchiveException::badClass);
    if (m_nMapCount >= kMaxMapCount) {
        delete object;
        raise(CArchiveException::badIndex);
    }
    const size_t slot = m_loadArray.size();
    m_loadArray.push_back(LoadEntry{object, false, 0});
    ++m_nMapCount;
    const UINT savedSchema = m_nObjectSchema;
    m_nObjectSchema = schema;
    try {
        object->Serialize(*this);
    } catch (...) {
        // Nobody got the object: it goes, and its slot with it.
        m_loadArray[slot].ptr = nullptr;
        m_nObjectSchema = savedSchema;
        delete object;
        throw;
    }
    m_nObjectSchema = savedSchema;
    return object;
}

// Strings and small records ------------------------------------------------------------------

void AfxWriteStringLength(CArchive& ar, ULONGLONG length, bool wide)
{
    if (wide) {
        ar << static_cast<BYTE>(0xFF);
        ar << static_cast<WORD>(0xFFFE);
    }
    if (length < 255) {
        ar << static_cast<BYTE>(length);
    } else if (length < 0xFFFE) {
        ar << static_cast<BYTE>(0xFF);
        ar << static_cast<WORD>(length);
    } else if (length < 0xFFFFFFFFu) {
        ar << static_cast<BYTE>(0xFF);
        ar << static_cast<WORD>(0xFFFF);
        ar << static_cast<DWORD>(length);
    } else {
        ar << static_cast<BYTE>(0xFF);
        ar << static_cast<WORD>(0xFFFF);
        ar << static_cast<DWORD>(0xFFFFFFFFu);
        ar << static_cast<ULONGLONG>(length);
    }
}

ULONGLONG AfxReadStringLength(CArchive& ar, bool* wide)
{
    if (wide)
        *wide = false;
    BYTE b = 0;
    ar >> b;
    if (b < 0xFF)
        return b;
    WORD w = 0;
    ar >> w;
    if (w == 0xFFFE) {
        if (wide)
            *wide = true;
        ar >> b;
        if (b < 0xFF)
            return b;
        ar >> w;
    }
    if (w < 0xFFFF)
        return w;
    DWORD d = 0;
    ar >> d;
    if (d < 0xFFFFFFFFu)
        return d;
    ULONGLONG q = 0;
    ar >> q;
    return q;
}

CArchive& operator<<(CArchive& ar, const CString& s)
{
    AfxWriteStringLength(ar, static_cast<ULONGLONG>(s.GetLength()), false);
    ar.Write(s.GetString(), static_cast<UINT>(s.GetLength()));
    return ar;
}

CArchive& operator<<(CArchive& ar, const char* text)
{
    const size_t n = text ? std::strlen(text) : 0;
    AfxWriteStringLength(ar, n, false);
    ar.Write(text, static_cast<UINT>(n));
    return ar;
}

CArchive& operator>>(CArchive& ar, CString& s)
{
    if (!ar.IsLoading())
        AfxThrowArchiveException(CArchiveException::writeOnly, ar.m_strFileName);
    bool wide = false;
    const ULONGLONG length = AfxReadStringLength(ar, &wide);
    // Refused before anything is allocated: the characters must be in the file.
    const ULONGLONG need = wide ? length * 2 : length;
    if (length > 0x7FFFFFFF || need > ar.GetBytesLeft())
        AfxThrowArchiveException(CArchiveException::endOfFile, ar.m_strFileName);
    if (!wide) {
        CString r;
        char* p = r.GetBufferSetLength(static_cast<int>(length));
        ar.Read(p, static_cast<UINT>(length));
        r.ReleaseBuffer(static_cast<int>(length));
        s = std::move(r);
        return ar;
    }
    std::vector<WORD> chars(static_cast<size_t>(length));
    ar.Read(chars.data(), static_cast<UINT>(need));
    CString r;
    char* p = r.GetBufferSetLength(static_cast<int>(length));
    for (size_t i = 0; i < chars.size(); ++i)
        p[i] = chars[i] < 0x100 ? static_cast<char>(chars[i]) : '?';
    r.ReleaseBuffer(static_cast<int>(length));
    s = std::move(r);
    return ar;
}

// Points, sizes and rectangles go as the raw blocks they are in memory (8, 8, 16 bytes).
namespace {
template <class T>
CArchive& WriteRaw(CArchive& ar, const T& v)
{
    ar.Write(&v, sizeof v);
    return ar;
}
template <class T>
CArchive& ReadRaw(CArchive& ar, T& v)
{
    ar.Read(&v, sizeof v);
    return ar;
}
}  // namespace

CArchive& operator<<(CArchive& ar, const POINT& p) { return WriteRaw(ar, p); }
CArchive& operator>>(CArchive& ar, POINT& p) { return ReadRaw(ar, p); }
CArchive& operator<<(CArchive& ar, const SIZE& s) { return WriteRaw(ar, s); }
CArchive& operator>>(CArchive& ar, SIZE& s) { return ReadRaw(ar, s); }
CArchive& operator<<(CArchive& ar, const RECT& r) { return WriteRaw(ar, r); }
CArchive& operator>>(CArchive& ar, RECT& r) { return ReadRaw(ar, r); }
