#pragma once

#include "Core/CString.h"

namespace tsm {

class CObject;

/// Follows a path through a tree: "." between names, "^" the parent, "/" the root, "shared::" at
/// the beginning the shared tree; a path that begins with "." or "^" starts at the object itself,
/// any other at its root. Children of a `core:shortcut` redirect to their attribute `target`.
class CObjectPath {
public:
    /// The object at `path` seen from `start`, or null. More than ten redirections give null, which
    /// ends shortcuts that point at each other.
    [[nodiscard]] static CObject* find(CObject& start, const CString& path);

private:
    CObjectPath(CObject& self, const CString& whole) : start(self), path(whole) {}
    [[nodiscard]] bool begin();
    [[nodiscard]] CObject* scan();
    [[nodiscard]] bool enterChild();
    void redirect(CObject& shortcut);

    static constexpr int kMaxRedirections = 10;

    CObject& start;
    CString path;
    CObject* current = nullptr;
    int position = 0;
    int segment = 0; // where the name that is being scanned begins
    int redirections = 0;
};

} // namespace tsm
