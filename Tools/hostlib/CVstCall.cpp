#include "Tools/hostlib/CVstCall.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

CVstCall::CVstCall(const CVstInstance& instance, const CVstSetUp& setUp)
    : owner(instance), inputChanges(IPtr<CHostParamChanges>::owned(new CHostParamChanges)),
      outputChanges(IPtr<CHostParamChanges>::owned(new CHostParamChanges)),
      inputEvents(IPtr<CHostEvents>::owned(new CHostEvents)),
      outputEvents(IPtr<CHostEvents>::owned(new CHostEvents))
{
    data.processMode = setUp.isOffline ? kOffline : kRealtime;
    data.symbolicSampleSize = setUp.isDouble ? kSample64 : kSample32;
    data.inputParameterChanges = inputChanges.get();
    data.outputParameterChanges = outputChanges.get();
    data.inputEvents = inputEvents.get();
    data.outputEvents = outputEvents.get();
    data.processContext = &context;
    context.state = ProcessContext::kPlaying | ProcessContext::kTempoValid |
                    ProcessContext::kTimeSigValid | ProcessContext::kContTimeValid |
                    ProcessContext::kProjectTimeMusicValid;
    context.sampleRate = setUp.rate;
    context.tempo = 120.0;
    context.timeSigNumerator = 4;
    context.timeSigDenominator = 4;
}

void CVstCall::setBuses(CBuses& inputs, CBuses& outputs)
{
    data.numInputs = static_cast<int32>(inputs.size());
    data.numOutputs = static_cast<int32>(outputs.size());
    data.inputs = inputs.data();
    data.outputs = outputs.data();
}

void CVstCall::setPosition(std::int64_t position)
{
    context.projectTimeSamples = position;
    context.continousTimeSamples = position;
    context.projectTimeMusic =
        static_cast<double>(position) / context.sampleRate * (context.tempo / 60.0);
}

void CVstCall::addPoint(ParamID id, int offset, double value)
{
    inputChanges->add(id, offset, value);
}

tresult CVstCall::run()
{
    outputChanges->clear();
    outputEvents->clear();
    const tresult result = owner.getProcessor().process(data);
    inputChanges->clear();
    inputEvents->clear();
    return result;
}

} // namespace tsm
