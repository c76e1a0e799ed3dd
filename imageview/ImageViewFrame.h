// What an image view asks of the frame around it. The frame control implements this next
// to its window class; the view finds it by looking at its parent window, and a view
// whose parent doesn't implement it stands alone and skips every frame step.
#pragma once

#include "foundation/platform/afxwin.h"

class CImageViewFrame {
public:
    virtual ~CImageViewFrame() = default;

    // The frame's window (the view's parent). Never null while the view exists.
    virtual CWnd* GetFrameWnd() = 0;
    // Width-to-height ratio of the image; 1.0 for a square image.
    virtual double GetAspectRatio() const = 0;
    // Lays the frame out for an image of this ratio, or of its own ratio without argument;
    // TRUE when the view's size changed.
    virtual BOOL SetWindowSize(double aspect) = 0;
    virtual BOOL SetWindowSize() = 0;
    // Check states of the tool buttons (0 up, 1 down).
    virtual int GetZoomButtonState() const = 0;
    virtual int GetPanButtonState() const = 0;
    virtual int GetMeasureButtonState() const = 0;
    // Check states of the real-time zoom and offset buttons, which make a cross box and a
    // cross; a frame without them answers 0.
    virtual int GetRtZoomState() const { return 0; }
    virtual int GetRtOffSetState() const { return 0; }
    // Enables or disables the pan button.
    virtual void EnablePanButton(BOOL enable) = 0;
    // Pushes the measure button (and so releases zoom and pan).
    virtual void PushMeasure() = 0;
    // Draws the host's own image when the view has no bitmap block; a and b are out
    // parameters of derived frames that the base frame leaves alone.
    virtual void CreateUiImage(int& a, int& b, bool redraw) = 0;
    // The line number of the last line the frame handed on, and the scan marker switch.
    virtual int GetCurrentLine() const = 0;
    virtual BOOL IsScanLineShown() const = 0;
    // Moves the frame's mark of the scan position.
    virtual void DrawLineMark() = 0;
};
