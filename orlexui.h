// orlexUI: user-interface controls for scanning-instrument software.
//
// The one header a host includes (include directory <prefix>/include/orlexui):
//     #include <orlexui.h>
// then calls OrlexUI::Initialize once before it creates a control and OrlexUI::Shutdown at
// the end. Everything here is free of the toolkit the library draws with.
#pragma once

// Platform layer: types, strings, objects and archives, collections, process services,
// resources, windows, drawing, menus, dialogs and modal answers.
#include "foundation/platform/wintypes.h"
#include "foundation/platform/afx.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxarchive.h"
#include "foundation/platform/afxcoll.h"
#include "foundation/platform/codepage.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/process.h"
#include "foundation/platform/kernel.h"
#include "foundation/platform/profile.h"
#include "foundation/platform/regmsg.h"
#include "foundation/platform/resources.h"
#include "foundation/platform/afxapp.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/monitor.h"
#include "foundation/platform/afxole.h"
#include "foundation/platform/afxcmn.h"

// Library frame and foundation.
#include "foundation/OrlexUI.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/ArchiveVersionControl.h"
#include "foundation/QuorinCore.h"
#include "foundation/Convert2Eng.h"
#include "foundation/Complex.h"
#include "foundation/Matrix.h"
#include "foundation/FFTransform.h"

// Plot engine.
#include "plot/PlotTypes.h"
#include "plot/Curve.h"
#include "plot/MapClass.h"

// Colour tables.
#include "colour/ColorTable.h"
#include "colour/ColorTableMath.h"
#include "colour/ColorAdjust.h"
#include "colour/ColorCtrl.h"
#include "colour/ImageAdjust.h"

// Image view.
#include "imageview/BitmapData.h"
#include "imageview/BitmapKernels.h"
#include "imageview/BitmapSamples.h"
#include "imageview/CursorPos.h"
#include "imageview/DrawParameters.h"
#include "imageview/ImageViewFrame.h"
#include "imageview/ImageView.h"
#include "imageview/ZoomRecord.h"

// Panel controls.
#include "panel/OrlexMsgCenter.h"
#include "panel/Orlex.h"
#include "panel/OrlexText.h"
#include "panel/OrlexTextEdit.h"
#include "panel/OrlexHorzSlider.h"
#include "panel/Orlex2HSlider.h"
#include "panel/Orlex2PtSwitch.h"
#include "panel/OrlexLED.h"
#include "panel/OrlexToggleButton.h"
#include "panel/Orlex3StateButton.h"
#include "panel/OrlexDropMenu.h"
#include "panel/OrlexGroup.h"
