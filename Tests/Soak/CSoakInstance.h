#pragma once

#include "Audio/VST/CAudioWrapperVST3.h"
#include "Tests/Audio/VST/CComponentRig.h"
#include "Tests/Support/CInterfaceRig.h"

#include <atomic>
#include <memory>
#include <optional>
#include <random>
#include <thread>

namespace tsm::test {

using CSoakRandom = std::mt19937;

/// One plug-in instance as a restless host has it: sound runs on a thread of its own in blocks of
/// any size with automation, while the control thread does one thing after another to it.
class CSoakInstance {
public:
    explicit CSoakInstance(unsigned seed);
    ~CSoakInstance();

    /// Does something at random. `states` are chunks that any instance has saved so far.
    void act(CSoakRandom& random, std::vector<std::string>& states);
    /// All samples so far were finite and within bounds.
    [[nodiscard]] bool isClean() const noexcept { return clean; }

private:
    struct CWindow;

    void startSound();
    void stopSound();
    void play();
    void playBlock(CSoakRandom& random);

    void changeFormat(CSoakRandom& random);
    void changeParams(CSoakRandom& random);
    void changeTape(CSoakRandom& random);
    void changeState(CSoakRandom& random, std::vector<std::string>& states);
    void useWindow(CSoakRandom& random);
    void edit(CSoakRandom& random);

    CComponentRig rig;
    CAudioWrapperVST3* wrapper = nullptr;
    double rate = 44100.0;
    int channels = 2;
    std::unique_ptr<CWindow> window;
    CSoakRandom soundRandom; // of the audio thread
    std::thread audio;
    std::atomic<bool> isPlaying = false;
    std::atomic<bool> clean = true;
};

} // namespace tsm::test
