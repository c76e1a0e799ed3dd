// Start and stop of the library: the order of Initialize's steps, the module attach, and
// Shutdown's release order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/ArchiveVersionControl.h"
#include "foundation/OrlexUI.h"
#include "foundation/platform/resources.h"

namespace {

using OrlexUI::detail::ReleaseSlot;

std::vector<std::string> g_trace;

// Stands in for the colour module's table builder: notes what the earlier steps left.
void RecordColorStep() {
    const std::vector<HINSTANCE> chain = orlex::ExtensionChain();
    g_trace.push_back(std::string("colour tables, realTime=") + (ArchiveVersionControl::GetRealTime() ? "1" : "0") +
                      ", library in chain=" + (!chain.empty() && chain.front() == orlex::LibraryModule() ? "1" : "0"));
}

class FrameTest : public ::testing::Test {
protected:
    void SetUp() override { g_trace.clear(); }
    void TearDown() override {
        OrlexUI::detail::SetColorTablesStep(nullptr);
        for (int i = 0; i < static_cast<int>(ReleaseSlot::Count); ++i)
            OrlexUI::detail::SetShutdownRelease(static_cast<ReleaseSlot>(i), nullptr);
        ArchiveVersionControl::SetRealTime(false);
    }
};

TEST_F(FrameTest, ModuleAttachInitialisedTheExtensionModule) {
    const AFX_EXTENSION_MODULE& m = OrlexUI::ExtensionModule();
    EXPECT_TRUE(m.bInitialized);
    EXPECT_EQ(m.hModule, orlex::LibraryModule());
    EXPECT_EQ(m.hResource, orlex::LibraryModule());
    EXPECT_NE(m.hModule, nullptr);
}

TEST_F(FrameTest, InitializeMakesResourcesReachableThenSetsTheFlagThenBuildsTables) {
    struct Case {
        bool realTime;
        const char* expected;
    };
    const Case cases[] = {
        {true, "colour tables, realTime=1, library in chain=1"},
        {false, "colour tables, realTime=0, library in chain=1"},
    };
    OrlexUI::detail::SetColorTablesStep(&RecordColorStep);
    for (const Case& c : cases) {
        g_trace.clear();
        ArchiveVersionControl::SetRealTime(!c.realTime);
        const std::size_t chainBefore = orlex::ExtensionChain().size();
        OrlexUI::Initialize(c.realTime);
        EXPECT_EQ(g_trace, std::vector<std::string>{c.expected});
        EXPECT_EQ(ArchiveVersionControl::GetRealTime(), c.realTime);
        EXPECT_EQ(orlex::ExtensionChain().size(), chainBefore + 1);  // one object per call
    }
}

TEST_F(FrameTest, InitializeWithoutColourModuleStillSetsTheFlag) {
    OrlexUI::Initialize(true);
    EXPECT_TRUE(g_trace.empty());
    EXPECT_TRUE(ArchiveVersionControl::GetRealTime());
}

TEST_F(FrameTest, InitializeLeavesTheOtherSwitchAlone) {
    ArchiveVersionControl::SetNoVersioning(true);
    OrlexUI::Initialize(false);
    EXPECT_TRUE(ArchiveVersionControl::GetNoVersioning());
    ArchiveVersionControl::SetNoVersioning(false);
}

TEST_F(FrameTest, ShutdownWithNothingRegisteredDoesNothing) {
    OrlexUI::Shutdown();
    OrlexUI::Shutdown();
    EXPECT_TRUE(g_trace.empty());
}

// Six stand-ins for the renderer's process-wide objects, each released only if it exists.
int* g_objects[6];
const char* const kNames[6] = {"Direct2D factory", "imaging factory", "DirectWrite factory",
                               "stroke style 0",   "stroke style 2",  "stroke style 1"};
template <int I>
void Release() {
    if (!g_objects[I]) return;
    delete g_objects[I];
    g_objects[I] = nullptr;
    g_trace.push_back(kNames[I]);
}

TEST_F(FrameTest, ShutdownReleasesInItsOwnOrderWhateverTheRegistrationOrder) {
    for (int*& p : g_objects) p = new int(1);
    // Registered backwards and mixed; Shutdown's order is fixed.
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::StrokeStyle1, &Release<5>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::DirectWriteFactory, &Release<2>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::StrokeStyle0, &Release<3>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::Direct2DFactory, &Release<0>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::StrokeStyle2, &Release<4>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::ImagingFactory, &Release<1>);
    OrlexUI::Shutdown();
    EXPECT_EQ(g_trace, (std::vector<std::string>{"Direct2D factory", "imaging factory", "DirectWrite factory",
                                                 "stroke style 0", "stroke style 2", "stroke style 1"}));
    for (int* p : g_objects) EXPECT_EQ(p, nullptr);
    g_trace.clear();
    OrlexUI::Shutdown();  // nothing left to release
    EXPECT_TRUE(g_trace.empty());
}

TEST_F(FrameTest, ShutdownSkipsObjectsThatWereNeverMade) {
    g_objects[0] = nullptr;
    g_objects[4] = new int(2);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::Direct2DFactory, &Release<0>);
    OrlexUI::detail::SetShutdownRelease(ReleaseSlot::StrokeStyle2, &Release<4>);
    OrlexUI::Shutdown();
    EXPECT_EQ(g_trace, std::vector<std::string>{"stroke style 2"});
}

}  // namespace
