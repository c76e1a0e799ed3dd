// The print dialog answered by the modal script.
#include <gtest/gtest.h>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/globalmem.h"

namespace {

struct ModalFixture : ::testing::Test {
    void SetUp() override { orlex::ModalScript::Reset(); }
    void TearDown() override { orlex::ModalScript::Reset(); }
};

using PrintDialog = ModalFixture;

TEST_F(PrintDialog, CancelMakesNoContext) {
    CPrintDialog dlg(FALSE, 0x14000C);
    orlex::ModalScript::Push("PrintDialog", IDCANCEL);
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(dlg.GetPrinterDC(), nullptr);
    EXPECT_EQ(orlex::ModalScript::Log().back().style, 0x14000Cu);
}

}  // namespace

namespace {

TEST(PrintDialogScript, ChosenPrinterComesWithSettingsNamesAndContext) {
    orlex::ModalScript::Reset();
    char name[256] = {};
    DWORD size = sizeof name;
    ASSERT_TRUE(GetDefaultPrinterA(name, &size));
    // The plot prepares landscape settings in a block of its own and asks for a context.
    PRINTDLG pd;
    pd.Flags = PD_RETURNDC | PD_ENABLEPRINTHOOK;
    pd.hDevMode = GlobalAlloc(GHND, sizeof(DEVMODE));
    auto* dm = static_cast<DEVMODE*>(GlobalLock(pd.hDevMode));
    dm->dmSize = sizeof(DEVMODE);
    dm->dmFields = DM_ORIENTATION;
    dm->dmOrientation = DMORIENT_LANDSCAPE;
    GlobalUnlock(pd.hDevMode);
    orlex::ModalScript::Push("PrintDialog", IDOK);
    ASSERT_TRUE(PrintDlg(&pd));
    EXPECT_EQ(orlex::ModalScript::Log().back().text, name);
    ASSERT_NE(pd.hDC, nullptr);
    EXPECT_GT(GetDeviceCaps(pd.hDC, HORZRES), GetDeviceCaps(pd.hDC, VERTRES));  // landscape kept
    const auto* names = static_cast<const char*>(GlobalLock(pd.hDevNames));
    ASSERT_NE(names, nullptr);
    const auto* dn = reinterpret_cast<const DEVNAMES*>(names);
    EXPECT_STREQ(names + dn->wDriverOffset, "WINSPOOL");
    EXPECT_STREQ(names + dn->wDeviceOffset, name);
    EXPECT_EQ(dn->wDefault, 1);
    GlobalUnlock(pd.hDevNames);
    DeleteDC(pd.hDC);
    GlobalFree(pd.hDevMode);
    GlobalFree(pd.hDevNames);

    orlex::ModalScript::Reset();
    CPrintDialog dlg(FALSE, 0x14000C);
    EXPECT_TRUE(dlg.GetDefaults());
    EXPECT_STREQ(dlg.GetDeviceName(), name);
    EXPECT_STREQ(dlg.GetPortName(), "PDF:");
    ASSERT_NE(dlg.GetDevMode(), nullptr);
    HDC dc = dlg.GetPrinterDC();
    EXPECT_NE(dc, nullptr);
    DeleteDC(dc);
    EXPECT_TRUE(orlex::ModalScript::Log().empty());  // the defaults show nothing
}

}  // namespace
