#include "Core/CAppDataGroup.h"

namespace tsm {

CAppDataGroup::CAppDataGroup()
    : CAppData({.subFolder = "Tessmark/Audio Plug-Ins/",
                .moduleSubFolder = "",
                .resourcePrefix = "AppDataGroup_",
                .altSubFolder = ""})
{
}

} // namespace tsm
