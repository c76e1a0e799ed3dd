// The print dialog answered by the modal script.
#include <gtest/gtest.h>

#include "foundation/platform/afxdlgs.h"

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
