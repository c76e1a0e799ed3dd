// The checks that the frame makes of the arguments of its drawing calls before it hands
// them to its view, with the message that the user sees for bad ones.
#pragma once

namespace orlex::view {

// The frame's DrawImage: true (bad) when cols is 0 or zScale, aspect or scanLen is not
// above 0. With scanLen above 0 the user is told by the message box
// "CBorderCon::DrawImage - bad parameter passed\n"; the frame goes on all the same.
bool CheckDrawImageParameters(int cols, double zScale, double aspect, double scanLen);

// The frame's DrawLine: true (bad) for a null line, cols 0, or zScale, aspect or scanLen
// not above 0; with scanLen above 0 the box "CBorderCon::DrawLine - bad parameter passed\n".
// The frame then empties the invalid list and returns 0.
bool CheckDrawLineParameters(const int* line, int cols, double zScale, double aspect, double scanLen);

}  // namespace orlex::view
