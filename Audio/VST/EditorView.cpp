#include "Audio/VST/EditorView.h"

namespace Steinberg::Vst {

EditorView::EditorView(EditController* owner, const ViewRect& size)
    : CPluginView(size), controller(owner)
{
}

EditorView::~EditorView()
{
    if (controller)
        controller->editorDestroyed(this);
}

void EditorView::attachedToParent()
{
    if (controller)
        controller->editorAttached(this);
}

void EditorView::removedFromParent()
{
    if (controller)
        controller->editorRemoved(this);
}

} // namespace Steinberg::Vst
