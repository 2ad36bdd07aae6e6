#include "Core/CObjectPath.h"

#include "Core/CApplication.h"

namespace tsm {

CObject* CObjectPath::find(CObject& start, const CString& path)
{
    if (path.isEmpty())
        return nullptr;
    CObjectPath walk(start, path);
    return walk.begin() ? walk.scan() : nullptr;
}

bool CObjectPath::begin()
{
    constexpr int kPrefixLength = 8;
    if (path[0] == '.' || path[0] == '^') {
        current = &start;
    } else if (path.startsWith("shared::")) {
        const CApplication* application = CApplication::get();
        current = application ? application->getSharedRoot() : nullptr;
        position = segment = kPrefixLength;
    } else {
        current = start.getRoot();
    }
    return current != nullptr;
}

CObject* CObjectPath::scan()
{
    for (; position <= path.getLength(); ++position) {
        const std::uint16_t code = path[position]; // 0 at the end
        if (code == '/') {
            current = start.getRoot();
            segment = position + 1;
        } else if (code == '^') {
            current = current->getParent();
            if (!current)
                return nullptr;
            segment = position + 1;
        } else if (code == '.' || code == 0) {
            if (position > segment && !enterChild())
                return nullptr;
            if (position >= 0)
                segment = position + 1;
        }
    }
    return current;
}

bool CObjectPath::enterChild()
{
    CObject* child = current->findChild(path.substring(segment, position - segment));
    if (!child)
        return false;
    current = child;
    if (!child->isShortcut)
        return true;
    if (++redirections > kMaxRedirections)
        return false;
    redirect(*child);
    return true;
}

void CObjectPath::redirect(CObject& shortcut)
{
    path = shortcut.getAttrString("target") + path.substring(position);
    position = -1; // the loop steps to the new beginning
    segment = 0;
}

} // namespace tsm
