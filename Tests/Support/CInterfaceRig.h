#pragma once

#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioInterfaceClient.h"
#include "Audio/CAudioInterfaceVizProcessor.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamRegistry.h"
#include "Other/CParamInterfaceBaseConnectorUni.h"
#include "Other/CParamInterfaceClientConnectorUni.h"
#include "Platform/CMessageQueue.h"
#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/CTestStreams.h"

#include <functional>
#include <string>

namespace tsm::test {

/// In place of a timer: ticks when a test says so.
class CTestTimer : public CObject {
public:
    static void declareClass(CObjectClassInfo& info)
    {
        CObject::declareClass(info);
        info.addAttr("fps", &CTestTimer::onFps);
    }
    double fps = 0.0;

private:
    [[nodiscard]] CError* onFps(CAttrValue& value)
    {
        fps = value.asDouble();
        return nullptr;
    }
};

/// Writes down what a client hears of a parameter, and mirrors it.
class CRecordingParam : public CParamMirror {
public:
    using CParamMirror::CParamMirror;
    [[nodiscard]] CError* onInfo(CInputStream& stream) override
    {
        TSM_TRY(CParamMirror::onInfo(stream));
        notes.push_back(getInfo() ? "info" : "no info");
        return nullptr;
    }
    void onChange(CAudioParamChange& change) override
    {
        notes.push_back("group " + std::to_string(change.group) + " from " +
                        std::to_string(change.firstElement) + " count " +
                        std::to_string(change.elementCount));
        CParamMirror::onChange(change);
    }
    std::vector<std::string> takeNotes() { return std::exchange(notes, {}); }
    [[nodiscard]] double value(int element = 0) const
    {
        return getValues().value(0, element, -1.0);
    }
    [[nodiscard]] std::string text(int element = 0) const
    {
        return getValues().text(0, element).toUtf8();
    }
    std::vector<std::string> notes;
};

class CRecordingRegistry : public CParamInterfaceRegistryListener {
public:
    void onBankData(bool isFactory, const CString& id, const COwnedArray<CString>& names,
                    std::int32_t currentIndex) override
    {
        std::string line = isFactory ? "factory " : "session ";
        line += id.toUtf8() + " " + std::to_string(currentIndex) + ":";
        for (const CString& name : names)
            line += " " + name.toUtf8();
        notes.push_back(line);
    }
    void onPreset(std::uint32_t requestId, const CAudioPreset& given) override
    {
        notes.push_back("preset " + std::to_string(requestId));
        preset = given;
    }
    void onBank(std::uint32_t requestId, const CAudioPresetBank& given) override
    {
        notes.push_back("bank " + std::to_string(requestId));
        bank.copyPresets(given);
    }
    std::vector<std::string> takeNotes() { return std::exchange(notes, {}); }

    std::vector<std::string> notes;
    CAudioPreset preset;
    CAudioPresetBank bank;
};

/// A client in a tree of its own, as an editor or a monitor would have it.
class CTestClient {
public:
    CTestClient() = default;
    explicit CTestClient(CObject& instance, const char* timerTag = "test:timer")
    {
        EXPECT_OK(attach(&instance, timerTag));
    }
    [[nodiscard]] CError* attach(CObject* instance, const char* timerTag = "test:timer")
    {
        instanceRoot = instance;
        TSM_TRY(CApplication::get()->initRootObject(root, CString()));
        TSM_TRY(root->setAttrPointer("BaseConnectorRootPtr", &instanceRoot, true));
        TSM_TRY(root->setAttr("client-timer", CString(timerTag), true));
        TSM_TRY(root->loadXMLData(TSM_CLIENT_DOCUMENT, false));
        TSM_TRY(root->findObjectChecked(client, "ui.interface-client"));
        TSM_TRY(root->findObjectChecked(connector, "ui.interface-client-connector"));
        TSM_TRY(root->findObjectChecked(timer, "ui.interface-client-connector.timer"));
        return nullptr;
    }
    CAudioInterfaceClient* operator->() const noexcept { return client; }

    /// One tick of the timer, on this thread.
    [[nodiscard]] CError* tick() const { return timer->sendEvent("tick"); }
    std::uint32_t listen(const char* name, CParamInterfaceParamListener& listener) const
    {
        std::uint32_t id = 0;
        EXPECT_OK(client->listenParam(id, "plugin.modMain." + CString(name), listener));
        return id;
    }
    std::uint32_t listen(const char* name, CParamInterfaceRegistryListener& listener) const
    {
        std::uint32_t id = 0;
        EXPECT_OK(client->listenRegistry(id, name, listener));
        return id;
    }
    std::uint32_t openStep(const char* name) const
    {
        std::uint32_t id = 0;
        EXPECT_OK(client->createUndoData(id, name));
        return id;
    }
    [[nodiscard]] std::vector<std::string> history() const
    {
        std::vector<std::string> texts;
        for (const CString& name : client->getUndoNames())
            texts.push_back(name.toUtf8());
        texts.push_back("at " + std::to_string(client->getUndoPosition()));
        return texts;
    }

    CObject* instanceRoot = nullptr;
    CTreePtr<CObject> root;
    CAudioInterfaceClient* client = nullptr;
    CParamInterfaceClientConnectorUni* connector = nullptr;
    CObject* timer = nullptr;
};

/// A change of one number, or several.
inline CAudioParamChange numbers(const std::vector<double>& values, int group = 0, int first = 0)
{
    CAudioParamChange change;
    change.group = group;
    change.firstElement = first;
    change.elementCount = static_cast<std::int32_t>(values.size());
    for (const double value : values)
        change.values.add(value);
    return change;
}

/// The same with the shape that a parameter has.
inline CAudioParamChange shapedLike(const CAudioParam& param, CAudioParamChange change)
{
    change.shape = param.getInfo()->shape;
    return change;
}

/// An instance whose host writes down what it is told.
class CNotingWrapper : public CTestWrapper {
public:
    ~CNotingWrapper() override { endInterface(); }

    void performEdit(std::int32_t index, double) override { note("edit", index); }
    void beginEdit(std::int32_t index) override
    {
        note("begin", index);
        if (whileBegun)
            whileBegun();
    }
    void endEdit(std::int32_t index) override { note("end", index); }
    void onProgramChange() override { note("program"); }
    std::vector<std::string> takeNotes()
    {
        const CLockScope hold(notesLock);
        return std::exchange(notes, {});
    }

    std::function<void()> whileBegun; // what the host does before it returns

private:
    void note(const std::string& what)
    {
        const CLockScope hold(notesLock);
        if (getIsReady())
            notes.push_back(what);
    }
    void note(const char* what, std::int32_t index) { note(what + (" " + std::to_string(index))); }

    CCriticalSection notesLock; // hosts are told on several threads
    std::vector<std::string> notes;
};

/// The product, one instance, and clients that tests attach.
class AnInterface : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_OK(startProduct(application));
        ASSERT_OK(application.registerCreator(creatorRow<CTestTimer>("test:timer")));
        begin();
    }
    void TearDown() override { instance.reset(); }
    void begin()
    {
        instance = std::make_unique<CNotingWrapper>();
        ASSERT_OK(instance->init());
        instance->setSampleRate(48000.0);
        instance->setChannelFormat({2, true, false}, {});
        instance->setOutputFormat({2, true, false});
        instance->afterInit();
        instance->takeNotes();
        ASSERT_OK(instance->getRoot().findObjectChecked(base, "plugin.interface-base"));
        ASSERT_OK(
            instance->getRoot().findObjectChecked(connector, "plugin.interface-base-connector"));
    }
    CAudioParam& param(const char* name) const { return instance->param(name); }
    /// What the base says to a message, written by hand.
    [[nodiscard]] CError* process(const CBytes& message) const
    {
        // Of exactly this size, so that the sanitizer sees a step behind its end.
        const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[message.size()]);
        std::copy(message.begin(), message.end(), exact.get());
        CMemoryReader reader(exact.get(), static_cast<int>(message.size()));
        return connector->processClientData(reader);
    }
    /// Puts a block into a client's queue.
    void sendBytes(std::uint32_t clientId, const CBytes& message) const
    {
        CPtr<CInterfaceBlock> block(new CInterfaceBlock);
        block->bytes = CByteBuffer(message.data(), static_cast<int>(message.size()));
        connector->send(clientId, std::move(block));
    }
    /// All that is saved of the instance.
    CBytes state() const
    {
        return written([&](COutputStream& out) {
            EXPECT_OK(instance->getParamRegistry().acquirePreset(false, -1, -1, out));
        });
    }
    std::vector<std::string> history() const
    {
        COwnedArray<CString> names;
        std::int32_t position = 0;
        base->getHistory(names, position);
        std::vector<std::string> texts;
        for (const CString& name : names)
            texts.push_back(name.toUtf8());
        texts.push_back("at " + std::to_string(position));
        return texts;
    }

    CApplication application;
    std::unique_ptr<CNotingWrapper> instance;
    CAudioInterfaceBase* base = nullptr;
    CParamInterfaceBaseConnectorUni* connector = nullptr;
};

} // namespace tsm::test
