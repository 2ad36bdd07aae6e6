#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioProcessBase.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Tests/Support/CTestTree.h"

#include <algorithm>

namespace tsm::test {

/// What processes need that run without an instance, and how tests make them, change their
/// parameters and send them sound.
class AProcessHost : public ATree {
protected:
    /// Makes the object `plugin` with environment and parameters.
    CObject& makeHost(bool isProcessing = true)
    {
        CObject& plugin = make(*root.get(), "core:object", "plugin");
        env = &make<CAudioEnv>(plugin, "audio:audio-env", "audio-env");
        env->isProcessing = isProcessing;
        collector = &make<CAudioParamCollector>(plugin, "audio:param-collector", "param-collector");
        collector->setEnv(env);
        context = {env, collector, &pool};
        return plugin;
    }
    /// Makes a process of the definition at a path of the shared tree; below `plugin` it has the
    /// definition's own name.
    [[nodiscard]] CError* create(CPtr<CAudioProcessBase>& holder, const CString& definitionPath)
    {
        CAudioProcessDefBase* definition = nullptr;
        TSM_TRY(root->findObjectChecked(definition, definitionPath));
        const CString path = definition->getFullName();
        const CString name = path.substring(path.findLast('.') + 1);
        TSM_TRY(createProcess(holder, *definition, context, nullptr, "plugin." + name));
        return nullptr;
    }
    void setValue(const CString& fullName, double value, int group = 0)
    {
        CAudioParam* param = collector->find(fullName);
        ASSERT_NE(param, nullptr) << fullName.toUtf8();
        param->setValue(group, 0, value);
    }
    void takeQueue()
    {
        const CLockScope hold(env->lock);
        collector->takeQueue();
    }
    /// Has the processes take all changes of parameters.
    void takeChanges()
    {
        takeQueue();
        collector->applyQueue();
    }
    /// One channel of a block, in a block of the pool, which is given back.
    CAudioBlockRef put(CAudioLink& link, int channel, const double* samples, int length)
    {
        CAudioBlockRef block = pool.take(length);
        std::copy_n(samples, length, block.write());
        link.put(channel, block, length);
        return block;
    }

    CAudioEnv* env = nullptr;
    CAudioParamCollector* collector = nullptr;
    CAudioBlockPool pool;
    CAudioProcessContext context;
};

} // namespace tsm::test
