#pragma once
#include "core/game_state.h"

#include <cstdint>
#include <vector>

class cController;

/// What happened between objects since the last processing.
struct cEvent {
    enum Type : int32_t {
        kTouchedGeometry = 0,
        kTouchedBody = 1,
        kDialogueStarted = 2,
        kDialogueEnded = 3,
        kBallisticHit = 4,
        kExplosion = 5,
        kMeleeHit = 6,
    };
    cController* source = nullptr;
    cController* other = nullptr;
    Type type = kTouchedGeometry;
    float value = 0; ///< damage of hits
    uint32_t extra = 0;
};

/// The queue of events, handled once a frame, newest first.
class cEventMgr {
public:
    static cEventMgr& instance();
    static void destroy();

    static constexpr int32_t kMostEvents = 65536; ///< in a frame; more are not taken

    void post(cEvent::Type type, cController* source, cController* other = nullptr, float value = 0,
              uint32_t extra = 0);
    int32_t count() const { return static_cast<int32_t>(events_.size()); }
    const std::vector<cEvent>& events() const { return events_; }
    /// Drops every event that names the controller; the others keep their order.
    void removeFor(const cController* controller);
    /// Drops everything (a level load frees every controller that events could name).
    void clear() { events_.clear(); }
    /// Implemented in event_dispatch.cpp.
    void process(uint32_t elapsedMs, GameState* state);

private:
    std::vector<cEvent> events_;
};
