#include "imageframe/ImageAttributes.h"

void IMAGE_ATTRIBUTES::SetString(int type, const char* text)
{
    const int i = FlagIndex(type);
    if (i >= 0) m_strLabels[i] = text ? text : "";
}
