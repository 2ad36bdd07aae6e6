#include "Core/CAppDataLocal.h"

namespace tsm {

CAppDataLocal::CAppDataLocal()
    : CAppData({.subFolder = "Tessmark/Audio Plug-Ins/Ferrit Reelpath/",
                .moduleSubFolder = "Ferrit Reelpath/",
                .resourcePrefix = "AppDataLocal_",
                .altSubFolder = ""})
{
}

} // namespace tsm
