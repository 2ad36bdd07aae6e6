#include "Audio/Processes/CFilterGenSource.h"

#include "Audio/CAudioProcessBase.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Core/CLog.h"

namespace tsm {

void CFilterGenSource::findGenArray(const CAudioProcessBase& process)
{
    const CAudioProcessDefBase& definition = process.getDefinition();
    const CString& path = definition.getAttrString("gen-array");
    array = dynamic_cast<const CAudioFilterGenArray*>(definition.findObject(path));
    if (!array)
        logFormat("The 'gen-array' '%s' not found. // %s", path.toUtf8().c_str(),
                  process.getPath().toUtf8().c_str());
}

} // namespace tsm
