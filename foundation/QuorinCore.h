// The few services of the core library that the renderer relies on: a lock with a timed
// acquire, a span of time, a scope guard, and an assertion sink that records what failed
// and lets the caller go on.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace Quorin {
namespace Core {

// Units of an Elapse. Seconds (3) is the unit of the renderer's "wait without a practical
// limit": 0x7FFFFFFF seconds, some 68 years.
enum TimeUnits { Nanoseconds = 0, Microseconds = 1, Milliseconds = 2, Seconds = 3 };

// A length of time. Holds nanoseconds, saturated at the largest representable span;
// negative values count as zero.
class Elapse {
public:
    Elapse() = default;
    Elapse(__int64 value, TimeUnits units) { Assign(value, units); }
    ~Elapse() = default;

    // Sets the span; an unknown unit is taken as seconds.
    void Assign(__int64 value, TimeUnits units);
    __int64 GetNanoseconds() const { return m_nanoseconds; }
    // True for spans of 0x7FFFFFFF seconds or more: a wait that never times out.
    bool IsUnlimited() const;

private:
    __int64 m_nanoseconds = 0;
};

// A lock that can be waited for with a limit. Acquire and release are const so that a
// guard can hold a const reference; the lock state is not part of the object's value.
class IMutex {
public:
    virtual ~IMutex() = default;
    // Blocks until the lock is held or the time is up; true when it is held.
    virtual bool Acquire(const Elapse& timeout) const = 0;
    // Gives back one acquisition made by the calling thread.
    virtual void Release() const = 0;
};

// Recursive: the thread that holds it may acquire it again (a renderer operation may call
// another one), and must release it as often.
class Mutex : public IMutex {
public:
    Mutex() = default;
    ~Mutex() override = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    bool Acquire(const Elapse& timeout) const override;
    void Release() const override;

private:
    mutable std::recursive_timed_mutex m_mutex;
};

// Scope guard: acquires in the constructor, releases in the destructor if it holds the
// lock. A null mutex is reported to AssertFailed with "m_Mutex != 0" and nothing is held.
class Lock {
public:
    Lock(const IMutex& mutex, const Elapse& timeout);
    Lock(const IMutex* mutex, const Elapse& timeout);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    // True when the acquire succeeded.
    bool IsHeld() const { return m_held; }

private:
    const IMutex* m_Mutex;
    bool m_held = false;
};

// A place in the code, for AssertFailed: file path, line, build time stamp, function name
// and full signature.
class CodeContext {
public:
    CodeContext(const std::string& file, int line, const std::string& timeStamp, const std::string& function,
                const std::string& signature);
    ~CodeContext() = default;

    const std::string& File() const { return m_file; }
    int Line() const { return m_line; }
    const std::string& TimeStamp() const { return m_timeStamp; }
    const std::string& Function() const { return m_function; }
    const std::string& Signature() const { return m_signature; }

private:
    std::string m_file;
    int m_line;
    std::string m_timeStamp;
    std::string m_function;
    std::string m_signature;
};

// The context of the line where it is written.
#define QUORIN_CODE_CONTEXT() \
    ::Quorin::Core::CodeContext(__FILE__, __LINE__, __DATE__ " " __TIME__, __func__, __PRETTY_FUNCTION__)

// Records a failed condition with its place (and writes it to the debug output); control
// returns to the caller. The result tells whether it was recorded; callers ignore it.
bool AssertFailed(const std::string& condition, const CodeContext& context);

// One recorded failure.
struct AssertionRecord {
    std::string condition;
    std::string file;
    int line = 0;
    std::string function;
};

// What AssertFailed recorded since the last clear, oldest first (at most the last 256).
std::vector<AssertionRecord> RecordedAssertions();
void ClearRecordedAssertions();

}  // namespace Core
}  // namespace Quorin
