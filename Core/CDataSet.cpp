#include "Core/CDataSet.h"

#include "Core/CResourceReader.h"

namespace tsm {

CError* CDataSet::loadResource(const CString& name)
{
    CResourceReader reader;
    TSM_TRY(reader.open(name));
    TSM_TRY(loadFrom(reader));
    return nullptr;
}

} // namespace tsm
