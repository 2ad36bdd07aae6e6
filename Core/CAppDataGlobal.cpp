#include "Core/CAppDataGlobal.h"

namespace tsm {

CAppDataGlobal::CAppDataGlobal()
    : CAppData({.subFolder = "Tessmark/",
                .moduleSubFolder = "",
                .resourcePrefix = "AppDataGlobal_",
                .altSubFolder = "Tessmark/Audio Plug-Ins/"})
{
}

} // namespace tsm
