#pragma once

#include "Core/CAppData.h"

namespace tsm {

/// Data of all products of the maker. Items in the folder of the group count too.
class CAppDataGlobal : public CAppData {
public:
    CAppDataGlobal();
};

} // namespace tsm
