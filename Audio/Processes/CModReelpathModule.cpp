#include "Audio/Processes/CModReelpathModule.h"

namespace tsm {

void CModReelpathModule::registerParams()
{
    registerParam(0, recGain);
    registerParam(1, saturation);
    registerParam(2, flutter);
    registerParam(3, hardness);
    registerParam(4, emphasis);
    registerParam(5, highGain);
    registerParam(6, mode);
    registerParam(7, flutterMode);
}

void CModReelpathModule::update()
{
    startStage(CTapeSettings{.sampleRate = getSampleRate(),
                             .recGain = read(recGain, 1.0),
                             .wet = read(saturation, 1.0),
                             .flutter = read(flutter, 0.5),
                             .hardness = read(hardness, 0.5),
                             .emphasisDb = read(emphasis, 10.0),
                             .feedbackMode = readIndex(mode),
                             .flutterMode = readIndex(flutterMode)});
}

} // namespace tsm
