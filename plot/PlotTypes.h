// Small records of the plot engine, returned and passed by value.
#pragma once

// The result of a search on a curve: found is 1 when a point was taken, y is its value
// with the Y translation applied, index is its position in the searched array.
struct FINDPOINT {
    int found = 0;
    double y = 0.0;
    int index = 0;
};

// A computed value that may not exist (spline evaluation and inversion): valid is 1 when
// value holds the answer.
struct CRESULT {
    int valid = 0;
    float value = 0.0f;
};

// A rectangle in doubles: data units, or inches for print margins. Which corner is which
// depends on the operation that fills it (see the MapClass members that return one).
struct DRECT {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

// The unit labels of both axes as printed ("%s%c%s%s": inverse mark, prefix, unit,
// power mark), each cut to fit its 10 bytes with the terminating NUL, and the factors
// by which data are multiplied for display.
struct SCALE_INFO {
    char XLabel[10] = {};
    char YLabel[10] = {};
    double XFactor = 1.0;
    double YFactor = 1.0;
};
