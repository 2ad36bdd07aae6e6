#include "Tools/hostlib/CVstPrograms.h"

#include "Core/CText.h"
#include "Tools/hostlib/CVstString.h"

#include <algorithm>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

CVstPrograms::CVstPrograms(const CVstInstance& instance, const CVstParams& params)
{
    constexpr int32 kMaxPrograms = 1 << 16; // beyond that a count is a fault
    IUnitInfo* const units = instance.getUnits();
    ProgramListInfo list = {};
    if (!units || !params.findProgramParam() || units->getProgramListCount() < 1 ||
        units->getProgramListInfo(0, list) != kResultOk)
        return;
    for (int32 i = 0; i < std::min(list.programCount, kMaxPrograms); ++i) {
        String128 name = {};
        units->getProgramName(list.id, i, name);
        names.push_back(fromVstText(name));
    }
}

CError* CVstPrograms::find(const CString& name, int& index) const
{
    const auto place = std::ranges::find(names, name);
    if (place == names.end())
        TSM_FAIL("unknown program '%1' (see programs)", name);
    index = static_cast<int>(place - names.begin());
    return nullptr;
}

CError* CVstPrograms::check(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= names.size())
        TSM_FAIL("there is no program %1, the plug-in has %2", toString(index),
                 toString(static_cast<int>(names.size())));
    return nullptr;
}

double CVstPrograms::valueOf(int index) const
{
    return names.size() > 1 ? static_cast<double>(index) / static_cast<double>(names.size() - 1)
                            : 0.0;
}

} // namespace tsm
