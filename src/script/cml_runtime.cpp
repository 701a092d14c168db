#include "script/cml_element.h"
#include "script/cml_object.h"
#include "script/frame_budget.h"
#include "world/object_mgr.h"

namespace {
/// Calls that lead to calls (set_action inside an action's on_set, prefixed calls in a circle) end here: so
/// deep, and so many of them, since lists that call lists double with every step.
constexpr int kDeepestCalls = 64;
constexpr int kMostNestedCalls = 10000;
int g_depth = 0;
int g_nestedCalls = 0; ///< since the outermost one began
bool g_runaway = false;

struct DepthGuard {
    DepthGuard() {
        if (g_depth++ == 0) {
            g_nestedCalls = 0;
            g_runaway = false;
        }
        ++g_nestedCalls;
    }
    ~DepthGuard() { --g_depth; }
};

/// The calling object, or the one that the call's prefix names; null when there is none.
cCmlObject* selfOf(const cCmlCall& call, cCmlObject& self) {
    if (call.objectId == 0) return &self;
    return static_cast<cCmlObject*>(cObjectMgr::instance().findCmlObject(call.objectId));
}

void perform(const cCmlCall& call, cCmlObject& self) {
    if (!call.procedure) return;
    cCmlObject* target = selfOf(call, self);
    if (!target) return;
    const DepthGuard guard;
    if (g_runaway || !target->spend(FrameBudget::instance().calls)) return;
    if (g_depth > kDeepestCalls || g_nestedCalls > kMostNestedCalls) {
        g_runaway = true;
        target->reportOnce("calls itself without end");
        return;
    }
    call.procedure(*target, call.argCount, call.args.data());
}
} // namespace

void cCmlElement::runCalls(cCmlObject& self) const {
    for (const cCmlCall& call : calls) perform(call, self);
}

void cCmlElement::runCall(cCmlObject& self, int32_t position) const {
    if (position >= 0 && static_cast<size_t>(position) < calls.size())
        perform(calls[static_cast<size_t>(position)], self);
}

bool cCmlElement::testAll(cCmlObject& self) const {
    for (const cCmlCall& call : tests) {
        cCmlObject* target = call.function ? selfOf(call, self) : nullptr;
        if (target && !call.function(*target, call.argCount, call.args.data())) return false;
    }
    return true;
}

void cCmlObject::fireReaction(CmlTrigger trigger) {
    if (!currentAction_ || currentAction_->elementKind != kCmlAction) return;
    const cCmlElement* reaction = currentAction_->slots[trigger];
    if (!reaction) return;
    for (int32_t i = 0; i < reaction->childCount(); ++i) {
        const cCmlElement* requirement = reaction->childAt(i);
        if (!requirement->testAll(*this)) continue;
        requirement->runCalls(*this);
        return;
    }
    reaction->runCalls(*this);
}
