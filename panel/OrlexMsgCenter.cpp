#include "panel/OrlexMsgCenter.h"

COrlexMsgCenter::~COrlexMsgCenter() = default;
