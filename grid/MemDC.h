// A memory context for one paint: the picture is drawn into a bitmap of the target's clip
// box (with the window origin at the box's top left, so that drawing code keeps its
// coordinates) and put on the target in one copy when the object goes. On a printer it
// draws straight through.
#pragma once

#include "foundation/platform/afxgdi.h"

class CMemDC : public CDC {
public:
    // pDC: the target, which must outlive this object. The bitmap starts filled with the
    // target's background colour.
    explicit CMemDC(CDC* pDC);
    ~CMemDC() override;
    CMemDC(const CMemDC&) = delete;
    CMemDC& operator=(const CMemDC&) = delete;

    CBitmap m_bitmap;
    CBitmap* m_oldBitmap = nullptr;
    CDC* m_pDC;
    CRect m_rect;
    BOOL m_bMemDC;
};
