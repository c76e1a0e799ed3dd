#include "imageframe/ImageAttributes.h"

void IMAGE_ATTRIBUTES::SetString(int type, const char* text)
{
    const int i = KindIndex(type);
    if (i >= 0) m_strCursorTypes[i] = text ? text : "";
}
