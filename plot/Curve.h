// The data container of the plot engine: ordered (x, y) points in single precision with
// running limits, a translation on each axis, points of interest, a reduced copy of the
// points for display and the coefficients of a cubic spline through the points.
#pragma once

#include <utility>
#include <vector>

#include "plot/PlotTypes.h"

class Curve {
public:
    using Point = std::pair<float, float>; // first = x, second = y

    // Which value EqualSpace keeps where the polyline folds back over an output x.
    enum hitStyle { HighHit = 0, LowHit = 1 };

    // Empty curve with room for 100 (or n, if n > 0) points; flags and translations 0,
    // other limits 0.0 until the first AddPoint sets them.
    Curve();
    explicit Curve(int n);
    // Copies everything, POIs included.
    Curve(const Curve& other);
    // Copies limits, translations, flags and the points; the coefficients only if the
    // source is splined, the converted points only if the source is converted. Keeps
    // this curve's own POIs.
    Curve& operator=(const Curve& other);

    // ---- reading; an index out of range reads 0.0 --------------------------------------
    int GetNumPts() const { return int(CurveData.size()); }
    int CGetNumPts() const { return int(ConvertedData.size()); }
    int GetPOINumPts() const { return int(POIList.size()); }
    // Stored x (which includes the X translation).
    float Getx(int i) const;
    // Stored y + YTranslation.
    float Gety(int i) const;
    // The same on the converted (reduced) points.
    float CGetx(int i) const;
    float CGety(int i) const;
    // Point of interest i narrowed to float.
    float GetPoi(int i) const;
    float GetMaxDomain() const { return MaxDomain; }
    float GetMinDomain() const { return MinDomain; }
    // Stored y limits + YTranslation.
    float GetMaxRange() const { return MaxRange + YTranslation; }
    float GetMinRange() const { return MinRange + YTranslation; }
    // Converted y limits + YTranslation.
    float CGetMaxRange() const { return CMaxRange + YTranslation; }
    float CGetMinRange() const { return CMinRange + YTranslation; }
    float GetXTranslation() const { return XTranslation; }
    float GetYTranslation() const { return YTranslation; }
    int IsXTranslated() const { return XTranslation != 0.0f ? 1 : 0; }
    int IsYTranslated() const { return YTranslation != 0.0f ? 1 : 0; }
    // The stored points; the reference lives as long as the curve. Writing through it
    // bypasses the limits (call the setters, or set the limits afterwards).
    std::vector<Point>& GetCurveData() { return CurveData; }
    const std::vector<Point>& GetCurveData() const { return CurveData; }
    // The converted points, for drawing without a call per point.
    const std::vector<Point>& GetConvertedData() const { return ConvertedData; }

    // ---- writing -----------------------------------------------------------------------
    // Appends a point and widens the limits (the first point of an empty curve sets them,
    // unless OverRide is set). Returns the new number of points.
    int AddPoint(float x, float y);
    void AddPOI(float x) { POIList.push_back(x); }
    // Replace one coordinate and keep the limits right; 1, or 0 if i >= GetNumPts().
    int Setx(int i, float x);
    int Sety(int i, float y);
    // Empties POIs, coefficients, points and converted points (capacity kept); flags,
    // limits and translations stay.
    void Clear();
    // Switches an X translation on (from 0) or off (to 0): moves the stored x.
    void SetXTranslation(float t);
    // Y translation: applied when y is read, never stored.
    void SetYTranslation(float t) { YTranslation = t; }
    // Adds the offset (narrowed to float) to every stored y and the y limits, and to the
    // converted points and their limits when Converted is set.
    void AddOffset(double offset);
    // Sorts the points by x, ties by y.
    void Sort();
    // Reverses the order of the y values, x staying in place (also on converted points).
    void Flip();
    // Opens equal limits by 1e-14f on each side so that an axis has a non-empty range.
    void ValidateLimits();
    void SetMinDomain(float v) { MinDomain = v; }
    void SetMaxDomain(float v) { MaxDomain = v; }
    void SetMinRange(float v) { MinRange = v; }
    void SetMaxRange(float v) { MaxRange = v; }
    // true: AddPoint only widens the limits, also for the first point.
    void SetOverRide(bool v) { OverRide = v ? 1 : 0; }

    // ---- statistics and search ---------------------------------------------------------
    // Mean of y + YTranslation over the converted points if Converted, else the points;
    // 0.0 for an empty curve.
    double ComputeMean() const;
    // Median of the same terms; 0.0 for an empty curve.
    double ComputeMedian() const;
    // Number of intervals between xFrom and xTo on rising data (0 if xTo <= xFrom or
    // xFrom lies on no interval).
    int GetNumPts(float xFrom, float xTo) const;
    // The point nearest to x (ties to the higher index) by bisection on the points, or
    // on the converted points if useConverted != 0; not found outside the domain limits.
    FINDPOINT FindPoint(double x, int useConverted) const;

    // ---- conditioning (reduction for display, spline) ------------------------------------
    // Fills the converted points with numPts (>= 2) points evenly spaced from xFrom to xTo
    // (bit 0 of flags: the whole curve), one per bin by the rule in bits 1..7:
    // 2 spline, 4 maximum, 8 minimum, 16 mean, 32 median. Returns numPts, or 0.
    int Convert(float xFrom, float xTo, int numPts, unsigned int flags);
    // Resamples the polyline onto numPts cell centres over 0..xMax (xMax <= 0: last x),
    // into the converted points; where the line folds back, the high or low value.
    void EqualSpace(int numPts, float xMax, hitStyle style);
    // Natural cubic spline through the points (n >= 3, x strictly rising); sets Splined.
    void Spline();
    // Spline value at x (splines first if needed); valid 0 outside the domain.
    CRESULT Interpolate(float x);
    // The same, searching from the interval of the previous call (reset != 0: from 0),
    // for rising runs of x. Not reentrant: the interval index is shared by all curves.
    CRESULT Interpolate(float x, int reset);
    // Newton's iteration for the x at which interval's spline piece equals y.
    // maxIterations 0 means 10.
    CRESULT Solve(int interval, double y, double tolerance, int maxIterations);

    // ---- fields, in their declared order -------------------------------------------------
    unsigned char Converted = 0; // the converted points are valid and stand for the data
    unsigned char Splined = 0;   // B, C and D are valid
    unsigned char OverRide = 0;  // AddPoint widens the limits instead of restarting them
    std::vector<double> POIList; // x positions of points of interest
    std::vector<double> B;       // spline coefficient of d, per interval
    std::vector<double> C;       // of d squared
    std::vector<double> D;       // of d cubed
    std::vector<Point> CurveData;
    std::vector<Point> ConvertedData;
    float MaxDomain = 0.0f;
    float MinDomain = 0.0f;
    float MaxRange = 0.0f; // stored y, without YTranslation
    float MinRange = 0.0f;
    float CMinRange = 0.0f; // converted y, without YTranslation
    float CMaxRange = 0.0f;
    float XTranslation = 0.0f; // already in the stored x
    float YTranslation = 0.0f; // added on every read of y

    // The interval where Interpolate(x, reset) resumes; shared by all curves.
    static int s_interpolateInterval;
};
