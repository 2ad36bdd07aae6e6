#include "Audio/Processes/CModReelpathPostModule.h"

namespace tsm {

void CModReelpathPostModule::registerParams()
{
    registerParam(0, flutter);
    registerParam(1, emphasis);
    registerParam(2, highGain);
    registerParam(3, flutterMode);
}

void CModReelpathPostModule::update()
{
    startStage(CTapePostSettings{.sampleRate = getSampleRate(),
                                 .flutter = read(flutter, 0.5),
                                 .emphasisDb = read(emphasis, 10.0),
                                 .highGainDb = read(highGain, 0.0),
                                 .flutterMode = readIndex(flutterMode)});
}

} // namespace tsm
