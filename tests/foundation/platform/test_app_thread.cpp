// Thread objects without the window layer: the application is still the main thread's
// object and threads run their procedures, but there is no message loop to run.
#include <gtest/gtest.h>

#include <atomic>

#include "foundation/platform/afxapp.h"

namespace {

UINT AddOne(LPVOID p) {
    static_cast<std::atomic<int>*>(p)->fetch_add(1);
    return 0;
}

TEST(AppThread, WithoutTheWindowLayerThereIsNoLoop) {
    ASSERT_EQ(orlex::GetThreadLoop(), nullptr);  // this program has no window layer
    CWinApp app("coreapp");
    EXPECT_EQ(AfxGetThread(), static_cast<CWinThread*>(&app));
    EXPECT_FALSE(app.PumpMessage());
    EXPECT_EQ(app.Run(), 0);  // returns at once with ExitInstance's 0
    EXPECT_FALSE(app.PostThreadMessage(0x0400, 0, 0));
}

TEST(AppThread, ProceduresRunOnThreadsOfTheirOwn) {
    std::atomic<int> runs{0};
    CWinThread* t = AfxBeginThread(AddOne, &runs, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(t, nullptr);
    t->m_bAutoDelete = FALSE;
    EXPECT_EQ(runs.load(), 0);
    t->ResumeThread();
    ASSERT_TRUE(t->Join(5000));
    EXPECT_EQ(runs.load(), 1);
    delete t;
    EXPECT_EQ(AfxBeginThread(nullptr, nullptr), nullptr);
    // A thread other than the application's gets an object of its own.
    CWinApp app("coreapp2");
    CWinThread* seen = nullptr;
    CWinThread* other = AfxBeginThread(
        [](LPVOID p) -> UINT {
            *static_cast<CWinThread**>(p) = AfxGetThread();
            return 0;
        },
        &seen, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(other, nullptr);
    other->m_bAutoDelete = FALSE;
    other->ResumeThread();
    ASSERT_TRUE(other->Join(5000));
    EXPECT_EQ(seen, other);
    delete other;
}

}  // namespace
