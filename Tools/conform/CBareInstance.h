#pragma once

#include "Tools/conform/CPlugin.h"

namespace tsm {

/// The objects of one instance without any call made to them but the factory's, for cases that do
/// what a host library never would. Ends without terminate().
struct CBareInstance {
    Steinberg::IPtr<Steinberg::Vst::IComponent> component;
    Steinberg::IPtr<Steinberg::Vst::IAudioProcessor> processor;
    Steinberg::IPtr<Steinberg::Vst::IEditController> controller;
    bool hasOwnController = false;

    /// Makes component and processor, and the controller where it is the same object or of a class
    /// that the component names already. Errors: the factory makes none.
    [[nodiscard]] CError* make(const CPlugin& plugin);
    /// Both objects. Gives the component's result.
    Steinberg::tresult initialize(const CPlugin& plugin) const;
    Steinberg::tresult terminate() const;

    [[nodiscard]] Steinberg::tresult setUp(double rate, int maxBlock, bool isDouble = false) const;
};

} // namespace tsm
