#pragma once

#include "Audio/VST/CProductModule.h"
#include "Audio/VST/IPtr.h"
#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IComponent.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Tools/hostlib/CHostHandler.h"
#include "Tools/hostlib/CHostParamChanges.h"
#include "Tools/hostlib/CMemoryStream.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace tsm::test {

/// One instance of the plug-in in this process, driven through its interfaces call by call, so that
/// a test may call what no host library would.
class CComponentRig {
public:
    using CChannels = std::vector<std::vector<double>>;

    CComponentRig()
    {
        CProductModule::begin();
        factory = Steinberg::IPtr<Steinberg::IPluginFactory>::owned(CProductModule::makeFactory());
        Steinberg::PClassInfo info;
        void* made = nullptr;
        if (factory && factory->getClassInfo(0, &info) == Steinberg::kResultOk)
            factory->createInstance(info.cid, Steinberg::Vst::IComponent::iid, &made);
        component = Steinberg::IPtr<Steinberg::Vst::IComponent>::owned(
            static_cast<Steinberg::Vst::IComponent*>(made));
        processor = Steinberg::queryAs<Steinberg::Vst::IAudioProcessor>(component.get());
        controller = Steinberg::queryAs<Steinberg::Vst::IEditController>(component.get());
        units = Steinberg::queryAs<Steinberg::Vst::IUnitInfo>(component.get());
    }
    ~CComponentRig()
    {
        if (component)
            component->terminate();
        units.reset();
        controller.reset();
        processor.reset();
        component.reset();
        factory.reset();
        CProductModule::end();
    }
    CComponentRig(const CComponentRig&) = delete;
    CComponentRig& operator=(const CComponentRig&) = delete;

    /// As a host brings an instance up.
    void initialize()
    {
        ASSERT_EQ(component->initialize(nullptr), Steinberg::kResultOk);
        controller->setComponentHandler(handler.get());
        std::ignore = handler->takeNotes();
    }
    void setUp(double rate, int channels = 2, bool isDouble = true)
    {
        Steinberg::Vst::SpeakerArrangement speakers =
            channels == 1 ? Steinberg::Vst::SpeakerArrangement(0x80000) : 3;
        ASSERT_EQ(processor->setBusArrangements(&speakers, 1, &speakers, 1), Steinberg::kResultOk);
        Steinberg::Vst::ProcessSetup setup{
            Steinberg::Vst::kRealtime,
            isDouble ? Steinberg::Vst::kSample64 : Steinberg::Vst::kSample32, 4096, rate};
        ASSERT_EQ(processor->setupProcessing(setup), Steinberg::kResultOk);
        component->setActive(true);
        processor->setProcessing(true);
    }

    /// One block of 64-bit samples, in place.
    Steinberg::tresult process(CChannels& channels)
    {
        std::vector<double*> pointers;
        for (std::vector<double>& channel : channels)
            pointers.push_back(channel.data());
        Steinberg::Vst::AudioBusBuffers bus = {};
        bus.numChannels = static_cast<Steinberg::int32>(channels.size());
        bus.channelBuffers64 = pointers.data();
        Steinberg::Vst::AudioBusBuffers out = bus;
        Steinberg::Vst::ProcessData data = {};
        data.processMode = Steinberg::Vst::kRealtime;
        data.symbolicSampleSize = Steinberg::Vst::kSample64;
        data.numSamples =
            static_cast<Steinberg::int32>(channels.empty() ? 0 : channels.front().size());
        data.numInputs = 1;
        data.numOutputs = 1;
        data.inputs = &bus;
        data.outputs = &out;
        data.inputParameterChanges = changes.get();
        const Steinberg::tresult result = processor->process(data);
        changes->clear();
        return result;
    }
    /// Any length, in blocks of `length`.
    CChannels processAll(const CChannels& in, std::size_t length)
    {
        CChannels out(in.size());
        for (std::size_t at = 0; at < in[0].size(); at += length) {
            CChannels block;
            for (const std::vector<double>& channel : in)
                block.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(at),
                                   channel.begin() + static_cast<std::ptrdiff_t>(
                                                         std::min(at + length, channel.size())));
            EXPECT_EQ(process(block), Steinberg::kResultOk);
            for (std::size_t i = 0; i < in.size(); ++i)
                out[i].insert(out[i].end(), block[i].begin(), block[i].end());
        }
        return out;
    }

    std::string getState()
    {
        CMemoryStream stream;
        EXPECT_EQ(component->getState(&stream), Steinberg::kResultOk);
        return stream.getBytes();
    }
    Steinberg::tresult setState(const std::string& bytes)
    {
        CMemoryStream stream(bytes);
        return component->setState(&stream);
    }
    std::vector<double> values()
    {
        std::vector<double> all;
        all.reserve(static_cast<std::size_t>(controller->getParameterCount()));
        for (Steinberg::int32 i = 0; i < controller->getParameterCount(); ++i)
            all.push_back(controller->getParamNormalized(idOf(i)));
        return all;
    }
    Steinberg::Vst::ParamID idOf(Steinberg::int32 index)
    {
        Steinberg::Vst::ParameterInfo info;
        EXPECT_EQ(controller->getParameterInfo(index, info), Steinberg::kResultOk);
        return info.id;
    }
    std::string textOf(Steinberg::Vst::ParamID id, double value)
    {
        Steinberg::Vst::String128 text = {};
        EXPECT_EQ(controller->getParamStringByValue(id, value, text), Steinberg::kResultOk);
        return narrow(text);
    }
    static std::string narrow(const Steinberg::Vst::TChar* text)
    {
        std::string result;
        for (; *text; ++text)
            result.push_back(static_cast<char>(*text));
        return result;
    }

    Steinberg::IPtr<Steinberg::IPluginFactory> factory;
    Steinberg::IPtr<Steinberg::Vst::IComponent> component;
    Steinberg::IPtr<Steinberg::Vst::IAudioProcessor> processor;
    Steinberg::IPtr<Steinberg::Vst::IEditController> controller;
    Steinberg::IPtr<Steinberg::Vst::IUnitInfo> units;
    Steinberg::IPtr<CHostHandler> handler = Steinberg::IPtr<CHostHandler>::owned(new CHostHandler);
    Steinberg::IPtr<CHostParamChanges> changes =
        Steinberg::IPtr<CHostParamChanges>::owned(new CHostParamChanges);
};

} // namespace tsm::test
