// Data transfer between windows and programs: data sources and data objects for the
// clipboard, and drag and drop with drop targets registered on windows.
//
// A drag runs as a modal loop on the calling thread (COleDataSource::DoDragDrop). It takes
// the mouse capture on a private window, so everything that moves the pointer — real
// events from a display and the test harness's simulated input alike — drives it; keys
// typed during the drag are taken by the loop (Escape cancels, Ctrl/Shift/Alt change the
// key state that targets are given).
//
// Scripting a drag without a display: the loop calls the modal-loop hook
// (orlex::SetModalLoopHook, afxwin.h) once, when it first runs out of input, with the
// loop's private window; the hook moves the pointer, presses keys and releases the button
// through the harness (orlex::test::MouseMove, KeyDown, MouseUp...). Input queued before
// DoDragDrop is called is taken by the loop first. When the input runs out and the drag
// is still going without a display, nobody can end it: it ends as if cancelled.
#pragma once

#include <vector>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/globalmem.h"

using CLIPFORMAT = WORD;
using DROPEFFECT = DWORD;
using SCODE = LONG;

constexpr DROPEFFECT DROPEFFECT_NONE = 0;
constexpr DROPEFFECT DROPEFFECT_COPY = 1;
constexpr DROPEFFECT DROPEFFECT_MOVE = 2;
constexpr DROPEFFECT DROPEFFECT_LINK = 4;
constexpr DROPEFFECT DROPEFFECT_SCROLL = 0x80000000;

// Key state bit of Alt in the key states handed to drop targets (beside the MK_ flags).
constexpr DWORD MK_ALT = 0x0020;

// Answers of a drop source: go on, drop now, cancel, and "show the standard pointers".
constexpr SCODE S_OK = 0;
constexpr SCODE DRAGDROP_S_DROP = 0x00040100;
constexpr SCODE DRAGDROP_S_CANCEL = 0x00040101;
constexpr SCODE DRAGDROP_S_USEDEFAULTCURSORS = 0x00040102;

// Prepares data transfer for the calling thread. Always succeeds (TRUE); calling it again
// on the same thread does nothing more.
BOOL AfxOleInit();

namespace orlex {
// TRUE once AfxOleInit has run on the calling thread.
BOOL IsOleInitialized();
}  // namespace orlex

class COleDataObject;
class COleDropTarget;

// Decides during a drag whether it goes on, and which pointer shows. The default drops when
// the button that started the drag goes up and cancels on Escape or another button.
class COleDropSource : public CCmdTarget {
public:
    COleDropSource() = default;
    ~COleDropSource() override = default;

    // escapePressed: Escape was pressed since the last call; keyState: MK_ flags now.
    // Returns S_OK to go on, DRAGDROP_S_DROP or DRAGDROP_S_CANCEL.
    virtual SCODE QueryContinueDrag(BOOL escapePressed, DWORD keyState);
    // The target's latest answer; DRAGDROP_S_USEDEFAULTCURSORS lets the layer set the
    // standard pointer of the effect (anything else: the source set a pointer itself).
    virtual SCODE GiveFeedback(DROPEFFECT effect);

    // Set by DoDragDrop before the drag starts: the button whose release drops, and the
    // buttons whose press cancels.
    DWORD m_dwButtonDrop = MK_LBUTTON;
    DWORD m_dwButtonCancel = MK_RBUTTON | MK_MBUTTON;
};

// Data offered by this program: global memory blocks by clipboard format. Must come from new
// when it goes to the clipboard (SetClipboard hands the object over).
class COleDataSource : public CCmdTarget {
public:
    COleDataSource() = default;
    // Frees the blocks still held. Deleting a source that was put on the clipboard is the
    // clipboard's business (see SetClipboard); doing it anyway only withdraws the object.
    ~COleDataSource() override;
    COleDataSource(const COleDataSource&) = delete;
    COleDataSource& operator=(const COleDataSource&) = delete;

    // Offers `block` in `format`; the source owns the block from now on (until the
    // clipboard takes it). A block already cached in that format is freed. An invalid or
    // null handle is ignored (and stays the caller's).
    void CacheGlobalData(CLIPFORMAT format, HGLOBAL block);
    // Frees every cached block.
    void Empty();

    // Puts the data on the clipboard: the blocks pass to the clipboard (readable with
    // GetClipboardData and by other programs), and the clipboard owns this object, which it
    // deletes when other data replaces it or at FlushClipboard. Don't touch it afterwards.
    // When the clipboard can't be opened the object is deleted at once.
    void SetClipboard();
    // The source this process has on the clipboard now, or null (also after other data
    // replaced it). Owned by the clipboard.
    static COleDataSource* GetClipboardOwner();
    // Leaves the data on the clipboard and lets go of the source object (deletes it).
    static void FlushClipboard();

    // Runs a drag of this data to its end (see the top of this file) and returns the
    // effect of the drop, or DROPEFFECT_NONE when it was cancelled, released before the
    // pointer left `startRect` (screen coordinates; null: the pointer's position widened by
    // SM_CXDRAG/SM_CYDRAG) or refused. `allowed` limits the targets' answers; `source`
    // (not owned) may override the decisions, null means the standard behaviour.
    DROPEFFECT DoDragDrop(DWORD allowed = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK,
                          LPCRECT startRect = nullptr, COleDropSource* source = nullptr);

    // TRUE when data in the format is cached here.
    BOOL IsDataAvailable(CLIPFORMAT format) const;
    // A copy of the cached block in a new block the caller frees; null when none.
    HGLOBAL GetGlobalData(CLIPFORMAT format) const;

private:
    struct Entry {
        CLIPFORMAT format;
        HGLOBAL block;
    };
    std::vector<Entry> m_entries;  // owned blocks, in the order they were cached
};

// Access to offered data: the clipboard's (AttachClipboard) or a data source's (Attach,
// as drop targets are given during a drag).
class COleDataObject {
public:
    COleDataObject() = default;
    ~COleDataObject();
    COleDataObject(const COleDataObject&) = delete;
    COleDataObject& operator=(const COleDataObject&) = delete;

    // Reads the clipboard from now on (what it holds at each query). TRUE.
    BOOL AttachClipboard();
    // Reads `source` (not owned unless autoRelease, which deletes it at Release); the
    // source must live until Release.
    void Attach(COleDataSource* source, BOOL autoRelease = FALSE);
    // The attached source (null for the clipboard), now no longer attached.
    COleDataSource* Detach();
    // Ends the attachment (deleting an auto-released source).
    void Release();

    // TRUE when the data is offered in the format.
    BOOL IsDataAvailable(CLIPFORMAT format) const;
    // A copy of the data in a new global block that the caller frees; null when the format
    // is not offered or the clipboard can't be opened now.
    HGLOBAL GetGlobalData(CLIPFORMAT format) const;

private:
    COleDataSource* m_pSource = nullptr;
    BOOL m_bAutoRelease = FALSE;
    BOOL m_bClipboard = FALSE;
};

// A window's part in drag and drop: registered on a window, it is asked while a drag passes
// over that window or a child without a target of its own. Points are in the registered
// window's client coordinates, key states MK_ flags (and MK_ALT).
class COleDropTarget : public CCmdTarget {
public:
    COleDropTarget() = default;
    // Revokes a registration that is still on.
    ~COleDropTarget() override;
    COleDropTarget(const COleDropTarget&) = delete;
    COleDropTarget& operator=(const COleDropTarget&) = delete;

    // Makes this the target of the window; FALSE for a null or invalid window, or one that
    // already has a target, or when this target is registered already.
    BOOL Register(CWnd* wnd);
    // Ends the registration (a drag over the window no longer sees this target).
    virtual void Revoke();

    // The pointer came over the window; the answer is the effect a drop would have.
    // Default: OnDragOver's answer.
    virtual DROPEFFECT OnDragEnter(CWnd* wnd, COleDataObject* data, DWORD keyState, CPoint point);
    // The pointer moved or the keys changed over the window. Default: DROPEFFECT_NONE.
    virtual DROPEFFECT OnDragOver(CWnd* wnd, COleDataObject* data, DWORD keyState, CPoint point);
    // The data was dropped with `effect`; TRUE when taken. Default: FALSE.
    virtual BOOL OnDrop(CWnd* wnd, COleDataObject* data, DROPEFFECT effect, CPoint point);
    // Asked first at a drop; (DROPEFFECT)-1 means "not handled here, call OnDrop", other
    // values are the drop's result. Default: -1.
    virtual DROPEFFECT OnDropEx(CWnd* wnd, COleDataObject* data, DROPEFFECT dropDefault, DROPEFFECT dropList,
                                CPoint point);
    // The pointer left the window, or the drag was cancelled over it.
    virtual void OnDragLeave(CWnd* wnd);
    // Asked before each OnDragOver; an answer with DROPEFFECT_SCROLL is taken instead of
    // OnDragOver's (the target scrolls). Default: DROPEFFECT_NONE (no scrolling).
    virtual DROPEFFECT OnDragScroll(CWnd* wnd, DWORD keyState, CPoint point);

    // The registered window, or null.
    HWND GetRegisteredWindow() const { return m_hWnd; }

protected:
    HWND m_hWnd = nullptr;
};
