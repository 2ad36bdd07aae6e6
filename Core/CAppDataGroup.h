#pragma once

#include "Core/CAppData.h"

namespace tsm {

/// Data of all plug-ins of the maker.
class CAppDataGroup : public CAppData {
public:
    CAppDataGroup();
};

} // namespace tsm
