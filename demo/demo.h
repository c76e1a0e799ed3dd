// The demo host: one function per scene. Each builds its windows as children of `parent`
// inside `area` (client coordinates) and returns false when it can't.
#pragma once

#include <string>

#include "foundation/platform/afxwin.h"

// Plots drawn by the plot engine (scene_plot.cpp): eight styles with legend and marked
// point, semi-logarithmic, polar and half polar grids, a text list.
bool DemoPlotScene(CWnd* parent, const CRect& area);
// Two plot controls (scene_plotcontrol.cpp): a spectrum with two marker pairs and a
// horizontal marker, and the same zoomed in with its scroll bars and zoom button.
bool DemoPlotControlScene(CWnd* parent, const CRect& area);
// A synthetic sample (a few bumps and a tilt) through several colour tables, as 8-bit
// blocks with palettes, and a 24-bit block, stretched with StretchDIBits.
bool DemoColourTablesScene(CWnd* parent, const CRect& area);
// The dialog controls in a panel: texts, edit, buttons, combo box, trackbar, scroll bar,
// up-down with its buddy, list box and a tracking tooltip.
bool DemoControlsScene(CWnd* parent, const CRect& area);
// The image view scenes (scene_imageview.cpp).
bool DemoImageViewScenes(CWnd* parent, const CRect& area);
// A colour bar wired to an image view (scene_colourbar.cpp), about 360 x 320 pixels.
bool DemoColourBarScene(CWnd* parent, const CRect& area);

// Image frames: a zoomed off-line frame and a live one mid-scan (scene_frame.cpp).
bool DemoFrameScene(CWnd* parent, const CRect& area);

// Panel controls wired to one message centre (scene_panel.cpp), about 830 x 320 pixels:
// buttons (one under the pointer), a slider, a compound value slider zoomed with a typed
// value, two groups side by side (one folded) with switches, lamps, a toggle, a held
// three-state button and an open drop list, and the last texts the centre heard.
bool DemoPanelScene(CWnd* parent, const CRect& area);

// Writes the window (with its frame) as a PNG file; false when it can't be written.
bool SaveWindowPng(CWnd* wnd, const std::string& path);
// The spreadsheet grid (scene_spreadsheet.cpp): a sorted results table with a selection, its
// focus and an image column beside a ten-million-line run log in virtual mode.
bool DemoSpreadsheetScene(CWnd* parent, const CRect& area);
