#pragma once

#include "Audio/CAudioParamSubscription.h"
#include "Audio/CAudioProcessContainer.h"

namespace tsm {

/// Runs one instance of a definition for each channel group that its inputs bring; channels go to
/// the instance of their group. A parameter gives each group as many instances in a row as its
/// value says, where the definition names one.
class CAudioProcessStack : public CAudioProcessContainer {
public:
    ~CAudioProcessStack() override;

    [[nodiscard]] CError* init() override;
    void update() override;
    void process() override;
    void listSteps(CAudioGraphSteps& steps) override;

    /// Groups that have an element now.
    [[nodiscard]] int getElementCount() const noexcept { return elements.getCount(); }
    /// The first instance of a group, or null.
    [[nodiscard]] CAudioProcessBase* findElement(int group) const;

protected:
    void listChildren(CArray<CAudioProcessBase*>& children) override;
    void setAllParamsDirty(bool isDirty) override { dirtyGroups = isDirty ? ~0u : 0u; }

private:
    struct CElement : CTsmMemAllocator {
        int group = 0;
        COwnedArray<CAudioProcessBase> series;
    };

    [[nodiscard]] std::uint32_t findGroups();
    [[nodiscard]] int seriesLength(int group) const;
    [[nodiscard]] bool isWanted(const CElement& element, std::uint32_t groups) const;
    void removeElement(int index);
    void addElement(int group);
    void linkInputs(CElement& element);
    [[nodiscard]] CError* fillSeries(CElement& element);

    COwnedArray<CElement> elements;         // by group
    CAudioParamSubscriptionPtr seriesParam; // null: one instance a group
    std::uint32_t dirtyGroups = 0;
};

} // namespace tsm
