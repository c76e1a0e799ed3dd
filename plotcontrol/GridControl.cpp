// CGridControl: creation, preferences, the curves it owns, the Y scale and the calls it
// passes on to its MapClass. Painting and the mouse are in GridControlInput.cpp.
#include "plotcontrol/GridControl.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxapp.h"
#include "foundation/platform/resources.h"
#include "plot/MarkerMan.h"

IMPLEMENT_DYNCREATE(CGridControl, CWnd)

namespace {

const char* const kSection = "GridControl";

bool validSlot(int slot)
{
    return slot >= 0 && slot < kMapSlots;
}

}  // namespace

// ---- construction and preferences ----------------------------------------------------------------

CGridControl::CGridControl()
{
    LoadDefaults();
    SavedColors = DefColors;
}

CGridControl::~CGridControl()
{
    m_pMap.reset();
    if (ButtonIcon != nullptr)
        DestroyIcon(ButtonIcon);
    for (Curve*& c : Curves) {
        delete c;
        c = nullptr;
    }
}

void CGridControl::LoadDefaults()
{
    // The fallbacks are what a plot shows without an application object.
    DefColors = DefaultPlotColors();
    MinorGrid = 0;
    CWinApp* app = AfxGetApp();
    if (app == nullptr)
        return;
    auto read = [&](const char* key, COLORREF fallback) { return COLORREF(app->GetProfileInt(kSection, key, int(fallback))); };
    char key[32];
    for (int i = 0; i < 6; ++i) {
        std::snprintf(key, sizeof key, "Color_Curve_Curve%d", i + 1);
        DefColors.Curve[i] = read(key, DefColors.Curve[i]);
    }
    for (int i = 6; i < kMapSlots; ++i)
        DefColors.Curve[i] = DefColors.Curve[5];
    DefColors.Text = read("Color_Text", DefColors.Text);
    DefColors.Background = read("Color_Background", DefColors.Background);
    DefColors.Grid = read("Color_Grid", DefColors.Grid);
    DefColors.Minor = read("Color_Minor", DefColors.Minor);
    DefColors.MarkerActive = read("Color_Marker_Active", DefColors.MarkerActive);
    DefColors.MarkerNormal = read("Color_Marker_Normal", DefColors.MarkerNormal);
    for (int p = 0; p < 6; ++p) {
        std::snprintf(key, sizeof key, "Color_Mkr_Pair%d", p + 1);
        DefColors.Marker[2 * p] = DefColors.Marker[2 * p + 1] = read(key, DefColors.Marker[2 * p]);
    }
    MinorGrid = int(app->GetProfileInt(kSection, "Minor_Grid", 0));
}

int CGridControl::Create(int id, CWnd* parent, CRect* rect)
{
    if (parent == nullptr)
        return 0;
    CRect r;
    if (rect != nullptr) {
        r = *rect;
    } else {
        // The host's placeholder gives the place and goes.
        CWnd* holder = parent->GetDlgItem(id);
        if (holder == nullptr)
            return 0;
        holder->GetWindowRect(&r);
        parent->ScreenToClient(&r);
        holder->DestroyWindow();
    }
    LPCSTR cls = AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW), nullptr, nullptr);
    const BOOL made = CreateEx(0, cls, "", WS_CHILD | WS_VISIBLE | WS_BORDER | WS_HSCROLL | WS_VSCROLL, r, parent,
                               UINT(id));
    if (!made)
        return 0;
    SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
    RepaintNow();
    return made;
}

int CGridControl::OnCreate(LPCREATESTRUCT cs)
{
    if (CWnd::OnCreate(cs) == -1)
        return -1;
    CClientDC dc(this);
    MemDC.CreateCompatibleDC(&dc);
    m_pMap = std::make_unique<MapClass>(m_hWnd);
    MapClass& m = *m_pMap;
    m.SetMarkerCursor(LoadCursorA(orlex::LibraryModule(), ORLEX_INTRESOURCE(10032)));
    m.SetMinorLines(MinorGrid);
    m.SetDefColors(DefColors);
    m.ApplyDefColors();
    m.SetMapType(100);
    m.SetUnits("m", "m", 1.0, 1.0, true, nullptr);
    m.SetBorderWidths(RECT{45, 12, 15, 20});
    m.SetMargins(DRECT{0.25, 0.25, 0.25, 0.25});
    for (int i = 0; i < kMapSlots; ++i)
        m.SetDrawStyle(i, DrawStyles[std::min(i, 4)]);
    ZoomButton.Create("", WS_CHILD | BS_ICON | BS_PUSHBUTTON, CRect(0, 0, 21, 21), this, ID_GRID_ZOOM_BUTTON);
    ButtonIcon = static_cast<HICON>(LoadImageA(orlex::LibraryModule(), ORLEX_INTRESOURCE(10007), IMAGE_ICON, 16, 16, 0));
    if (ButtonIcon != nullptr)
        ZoomButton.SendMessage(BM_SETIMAGE, IMAGE_ICON, LPARAM(ButtonIcon));
    m.SetXTranslation(XTranslation);
    m.SetYTranslation(YTranslation);
    if (YTranslation != 0.0)
        m.EnableHorzMarker(0);
    return 0;
}

void CGridControl::RepaintNow()
{
    if (m_hWnd == nullptr)
        return;
    InvalidateRect(nullptr, FALSE);
    UpdateWindow();
}

void CGridControl::Notify(UINT code)
{
    CWnd* parent = GetParent();
    if (parent == nullptr)
        return;
    NMHDR nm{};
    nm.hwndFrom = m_hWnd;
    nm.idFrom = UINT_PTR(GetDlgCtrlID());
    nm.code = code;
    parent->SendMessage(WM_NOTIFY, WPARAM(GetDlgCtrlID()), LPARAM(&nm));
}

// ---- curves -------------------------------------------------------------------------------------

void CGridControl::DropCurves()
{
    m_pMap->DrawNew();
    for (Curve*& c : Curves) {
        if (c != nullptr)
            m_spare.emplace_back(c);
        c = nullptr;
    }
    m_pMap->ClearCurves();
}

std::unique_ptr<Curve> CGridControl::TakeCurve(int n)
{
    try {
        auto c = std::make_unique<Curve>();
        // A dropped curve's storage is taken over when it is large enough: a new data set
        // of the size of the last one then costs no fresh pages.
        for (std::unique_ptr<Curve>& s : m_spare) {
            if (s && s->CurveData.capacity() >= size_t(n)) {
                c->CurveData.swap(s->CurveData);
                c->ConvertedData.swap(s->ConvertedData);
                c->CurveData.clear();
                c->ConvertedData.clear();
                s.reset();
                return c;
            }
        }
        c->CurveData.reserve(size_t(n));
        return c;
    } catch (const std::exception&) {
        return nullptr;
    }
}

void CGridControl::SetData(SET_DATA_STRUCT* const records)
{
    if (!m_pMap || records == nullptr)
        return;
    MapClass& m = *m_pMap;
    m.SetDataPointSize(records[0].numPoints > 0 ? records[0].xSpan / records[0].numPoints : 0.0);
    const double xt = m.GetXTranslation(), yt = m.GetYTranslation();
    DropCurves();
    for (int s = 0; s < kMapSlots; ++s) {
        const SET_DATA_STRUCT& r = records[s];
        if (r.y == nullptr || r.numPoints < 2)
            continue;
        std::unique_ptr<Curve> c = TakeCurve(r.numPoints);
        if (!c)
            continue;
        const int n = r.numPoints;
        std::vector<Curve::Point>& d = c->CurveData;
        if (r.x != nullptr) {
            for (int j = 0; j < n; ++j)
                d.emplace_back(float(double(r.x[j]) + r.xOffset), float(double(r.y[j]) + r.yOffset));
        } else {
            const float dx = float(r.xSpan / (n - 1));
            for (int j = 0; j < n; ++j)
                d.emplace_back(float(double(float(j) * dx) + r.xOffset), float(double(r.y[j]) + r.yOffset));
        }
        // The limits as AddPoint would have kept them, in one pass.
        c->MinDomain = c->MaxDomain = d[0].first;
        c->MinRange = c->MaxRange = d[0].second;
        for (const Curve::Point& p : d) {
            if (p.first > c->MaxDomain) c->MaxDomain = p.first;
            if (p.first < c->MinDomain) c->MinDomain = p.first;
            if (p.second > c->MaxRange) c->MaxRange = p.second;
            if (p.second < c->MinRange) c->MinRange = p.second;
        }
        c->SetXTranslation(float(xt));
        c->SetYTranslation(float(yt));
        if (r.POI != nullptr)
            for (int k = 0; k < r.numPOI; ++k)
                c->AddPOI(c->Getx(r.POI[k]));
        Curves[s] = c.release();
    }
    m_spare.clear();
    GRID_INFO info;
    info.YScalingMode = YScalingMode;
    info.OneToOne = Scale.OneToOne;
    info.TransMode = TransMode;
    OnScaleUpdate(1, &info);
    RepaintNow();
}

void CGridControl::ClearGrid()
{
    std::vector<SET_DATA_STRUCT> none(kMapSlots);
    SetData(none.data());
}

void CGridControl::SetCurve(Curve* curve)
{
    if (!m_pMap)
        return;
    DropCurves();
    m_spare.clear();
    if (curve != nullptr && curve->GetNumPts() > 0)
        SetCurve(curve, 0, false);
    RepaintNow();
}

void CGridControl::SetCurve(Curve* curve, int slot, bool repaint)
{
    if (!m_pMap || !validSlot(slot))
        return;
    delete Curves[slot];
    Curves[slot] = nullptr;
    m_pMap->Slots[slot].curve = nullptr;
    m_pMap->DrawNew(slot);
    if (curve != nullptr && curve->GetNumPts() > 0) {
        try {
            auto c = std::make_unique<Curve>(curve->GetNumPts());
            *c = *curve;
            c->SetXTranslation(float(m_pMap->GetXTranslation()));
            c->SetYTranslation(float(m_pMap->GetYTranslation()));
            c->ValidateLimits();
            Curves[slot] = c.release();
        } catch (const std::exception&) {
        }
    }
    if (repaint)
        RepaintNow();
}

void CGridControl::ClearCurves(bool repaint)
{
    if (!m_pMap)
        return;
    DropCurves();
    m_spare.clear();
    if (repaint)
        RepaintNow();
}

Curve* CGridControl::GetCurve(int slot) const
{
    return validSlot(slot) ? Curves[slot] : nullptr;
}

int CGridControl::GetCurveNumPts(int slot) const
{
    const Curve* c = GetCurve(slot);
    return c != nullptr ? c->GetNumPts() : 0;
}

int CGridControl::IsValidCurve() const
{
    for (const Curve* c : Curves)
        if (c != nullptr)
            return 1;
    return 0;
}

void CGridControl::SetDefaultGrid(DRECT r)
{
    if (!m_pMap)
        return;
    DropCurves();
    m_spare.clear();
    auto c = std::make_unique<Curve>();
    c->SetMinDomain(float(r.left));
    c->SetMaxDomain(float(r.right));
    c->SetMinRange(float(r.bottom));
    c->SetMaxRange(float(r.top));
    Curves[0] = c.release();
    RepaintNow();
}

FINDPOINT CGridControl::FindPoint(int curve, double x, int useConverted) const
{
    const Curve* c = GetCurve(curve);
    return c != nullptr ? c->FindPoint(x, useConverted) : FINDPOINT{};
}

FINDPOINT CGridControl::FindPoint(double x, int useConverted) const
{
    return FindPoint(ActiveCurve, x, useConverted);
}

CRESULT CGridControl::Interpolate(int curve, double x) const
{
    Curve* c = GetCurve(curve);
    return c != nullptr ? c->Interpolate(float(x)) : CRESULT{};
}

CRESULT CGridControl::Interpolate(double x) const
{
    return Interpolate(ActiveCurve, x);
}

int CGridControl::GetActiveCurve()
{
    int present = 0;
    for (const Curve* c : Curves)
        present += c != nullptr;
    if (ActiveCurve >= present)
        ActiveCurve = 0;
    return ActiveCurve;
}

int CGridControl::SetActiveCurve(int slot)
{
    const int old = ActiveCurve;
    if (validSlot(slot) && Curves[slot] != nullptr)
        ActiveCurve = slot;
    return old;
}

int CGridControl::GetIndex(int id)
{
    for (int i = 0; i < 12; ++i)
        if (id & (1 << i))
            return i;
    return -1;
}

// ---- the Y scale --------------------------------------------------------------------------------------

void CGridControl::AutoScale()
{
    YScalingMode = 1;
    if (m_pMap)
        m_pMap->SetAutoScale(DAUTOSCALE{1, Scale.OneToOne, Center - Range / 2, Center + Range / 2});
}

void CGridControl::SetScaling(double a, double b, int mode, int oneToOne)
{
    double lo = std::min(a, b), hi = std::max(a, b);
    if (m_pMap && m_pMap->GetYTranslation() != 0.0) {
        lo += m_pMap->GetYTranslation();
        hi += m_pMap->GetYTranslation();
    }
    TransMode = 2;
    Range = hi - lo;
    Center = lo + Range * 0.5;
    if (mode < 3)
        YScalingMode = mode;
    Scale = DAUTOSCALE{YScalingMode == 1 ? 1 : 0, oneToOne, lo, hi};
    if (m_pMap)
        m_pMap->SetAutoScale(Scale);
}

void CGridControl::ApplyScale(GRID_INFO* info, double lo, double hi)
{
    Scale = DAUTOSCALE{YScalingMode == 1 ? 1 : 0, info != nullptr ? info->OneToOne : 0, lo, hi};
    m_pMap->SetAutoScale(Scale);
    if (info != nullptr && info->Unzoom && m_pMap->GetZoomState())
        SendMessage(WM_LBUTTONDBLCLK, 0, 0);
}

int CGridControl::OnScaleUpdate(WPARAM command, GRID_INFO* info)
{
    if (!m_pMap)
        return 0;
    int result = 1;
    switch (command) {
    case 0:
        YScalingMode = info != nullptr ? info->YScalingMode : 0;
        ApplyScale(info, -1.0, 1.0);
        break;
    case 1: {
        TransMode = info != nullptr ? info->TransMode : 0;
        YScalingMode = info != nullptr ? info->YScalingMode : 0;
        if (YScalingMode == 2) {
            // The host scales: the control's own handler first, else the parent.
            if (SendMessage(MESSAGE_USER_GRID_SCALE_SYNCH, 0, 0) == 0 && GetParent() != nullptr)
                GetParent()->SendMessage(MESSAGE_USER_GRID_SCALE_SYNCH, 0, LPARAM(this));
            break;
        }
        if (TransMode == 0 || TransMode == 1) {
            double sum = 0.0;
            int n = 0;
            for (const Curve* c : Curves) {
                if (c == nullptr)
                    continue;
                sum += TransMode == 0 ? c->ComputeMean() : c->ComputeMedian();
                ++n;
            }
            if (n == 0)
                return 0;
            GRID_INFO scratch;
            UpdateCenter(sum / n, info != nullptr ? info : &scratch);
        }
        ApplyScale(info, Center - Range / 2, Center + Range / 2);
        break;
    }
    case 2:
        if (UpdateValues(1, info, true) == 0)
            return 0;
        result = UpdateValues(0, info, true);
        break;
    case 3:
        result = UpdateValues(0, info, true);
        break;
    case 4:
        UpdateValues(1, info, true);
        UpdateValues(0, info, true);
        break;
    default:
        break;
    }
    RepaintNow();
    return result;
}

int CGridControl::UpdateValues(int which, GRID_INFO* info, bool defaultNano)
{
    if (info == nullptr || !m_pMap)
        return 0;
    CString& text = which == 1 ? info->Range : info->Center;
    double v = MapClass::Convert2Num(text.GetBuffer(text.GetLength()));
    text.ReleaseBuffer();
    bool letter = false;
    for (int i = 0; i < text.GetLength(); ++i) {
        const unsigned char ch = static_cast<unsigned char>(text[i]);
        letter = letter || ch == 0xB5 || (ch < 0x80 && std::isalpha(ch));
    }
    // A bare number means nanometres.
    if (!letter && defaultNano)
        v *= 1e-9;
    const CString shown = MapClass::Convert2Eng(v, m_pMap->GetRangeUnit(), 2, 0);
    double& stored = which == 1 ? Range : Center;
    if (v == stored && text == shown)
        return 0;
    stored = v;
    text = shown;
    if (info->TransMode >= 0 && info->TransMode <= 2) {
        Scale.MinY = Center - Range / 2;
        Scale.MaxY = Center + Range / 2;
    }
    Scale.AutoScale = YScalingMode == 1 ? 1 : 0;
    Scale.OneToOne = info->OneToOne;
    m_pMap->SetAutoScale(Scale);
    return 1;
}

void CGridControl::UpdateCenter(double v, GRID_INFO* info)
{
    Center = v;
    if (info != nullptr && m_pMap)
        info->Center = MapClass::Convert2Eng(v, m_pMap->GetRangeUnit(), 2, 0);
    Scale.MinY = Center - Range / 2;
    Scale.MaxY = Center + Range / 2;
}

GRID_INFO CGridControl::GetScaleData()
{
    GRID_INFO info;
    if (!m_pMap)
        return info;
    DAUTOSCALE a = m_pMap->GetAutoScale();
    a.AutoScale = YScalingMode == 1 ? 1 : 0;
    m_pMap->SetAutoScale(a);
    info.Range = MapClass::Convert2Eng(Range, m_pMap->GetRangeUnit(), 2, 0);
    info.Center = MapClass::Convert2Eng(Center, m_pMap->GetRangeUnit(), 2, 0);
    info.YScalingMode = YScalingMode;
    info.OneToOne = Scale.OneToOne;
    info.TransMode = TransMode;
    return info;
}

SCALE_INFO CGridControl::GetScaleInfo() const
{
    return m_pMap ? m_pMap->GetScaleInfo() : SCALE_INFO{};
}

DRECT CGridControl::GetMapExtents() const
{
    return m_pMap ? m_pMap->GetExtents() : DRECT{};
}

double CGridControl::GetGridBottomY() const
{
    return m_pMap ? m_pMap->GetGridBottomY() : 0.0;
}

int CGridControl::GetEngScale() const
{
    return m_pMap ? m_pMap->GetEngScale() : 0;
}

// ---- forwards ------------------------------------------------------------------------------------------

#define ORLEX_FORWARD(call) \
    do {                    \
        if (m_pMap)         \
            m_pMap->call;   \
    } while (0)

void CGridControl::SetMinScale(int v) { ORLEX_FORWARD(SetMinScale(v)); }
void CGridControl::SetMinDeltaScale(double v) { ORLEX_FORWARD(SetMinDeltaScale(v)); }
void CGridControl::SetTolerance(double v) { ORLEX_FORWARD(SetTolerance(v)); }
void CGridControl::UseMarkerValsWhenScaling(int v) { ORLEX_FORWARD(UseMarkerValsWhenScaling(v)); }
void CGridControl::SetScale(bool v) { ORLEX_FORWARD(SetScale(v)); }
void CGridControl::SetUnits(const char* d, const char* r, double xe, double ye, bool s, char* old)
{
    ORLEX_FORWARD(SetUnits(d, r, xe, ye, s, old));
}
void CGridControl::SetUnits(const char* d) { ORLEX_FORWARD(SetUnits(d)); }
void CGridControl::SetUnitsLabel(const char* l, double f) { ORLEX_FORWARD(SetUnitsLabel(l, f)); }
void CGridControl::SetUserFriendly(bool x, bool y) { ORLEX_FORWARD(SetUserFriendly(x, y)); }
void CGridControl::SetPower(int x, int y) { ORLEX_FORWARD(SetPower(x, y)); }
void CGridControl::SetInverse(int x, int y) { ORLEX_FORWARD(SetInverse(x, y)); }
void CGridControl::SetAxisLabels(const char* x, const char* y) { ORLEX_FORWARD(SetAxisLabels(x, y)); }
void CGridControl::SetPlotOnly(bool on) { ORLEX_FORWARD(SetPlotOnly(on)); }
bool CGridControl::IsPlotOnly() const { return m_pMap && m_pMap->IsPlotOnly(); }
const char* CGridControl::GetDomainUnit() const { return m_pMap ? m_pMap->GetDomainUnit() : ""; }
const char* CGridControl::GetRangeUnit() const { return m_pMap ? m_pMap->GetRangeUnit() : ""; }
void CGridControl::SetDrawStyle(int slot, int style) { ORLEX_FORWARD(SetDrawStyle(slot, style)); }
unsigned int CGridControl::GetDrawStyle(int slot) const { return m_pMap ? m_pMap->GetDrawStyle(slot) : 8u; }
void CGridControl::SetCurveColor(int slot, COLORREF c, int r) { ORLEX_FORWARD(SetCurveColor(slot, c, r)); }
COLORREF CGridControl::GetCurveColor(int slot) const { return m_pMap ? m_pMap->GetCurveColor(slot) : COLORREF(-1); }
void CGridControl::SetLegendText(int slot, const char* t, int u) { ORLEX_FORWARD(SetLegendText(slot, t, u)); }
DEFCOLOR CGridControl::GetColors() const { return m_pMap ? m_pMap->GetCurrentColors() : DefColors; }
void CGridControl::AllowMultipleHorzMarkers(int on) { ORLEX_FORWARD(AllowMultipledHorzMarkers(on)); }
void CGridControl::ClearMarkers(int mask) { ORLEX_FORWARD(ClearMarkers(nullptr, mask)); }
void CGridControl::ClearMarkerRange(int i, int k) { ORLEX_FORWARD(ClearMarkerRange(i, k)); }
void CGridControl::SetMarkerRange(double lo, double hi, int i, int k) { ORLEX_FORWARD(SetMarkerRange(lo, hi, i, k)); }
void CGridControl::DeleteMarker(int i, int k, int n) { ORLEX_FORWARD(DeleteMarker(i, k, n)); }
void CGridControl::EnableHorzMarker(int on) { ORLEX_FORWARD(EnableHorzMarker(on)); }
void CGridControl::EnableVertMarkers(int on, int menu)
{
    if (menu == 1)
        MarkerMenu = 1;
    ORLEX_FORWARD(EnableVertMarkers(on));
}
void CGridControl::EnableTrackMouse(int on) { ORLEX_FORWARD(TrackMouse(on)); }
int CGridControl::GetActNorMode() const { return m_pMap ? m_pMap->GetActNorMode() : 0; }
void CGridControl::SetActNorMode(int mode) { ORLEX_FORWARD(SetActNorMode(mode)); }
int CGridControl::GetActiveMkrPair() const { return m_pMap ? m_pMap->GetActiveMkrPair() : -1; }
int CGridControl::GetAllowableMarkers() const { return m_pMap ? m_pMap->GetAllowableMarkers() : 0; }
int CGridControl::SetAllowableMarkers(int n) { return m_pMap ? m_pMap->SetAllowableMarkers(n) : 0; }
CMARKER CGridControl::GetHorzMarker(int i) const { return m_pMap ? m_pMap->GetHorzMarker(i) : CMARKER{}; }
int CGridControl::GetMarkerNum() const { return m_pMap ? m_pMap->GetMarkerNum() : 0; }
MARKERVAL CGridControl::GetMarkers() const { return m_pMap ? m_pMap->GetMarkers() : MARKERVAL{}; }
COLORREF CGridControl::GetMkrColor(int i, int k) const { return m_pMap ? m_pMap->GetMkrColor(i, k) : COLORREF(0); }
void CGridControl::SetMkrColor(int i, COLORREF c, int k) { ORLEX_FORWARD(SetMkrColor(i, c, k)); }
int CGridControl::MarkerDbl2Pix(double v, int k) const { return m_pMap ? m_pMap->MarkerDbl2Pix(v, k) : 0; }
double CGridControl::MarkerPix2Dbl(int p, int k) const { return m_pMap ? m_pMap->MarkerPix2Dbl(p, k) : 0.0; }
void CGridControl::SetReadOnlyMarkers(int on) { ORLEX_FORWARD(SetReadOnlyMarkers(on)); }
DRECT CGridControl::GetZoomParms() const { return m_pMap ? m_pMap->GetZoomParms() : DRECT{}; }
void CGridControl::SetZoomParms(int state, DRECT r) { ORLEX_FORWARD(SetZoomParms(state, r)); }
int CGridControl::IsZoomed() const { return m_pMap ? m_pMap->GetZoomState() : 0; }
int CGridControl::GetZoomState() const { return m_pMap ? m_pMap->GetZoomState() : 0; }
void CGridControl::SetMarker(int index, double value, int width) { ORLEX_FORWARD(SetMarker(index, value, width)); }

void CGridControl::AddHorzMarker(double value, int index, int delayed)
{
    if (!m_pMap)
        return;
    if (m_pMap->GetMarkerMan() == nullptr || m_pMap->AllowMultipledHorzMarkers() == 0)
        m_pMap->ClearMarkers(nullptr, 2);
    if (delayed)
        m_pMap->DelayAddHorzMarker(value, index);
    else
        m_pMap->AddHorzMarker(value, index);
}

#undef ORLEX_FORWARD
