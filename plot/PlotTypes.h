// Small records of the plot engine, returned and passed by value.
#pragma once

#include "foundation/platform/wintypes.h"

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

// How the Y axis is scaled: AutoScale != 0 takes the curves' limits, else MinY..MaxY;
// OneToOne != 0 makes a data unit equally long on both axes when their units agree.
struct DAUTOSCALE {
    int AutoScale = 1;
    int OneToOne = 0;
    double MinY = -1.0;
    double MaxY = 1.0;
};

// The whole colour set of a plot, as 32-bit COLORREF values in this order.
struct DEFCOLOR {
    COLORREF Curve[2000];
    COLORREF Grid;
    COLORREF Text;
    COLORREF Minor;
    COLORREF Background;
    COLORREF MarkerActive;
    COLORREF MarkerNormal;
    COLORREF Marker[12]; // two to a pair
};

// Handed to the host with MESSAGE_COLOR_CHANGE: the colours in force, the colour just
// chosen (0 for the code 900) and the plot's window.
struct COLOR_CHANGE {
    DEFCOLOR Colors;
    COLORREF Chosen;
    HWND Wnd;
};

// The record behind the lParam of MESSAGE_GRID_NOTIFY and MESSAGE_CURSOR_MOUSE_STR from a
// plot. It lives on the sender's stack for the time of one SendMessage: a receiver copies
// what it keeps.
struct GRID_NOTIFY {
    int Pair;        // 1 if two markers moved together
    int Deleted;     // 1 if the marker left the plot and is gone
    int Kind;        // 1 horizontal, 2 vertical
    int Index;
    int Index2;
    double Value;
    double Value2;
    HWND Wnd;
    unsigned long long Reserved; // always 0
};

// One marker's place: value in data units, width in data points, pixel.
struct CMARKER {
    double Value = 0.0;
    int Width = 1;
    int Pixel = 0;
};

// The vertical markers of a plot at once (MapClass::GetMarkers), and horizontal marker 0
// (a pixel of 0: it doesn't exist).
struct MARKERVAL {
    int NumSlots = 12;
    int Pixel[12] = {};
    unsigned int MarkerMap = 0;
    unsigned int ID[12] = {};
    unsigned int Link[12] = {};
    unsigned int Over[12] = {};
    unsigned int Under[12] = {};
    int Active[12] = {};
    int Width[12] = {};
    double Value[12] = {};
    double HorzValue = 0.0;
    int HorzPixel = 0;
};
