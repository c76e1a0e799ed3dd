#include "imageview/ImageViewEventNotifier.h"

#include "imageview/ImageView.h"

CImageViewEventNotifier::~CImageViewEventNotifier()
{
    // A view that outlived the registration, or that registered another notifier since,
    // is no longer this notifier's to touch.
    CImageView* view = m_pView;
    m_pView = nullptr;
    if (view && view->GetNotifier() == this) view->RegisterNotifier(nullptr);
}

int CImageViewEventNotifier::Register(CImageView* view)
{
    if (!view) return 0;
    m_pView = view;
    view->RegisterNotifier(this);
    return 1;
}
