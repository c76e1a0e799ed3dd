// The core library's lock, time span and assertion sink as the renderer relies on them.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "foundation/QuorinCore.h"
#include "foundation/platform/process.h"

namespace {

using namespace Quorin::Core;

TEST(QuorinElapse, AssignConvertsToNanosecondsAndSaturates) {
    struct Case {
        __int64 value;
        int units;
        __int64 nanoseconds;
        bool unlimited;
    };
    const Case cases[] = {
        {5, Seconds, 5000000000LL, false},
        {7, Milliseconds, 7000000LL, false},
        {3, Microseconds, 3000LL, false},
        {9, Nanoseconds, 9LL, false},
        {-1, Milliseconds, 0, false},
        {0x7FFFFFFE, Seconds, 0x7FFFFFFELL * 1000000000LL, false},
        {0x7FFFFFFF, Seconds, 0x7FFFFFFFLL * 1000000000LL, true},  // the renderer's wait
        {0x7FFFFFFFFFFFFFFFLL, Seconds, 0x7FFFFFFFFFFFFFFFLL, true},
        {2, 99, 2000000000LL, false},  // an unknown unit counts as seconds
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.value << " units " << c.units);
        Elapse e;
        e.Assign(c.value, static_cast<TimeUnits>(c.units));
        EXPECT_EQ(e.GetNanoseconds(), c.nanoseconds);
        EXPECT_EQ(e.IsUnlimited(), c.unlimited);
    }
}

TEST(QuorinMutex, TimedAcquireGivesUpWhileAnotherThreadHoldsIt) {
    Mutex m;
    std::atomic<bool> held{false}, release{false};
    std::thread owner([&] {
        m.Acquire(Elapse(0x7FFFFFFF, Seconds));
        held = true;
        while (!release) std::this_thread::yield();
        m.Release();
    });
    while (!held) std::this_thread::yield();
    EXPECT_FALSE(m.Acquire(Elapse(20, Milliseconds)));
    EXPECT_FALSE(m.Acquire(Elapse(0, Milliseconds)));
    release = true;
    EXPECT_TRUE(m.Acquire(Elapse(0x7FFFFFFF, Seconds)));  // waits for the owner to let go
    m.Release();
    owner.join();
}

TEST(QuorinMutex, TheHolderMayAcquireAgain) {
    Mutex m;
    ASSERT_TRUE(m.Acquire(Elapse(1, Seconds)));
    ASSERT_TRUE(m.Acquire(Elapse(1, Seconds)));
    m.Release();
    bool otherGotIt = true;
    std::thread([&] { otherGotIt = m.Acquire(Elapse(0, Seconds)); }).join();
    EXPECT_FALSE(otherGotIt);  // still held once
    m.Release();
    std::thread([&] {
        otherGotIt = m.Acquire(Elapse(0, Seconds));
        if (otherGotIt) m.Release();
    }).join();
    EXPECT_TRUE(otherGotIt);
}

TEST(QuorinLock, HoldsTheMutexForItsScope) {
    Mutex m;
    auto othersCanTake = [&m] {
        bool got = false;
        std::thread([&] {
            got = m.Acquire(Elapse(0, Seconds));
            if (got) m.Release();
        }).join();
        return got;
    };
    {
        Lock lock(m, Elapse(0x7FFFFFFF, Seconds));
        EXPECT_TRUE(lock.IsHeld());
        EXPECT_FALSE(othersCanTake());
    }
    EXPECT_TRUE(othersCanTake());
}

TEST(QuorinLock, NullMutexIsAnAssertionAndNothingIsHeld) {
    ClearRecordedAssertions();
    orlex::ClearDebugOutput();
    {
        Lock lock(static_cast<const IMutex*>(nullptr), Elapse(0x7FFFFFFF, Seconds));
        EXPECT_FALSE(lock.IsHeld());
    }  // the destructor must not touch the missing mutex
    const std::vector<AssertionRecord> records = RecordedAssertions();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].condition, "m_Mutex != 0");
    EXPECT_NE(records[0].file.find("QuorinCore.cpp"), std::string::npos);
    EXPECT_GT(records[0].line, 0);
    const std::vector<std::string> out = orlex::DebugOutput();
    ASSERT_EQ(out.size(), 1u);
    EXPECT_NE(out[0].find("m_Mutex != 0"), std::string::npos);
}

TEST(QuorinAssert, RecordsConditionAndPlaceAndReturns) {
    ClearRecordedAssertions();
    const CodeContext where("/src/renderer.cpp", 42, "Jan  1 2024 00:00:00", "Render", "void Render(int)");
    EXPECT_EQ(where.Signature(), "void Render(int)");
    EXPECT_EQ(where.TimeStamp(), "Jan  1 2024 00:00:00");
    AssertFailed("target != 0", where);
    AssertFailed("size > 0", QUORIN_CODE_CONTEXT());
    const std::vector<AssertionRecord> r = RecordedAssertions();
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(r[0].condition, "target != 0");
    EXPECT_EQ(r[0].file, "/src/renderer.cpp");
    EXPECT_EQ(r[0].line, 42);
    EXPECT_EQ(r[0].function, "Render");
    EXPECT_EQ(r[1].condition, "size > 0");
    EXPECT_NE(r[1].file.find("test_quorin.cpp"), std::string::npos);
    ClearRecordedAssertions();
    EXPECT_TRUE(RecordedAssertions().empty());
}

TEST(QuorinAssert, KeepsOnlyTheLatestRecords) {
    ClearRecordedAssertions();
    const CodeContext where("f.cpp", 1, "", "f", "void f()");
    for (int i = 0; i < 300; ++i) AssertFailed("c" + std::to_string(i), where);
    const std::vector<AssertionRecord> r = RecordedAssertions();
    ASSERT_EQ(r.size(), 256u);
    EXPECT_EQ(r.front().condition, "c44");
    EXPECT_EQ(r.back().condition, "c299");
    ClearRecordedAssertions();
}

}  // namespace
