// The running module's state: the application object and the program's module, followed
// as the host makes and drops its application.
#include <gtest/gtest.h>

#include <thread>

#include "foundation/platform/afxapp.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

namespace {

TEST(ModuleState, FollowsTheApplicationObject) {
    const HINSTANCE program = GetModuleHandleA(nullptr);
    ASSERT_NE(program, nullptr);
    AFX_MODULE_STATE* before = AfxGetModuleState();
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(before->m_pCurrentWinApp, nullptr);
    EXPECT_EQ(before->m_hCurrentInstanceHandle, program);
    EXPECT_EQ(before->m_hCurrentResourceHandle, program);
    {
        CWinApp app("StateHost");
        AFX_MODULE_STATE* during = AfxGetModuleState();
        EXPECT_EQ(during->m_pCurrentWinApp, &app);
        EXPECT_EQ(during->m_pCurrentWinApp->m_hInstance, during->m_hCurrentInstanceHandle);
        // Another thread sees the same application.
        CWinApp* seen = nullptr;
        std::thread([&] { seen = AfxGetModuleState()->m_pCurrentWinApp; }).join();
        EXPECT_EQ(seen, &app);
    }
    EXPECT_EQ(AfxGetModuleState()->m_pCurrentWinApp, nullptr);
}

TEST(ModuleState, ResourceHandleFindsTheProgramsResourcesNotTheLibrarys) {
    // A resource the program registers under its own module is found through the state's
    // handle; one only the library holds is not.
    const char data[] = {9, 0, 1, 0};
    ASSERT_TRUE(orlex::RegisterResource(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(77), MAKEINTRESOURCEA(48123),
                                        data, sizeof data));
    HINSTANCE res = AfxGetModuleState()->m_hCurrentResourceHandle;
    EXPECT_NE(FindResourceA(res, MAKEINTRESOURCEA(48123), MAKEINTRESOURCEA(77)), nullptr);
    if (orlex::LibraryModule() != res) {
        ASSERT_TRUE(orlex::RegisterResource(orlex::LibraryModule(), MAKEINTRESOURCEA(77), MAKEINTRESOURCEA(48124),
                                            data, sizeof data));
        EXPECT_EQ(FindResourceA(res, MAKEINTRESOURCEA(48124), MAKEINTRESOURCEA(77)), nullptr);
    }
}

}  // namespace
