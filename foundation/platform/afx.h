// The storage half of the platform layer in one include: base types, strings, runtime
// classes, files, the archive and the collections.
#pragma once

#include "foundation/platform/wintypes.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxarchive.h"
#include "foundation/platform/afxcoll.h"
