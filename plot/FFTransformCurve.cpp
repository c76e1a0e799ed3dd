// The spectrum of a curve: lives with the curve code because it reads the converted
// points; the transform itself is in the foundation.
#include <vector>

#include "foundation/FFTransform.h"
#include "plot/Curve.h"

FFTransform::FFTransform(Curve *curve)
{
    const int n = curve ? curve->CGetNumPts() : 0;
    std::vector<float> y(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        y[static_cast<std::size_t>(i)] = curve->CGety(i); // with the Y translation, as read
    Transform(y.data(), n);
}
