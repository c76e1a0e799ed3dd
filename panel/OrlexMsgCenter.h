// The receiver of the panel controls' text messages. A host derives from it in the object
// that wires a panel, gives each control this receiver and the texts to send
// (COrlex::LoadCtrlMessages), and tells its controls apart by those texts alone. A compound
// control (COrlex2HSlider) is the receiver of its own children and passes their texts on.
#pragma once

#include "foundation/platform/afxstr.h"

class COrlexMsgCenter {
public:
    COrlexMsgCenter() = default;
    COrlexMsgCenter(const COrlexMsgCenter&) {}
    COrlexMsgCenter& operator=(const COrlexMsgCenter&) { return *this; }
    virtual ~COrlexMsgCenter();

    // Called synchronously on the control's thread, inside the control's handler and after
    // its state is updated; the receiver owns its copy of the text and may call back into
    // the sender.
    virtual void ReceiveCtrlMessage(CString strMessage) = 0;
};
