#include "Audio/Processes/CModLatencyUniformerModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioProcessTerminalBase.h"
#include "Audio/Processes/CModLatencyUniformerDef.h"
#include "Core/CLog.h"
#include "Core/CRounding.h"

#include <cstdio>

namespace tsm {

namespace {

void logOnce(const char* text, const CAudioModule& module)
{
    // All channels of the process have the same to say.
    if (module.getChannelIndex() == 0)
        logFormat("%s // %s", text, module.getProcess().getPath().toUtf8().c_str());
}

} // namespace

void CModLatencyUniformerModule::init()
{
    delay.reset(new CDSPModDelay(getPool()));
}

void CModLatencyUniformerModule::reset()
{
    delay->reset();
}

// There are no parameters: this is a new format of the inputs.
void CModLatencyUniformerModule::update()
{
    delay->reset();
    delay->setFadeLength(roundToInt(CDSPModDelay::kUsualFadeSeconds * getSampleRate()));
    delay->setDelay(chooseDelay());
}

int CModLatencyUniformerModule::chooseDelay()
{
    const auto& table = dynamic_cast<const CModLatencyUniformerDef&>(getProcess().getDefinition());
    const int wanted = table.findLatency(getSampleRate());
    char text[128];
    if (wanted < 0) {
        std::snprintf(text, sizeof text, "Unsupported sample rate %f in LatencyUniformer",
                      getSampleRate());
        logOnce(text, *this);
        return 0;
    }
    setLatency(wanted - getInputLatency());
    if (getInputLatency() <= wanted)
        return wanted - getInputLatency();
    std::snprintf(text, sizeof text, "Too high latency %i at sample rate %f in LatencyUniformer",
                  getInputLatency(), getSampleRate());
    logOnce(text, *this);
    return 0;
}

void CModLatencyUniformerModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count; ++i)
        static_cast<CModLatencyUniformerModule*>(modules[i])->process();
}

void CModLatencyUniformerModule::process()
{
    const int length = getBlockLength();
    const CAudioBlockRef& input = getInput();
    CAudioBlockRef& output = getOutput().buffer;
    output = getPool().take(length);
    delay->process(input.read(), output.write(), length);
}

} // namespace tsm
