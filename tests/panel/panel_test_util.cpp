#include "panel_test_util.h"

namespace panel_test {

BEGIN_MESSAGE_MAP(Host, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

}  // namespace panel_test
