// Image lists: pictures of one size kept side by side in one bitmap, each with a mask that
// makes part of it transparent when drawn. The list's bitmaps are layer bitmaps: image i
// occupies columns i*cx to (i+1)*cx - 1 of the image bitmap and of the mask bitmap.
#pragma once

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxobj.h"

namespace orlex::detail {
struct ImageList;
}
using HIMAGELIST = orlex::detail::ImageList*;

// Creation flags: a mask for each image, and the colour depth (the images keep 24-bit
// colour whatever depth is asked).
constexpr UINT ILC_MASK = 0x0001;
constexpr UINT ILC_COLOR = 0x0000;
constexpr UINT ILC_COLORDDB = 0x00FE;
constexpr UINT ILC_COLOR4 = 0x0004;
constexpr UINT ILC_COLOR8 = 0x0008;
constexpr UINT ILC_COLOR16 = 0x0010;
constexpr UINT ILC_COLOR24 = 0x0018;
constexpr UINT ILC_COLOR32 = 0x0020;

// Drawing styles. ILD_NORMAL and ILD_TRANSPARENT draw through the mask (where the mask is
// white the destination stays, XORed with the image there: black keeps it as it was);
// ILD_IMAGE draws the image whole, ILD_MASK the mask in black and white.
constexpr UINT ILD_NORMAL = 0x0000;
constexpr UINT ILD_TRANSPARENT = 0x0001;
constexpr UINT ILD_MASK = 0x0010;
constexpr UINT ILD_IMAGE = 0x0020;

// Colours of the common controls: "the control's own default" and "no colour".
constexpr COLORREF CLR_DEFAULT = 0xFF000000;
constexpr COLORREF CLR_NONE = 0xFFFFFFFF;

struct IMAGEINFO {
    HBITMAP hbmImage;  // the list's image bitmap (owned by the list)
    HBITMAP hbmMask;   // its mask bitmap, or null for a list without masks
    int Unused1;
    int Unused2;
    RECT rcImage;  // the image's rectangle in those bitmaps
};

// A list of images of cx x cy pixels (both at least 1; null otherwise). initial and grow are
// the counts of images room is made for first and then at a time (at least 1).
HIMAGELIST ImageList_Create(int cx, int cy, UINT flags, int initial, int grow);
// Frees the list and its bitmaps; FALSE for an invalid handle.
BOOL ImageList_Destroy(HIMAGELIST list);
// Adds the images of a bitmap (its width / cx of them, at least one; a smaller bitmap is
// padded black) with a monochrome mask bitmap (white = transparent; null: all opaque).
// Returns the index of the first new image, -1 on failure. The bitmaps stay the caller's.
int ImageList_Add(HIMAGELIST list, HBITMAP image, HBITMAP mask);
// As ImageList_Add, the mask made of the pixels of colour `mask`: those become transparent
// (and black in the list's copy). The caller's bitmap is not changed.
int ImageList_AddMasked(HIMAGELIST list, HBITMAP image, COLORREF mask);
// Removes image i (-1: all of them); the images after it move down by one.
BOOL ImageList_Remove(HIMAGELIST list, int i);
int ImageList_GetImageCount(HIMAGELIST list);
// FALSE for an invalid list or index.
BOOL ImageList_GetImageInfo(HIMAGELIST list, int i, IMAGEINFO* info);
BOOL ImageList_GetIconSize(HIMAGELIST list, int* cx, int* cy);
// Draws image i with its top left at logical point (x, y) of the context, unscaled, within
// the context's clip. FALSE for an invalid list, index or context.
BOOL ImageList_Draw(HIMAGELIST list, int i, HDC hdc, int x, int y, UINT style);

// Holder of an image list handle; it destroys the list it holds when it goes.
class CImageList : public CObject {
public:
    CImageList() = default;
    ~CImageList() override { DeleteImageList(); }
    CImageList(const CImageList&) = delete;
    CImageList& operator=(const CImageList&) = delete;

    HIMAGELIST m_hImageList = nullptr;

    // See ImageList_Create; FALSE when the list can't be made or one is held already.
    BOOL Create(int cx, int cy, UINT flags, int initial, int grow);
    // See ImageList_AddMasked / ImageList_Add.
    int Add(CBitmap* image, COLORREF mask);
    int Add(CBitmap* image, CBitmap* mask);
    BOOL Remove(int i) { return ImageList_Remove(m_hImageList, i); }
    int GetImageCount() const { return ImageList_GetImageCount(m_hImageList); }
    BOOL GetImageInfo(int i, IMAGEINFO* info) const { return ImageList_GetImageInfo(m_hImageList, i, info); }
    // Draws image i at pt (logical) with the ILD_ style.
    BOOL Draw(CDC* dc, int i, POINT pt, UINT style);
    // The handle; null also when called through a null pointer, as platform code relies on.
    HIMAGELIST GetSafeHandle() const;
    operator HIMAGELIST() const { return m_hImageList; }
    // Destroys the held list; FALSE when none was held.
    BOOL DeleteImageList();
    // Takes over a list (the object then destroys it); FALSE when one is held already.
    BOOL Attach(HIMAGELIST list);
    // Gives up the list without destroying it.
    HIMAGELIST Detach();
};
