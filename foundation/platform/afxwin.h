// Windows, messages, input, timers and threads of the window platform.
//
// A window is a rectangle in a parent (or on the virtual screen, for a top-level window)
// known by an HWND: an opaque key into the layer's window table, never a pointer, so a
// handle of a destroyed window stays invalid and every call with it fails safely. Each
// thread has a message queue; SendMessage runs the receiver's window procedure at once
// (marshalled to the receiver's thread if needed), PostMessage queues in order. CWnd
// dispatches through message maps declared with the macros at the end of this header.
//
// Drawing (CDC and the GDI objects) is declared in afxgdi.h; menus and dialogs in
// afxmenu.h and afxdlgs.h. This header is free of toolkit types.
#pragma once

#include <cstdint>
#include <functional>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

#include "foundation/platform/afxapp.h"
#include "foundation/platform/afxobj.h"

class CWnd;
class CDataExchange;
class CDC;     // afxgdi.h
class CFont;   // afxgdi.h
class CRgn;    // afxgdi.h
class CMenu;   // afxmenu.h
class CScrollBar;
class CCmdUI;
struct TOOLINFOA;  // afxdlgs.h

// Marks message handlers in class declarations; calling conventions mean nothing here.
#define afx_msg
#ifndef CALLBACK
#define CALLBACK
#endif
#ifndef WINAPI
#define WINAPI
#endif

// Window procedure and callbacks -----------------------------------------------------------
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void (*)(HWND, UINT, UINT_PTR, DWORD);

// Resource names given by number (pointer shapes, menus, dialogs).
#define ORLEX_INTRESOURCE(i) (reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
// True when a resource name is a number (its pointer value is below 0x10000).
inline bool OrlexIsIntResource(LPCSTR name) { return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0; }

// Messages ------------------------------------------------------------------------------------
constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETREDRAW = 0x000B;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SYSCOLORCHANGE = 0x0015;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_CTLCOLOR = 0x0019;  // the framework's combined form of the WM_CTLCOLOR* messages
constexpr UINT WM_SETTINGCHANGE = 0x001A;
constexpr UINT WM_WININICHANGE = 0x001A;
constexpr UINT WM_ACTIVATEAPP = 0x001C;
constexpr UINT WM_CANCELMODE = 0x001F;
constexpr UINT WM_SETCURSOR = 0x0020;
constexpr UINT WM_MOUSEACTIVATE = 0x0021;
constexpr UINT WM_GETMINMAXINFO = 0x0024;
constexpr UINT WM_DRAWITEM = 0x002B;
constexpr UINT WM_MEASUREITEM = 0x002C;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_HELP = 0x0053;
constexpr UINT WM_CONTEXTMENU = 0x007B;
constexpr UINT WM_NCCREATE = 0x0081;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_NCCALCSIZE = 0x0083;
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_NCPAINT = 0x0085;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_NCMOUSEMOVE = 0x00A0;
constexpr UINT WM_NCLBUTTONDOWN = 0x00A1;
constexpr UINT WM_NCLBUTTONUP = 0x00A2;
constexpr UINT WM_NCLBUTTONDBLCLK = 0x00A3;
constexpr UINT WM_NCRBUTTONDOWN = 0x00A4;
constexpr UINT WM_NCRBUTTONUP = 0x00A5;
constexpr UINT WM_NCMBUTTONDOWN = 0x00A7;
constexpr UINT WM_NCMBUTTONUP = 0x00A8;
constexpr UINT WM_KEYFIRST = 0x0100;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_DEADCHAR = 0x0103;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_SYSCHAR = 0x0106;
constexpr UINT WM_KEYLAST = 0x0109;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_SYSCOMMAND = 0x0112;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_HSCROLL = 0x0114;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_INITMENU = 0x0116;
constexpr UINT WM_INITMENUPOPUP = 0x0117;
constexpr UINT WM_MENUSELECT = 0x011F;
constexpr UINT WM_ENTERIDLE = 0x0121;
constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
constexpr UINT WM_CTLCOLOREDIT = 0x0133;
constexpr UINT WM_CTLCOLORLISTBOX = 0x0134;
constexpr UINT WM_CTLCOLORBTN = 0x0135;
constexpr UINT WM_CTLCOLORDLG = 0x0136;
constexpr UINT WM_CTLCOLORSCROLLBAR = 0x0137;
constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
constexpr UINT WM_MOUSEFIRST = 0x0200;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_MOUSELAST = 0x020A;
constexpr UINT WM_PARENTNOTIFY = 0x0210;
constexpr UINT WM_ENTERMENULOOP = 0x0211;
constexpr UINT WM_EXITMENULOOP = 0x0212;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_IME_CHAR = 0x0286;
constexpr UINT WM_MOUSEHOVER = 0x02A1;
constexpr UINT WM_MOUSELEAVE = 0x02A3;
constexpr UINT WM_CUT = 0x0300;
constexpr UINT WM_COPY = 0x0301;
constexpr UINT WM_PASTE = 0x0302;
constexpr UINT WM_CLEAR = 0x0303;
constexpr UINT WM_UNDO = 0x0304;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;
// Messages reflected from a parent back to the child control that sent them.
constexpr UINT WM_REFLECT_BASE = 0xBC00;

// Notification codes of WM_NOTIFY (NMHDR::code) and of control WM_COMMANDs (high word).
constexpr UINT NM_FIRST = 0;
constexpr UINT NM_OUTOFMEMORY = UINT(-1);
constexpr UINT NM_CLICK = UINT(-2);
constexpr UINT NM_DBLCLK = UINT(-3);
constexpr UINT NM_RETURN = UINT(-4);
constexpr UINT NM_RCLICK = UINT(-5);
constexpr UINT NM_RDBLCLK = UINT(-6);
constexpr UINT NM_SETFOCUS = UINT(-7);
constexpr UINT NM_KILLFOCUS = UINT(-8);
constexpr UINT BN_CLICKED = 0;
constexpr UINT BN_DOUBLECLICKED = 5;
constexpr UINT BN_SETFOCUS = 6;
constexpr UINT BN_KILLFOCUS = 7;
constexpr UINT EN_SETFOCUS = 0x0100;
constexpr UINT EN_KILLFOCUS = 0x0200;
constexpr UINT EN_CHANGE = 0x0300;
constexpr UINT EN_UPDATE = 0x0400;
constexpr UINT EN_ERRSPACE = 0x0500;
constexpr UINT EN_MAXTEXT = 0x0501;
constexpr UINT EN_HSCROLL = 0x0601;
constexpr UINT EN_VSCROLL = 0x0602;
constexpr UINT CBN_ERRSPACE = UINT(-1);
constexpr UINT CBN_SELCHANGE = 1;
constexpr UINT CBN_DBLCLK = 2;
constexpr UINT CBN_SETFOCUS = 3;
constexpr UINT CBN_KILLFOCUS = 4;
constexpr UINT CBN_EDITCHANGE = 5;
constexpr UINT CBN_EDITUPDATE = 6;
constexpr UINT CBN_DROPDOWN = 7;
constexpr UINT CBN_CLOSEUP = 8;
constexpr UINT CBN_SELENDOK = 9;
constexpr UINT CBN_SELENDCANCEL = 10;
constexpr UINT LBN_SELCHANGE = 1;
constexpr UINT LBN_DBLCLK = 2;
constexpr UINT LBN_SELCANCEL = 3;
constexpr UINT LBN_SETFOCUS = 4;
constexpr UINT LBN_KILLFOCUS = 5;
constexpr UINT STN_CLICKED = 0;
constexpr UINT STN_DBLCLK = 1;
// Command routing codes of the framework.
constexpr UINT CN_COMMAND = 0;
constexpr UINT CN_UPDATE_COMMAND_UI = UINT(-1);
constexpr UINT CN_NOTIFY = UINT(-2);  // internal: a WM_NOTIFY routed as a command

// Window styles.
constexpr DWORD WS_OVERLAPPED = 0x00000000;
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_MINIMIZE = 0x20000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_MAXIMIZE = 0x01000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_DLGFRAME = 0x00400000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_THICKFRAME = 0x00040000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;
constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
constexpr DWORD WS_CHILDWINDOW = WS_CHILD;
constexpr DWORD WS_OVERLAPPEDWINDOW = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
constexpr DWORD WS_POPUPWINDOW = WS_POPUP | WS_BORDER | WS_SYSMENU;
constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
constexpr DWORD WS_EX_NOPARENTNOTIFY = 0x00000004;
constexpr DWORD WS_EX_TOPMOST = 0x00000008;
constexpr DWORD WS_EX_ACCEPTFILES = 0x00000010;
constexpr DWORD WS_EX_TRANSPARENT = 0x00000020;
constexpr DWORD WS_EX_TOOLWINDOW = 0x00000080;
constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;
constexpr DWORD WS_EX_STATICEDGE = 0x00020000;
constexpr DWORD WS_EX_APPWINDOW = 0x00040000;

// Window class styles.
constexpr UINT CS_VREDRAW = 0x0001;
constexpr UINT CS_HREDRAW = 0x0002;
constexpr UINT CS_DBLCLKS = 0x0008;
constexpr UINT CS_OWNDC = 0x0020;
constexpr UINT CS_CLASSDC = 0x0040;
constexpr UINT CS_PARENTDC = 0x0080;
constexpr UINT CS_NOCLOSE = 0x0200;
constexpr UINT CS_SAVEBITS = 0x0800;
constexpr UINT CS_GLOBALCLASS = 0x4000;

// SetWindowPos.
constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOREDRAW = 0x0008;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_FRAMECHANGED = 0x0020;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;
constexpr UINT SWP_NOCOPYBITS = 0x0100;
constexpr UINT SWP_NOOWNERZORDER = 0x0200;
constexpr UINT SWP_NOSENDCHANGING = 0x0400;
#define HWND_TOP (reinterpret_cast<HWND>(static_cast<INT_PTR>(0)))
#define HWND_BOTTOM (reinterpret_cast<HWND>(static_cast<INT_PTR>(1)))
#define HWND_TOPMOST (reinterpret_cast<HWND>(static_cast<INT_PTR>(-1)))
#define HWND_NOTOPMOST (reinterpret_cast<HWND>(static_cast<INT_PTR>(-2)))

// ShowWindow.
constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_NORMAL = 1;
constexpr int SW_SHOWMINIMIZED = 2;
constexpr int SW_SHOWMAXIMIZED = 3;
constexpr int SW_MAXIMIZE = 3;
constexpr int SW_SHOWNOACTIVATE = 4;
constexpr int SW_SHOW = 5;
constexpr int SW_MINIMIZE = 6;
constexpr int SW_SHOWMINNOACTIVE = 7;
constexpr int SW_SHOWNA = 8;
constexpr int SW_RESTORE = 9;
constexpr int SW_SHOWDEFAULT = 10;
// WM_SIZE kinds.
constexpr UINT SIZE_RESTORED = 0;
constexpr UINT SIZE_MINIMIZED = 1;
constexpr UINT SIZE_MAXIMIZED = 2;
// GetWindow.
constexpr UINT GW_HWNDFIRST = 0;
constexpr UINT GW_HWNDLAST = 1;
constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_HWNDPREV = 3;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;
// GetWindowLong indices.
constexpr int GWLP_WNDPROC = -4;
constexpr int GWLP_HINSTANCE = -6;
constexpr int GWLP_HWNDPARENT = -8;
constexpr int GWL_ID = -12;
constexpr int GWLP_ID = -12;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWLP_USERDATA = -21;
constexpr int GWL_USERDATA = -21;
// ChildWindowFromPointEx.
constexpr UINT CWP_ALL = 0x0000;
constexpr UINT CWP_SKIPINVISIBLE = 0x0001;
constexpr UINT CWP_SKIPDISABLED = 0x0002;
constexpr UINT CWP_SKIPTRANSPARENT = 0x0004;

// Hit-test codes of WM_NCHITTEST (the low word of WM_SETCURSOR's lParam).
constexpr int HTERROR = -2;
constexpr int HTTRANSPARENT = -1;
constexpr int HTNOWHERE = 0;
constexpr int HTCLIENT = 1;
constexpr int HTCAPTION = 2;
constexpr int HTSYSMENU = 3;
constexpr int HTHSCROLL = 6;
constexpr int HTVSCROLL = 7;
constexpr int HTBORDER = 18;

// Mouse key flags of mouse messages, wheel step.
constexpr UINT MK_LBUTTON = 0x0001;
constexpr UINT MK_RBUTTON = 0x0002;
constexpr UINT MK_SHIFT = 0x0004;
constexpr UINT MK_CONTROL = 0x0008;
constexpr UINT MK_MBUTTON = 0x0010;
constexpr int WHEEL_DELTA = 120;

// Virtual keys. Letters and digits are their upper-case ASCII codes.
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_CANCEL = 0x03;
constexpr int VK_MBUTTON = 0x04;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_CLEAR = 0x0C;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_PAUSE = 0x13;
constexpr int VK_CAPITAL = 0x14;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_SELECT = 0x29;
constexpr int VK_PRINT = 0x2A;
constexpr int VK_SNAPSHOT = 0x2C;
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_HELP = 0x2F;
constexpr int VK_LWIN = 0x5B;
constexpr int VK_RWIN = 0x5C;
constexpr int VK_APPS = 0x5D;
constexpr int VK_NUMPAD0 = 0x60;
constexpr int VK_NUMPAD9 = 0x69;
constexpr int VK_MULTIPLY = 0x6A;
constexpr int VK_ADD = 0x6B;
constexpr int VK_SEPARATOR = 0x6C;
constexpr int VK_SUBTRACT = 0x6D;
constexpr int VK_DECIMAL = 0x6E;
constexpr int VK_DIVIDE = 0x6F;
constexpr int VK_F1 = 0x70;
constexpr int VK_F2 = 0x71;
constexpr int VK_F3 = 0x72;
constexpr int VK_F4 = 0x73;
constexpr int VK_F5 = 0x74;
constexpr int VK_F6 = 0x75;
constexpr int VK_F7 = 0x76;
constexpr int VK_F8 = 0x77;
constexpr int VK_F9 = 0x78;
constexpr int VK_F10 = 0x79;
constexpr int VK_F11 = 0x7A;
constexpr int VK_F12 = 0x7B;
constexpr int VK_NUMLOCK = 0x90;
constexpr int VK_SCROLL = 0x91;
constexpr int VK_LSHIFT = 0xA0;
constexpr int VK_RSHIFT = 0xA1;
constexpr int VK_LCONTROL = 0xA2;
constexpr int VK_RCONTROL = 0xA3;
constexpr int VK_LMENU = 0xA4;
constexpr int VK_RMENU = 0xA5;
constexpr int VK_OEM_1 = 0xBA;       // ;:
constexpr int VK_OEM_PLUS = 0xBB;    // =+
constexpr int VK_OEM_COMMA = 0xBC;   // ,<
constexpr int VK_OEM_MINUS = 0xBD;   // -_
constexpr int VK_OEM_PERIOD = 0xBE;  // .>
constexpr int VK_OEM_2 = 0xBF;       // /?
constexpr int VK_OEM_3 = 0xC0;       // `~
constexpr int VK_OEM_4 = 0xDB;       // [{
constexpr int VK_OEM_5 = 0xDC;       // \|
constexpr int VK_OEM_6 = 0xDD;       // ]}
constexpr int VK_OEM_7 = 0xDE;       // '"

// Scroll bars of a window and their WM_HSCROLL/WM_VSCROLL codes.
constexpr int SB_HORZ = 0;
constexpr int SB_VERT = 1;
constexpr int SB_CTL = 2;
constexpr int SB_BOTH = 3;
constexpr UINT SB_LINEUP = 0;
constexpr UINT SB_LINELEFT = 0;
constexpr UINT SB_LINEDOWN = 1;
constexpr UINT SB_LINERIGHT = 1;
constexpr UINT SB_PAGEUP = 2;
constexpr UINT SB_PAGELEFT = 2;
constexpr UINT SB_PAGEDOWN = 3;
constexpr UINT SB_PAGERIGHT = 3;
constexpr UINT SB_THUMBPOSITION = 4;
constexpr UINT SB_THUMBTRACK = 5;
constexpr UINT SB_TOP = 6;
constexpr UINT SB_LEFT = 6;
constexpr UINT SB_BOTTOM = 7;
constexpr UINT SB_RIGHT = 7;
constexpr UINT SB_ENDSCROLL = 8;
constexpr UINT SIF_RANGE = 0x0001;
constexpr UINT SIF_PAGE = 0x0002;
constexpr UINT SIF_POS = 0x0004;
constexpr UINT SIF_DISABLENOSCROLL = 0x0008;
constexpr UINT SIF_TRACKPOS = 0x0010;
constexpr UINT SIF_ALL = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS;
constexpr UINT ESB_ENABLE_BOTH = 0x0000;
constexpr UINT ESB_DISABLE_BOTH = 0x0003;

// RedrawWindow.
constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_INTERNALPAINT = 0x0002;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_VALIDATE = 0x0008;
constexpr UINT RDW_NOINTERNALPAINT = 0x0010;
constexpr UINT RDW_NOERASE = 0x0020;
constexpr UINT RDW_NOCHILDREN = 0x0040;
constexpr UINT RDW_ALLCHILDREN = 0x0080;
constexpr UINT RDW_UPDATENOW = 0x0100;
constexpr UINT RDW_ERASENOW = 0x0200;
constexpr UINT RDW_FRAME = 0x0400;
constexpr UINT RDW_NOFRAME = 0x0800;
// ScrollWindowEx.
constexpr UINT SW_SCROLLCHILDREN = 0x0001;
constexpr UINT SW_INVALIDATE = 0x0002;
constexpr UINT SW_ERASE = 0x0004;

// PeekMessage.
constexpr UINT PM_NOREMOVE = 0x0000;
constexpr UINT PM_REMOVE = 0x0001;
constexpr UINT PM_NOYIELD = 0x0002;
// _TrackMouseEvent.
constexpr DWORD TME_HOVER = 0x00000001;
constexpr DWORD TME_LEAVE = 0x00000002;
constexpr DWORD TME_NONCLIENT = 0x00000010;
constexpr DWORD TME_QUERY = 0x40000000;
constexpr DWORD TME_CANCEL = 0x80000000;
constexpr DWORD HOVER_DEFAULT = 0xFFFFFFFF;
// WM_GETDLGCODE answers.
constexpr UINT DLGC_WANTARROWS = 0x0001;
constexpr UINT DLGC_WANTTAB = 0x0002;
constexpr UINT DLGC_WANTALLKEYS = 0x0004;
constexpr UINT DLGC_WANTMESSAGE = 0x0004;
constexpr UINT DLGC_HASSETSEL = 0x0008;
constexpr UINT DLGC_DEFPUSHBUTTON = 0x0010;
constexpr UINT DLGC_UNDEFPUSHBUTTON = 0x0020;
constexpr UINT DLGC_RADIOBUTTON = 0x0040;
constexpr UINT DLGC_WANTCHARS = 0x0080;
constexpr UINT DLGC_STATIC = 0x0100;
constexpr UINT DLGC_BUTTON = 0x2000;
// WM_ACTIVATE states, WM_MOUSEACTIVATE answers.
constexpr UINT WA_INACTIVE = 0;
constexpr UINT WA_ACTIVE = 1;
constexpr UINT WA_CLICKACTIVE = 2;
constexpr int MA_ACTIVATE = 1;
constexpr int MA_ACTIVATEANDEAT = 2;
constexpr int MA_NOACTIVATE = 3;
constexpr int MA_NOACTIVATEANDEAT = 4;
// OnCtlColor kinds.
constexpr UINT CTLCOLOR_MSGBOX = 0;
constexpr UINT CTLCOLOR_EDIT = 1;
constexpr UINT CTLCOLOR_LISTBOX = 2;
constexpr UINT CTLCOLOR_BTN = 3;
constexpr UINT CTLCOLOR_DLG = 4;
constexpr UINT CTLCOLOR_SCROLLBAR = 5;
constexpr UINT CTLCOLOR_STATIC = 6;
// Owner-drawn items (WM_DRAWITEM / WM_MEASUREITEM).
constexpr UINT ODT_MENU = 1;
constexpr UINT ODT_LISTBOX = 2;
constexpr UINT ODT_COMBOBOX = 3;
constexpr UINT ODT_BUTTON = 4;
constexpr UINT ODT_STATIC = 5;
constexpr UINT ODA_DRAWENTIRE = 0x0001;
constexpr UINT ODA_SELECT = 0x0002;
constexpr UINT ODA_FOCUS = 0x0004;
constexpr UINT ODS_SELECTED = 0x0001;
constexpr UINT ODS_GRAYED = 0x0002;
constexpr UINT ODS_DISABLED = 0x0004;
constexpr UINT ODS_CHECKED = 0x0008;
constexpr UINT ODS_FOCUS = 0x0010;

// Standard pointer shapes for LoadCursor(NULL, ...).
#define IDC_ARROW ORLEX_INTRESOURCE(32512)
#define IDC_IBEAM ORLEX_INTRESOURCE(32513)
#define IDC_WAIT ORLEX_INTRESOURCE(32514)
#define IDC_CROSS ORLEX_INTRESOURCE(32515)
#define IDC_UPARROW ORLEX_INTRESOURCE(32516)
#define IDC_SIZENWSE ORLEX_INTRESOURCE(32642)
#define IDC_SIZENESW ORLEX_INTRESOURCE(32643)
#define IDC_SIZEWE ORLEX_INTRESOURCE(32644)
#define IDC_SIZENS ORLEX_INTRESOURCE(32645)
#define IDC_SIZEALL ORLEX_INTRESOURCE(32646)
#define IDC_NO ORLEX_INTRESOURCE(32648)
#define IDC_HAND ORLEX_INTRESOURCE(32649)
#define IDC_APPSTARTING ORLEX_INTRESOURCE(32650)
#define IDC_HELP ORLEX_INTRESOURCE(32651)

// Modal loop of the framework.
constexpr DWORD MLF_NOIDLEMSG = 0x0001;
constexpr DWORD MLF_NOKICKIDLE = 0x0002;
constexpr DWORD MLF_SHOWONIDLE = 0x0004;
constexpr UINT WF_CONTINUEMODAL = 0x0001;
constexpr UINT WF_MODALLOOP = 0x0002;
constexpr UINT WF_TOOLTIPS = 0x0004;  // EnableToolTips is on for the window

// Records -------------------------------------------------------------------------------------
struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};
using CREATESTRUCT = CREATESTRUCTA;
using LPCREATESTRUCT = CREATESTRUCT*;

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;  // a brush, or a system colour index + 1
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};
using WNDCLASS = WNDCLASSA;
using LPWNDCLASS = WNDCLASS*;

struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};
struct WINDOWPLACEMENT {
    UINT length;
    UINT flags;
    UINT showCmd;
    POINT ptMinPosition;
    POINT ptMaxPosition;
    RECT rcNormalPosition;
};
struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};
struct SCROLLINFO {
    UINT cbSize;
    UINT fMask;
    int nMin;
    int nMax;
    UINT nPage;
    int nPos;
    int nTrackPos;
};
using LPSCROLLINFO = SCROLLINFO*;
struct TRACKMOUSEEVENT {
    DWORD cbSize;
    DWORD dwFlags;
    HWND hwndTrack;
    DWORD dwHoverTime;
};
using LPTRACKMOUSEEVENT = TRACKMOUSEEVENT*;
// Header of every WM_NOTIFY: the sending control, its id and the notification code.
struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
using LPNMHDR = NMHDR*;
struct HELPINFO {
    UINT cbSize;
    int iContextType;
    int iCtrlId;
    HANDLE hItemHandle;
    DWORD_PTR dwContextId;
    POINT MousePos;
};
using LPHELPINFO = HELPINFO*;
struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    ULONG_PTR itemData;
};
using LPDRAWITEMSTRUCT = DRAWITEMSTRUCT*;
struct MEASUREITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemWidth;
    UINT itemHeight;
    ULONG_PTR itemData;
};
using LPMEASUREITEMSTRUCT = MEASUREITEMSTRUCT*;

// Windows -------------------------------------------------------------------------------------
// Registers a window class by name (copied); FALSE (0) if the name is taken or missing.
ATOM RegisterClassA(const WNDCLASSA* wc);
inline ATOM RegisterClass(const WNDCLASSA* wc) { return RegisterClassA(wc); }
// The framework's form: TRUE when registered now or already present with that name.
BOOL AfxRegisterClass(WNDCLASSA* wc);
// Fills *wc with a registered class; FALSE when unknown.
BOOL GetClassInfoA(HINSTANCE inst, LPCSTR className, WNDCLASSA* wc);
inline BOOL GetClassInfo(HINSTANCE inst, LPCSTR className, WNDCLASSA* wc) { return GetClassInfoA(inst, className, wc); }
// The default child class of CWnd::Create with a null class name (CS_DBLCLKS, arrow pointer,
// no background brush). The returned name lives for the process.
LPCSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor = nullptr, HBRUSH background = nullptr, HICON icon = nullptr);

// Creates a window of a registered class: child (WS_CHILD, parent given) or top-level
// (rectangle in screen coordinates; the parent of a WS_POPUP is its owner). Sends
// WM_NCCREATE, WM_CREATE, WM_SIZE, WM_MOVE and, when WS_VISIBLE, WM_SHOWWINDOW. Null on
// failure (unknown class, invalid parent, WM_CREATE answering -1).
HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menuOrId, HINSTANCE inst, LPVOID param);
constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);
// Destroys the window and its children: WM_DESTROY to the window, then to its children;
// WM_NCDESTROY to the children, then the window. The handle is invalid afterwards.
BOOL DestroyWindow(HWND hwnd);
// FALSE for null, destroyed and never-made handles alike.
BOOL IsWindow(HWND hwnd);
BOOL IsChild(HWND parent, HWND hwnd);
// The parent of a child; the owner of a WS_POPUP window; else null.
HWND GetParent(HWND hwnd);
// Moves a child under another parent (not under itself or its descendants); the old parent.
HWND SetParent(HWND child, HWND newParent);
// Siblings and children in stacking order, topmost first (GW_CHILD: the topmost child).
HWND GetWindow(HWND hwnd, UINT cmd);
HWND GetTopWindow(HWND hwnd);
// The child with the id (the first in stacking order), or null.
HWND GetDlgItem(HWND parent, int id);
int GetDlgCtrlID(HWND hwnd);
// The virtual screen (1920x1080 at 0,0): the parent of top-level windows for GetAncestor.
HWND GetDesktopWindow();
HWND GetAncestor(HWND hwnd, UINT flags);
constexpr UINT GA_PARENT = 1;
constexpr UINT GA_ROOT = 2;
constexpr UINT GA_ROOTOWNER = 3;

// Places, sizes, restacks, shows or hides (SWP_ flags); sends WM_WINDOWPOSCHANGING and
// WM_WINDOWPOSCHANGED (whose default sends WM_SIZE/WM_MOVE) and repaints what changed:
// the parent under the old place and the window at the new one.
BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
// Child rectangles are in the parent's client coordinates, top-level ones on the screen.
BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint);
// Sends WM_SHOWWINDOW; shown top-level windows are activated (not with SW_SHOWNA). Returns
// whether the window was visible before.
BOOL ShowWindow(HWND hwnd, int cmd);
// TRUE when the window and all its ancestors have WS_VISIBLE.
BOOL IsWindowVisible(HWND hwnd);
// Returns whether the window was disabled before; a disabled window gets no input.
BOOL EnableWindow(HWND hwnd, BOOL enable);
BOOL IsWindowEnabled(HWND hwnd);
// Client area: the window less borders, edges, caption and frame scroll bars, at (0,0).
BOOL GetClientRect(HWND hwnd, RECT* rect);
// The window rectangle in screen coordinates.
BOOL GetWindowRect(HWND hwnd, RECT* rect);
BOOL ClientToScreen(HWND hwnd, POINT* pt);
BOOL ScreenToClient(HWND hwnd, POINT* pt);
// Converts points between client spaces (null = screen); returns the x offset in the low
// word and the y offset in the high word.
int MapWindowPoints(HWND from, HWND to, POINT* pts, UINT count);
// The deepest visible window under a screen point, topmost first at each level; null off
// every window.
HWND WindowFromPoint(POINT screenPt);
// The topmost child whose rectangle holds the client point (hidden ones too unless
// CWP_SKIPINVISIBLE), the parent itself when none, null outside its client area.
HWND ChildWindowFromPoint(HWND parent, POINT clientPt);
HWND ChildWindowFromPointEx(HWND parent, POINT clientPt, UINT flags);
// rcNormalPosition is the window rectangle in the parent's client coordinates.
BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* wp);

// GWL_STYLE, GWL_EXSTYLE, GWL_ID, GWLP_USERDATA, GWLP_WNDPROC (subclassing), GWLP_HWNDPARENT.
// Changing styles does not redraw; follow with SetWindowPos(SWP_FRAMECHANGED).
LONG_PTR GetWindowLongPtrA(HWND hwnd, int index);
LONG_PTR SetWindowLongPtrA(HWND hwnd, int index, LONG_PTR value);
inline LONG GetWindowLongA(HWND hwnd, int index) { return static_cast<LONG>(GetWindowLongPtrA(hwnd, index)); }
inline LONG SetWindowLongA(HWND hwnd, int index, LONG value) { return static_cast<LONG>(SetWindowLongPtrA(hwnd, index, value)); }
#define GetWindowLongPtr GetWindowLongPtrA
#define SetWindowLongPtr SetWindowLongPtrA
#define GetWindowLong GetWindowLongA
#define SetWindowLong SetWindowLongA
// The class name of the window into buffer (cut to size - 1); its length, 0 if invalid.
int GetClassNameA(HWND hwnd, LPSTR buffer, int size);
inline int GetClassName(HWND hwnd, LPSTR buffer, int size) { return GetClassNameA(hwnd, buffer, size); }
// Window text through WM_SETTEXT / WM_GETTEXT (8-bit, code page text); GetWindowTextA
// copies at most size - 1 bytes and a NUL and returns the count.
BOOL SetWindowTextA(HWND hwnd, LPCSTR text);
int GetWindowTextA(HWND hwnd, LPSTR buffer, int size);
int GetWindowTextLengthA(HWND hwnd);

// Painting: the update region of a window, in client coordinates. Invalidating a window
// without WS_CLIPCHILDREN invalidates its children under the area too (they paint after
// it). WM_PAINT comes when the queue has nothing else; UpdateWindow paints the window and
// then its children that need it, at once.
BOOL InvalidateRect(HWND hwnd, const RECT* rect, BOOL erase);
BOOL ValidateRect(HWND hwnd, const RECT* rect);
BOOL UpdateWindow(HWND hwnd);
// RDW_ flags; the region argument is not used (null or a rectangle only).
BOOL RedrawWindow(HWND hwnd, const RECT* rect, HRGN region, UINT flags);
// The bounding box of the update region; FALSE when there is nothing to paint.
BOOL GetUpdateRect(HWND hwnd, RECT* rect, BOOL erase);
// Moves the client pixels by (dx, dy) within the clip rectangle and invalidates what was
// uncovered.
BOOL ScrollWindow(HWND hwnd, int dx, int dy, const RECT* scroll, const RECT* clip);

// Window scroll bars (the WS_HSCROLL/WS_VSCROLL bars of a window's frame, 17 pixels wide).
// The position is kept within min .. max - page + 1. The user's arrows, track and thumb send
// WM_HSCROLL/WM_VSCROLL with SB_ codes, SB_THUMBTRACK while dragging, then SB_ENDSCROLL.
int SetScrollInfo(HWND hwnd, int bar, const SCROLLINFO* si, BOOL redraw);
BOOL GetScrollInfo(HWND hwnd, int bar, SCROLLINFO* si);
int SetScrollPos(HWND hwnd, int bar, int pos, BOOL redraw);
int GetScrollPos(HWND hwnd, int bar);
BOOL SetScrollRange(HWND hwnd, int bar, int minPos, int maxPos, BOOL redraw);
BOOL GetScrollRange(HWND hwnd, int bar, int* minPos, int* maxPos);
BOOL ShowScrollBar(HWND hwnd, int bar, BOOL show);
BOOL EnableScrollBar(HWND hwnd, UINT bar, UINT arrows);

// Messages ------------------------------------------------------------------------------------
// Runs the window's procedure now (on the window's thread, waiting for it) and returns
// its result; 0 for an invalid window.
LRESULT SendMessageA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
inline LRESULT SendMessage(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) { return SendMessageA(hwnd, msg, wp, lp); }
// Queues the message for the window's thread; FALSE for an invalid window.
BOOL PostMessageA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
inline BOOL PostMessage(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) { return PostMessageA(hwnd, msg, wp, lp); }
// Queues a message with no window for a thread; FALSE when the thread has no queue.
BOOL PostThreadMessageA(DWORD threadId, UINT msg, WPARAM wp, LPARAM lp);
inline BOOL PostThreadMessage(DWORD threadId, UINT msg, WPARAM wp, LPARAM lp) { return PostThreadMessageA(threadId, msg, wp, lp); }
// Waits for the next message of this thread (sent messages are run while waiting).
// Returns 0 for WM_QUIT, -1 for an invalid filter window, else non-zero.
BOOL GetMessageA(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax);
inline BOOL GetMessage(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax) { return GetMessageA(msg, hwnd, filterMin, filterMax); }
// Looks for a message without waiting; TRUE when one was found.
BOOL PeekMessageA(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax, UINT removeFlags);
inline BOOL PeekMessage(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax, UINT removeFlags) { return PeekMessageA(msg, hwnd, filterMin, filterMax, removeFlags); }
// Posts WM_CHAR for a WM_KEYDOWN of a key that types a character; TRUE if it did.
BOOL TranslateMessage(const MSG* msg);
LRESULT DispatchMessageA(const MSG* msg);
inline LRESULT DispatchMessage(const MSG* msg) { return DispatchMessageA(msg); }
void PostQuitMessage(int exitCode);
// The default handling of a message (painting, erasing, pointer shape, closing, ...).
LRESULT DefWindowProcA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
inline LRESULT DefWindowProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) { return DefWindowProcA(hwnd, msg, wp, lp); }
LRESULT CallWindowProcA(WNDPROC proc, HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
// Time (layer clock, ms) and screen point of the message last retrieved by this thread.
DWORD GetMessageTime();
DWORD GetMessagePos();
BOOL InSendMessage();
// The layer's thread ids: small numbers, stable for the thread's life.
DWORD GetCurrentThreadId();
DWORD GetWindowThreadProcessId(HWND hwnd, DWORD* processId);

// Input ----------------------------------------------------------------------------------------
// Routes every mouse message to the window until released; returns the previous capture.
// The window losing the capture gets WM_CAPTURECHANGED.
HWND SetCapture(HWND hwnd);
BOOL ReleaseCapture();
HWND GetCapture();
// Moves the keyboard focus; WM_KILLFOCUS to the old window, WM_SETFOCUS to the new one.
HWND SetFocus(HWND hwnd);
HWND GetFocus();
HWND GetActiveWindow();
HWND SetActiveWindow(HWND hwnd);
HWND GetForegroundWindow();
BOOL SetForegroundWindow(HWND hwnd);
// Key state as of the message last retrieved: high bit down, low bit toggled.
SHORT GetKeyState(int vk);
// Key state now (as input arrived).
SHORT GetAsyncKeyState(int vk);
BOOL GetCursorPos(POINT* pt);
BOOL SetCursorPos(int x, int y);
// Keeps the pointer inside the screen rectangle; null frees it.
BOOL ClipCursor(const RECT* rect);
BOOL GetClipCursor(RECT* rect);
// Pointer shapes: the standard ones by IDC_ id (instance null), the library's own by
// resource id. Handles stay valid for the process.
HCURSOR LoadCursorA(HINSTANCE inst, LPCSTR name);
inline HCURSOR LoadCursor(HINSTANCE inst, LPCSTR name) { return LoadCursorA(inst, name); }
// Sets the shape shown now; returns the previous one.
HCURSOR SetCursor(HCURSOR cursor);
HCURSOR GetCursor();
int ShowCursor(BOOL show);
BOOL _TrackMouseEvent(TRACKMOUSEEVENT* tme);
inline BOOL TrackMouseEvent(TRACKMOUSEEVENT* tme) { return _TrackMouseEvent(tme); }
UINT GetDoubleClickTime();
BOOL SetDoubleClickTime(UINT ms);
BOOL MessageBeep(UINT type);

// Timers ---------------------------------------------------------------------------------------
// Starts (or restarts) timer `id` of the window with the period; WM_TIMER (or the
// procedure) runs on the window's thread. With no window a new id is made. 0 on failure.
UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapseMs, TIMERPROC proc);
BOOL KillTimer(HWND hwnd, UINT_PTR id);

// Application and modal loops -----------------------------------------------------------------
namespace orlex {
// Creates the toolkit application object (offscreen when no display is configured) on
// first use; safe to call again and from any code that needs fonts or widgets.
void EnsureApplication();
// Milliseconds of the layer's clock (timers, message times, double clicks).
ULONGLONG ClockMs();
// Replaces the clock (tests): a function giving milliseconds; empty restores the real one.
void SetClockSource(std::function<ULONGLONG()> source);
// Runs every message, timer and paint due now on this thread without waiting; returns
// the number of messages handled.
int PumpPending();
// Called when a modal loop starts (RunModalLoop, before it waits), with the window that
// runs it; a test uses it to act in the loop. Empty removes it.
void SetModalLoopHook(std::function<void(CWnd*)> hook);
// True when no display is attached (offscreen platform).
bool IsHeadless();
}  // namespace orlex

// CCmdUI: the state of one user-interface item asked through ON_UPDATE_COMMAND_UI.
class CCmdUI {
public:
    UINT m_nID = 0;
    UINT m_nIndex = 0;
    CMenu* m_pMenu = nullptr;
    CMenu* m_pSubMenu = nullptr;
    CMenu* m_pParentMenu = nullptr;
    CWnd* m_pOther = nullptr;  // the window of the item when it is not a menu item
    UINT m_nIndexMax = 0;
    BOOL m_bEnableChanged = FALSE;
    BOOL m_bContinueRouting = FALSE;

    virtual ~CCmdUI() = default;
    // For a window item: enables or disables the window. Menu items: see afxmenu.h.
    virtual void Enable(BOOL on = TRUE);
    // 0 unchecked, 1 checked, 2 indeterminate; a window item takes BM_SETCHECK.
    virtual void SetCheck(int check = 1);
    virtual void SetRadio(BOOL on = TRUE) { SetCheck(on ? 1 : 0); }
    virtual void SetText(LPCSTR text);
    void ContinueRouting() { m_bContinueRouting = TRUE; }
    // Asks the target's message map for this item's state; TRUE if a handler answered.
    BOOL DoUpdate(CWnd* target, BOOL disableIfNoHandler);
};

// Message maps --------------------------------------------------------------------------------
// An entry: the message it matches (or the variable of a registered message, read at
// dispatch time), the notification code and control id range, and a thunk that unpacks the
// parameters and calls the member function with the framework's signature. The thunk sets
// *handled to false when a handler declines (ON_NOTIFY_EX, ON_COMMAND_EX).
using AFX_MSGTHUNK = LRESULT (*)(CWnd* target, WPARAM wp, LPARAM lp, bool* handled);
struct AFX_MSGMAP_ENTRY {
    UINT nMessage;
    UINT nCode;
    UINT nID;
    UINT nLastID;
    const UINT* pRegistered;  // ON_REGISTERED_MESSAGE: the variable holding the number
    AFX_MSGTHUNK pfn;
};
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();
    const AFX_MSGMAP_ENTRY* lpEntries;
};

#define DECLARE_MESSAGE_MAP()                                  \
protected:                                                      \
    static const AFX_MSGMAP* GetThisMessageMap();              \
    const AFX_MSGMAP* GetMessageMap() const override;          \
                                                                \
private:

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                          \
    const AFX_MSGMAP* theClass::GetMessageMap() const { return GetThisMessageMap(); }   \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                   \
        using ThisClass = theClass;                                                     \
        using TheBaseClass = baseClass;                                                 \
        static const AFX_MSGMAP_ENTRY _messageEntries[] = {

#define END_MESSAGE_MAP()                                                              \
    { 0, 0, 0, 0, nullptr, nullptr }                                                    \
    };                                                                                  \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, &_messageEntries[0]}; \
    return &messageMap;                                                                 \
    }

// One entry of a message with a thunk body; `self` is the target as ThisClass*.
#define ORLEX_MSG_ENTRY(msg, code, id, lastId, reg, body)                                            \
    {static_cast<UINT>(msg), static_cast<UINT>(code), static_cast<UINT>(id), static_cast<UINT>(lastId), \
     reg, [](CWnd* target_, WPARAM wParam, LPARAM lParam, bool* handled_) -> LRESULT {              \
         ThisClass* self = static_cast<ThisClass*>(target_);                                          \
         (void)self; (void)wParam; (void)lParam; (void)handled_;                                      \
         body                                                                                        \
     }},
#define ORLEX_WM(msg, body) ORLEX_MSG_ENTRY(msg, 0, 0, 0, nullptr, body)
#define ORLEX_PT(lp) CPoint(GET_X_LPARAM(lp), GET_Y_LPARAM(lp))
#define ORLEX_WNDFROM(h) CWnd::FromHandle(reinterpret_cast<HWND>(h))

// Window messages with the framework's handler signatures.
#define ON_WM_CREATE() ORLEX_WM(WM_CREATE, return static_cast<LRESULT>(self->OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam)));)
#define ON_WM_DESTROY() ORLEX_WM(WM_DESTROY, self->OnDestroy(); return 0;)
#define ON_WM_NCDESTROY() ORLEX_WM(WM_NCDESTROY, self->OnNcDestroy(); return 0;)
#define ON_WM_MOVE() ORLEX_WM(WM_MOVE, self->OnMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;)
#define ON_WM_SIZE() ORLEX_WM(WM_SIZE, self->OnSize(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_ACTIVATE() ORLEX_WM(WM_ACTIVATE, self->OnActivate(LOWORD(wParam), ORLEX_WNDFROM(lParam), HIWORD(wParam)); return 0;)
#define ON_WM_SETFOCUS() ORLEX_WM(WM_SETFOCUS, self->OnSetFocus(ORLEX_WNDFROM(wParam)); return 0;)
#define ON_WM_KILLFOCUS() ORLEX_WM(WM_KILLFOCUS, self->OnKillFocus(ORLEX_WNDFROM(wParam)); return 0;)
#define ON_WM_ENABLE() ORLEX_WM(WM_ENABLE, self->OnEnable(static_cast<BOOL>(wParam)); return 0;)
#define ON_WM_PAINT() ORLEX_WM(WM_PAINT, self->OnPaint(); return 0;)
#define ON_WM_CLOSE() ORLEX_WM(WM_CLOSE, self->OnClose(); return 0;)
#define ON_WM_ERASEBKGND() ORLEX_WM(WM_ERASEBKGND, return static_cast<LRESULT>(self->OnEraseBkgnd(CWnd::DCFromHandle(reinterpret_cast<HDC>(wParam))));)
#define ON_WM_SYSCOLORCHANGE() ORLEX_WM(WM_SYSCOLORCHANGE, self->OnSysColorChange(); return 0;)
#define ON_WM_SHOWWINDOW() ORLEX_WM(WM_SHOWWINDOW, self->OnShowWindow(static_cast<BOOL>(wParam), static_cast<UINT>(lParam)); return 0;)
#define ON_WM_SETTINGCHANGE() ORLEX_WM(WM_SETTINGCHANGE, self->OnSettingChange(static_cast<UINT>(wParam), reinterpret_cast<LPCSTR>(lParam)); return 0;)
#define ON_WM_SETCURSOR() ORLEX_WM(WM_SETCURSOR, return static_cast<LRESULT>(self->OnSetCursor(ORLEX_WNDFROM(wParam), static_cast<short>(LOWORD(lParam)), HIWORD(lParam)));)
#define ON_WM_MOUSEACTIVATE() ORLEX_WM(WM_MOUSEACTIVATE, return static_cast<LRESULT>(self->OnMouseActivate(ORLEX_WNDFROM(wParam), static_cast<short>(LOWORD(lParam)), HIWORD(lParam)));)
#define ON_WM_GETMINMAXINFO() ORLEX_WM(WM_GETMINMAXINFO, self->OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam)); return 0;)
#define ON_WM_DRAWITEM() ORLEX_WM(WM_DRAWITEM, self->OnDrawItem(static_cast<int>(wParam), reinterpret_cast<LPDRAWITEMSTRUCT>(lParam)); return TRUE;)
#define ON_WM_MEASUREITEM() ORLEX_WM(WM_MEASUREITEM, self->OnMeasureItem(static_cast<int>(wParam), reinterpret_cast<LPMEASUREITEMSTRUCT>(lParam)); return TRUE;)
#define ON_WM_WINDOWPOSCHANGED() ORLEX_WM(WM_WINDOWPOSCHANGED, self->OnWindowPosChanged(reinterpret_cast<WINDOWPOS*>(lParam)); return 0;)
#define ON_WM_WINDOWPOSCHANGING() ORLEX_WM(WM_WINDOWPOSCHANGING, self->OnWindowPosChanging(reinterpret_cast<WINDOWPOS*>(lParam)); return 0;)
#define ON_WM_HELPINFO() ORLEX_WM(WM_HELP, return static_cast<LRESULT>(self->OnHelpInfo(reinterpret_cast<HELPINFO*>(lParam)));)
#define ON_WM_CONTEXTMENU() ORLEX_WM(WM_CONTEXTMENU, self->OnContextMenu(ORLEX_WNDFROM(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_NCHITTEST() ORLEX_WM(WM_NCHITTEST, return static_cast<LRESULT>(self->OnNcHitTest(ORLEX_PT(lParam)));)
#define ON_WM_GETDLGCODE() ORLEX_WM(WM_GETDLGCODE, return static_cast<LRESULT>(self->OnGetDlgCode());)
#define ON_WM_KEYDOWN() ORLEX_WM(WM_KEYDOWN, self->OnKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_KEYUP() ORLEX_WM(WM_KEYUP, self->OnKeyUp(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_CHAR() ORLEX_WM(WM_CHAR, self->OnChar(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_SYSKEYDOWN() ORLEX_WM(WM_SYSKEYDOWN, self->OnSysKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_SYSKEYUP() ORLEX_WM(WM_SYSKEYUP, self->OnSysKeyUp(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_SYSCHAR() ORLEX_WM(WM_SYSCHAR, self->OnSysChar(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_TIMER() ORLEX_WM(WM_TIMER, self->OnTimer(static_cast<UINT_PTR>(wParam)); return 0;)
#define ON_WM_HSCROLL() ORLEX_WM(WM_HSCROLL, self->OnHScroll(LOWORD(wParam), static_cast<short>(HIWORD(wParam)), reinterpret_cast<CScrollBar*>(ORLEX_WNDFROM(lParam))); return 0;)
#define ON_WM_VSCROLL() ORLEX_WM(WM_VSCROLL, self->OnVScroll(LOWORD(wParam), static_cast<short>(HIWORD(wParam)), reinterpret_cast<CScrollBar*>(ORLEX_WNDFROM(lParam))); return 0;)
#define ON_WM_INITMENUPOPUP() ORLEX_WM(WM_INITMENUPOPUP, self->OnInitMenuPopup(CWnd::MenuFromHandle(reinterpret_cast<HMENU>(wParam)), LOWORD(lParam), HIWORD(lParam)); return 0;)
#define ON_WM_MOUSEMOVE() ORLEX_WM(WM_MOUSEMOVE, self->OnMouseMove(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_LBUTTONDOWN() ORLEX_WM(WM_LBUTTONDOWN, self->OnLButtonDown(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_LBUTTONUP() ORLEX_WM(WM_LBUTTONUP, self->OnLButtonUp(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_LBUTTONDBLCLK() ORLEX_WM(WM_LBUTTONDBLCLK, self->OnLButtonDblClk(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_RBUTTONDOWN() ORLEX_WM(WM_RBUTTONDOWN, self->OnRButtonDown(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_RBUTTONUP() ORLEX_WM(WM_RBUTTONUP, self->OnRButtonUp(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_RBUTTONDBLCLK() ORLEX_WM(WM_RBUTTONDBLCLK, self->OnRButtonDblClk(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_MBUTTONDOWN() ORLEX_WM(WM_MBUTTONDOWN, self->OnMButtonDown(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_MBUTTONUP() ORLEX_WM(WM_MBUTTONUP, self->OnMButtonUp(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_MBUTTONDBLCLK() ORLEX_WM(WM_MBUTTONDBLCLK, self->OnMButtonDblClk(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_MOUSEWHEEL() ORLEX_WM(WM_MOUSEWHEEL, return static_cast<LRESULT>(self->OnMouseWheel(LOWORD(wParam), GET_WHEEL_DELTA_WPARAM(wParam), ORLEX_PT(lParam)));)
#define ON_WM_CAPTURECHANGED() ORLEX_WM(WM_CAPTURECHANGED, self->OnCaptureChanged(ORLEX_WNDFROM(lParam)); return 0;)
#define ON_WM_MOUSELEAVE() ORLEX_WM(WM_MOUSELEAVE, self->OnMouseLeave(); return 0;)
#define ON_WM_MOUSEHOVER() ORLEX_WM(WM_MOUSEHOVER, self->OnMouseHover(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_NCMOUSEMOVE() ORLEX_WM(WM_NCMOUSEMOVE, self->OnNcMouseMove(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
#define ON_WM_NCLBUTTONDOWN() ORLEX_WM(WM_NCLBUTTONDOWN, self->OnNcLButtonDown(static_cast<UINT>(wParam), ORLEX_PT(lParam)); return 0;)
// WM_CTLCOLOR*: the parent's OnCtlColor(dc, control, kind) gives the brush.
#define ON_WM_CTLCOLOR() ORLEX_WM(WM_CTLCOLOR, return reinterpret_cast<LRESULT>(self->OnCtlColor(CWnd::DCFromHandle(reinterpret_cast<HDC>(wParam)), CWnd::CtlColorWindow(lParam), CWnd::CtlColorKind(lParam)));)
// The control's own answer to its reflected WM_CTLCOLOR: CtlColor(dc, kind).
#define ON_WM_CTLCOLOR_REFLECT() ORLEX_WM(WM_REFLECT_BASE + WM_CTLCOLOR, return reinterpret_cast<LRESULT>(self->CtlColor(CWnd::DCFromHandle(reinterpret_cast<HDC>(wParam)), CWnd::CtlColorKind(lParam)));)

// Messages by number: LRESULT OnX(WPARAM, LPARAM).
#define ON_MESSAGE(message, memberFxn) ORLEX_WM(message, return self->memberFxn(wParam, lParam);)
// A registered message: the variable's value when the message arrives decides.
#define ON_REGISTERED_MESSAGE(nMessageVariable, memberFxn) \
    ORLEX_MSG_ENTRY(0, 0, 0, 0, &(nMessageVariable), return self->memberFxn(wParam, lParam);)
#define ON_THREAD_MESSAGE(message, memberFxn) ORLEX_WM(message, self->memberFxn(wParam, lParam); return 0;)

// Commands: void OnX(); ranges get the id; _EX forms answer TRUE when they handled it.
#define ON_COMMAND(id, memberFxn) ORLEX_MSG_ENTRY(WM_COMMAND, CN_COMMAND, id, id, nullptr, self->memberFxn(); return 0;)
#define ON_COMMAND_EX(id, memberFxn) \
    ORLEX_MSG_ENTRY(WM_COMMAND, CN_COMMAND, id, id, nullptr, *handled_ = self->memberFxn(static_cast<UINT>(wParam)) != 0; return 0;)
#define ON_COMMAND_RANGE(id, idLast, memberFxn) \
    ORLEX_MSG_ENTRY(WM_COMMAND, CN_COMMAND, id, idLast, nullptr, self->memberFxn(static_cast<UINT>(wParam)); return 0;)
#define ON_UPDATE_COMMAND_UI(id, memberFxn) \
    ORLEX_MSG_ENTRY(WM_COMMAND, CN_UPDATE_COMMAND_UI, id, id, nullptr, self->memberFxn(reinterpret_cast<CCmdUI*>(lParam)); return 0;)
#define ON_UPDATE_COMMAND_UI_RANGE(id, idLast, memberFxn) \
    ORLEX_MSG_ENTRY(WM_COMMAND, CN_UPDATE_COMMAND_UI, id, idLast, nullptr, self->memberFxn(reinterpret_cast<CCmdUI*>(lParam)); return 0;)
// Control notifications through WM_COMMAND: void OnX().
#define ON_CONTROL(code, id, memberFxn) ORLEX_MSG_ENTRY(WM_COMMAND, code, id, id, nullptr, self->memberFxn(); return 0;)
#define ON_CONTROL_RANGE(code, id, idLast, memberFxn) \
    ORLEX_MSG_ENTRY(WM_COMMAND, code, id, idLast, nullptr, self->memberFxn(static_cast<UINT>(wParam)); return 0;)
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_BN_DOUBLECLICKED(id, memberFxn) ON_CONTROL(BN_DOUBLECLICKED, id, memberFxn)
#define ON_BN_SETFOCUS(id, memberFxn) ON_CONTROL(BN_SETFOCUS, id, memberFxn)
#define ON_BN_KILLFOCUS(id, memberFxn) ON_CONTROL(BN_KILLFOCUS, id, memberFxn)
#define ON_EN_SETFOCUS(id, memberFxn) ON_CONTROL(EN_SETFOCUS, id, memberFxn)
#define ON_EN_KILLFOCUS(id, memberFxn) ON_CONTROL(EN_KILLFOCUS, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)
#define ON_EN_UPDATE(id, memberFxn) ON_CONTROL(EN_UPDATE, id, memberFxn)
#define ON_EN_MAXTEXT(id, memberFxn) ON_CONTROL(EN_MAXTEXT, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)
#define ON_CBN_DBLCLK(id, memberFxn) ON_CONTROL(CBN_DBLCLK, id, memberFxn)
#define ON_CBN_SETFOCUS(id, memberFxn) ON_CONTROL(CBN_SETFOCUS, id, memberFxn)
#define ON_CBN_KILLFOCUS(id, memberFxn) ON_CONTROL(CBN_KILLFOCUS, id, memberFxn)
#define ON_CBN_EDITCHANGE(id, memberFxn) ON_CONTROL(CBN_EDITCHANGE, id, memberFxn)
#define ON_CBN_EDITUPDATE(id, memberFxn) ON_CONTROL(CBN_EDITUPDATE, id, memberFxn)
#define ON_CBN_DROPDOWN(id, memberFxn) ON_CONTROL(CBN_DROPDOWN, id, memberFxn)
#define ON_CBN_CLOSEUP(id, memberFxn) ON_CONTROL(CBN_CLOSEUP, id, memberFxn)
#define ON_CBN_SELENDOK(id, memberFxn) ON_CONTROL(CBN_SELENDOK, id, memberFxn)
#define ON_CBN_SELENDCANCEL(id, memberFxn) ON_CONTROL(CBN_SELENDCANCEL, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)
#define ON_LBN_DBLCLK(id, memberFxn) ON_CONTROL(LBN_DBLCLK, id, memberFxn)
#define ON_STN_CLICKED(id, memberFxn) ON_CONTROL(STN_CLICKED, id, memberFxn)

// WM_NOTIFY: void OnX(NMHDR*, LRESULT*); _EX forms: BOOL OnX(UINT id, NMHDR*, LRESULT*).
#define ON_NOTIFY(wNotifyCode, id, memberFxn)                                                  \
    ORLEX_MSG_ENTRY(WM_NOTIFY, wNotifyCode, id, id, nullptr,                                    \
                    self->memberFxn(reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)); return 0;)
#define ON_NOTIFY_RANGE(wNotifyCode, id, idLast, memberFxn)                                    \
    ORLEX_MSG_ENTRY(WM_NOTIFY, wNotifyCode, id, idLast, nullptr,                                \
                    self->memberFxn(static_cast<UINT>(reinterpret_cast<NMHDR*>(wParam)->idFrom), \
                                    reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)); return 0;)
#define ON_NOTIFY_EX(wNotifyCode, id, memberFxn)                                               \
    ORLEX_MSG_ENTRY(WM_NOTIFY, wNotifyCode, id, id, nullptr,                                    \
                    *handled_ = self->memberFxn(static_cast<UINT>(reinterpret_cast<NMHDR*>(wParam)->idFrom), \
                                    reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)) != 0; return 0;)
#define ON_NOTIFY_EX_RANGE(wNotifyCode, id, idLast, memberFxn)                                 \
    ORLEX_MSG_ENTRY(WM_NOTIFY, wNotifyCode, id, idLast, nullptr,                                \
                    *handled_ = self->memberFxn(static_cast<UINT>(reinterpret_cast<NMHDR*>(wParam)->idFrom), \
                                    reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)) != 0; return 0;)

// Reflected notifications, handled by the control that sent them.
#define ON_CONTROL_REFLECT(code, memberFxn) \
    ORLEX_MSG_ENTRY(WM_REFLECT_BASE + WM_COMMAND, code, 0, 0, nullptr, self->memberFxn(); return 0;)
#define ON_CONTROL_REFLECT_EX(code, memberFxn) \
    ORLEX_MSG_ENTRY(WM_REFLECT_BASE + WM_COMMAND, code, 0, 0, nullptr, *handled_ = self->memberFxn() != 0; return 0;)
#define ON_NOTIFY_REFLECT(code, memberFxn)                                                       \
    ORLEX_MSG_ENTRY(WM_REFLECT_BASE + WM_NOTIFY, code, 0, 0, nullptr,                             \
                    self->memberFxn(reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)); return 0;)
#define ON_NOTIFY_REFLECT_EX(code, memberFxn)                                                    \
    ORLEX_MSG_ENTRY(WM_REFLECT_BASE + WM_NOTIFY, code, 0, 0, nullptr,                             \
                    *handled_ = self->memberFxn(reinterpret_cast<NMHDR*>(wParam), reinterpret_cast<LRESULT*>(lParam)) != 0; return 0;)

// CWnd -----------------------------------------------------------------------------------------
// A window object. The object and the window have separate lives: Create makes the window,
// DestroyWindow ends it (then PostNcDestroy runs, where self-deleting classes delete this);
// deleting a CWnd whose window exists destroys the window first.
class CWnd : public CCmdTarget {
    DECLARE_DYNAMIC(CWnd)
public:
    HWND m_hWnd = nullptr;
    HWND m_hWndOwner = nullptr;  // notifications go here when set, else to the parent
    UINT m_nFlags = 0;           // WF_ flags of the framework (modal loop state)

    CWnd();
    ~CWnd() override;
    // Stand-ins for HWND_TOP, HWND_BOTTOM, HWND_TOPMOST, HWND_NOTOPMOST in SetWindowPos.
    static const CWnd wndTop;
    static const CWnd wndBottom;
    static const CWnd wndTopMost;
    static const CWnd wndNoTopMost;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    // Creation. Create makes a child (WS_CHILD is added; parent required); a null class
    // name means the default child class (CS_DBLCLKS, arrow pointer). CreateEx makes a
    // child or a top-level window (rect in screen coordinates for top-level windows).
    virtual BOOL Create(LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                        UINT id, void* context = nullptr);
    virtual BOOL CreateEx(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect,
                          CWnd* parent, UINT id, LPVOID param = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int w, int h,
                  HWND parent, HMENU idOrMenu, LPVOID param = nullptr);
    virtual BOOL DestroyWindow();
    // Called before creation; may change the CREATESTRUCT (class, style). FALSE cancels.
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    // Called when an existing window is subclassed by this object.
    virtual void PreSubclassWindow() {}
    // After WM_NCDESTROY, with m_hWnd already null. Self-deleting classes delete this here.
    virtual void PostNcDestroy() {}

    // Handle map. FromHandle gives the object of a window, or a temporary object for a
    // window without one (valid until the window goes); null for null or invalid handles.
    static CWnd* FromHandle(HWND hwnd);
    // The object attached to the window, or null.
    static CWnd* FromHandlePermanent(HWND hwnd);
    BOOL Attach(HWND hwnd);
    HWND Detach();
    BOOL SubclassWindow(HWND hwnd);
    BOOL SubclassDlgItem(UINT id, CWnd* parent);
    HWND UnsubclassWindow();
    // The handle, or null when the window does not exist; a null object answers null too,
    // as the platform's code relies on.
    HWND GetSafeHwnd() const;
    operator HWND() const { return m_hWnd; }

    // Message handling.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL PreTranslateMessage(MSG* msg);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    // Routes a command (nCode CN_COMMAND, a control notification code, or
    // CN_UPDATE_COMMAND_UI with the CCmdUI in extra) through this object's message map.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo);
    // A reflected message from the parent (WM_COMMAND, WM_NOTIFY, WM_CTLCOLOR): TRUE when
    // this control handled it.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    BOOL ReflectChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    static BOOL ReflectLastMsg(HWND child, LRESULT* result = nullptr);
    // The default handling of the message being handled now (same parameters).
    LRESULT Default();
    // The message being handled now by this thread (null outside a handler).
    static const MSG* GetCurrentMessage();

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Sends to every descendant (deep = TRUE) or child.
    void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0, BOOL deep = TRUE,
                                  BOOL onlyPermanent = FALSE) const;

    // Geometry and state.
    BOOL SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags);
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE);
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE);
    BOOL ShowWindow(int cmd);
    BOOL IsWindowVisible() const;
    BOOL EnableWindow(BOOL enable = TRUE);
    BOOL IsWindowEnabled() const;
    void GetClientRect(LPRECT rect) const;
    void GetWindowRect(LPRECT rect) const;
    void ClientToScreen(LPPOINT pt) const;
    void ClientToScreen(LPRECT rect) const;
    void ScreenToClient(LPPOINT pt) const;
    void ScreenToClient(LPRECT rect) const;
    void MapWindowPoints(CWnd* to, LPPOINT pts, UINT count) const;
    void MapWindowPoints(CWnd* to, LPRECT rect) const;
    BOOL GetWindowPlacement(WINDOWPLACEMENT* wp) const;
    CWnd* GetParent() const;
    CWnd* SetParent(CWnd* newParent);
    CWnd* GetOwner() const;
    void SetOwner(CWnd* owner) { m_hWndOwner = owner ? owner->m_hWnd : nullptr; }
    CWnd* GetDlgItem(int id) const;
    void GetDlgItem(int id, HWND* out) const;
    int GetDlgCtrlID() const;
    int SetDlgCtrlID(int id);
    CWnd* GetWindow(UINT cmd) const;
    CWnd* GetTopWindow() const;
    CWnd* GetTopLevelParent() const;
    CWnd* ChildWindowFromPoint(POINT pt) const;
    CWnd* ChildWindowFromPoint(POINT pt, UINT flags) const;
    static CWnd* WindowFromPoint(POINT pt);
    static CWnd* GetDesktopWindow();
    BOOL IsChild(const CWnd* wnd) const;
    BOOL IsWindow() const { return ::IsWindow(m_hWnd); }

    void SetWindowText(LPCSTR text);
    int GetWindowText(LPSTR buffer, int size) const;
    void GetWindowText(CString& text) const;
    int GetWindowTextLength() const;
    DWORD GetStyle() const;
    DWORD GetExStyle() const;
    // Changes style bits; with flags, a SetWindowPos(SWP_NOSIZE|SWP_NOMOVE|SWP_NOZORDER|flags).
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT flags = 0);
    BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT flags = 0);
    static BOOL ModifyStyle(HWND hwnd, DWORD remove, DWORD add, UINT flags);
    static BOOL ModifyStyleEx(HWND hwnd, DWORD remove, DWORD add, UINT flags);

    // Painting.
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE);
    void ValidateRect(LPCRECT rect);
    void UpdateWindow();
    // region (client coordinates) takes the place of rect when given; both null: the whole
    // client area.
    BOOL RedrawWindow(LPCRECT rect = nullptr, CRgn* region = nullptr, UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);
    BOOL GetUpdateRect(LPRECT rect, BOOL erase = FALSE);
    void ScrollWindow(int dx, int dy, LPCRECT scroll = nullptr, LPCRECT clip = nullptr);
    void SetRedraw(BOOL redraw = TRUE);
    // Device contexts: defined with the drawing classes (afxgdi.h).
    CDC* GetDC();
    CDC* GetWindowDC();
    int ReleaseDC(CDC* dc);
    // Fonts through WM_SETFONT / WM_GETFONT; defined with the drawing classes.
    void SetFont(CFont* font, BOOL redraw = TRUE);
    CFont* GetFont() const;
    // Menus: defined with the menu classes (afxmenu.h).
    CMenu* GetMenu() const;
    BOOL SetMenu(CMenu* menu);

    // Window scroll bars.
    int GetScrollPos(int bar) const;
    int SetScrollPos(int bar, int pos, BOOL redraw = TRUE);
    void GetScrollRange(int bar, int* minPos, int* maxPos) const;
    void SetScrollRange(int bar, int minPos, int maxPos, BOOL redraw = TRUE);
    BOOL SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw = TRUE);
    BOOL GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask = SIF_ALL);
    int GetScrollLimit(int bar);
    void ShowScrollBar(UINT bar, BOOL show = TRUE);
    void EnableScrollBarCtrl(int bar, BOOL enable = TRUE);
    BOOL EnableScrollBar(int bar, UINT arrows = ESB_ENABLE_BOTH);
    virtual CScrollBar* GetScrollBarCtrl(int bar) const { return nullptr; }

    // Input.
    CWnd* SetCapture();
    static CWnd* GetCapture();
    CWnd* SetFocus();
    static CWnd* GetFocus();
    CWnd* SetActiveWindow();
    static CWnd* GetActiveWindow();
    BOOL SetForegroundWindow();
    UINT_PTR SetTimer(UINT_PTR id, UINT elapseMs, TIMERPROC proc = nullptr);
    BOOL KillTimer(UINT_PTR id);
    void BeginWaitCursor();
    void EndWaitCursor();
    void RestoreWaitCursor();

    // Modal loops (dialogs, popups): RunModalLoop pumps messages until EndModalLoop and
    // returns its result. Headless with nothing left to do the loop ends with IDCANCEL.
    virtual int RunModalLoop(DWORD flags = 0);
    virtual BOOL ContinueModal();
    virtual void EndModalLoop(int result);
    void CenterWindow(CWnd* alternateOwner = nullptr);
    // Data exchange between a window's fields and its child controls. UpdateData(TRUE)
    // reads and validates (FALSE when a check failed), FALSE writes; both run
    // DoDataExchange. Defined with the dialog classes.
    BOOL UpdateData(BOOL saveAndValidate = TRUE);
    virtual void DoDataExchange(CDataExchange* dx) {}
    // Shows tips for the tools OnToolHitTest finds under the pointer, over this window and
    // its children (the layer owns the tooltip control; it asks this window for texts with
    // WM_NOTIFY TTN_NEEDTEXT). FALSE turns them off and destroys the control. FALSE when
    // the window does not exist.
    BOOL EnableToolTips(BOOL enable = TRUE);
    // The tool at a client point, for EnableToolTips: fills *ti (hwnd, uId, uFlags, rect,
    // lpszText) and returns a hit code; -1 when no tool is there. Default: the visible
    // child under the point, uId its HWND with TTF_IDISHWND, text LPSTR_TEXTCALLBACK, hit
    // code its control id.
    virtual INT_PTR OnToolHitTest(CPoint point, TOOLINFOA* ti) const;

    // Parameters of the framework's WM_CTLCOLOR packing (lParam points to a record).
    static CDC* DCFromHandle(HDC hdc);  // defined with the drawing classes (CDC::FromHandle)
    static CMenu* MenuFromHandle(HMENU h);  // defined with the menu classes (CMenu::FromHandle)
    static CWnd* CtlColorWindow(LPARAM lp);
    static UINT CtlColorKind(LPARAM lp);

    // Overridable handlers (the framework's signatures); each default runs Default().
    virtual int OnCreate(LPCREATESTRUCT cs);
    virtual void OnDestroy();
    virtual void OnNcDestroy();
    virtual void OnMove(int x, int y);
    virtual void OnSize(UINT type, int cx, int cy);
    virtual void OnActivate(UINT state, CWnd* other, BOOL minimized);
    virtual void OnSetFocus(CWnd* oldWnd);
    virtual void OnKillFocus(CWnd* newWnd);
    virtual void OnEnable(BOOL enable);
    virtual void OnPaint();
    virtual void OnClose();
    virtual BOOL OnEraseBkgnd(CDC* dc);
    virtual void OnSysColorChange();
    virtual void OnShowWindow(BOOL show, UINT status);
    virtual void OnSettingChange(UINT flags, LPCSTR section);
    virtual BOOL OnSetCursor(CWnd* wnd, UINT hitTest, UINT message);
    virtual int OnMouseActivate(CWnd* topParent, UINT hitTest, UINT message);
    virtual void OnGetMinMaxInfo(MINMAXINFO* info);
    virtual void OnDrawItem(int id, LPDRAWITEMSTRUCT dis);
    virtual void OnMeasureItem(int id, LPMEASUREITEMSTRUCT mis);
    virtual void OnWindowPosChanged(WINDOWPOS* wp);
    virtual void OnWindowPosChanging(WINDOWPOS* wp);
    virtual BOOL OnHelpInfo(HELPINFO* info);
    virtual void OnContextMenu(CWnd* wnd, CPoint pt);
    virtual LRESULT OnNcHitTest(CPoint pt);
    virtual UINT OnGetDlgCode();
    virtual void OnKeyDown(UINT ch, UINT repeat, UINT flags);
    virtual void OnKeyUp(UINT ch, UINT repeat, UINT flags);
    virtual void OnChar(UINT ch, UINT repeat, UINT flags);
    virtual void OnSysKeyDown(UINT ch, UINT repeat, UINT flags);
    virtual void OnSysKeyUp(UINT ch, UINT repeat, UINT flags);
    virtual void OnSysChar(UINT ch, UINT repeat, UINT flags);
    virtual void OnTimer(UINT_PTR id);
    virtual void OnHScroll(UINT code, UINT pos, CScrollBar* bar);
    virtual void OnVScroll(UINT code, UINT pos, CScrollBar* bar);
    virtual void OnInitMenuPopup(CMenu* popup, UINT index, BOOL sysMenu);
    virtual void OnMouseMove(UINT flags, CPoint pt);
    virtual void OnLButtonDown(UINT flags, CPoint pt);
    virtual void OnLButtonUp(UINT flags, CPoint pt);
    virtual void OnLButtonDblClk(UINT flags, CPoint pt);
    virtual void OnRButtonDown(UINT flags, CPoint pt);
    virtual void OnRButtonUp(UINT flags, CPoint pt);
    virtual void OnRButtonDblClk(UINT flags, CPoint pt);
    virtual void OnMButtonDown(UINT flags, CPoint pt);
    virtual void OnMButtonUp(UINT flags, CPoint pt);
    virtual void OnMButtonDblClk(UINT flags, CPoint pt);
    virtual BOOL OnMouseWheel(UINT flags, short delta, CPoint pt);
    virtual void OnCaptureChanged(CWnd* wnd);
    virtual void OnMouseLeave();
    virtual void OnMouseHover(UINT flags, CPoint pt);
    virtual void OnNcMouseMove(UINT hitTest, CPoint pt);
    virtual void OnNcLButtonDown(UINT hitTest, CPoint pt);
    virtual HBRUSH OnCtlColor(CDC* dc, CWnd* wnd, UINT ctlColor);
    // Reflected WM_CTLCOLOR: a null brush lets the parent's answer stand.
    virtual HBRUSH CtlColor(CDC* dc, UINT ctlColor) { return nullptr; }

protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
    // Searches one map chain for an entry and runs it; TRUE when a handler took it.
    BOOL DispatchMap(UINT message, UINT code, UINT id, WPARAM wp, LPARAM lp, LRESULT* result);

    int m_nModalResult = 0;

private:
    explicit CWnd(HWND special) : m_hWnd(special), m_temporary(true) {}
    bool m_temporary = false;  // made by FromHandle for a window without an object
};

// The wait pointer for the life of the object (nested uses keep it until the outermost ends).
class CWaitCursor {
public:
    CWaitCursor() { CWnd().BeginWaitCursor(); }
    ~CWaitCursor() { CWnd().EndWaitCursor(); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    // Shows the wait pointer again after something (a message box) changed it.
    void Restore() { CWnd().RestoreWaitCursor(); }
};

// The record that the framework's WM_CTLCOLOR carries in lParam (control and kind).
struct AFX_CTLCOLOR {
    HWND hWnd;
    HDC hDC;
    UINT nCtlType;
};

// Threads -------------------------------------------------------------------------------------
// CWinThread, AfxBeginThread, AfxGetThread and AfxPumpMessage are declared with the
// application object (afxapp.h); this layer runs their message loops.
