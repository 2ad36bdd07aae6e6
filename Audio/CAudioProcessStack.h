#pragma once

#include "Audio/CAudioProcessContainer.h"

namespace tsm {

/// Runs one instance of a definition for each channel group that its inputs bring; channels go to
/// the instance of their group. A parameter gives each group as many instances in a row as its
/// value says, where the definition names one.
class CAudioProcessStack : public CAudioProcessContainer {
public:
    ~CAudioProcessStack() override;

    void update() override;
    void process() override;

    /// Groups that have an element now.
    [[nodiscard]] int getElementCount() const noexcept { return elements.getCount(); }
    /// The first instance of a group, or null.
    [[nodiscard]] CAudioProcessBase* findElement(int group) const;

protected:
    void listChildren(CArray<CAudioProcessBase*>& children) override;

private:
    struct CElement : CTsmMemAllocator {
        int group = 0;
        COwnedArray<CAudioProcessBase> series;
    };

    [[nodiscard]] std::uint32_t findGroups() const;
    [[nodiscard]] int seriesLength(int group);
    void removeElement(int index);
    void addElement(int group);

    COwnedArray<CElement> elements; // by group
};

} // namespace tsm
