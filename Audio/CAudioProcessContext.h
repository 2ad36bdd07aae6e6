#pragma once

namespace tsm {

class CAudioBlockPool;
class CAudioEnv;
class CAudioParamCollector;
class CAudioVizCollector;

/// What all processes of one plug-in instance work with; borrowed, it outlives them.
struct CAudioProcessContext {
    CAudioEnv* env = nullptr;
    CAudioParamCollector* collector = nullptr;
    CAudioBlockPool* pool = nullptr;
    CAudioVizCollector* vizCollector = nullptr; // null: nobody can watch
};

/// Where a new process stands.
struct CAudioProcessPlace {
    int groupIndex = 0;
    int elementIndex = 0;
    bool isStackElement = false; // an element of a stack that has the same path
};

} // namespace tsm
