#include "Audio/CAudioParamUndoItem.h"

namespace tsm {

void CAudioParamUndoItem::takeBefore(std::int32_t ofGroup, const CAudioParamStorage& storage,
                                     bool asEmpty)
{
    group = ofGroup;
    shape = storage.getShape();
    take(undo, storage, asEmpty);
    redo.group = group;
    redo.shape = shape;
    redo.complete = true;
}

void CAudioParamUndoItem::takeAfter(const CAudioParamStorage& storage, bool asEmpty)
{
    if (storage.getShape() == shape)
        take(redo, storage, asEmpty);
}

void CAudioParamUndoItem::take(CAudioParamChange& image, const CAudioParamStorage& storage,
                               bool asEmpty) const
{
    image = CAudioParamChange();
    if (!asEmpty && storage.getElementCount(group) > 0)
        storage.copyGroup(group, image);
    image.group = group;
    image.firstElement = 0;
    image.complete = true;
    image.shape = shape;
}

bool CAudioParamUndoItem::isLike(const CAudioParamUndoItem& newer) const noexcept
{
    return group == newer.group && shape == newer.shape &&
           redo.elementCount == newer.redo.elementCount;
}

} // namespace tsm
