#pragma once
#include "world/object.h"

struct cItemDef;

/// Something thrown or shot that flies by itself until it hits. Velocities are world units per update, times
/// milliseconds. It flies on in every game state.
class cProjectile : public cController {
public:
    explicit cProjectile(cObject* owner) : cController(owner) {
        active_ = false;
        ++inFlight_;
    }
    ~cProjectile() override { --inFlight_; }
    /// What misses flies for ever: scripts launch no more than this.
    static constexpr int kMostInFlight = 1000;
    static int inFlight() { return inFlight_; }

    /// `item` must outlive the flight.
    void launch(const cItemDef& item, const cVector3& position, const cVector3& velocity);
    void update(uint32_t elapsedMs, GameState* state) override;
    Kind kind() const override { return kProjectile; }

    const cItemDef* getItem() const { return item_; } ///< null before the launch
    const cVector3& getVelocity() const { return velocity_; }

private:
    void fall();
    void hit();

    static inline int inFlight_ = 0;
    cVector3 velocity_, position_;
    const cItemDef* item_ = nullptr;
    int32_t delay_ = 0; ///< ms of straight flight left
};
