#pragma once
#include "core/application.h"
#include "core/auto_player.h"
#include "gallery/call_recorder.h"
#include "support/test_world.h"

enum GalleryItem { kPistol, kGrenade, kDart, kStick, kCoin };

/// The whole game without a window, in the gallery, with the fixed clock. The player's part is played with
/// keys.
class Hall {
public:
    Hall();
    ~Hall();

    void frames(int count);
    void hold(int command, int count);
    /// The key is seen once; then some frames pass.
    void press(int command, int after = 20);
    void use(int after = 2) { press(CMD_USE, after); }

    /// Another level, the hero whole and with empty hands.
    void load(const std::string& level);
    /// A fresh gallery, the hero before this exhibit.
    void enter(const std::string& exhibit);
    static void stand(const std::string& exhibit, float distance = kReach);
    /// With so many of an item in hand.
    void arm(int32_t item, int32_t count = 1);
    void attack(int32_t item);

    static constexpr float kReach = 1.3f; ///< in front of an exhibit, in reach and not touching
    static cObject* hero() { return cObjectMgr::instance().hero(); }
    static const cVector3& at(const std::string& name) { return TestWorld::object(name)->getPosition(); }
    static const cVector3& facing(const std::string& name) { return TestWorld::object(name)->getDirection(); }
    int32_t global(const std::string& name) {
        return world.globals.getGlobal(world.globals.globalIndex(name));
    }

    TestWorld t;
    cApplication app;
    cAutoPlayer keys;
    CallRecorder recorder;
    cWorld& world = cWorld::instance();
    bool started = false;
};
