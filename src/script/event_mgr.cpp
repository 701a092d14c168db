#include "script/event_mgr.h"

#include <memory>

namespace {
std::unique_ptr<cEventMgr> g_instance;
} // namespace

cEventMgr& cEventMgr::instance() {
    if (!g_instance) g_instance = std::make_unique<cEventMgr>();
    return *g_instance;
}

void cEventMgr::destroy() {
    g_instance.reset();
}

void cEventMgr::post(cEvent::Type type, cController* source, cController* other, float value,
                     uint32_t extra) {
    if (count() < kMostEvents) events_.push_back({source, other, type, value, extra});
}

void cEventMgr::removeFor(const cController* controller) {
    std::erase_if(events_, [=](const cEvent& e) { return e.source == controller || e.other == controller; });
}
