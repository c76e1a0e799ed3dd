#include "imageview/DrawParameters.h"

#include "foundation/platform/modal.h"

namespace orlex::view {

namespace {
// NaN is not above 0 either, so the tests are written as "not above".
bool NotPositive(double v) { return !(v > 0.0); }
}  // namespace

bool CheckDrawImageParameters(int cols, double zScale, double aspect, double scanLen)
{
    const bool bad = cols == 0 || NotPositive(zScale) || NotPositive(aspect) || NotPositive(scanLen);
    if (bad && scanLen > 0.0) AfxMessageBox("CBorderCon::DrawImage - bad parameter passed\n");
    return bad;
}

bool CheckDrawLineParameters(const int* line, int cols, double zScale, double aspect, double scanLen)
{
    const bool bad = !line || cols == 0 || NotPositive(zScale) || NotPositive(aspect) || NotPositive(scanLen);
    if (bad && scanLen > 0.0) AfxMessageBox("CBorderCon::DrawLine - bad parameter passed\n");
    return bad;
}

}  // namespace orlex::view
