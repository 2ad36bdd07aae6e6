#pragma once

#include "Core/CAppData.h"

namespace tsm {

/// Data of this product.
class CAppDataLocal : public CAppData {
public:
    CAppDataLocal();
};

} // namespace tsm
