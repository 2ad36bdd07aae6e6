#pragma once

#include "Audio/CParamListener.h"
#include "Core/CAppData.h"

namespace tsm {

/// Ties a parameter to a stored item: a change of either goes to the other. So a setting is the
/// same in all instances of the process, and in the next session.
///
/// Numbers are stored as their display text, texts as they are, blocks as their bytes. Element 0 of
/// group 0 is what is stored.
///
/// Each step, from the item to the parameter or back, is made as a whole, under a lock that is left
/// before anybody is told of it: so the two agree when a step is done, whatever other threads do,
/// and no two instances wait for each other. An own change isn't taken for one from outside.
class CSharedParam : public CParamListener, public CTsmMemAllocator {
public:
    /// All three outlive the object.
    CSharedParam(CAudioParam& sharedParam, CAppData& dataStore, const CString& name);
    ~CSharedParam() override;

    /// Begins to listen to both sides and takes the stored value. [any] Not on the audio thread.
    void start();
    [[nodiscard]] bool isTie(const CAudioParam& otherParam, const CAppData& otherStore,
                             const CString& otherName) const noexcept;

    void onParamChanged(const void* source, CAudioParam& changed,
                        const CAudioParamChange& change) override;

private:
    class CDataListener : public CAppDataListener<CSharedParam> {
    public:
        using CAppDataListener::CAppDataListener;
        void onUpdate(const CUpdateMessage& message) override;
    };

    void load();
    void loadText();
    void loadRaw();
    void save();
    [[nodiscard]] bool readParam(CByteBuffer& item, std::uint32_t& id) const;
    [[nodiscard]] CString currentText() const;
    void takeText(const CString& text);

    CAudioParam& param;
    CAppData& store;
    const CString dataName;

    CCriticalSection lock{4000}; // taken before the parameter's and the store's
    bool hasDefault = false;     // the parameter has had values
    CString defaultText;
    CDataListener dataListener;
};

} // namespace tsm
