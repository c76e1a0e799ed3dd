#include "foundation/QuorinCore.h"

#include <chrono>
#include <cstdio>
#include <deque>
#include <limits>

#include "foundation/platform/process.h"

namespace Quorin {
namespace Core {

namespace {

constexpr __int64 kUnlimitedSeconds = 0x7FFFFFFF;
constexpr __int64 kNanosecondsPerUnit[] = {1, 1000, 1000000, 1000000000};

}  // namespace

void Elapse::Assign(__int64 value, TimeUnits units) {
    const int u = (units >= Nanoseconds && units <= Seconds) ? units : Seconds;
    const __int64 factor = kNanosecondsPerUnit[u];
    if (value <= 0)
        m_nanoseconds = 0;
    else if (value > std::numeric_limits<__int64>::max() / factor)
        m_nanoseconds = std::numeric_limits<__int64>::max();
    else
        m_nanoseconds = value * factor;
}

bool Elapse::IsUnlimited() const { return m_nanoseconds >= kUnlimitedSeconds * kNanosecondsPerUnit[Seconds]; }

bool Mutex::Acquire(const Elapse& timeout) const {
    if (timeout.IsUnlimited()) {
        m_mutex.lock();
        return true;
    }
    return m_mutex.try_lock_for(std::chrono::nanoseconds(timeout.GetNanoseconds()));
}

void Mutex::Release() const { m_mutex.unlock(); }

Lock::Lock(const IMutex& mutex, const Elapse& timeout) : Lock(&mutex, timeout) {}

Lock::Lock(const IMutex* mutex, const Elapse& timeout) : m_Mutex(mutex) {
    if (m_Mutex == nullptr) {
        AssertFailed("m_Mutex != 0", QUORIN_CODE_CONTEXT());
        return;
    }
    m_held = m_Mutex->Acquire(timeout);
}

Lock::~Lock() {
    if (m_Mutex && m_held) m_Mutex->Release();
}

CodeContext::CodeContext(const std::string& file, int line, const std::string& timeStamp,
                         const std::string& function, const std::string& signature)
    : m_file(file), m_line(line), m_timeStamp(timeStamp), m_function(function), m_signature(signature) {}

namespace {

constexpr std::size_t kKeptRecords = 256;

struct AssertionSink {
    std::mutex lock;
    std::deque<AssertionRecord> records;
};

AssertionSink& Sink() {
    static AssertionSink* sink = new AssertionSink;
    return *sink;
}

}  // namespace

bool AssertFailed(const std::string& condition, const CodeContext& context) {
    AssertionSink& sink = Sink();
    {
        std::lock_guard<std::mutex> guard(sink.lock);
        if (sink.records.size() == kKeptRecords) sink.records.pop_front();
        sink.records.push_back(AssertionRecord{condition, context.File(), context.Line(), context.Function()});
    }
    char text[512];
    std::snprintf(text, sizeof text, "%s(%d): assertion failed in %s: %s\n", context.File().c_str(), context.Line(),
                  context.Function().c_str(), condition.c_str());
    OutputDebugStringA(text);
    return true;
}

std::vector<AssertionRecord> RecordedAssertions() {
    AssertionSink& sink = Sink();
    std::lock_guard<std::mutex> guard(sink.lock);
    return std::vector<AssertionRecord>(sink.records.begin(), sink.records.end());
}

void ClearRecordedAssertions() {
    AssertionSink& sink = Sink();
    std::lock_guard<std::mutex> guard(sink.lock);
    sink.records.clear();
}

}  // namespace Core
}  // namespace Quorin
