#include "Audio/CParamName.h"

namespace tsm {

namespace {

// Removes the last component, together with its dot.
void shorten(CString& path)
{
    const int dot = path.findLast('.');
    path = dot < 0 ? CString() : path.substring(0, dot);
}

} // namespace

CString resolveName(const CString& name, const CString& basePath)
{
    if (name.startsWith("/"))
        return name.substring(1);
    CString path = basePath;
    int start = 0;
    for (; name.at(start) == '^'; ++start)
        shorten(path);
    const CString rest = name.substring(start);
    if (rest.isEmpty() || rest.startsWith("."))
        return path + rest;
    // Above the root there is no component to put a dot behind.
    return path.isEmpty() ? rest : path + "." + rest;
}

} // namespace tsm
