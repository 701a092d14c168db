#include "audio/audio_mgr.h"
#include "game/player.h"
#include "platform/random.h"
#include "script/attacks.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "script/targets.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr double kPi = 3.141592;
constexpr float kThousandth = 0.001f;

using Self = cCmlObject&;
using Args = const int32_t*;

// --- Steering

void setDirection(Self self, int, Args args) {
    cVector3 direction;
    if (!targetDirection(self, args[0], direction)) return;
    if (self.getFlags() & MOVE_GROUNDED) direction.y = 0;
    self.setMoveDirection(direction.normalized());
}

/// Negative numbers are read as unsigned, as the format has it.
void setSpeed(Self self, int, Args args) {
    self.setSpeed(static_cast<float>(static_cast<uint32_t>(args[0]) / 1000.0));
}
void setTimer(Self self, int, Args args) {
    self.setTimer(static_cast<uint32_t>(args[0]));
}

void setPosition(Self self, int, Args args) {
    cVector3 position;
    if (targetPosition(self, args[0], position)) self.getOwner()->setPosition(position);
}

/// Right-handed about the vertical axis.
void turn(Self self, int, Args args) {
    const double angle = args[0] * kPi / 180;
    const auto c = static_cast<float>(std::cos(angle)), s = static_cast<float>(std::sin(angle));
    const cVector3 d = self.getOwner()->getDirection();
    self.setMoveDirection({d.x * c + d.z * s, d.y, d.z * c - d.x * s});
}

void level(Self self, int, Args) {
    const cVector3 d = self.getOwner()->getDirection();
    // Straight up or down nothing level is left: OUR OWN RULE, the direction stays, as whenever none would be
    // left.
    self.setMoveDirection(cVector3(d.x, 0, d.z).normalized());
    self.getOwner()->setUp({0, 1, 0});
}

void setAcceleration(Self self, int, Args args) {
    self.setAcceleration(
        cVector3(static_cast<float>(args[0]), static_cast<float>(args[1]), static_cast<float>(args[2])) *
        kThousandth);
}

// --- The object itself

void setAction(Self self, int, Args args) {
    self.setAction(args[0]);
}
void destroyObject(Self self, int, Args) {
    cObjectMgr::instance().destroy(self.getOwner());
}

void disablePhysics(Self self, int, Args) {
    self.setFlags(MOVE_PASSABLE);
    self.clearFlags(MOVE_SOLID);
}

void enablePhysics(Self self, int, Args) {
    self.setFlags(MOVE_SOLID);
    self.clearFlags(MOVE_PASSABLE);
}

void setActive(Self self, int, Args args) {
    self.setActive(args[0] != 0);
}
void swapActive(Self self, int, Args) {
    self.toggleActive();
}
void setRadius(Self self, int, Args args) {
    self.getOwner()->setBoundingRadius(static_cast<float>(args[0]) * kThousandth);
}

// --- Animation

cCharacterPose* poseOf(Self self) {
    if (self.getOwner()->getVisualKind() != cObject::kAnimated) return nullptr;
    return &static_cast<cAnimatedObject*>(self.getOwner())->pose();
}

template <typename Change> void changePose(Self self, const Change& change) {
    if (cCharacterPose* pose = poseOf(self)) change(*pose);
}

void setAnimation(Self self, int, Args args) {
    changePose(self, [&](cCharacterPose& p) { p.setAnimationByHash(args[0], args[0]); });
}
void setAnimationLegs(Self self, int, Args args) {
    changePose(self, [&](cCharacterPose& p) { p.setAnimationByHash(kLowerPart, args[0]); });
}
void setAnimationTorso(Self self, int, Args args) {
    changePose(self, [&](cCharacterPose& p) { p.setAnimationByHash(kUpperPart, args[0]); });
}
void setAnimationType(Self self, int, Args args) {
    changePose(self, [&](cCharacterPose& p) { p.setLooping(args[0] == kWordLoop); });
}
void haltAnimation(Self self, int, Args) {
    changePose(self, [](cCharacterPose& p) { p.setPlaying(false); });
}
void playAnimation(Self self, int, Args) {
    changePose(self, [](cCharacterPose& p) { p.setPlaying(true); });
}

// --- Variables

// A table (locals or globals), an operation, and where the second value comes from: the call's number, the
// event parameter, or another variable of the same table.

struct Locals {
    static int32_t get(Self self, int32_t index) { return self.getLocal(index); }
    static void set(Self self, int32_t index, int32_t value) { self.setLocal(index, value); }
};
struct Globals {
    static int32_t get(Self, int32_t index) { return cWorld::instance().globals.getGlobal(index); }
    static void set(Self, int32_t index, int32_t value) {
        cWorld::instance().globals.setGlobal(index, value);
    }
};

struct Number {
    template <typename Table> static int32_t value(Self, Args args) { return args[1]; }
};
struct Param {
    template <typename Table> static int32_t value(Self self, Args) { return self.getParam(); }
};
struct Variable {
    template <typename Table> static int32_t value(Self self, Args args) { return Table::get(self, args[1]); }
};

int32_t wrappingAdd(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

template <typename Table, typename Source> void setVariable(Self self, int, Args args) {
    Table::set(self, args[0], Source::template value<Table>(self, args));
}
template <typename Table, typename Source> void increaseVariable(Self self, int, Args args) {
    Table::set(self, args[0],
               wrappingAdd(Table::get(self, args[0]), Source::template value<Table>(self, args)));
}
template <typename Table, typename Source> void decreaseVariable(Self self, int, Args args) {
    const auto n = static_cast<uint32_t>(Source::template value<Table>(self, args));
    Table::set(self, args[0], wrappingAdd(Table::get(self, args[0]), static_cast<int32_t>(0u - n)));
}
template <typename Table, typename Source> void randomizeVariable(Self self, int, Args args) {
    const int32_t n = Source::template value<Table>(self, args);
    // The lowest number has no negation: its remainder is the random number itself.
    if (n != 0)
        Table::set(self, args[0], n == INT32_MIN ? platform::randomNumber() : platform::randomNumber() % n);
}

// --- Levels

void swapLevel(Self self, int, Args) {
    cWorld::instance().requestLevelChange(self.getElement()->getAttribute("file"),
                                          self.getElement()->getAttribute("spawnpoint"));
}

void runCinematic(Self, int, Args args) {
    cWorld::instance().startCinematic(args[0]);
}

void runVehicle(Self self, int, Args) {
    cObject* hero = cObjectMgr::instance().hero();
    if (hero) static_cast<cPlayer*>(hero->getController())->enterVehicle(&self);
}

void runDialogue(Self self, int, Args args) {
    const cCmlElement* dialogue = self.getElement()->childAt(args[0]);
    if (!dialogue) return;
    cDialogue::instance().start(*dialogue, self);
    cEventMgr::instance().post(cEvent::kDialogueStarted, &self);
}

// --- Items

cInventory& inventory() {
    return cWorld::instance().inventory;
}
/// The count is 1 unless one is written.
int32_t countOf(int argCount, Args args) {
    return argCount > 1 ? args[1] : 1;
}

void getObject(Self, int argCount, Args args) {
    inventory().give(args[0], countOf(argCount, args));
}
void takeSingleObject(Self, int argCount, Args args) {
    const int32_t n = countOf(argCount, args);
    inventory().give(args[0], n == INT32_MIN ? INT32_MAX : -n);
}
void takeAllObjects(Self, int, Args args) {
    inventory().removeAll(args[0]);
}
void takeSelectedObject(Self, int, Args) {
    inventory().removeSelected();
}
void setSelectedObject(Self, int, Args args) {
    inventory().selectItem(args[0]);
}
void getSubobject(Self, int argCount, Args args) {
    inventory().giveParts(args[0], countOf(argCount, args));
}
void useItem(Self self, int, Args args) {
    attackWith(self, args[0], args[1], args[2]);
}

// --- Sound

void playSound(Self self, int argCount, Args args) {
    cVector3 position = self.getOwner()->getPosition();
    if (const cObject* hero = cObjectMgr::instance().hero(); hero && argCount > 1) {
        const cVector3& from = hero->getPosition();
        position = from + (position - from) * (static_cast<float>(args[1]) / 100.0f);
    }
    cAudioMgr::instance().playSoundIdAt(args[0], position);
}

void playStream(Self self, int, Args) {
    if (!self.spend(FrameBudget::instance().musicStarts)) return;
    cAudioMgr& audio = cAudioMgr::instance();
    audio.setMusicVolume(cWorld::instance().playerMusicVolume);
    audio.stopMusic();
    audio.playMusic(self.getElement()->getAttribute("file"));
}

/// The envelope itself is stepped by the world's overlays.
void raiseIntensity(Self, int, Args) {
    constexpr int32_t kRising = 200;
    cWorld& world = cWorld::instance();
    if (world.intensity == 0) {
        world.intensity = 1;
        cAudioMgr::instance().stopMusic();
        cAudioMgr::instance().playMusic("sounds\\action");
        cAudioMgr::instance().setMusicVolume(0);
    }
    world.intensityRising = kRising;
}

constexpr CmlProcedureRow kProcedures[] = {
    {"set_direction", setDirection, "target: face and move towards (or away from) it"},
    {"set_speed", setSpeed, "n: speed of n / 1000 units per frame"},
    {"set_timer", setTimer, "ms: fire the timer reaction after so long"},
    {"set_position", setPosition, "target: move there at once"},
    {"set_action", setAction, "action: make it current and run its on_set"},
    {"destroy", destroyObject, "remove the object"},
    {"get_object", getObject, "item[, count]: give it to the hero"},
    {"run_dialogue", runDialogue, "dialogue: start the conversation"},
    {"set_local", setVariable<Locals, Number>, "var, n: local = n"},
    {"inc_local", increaseVariable<Locals, Number>, "var, n: local += n"},
    {"dec_local", decreaseVariable<Locals, Number>, "var, n: local -= n"},
    {"randomize_local", randomizeVariable<Locals, Number>, "var, n: local = 0 ... n - 1"},
    {"set_local_p", setVariable<Locals, Param>, "var: local = event parameter"},
    {"inc_local_p", increaseVariable<Locals, Param>, "var: local += event parameter"},
    {"dec_local_p", decreaseVariable<Locals, Param>, "var: local -= event parameter"},
    {"set_local_r", setVariable<Locals, Variable>, "var, var2: local = local var2"},
    {"inc_local_r", increaseVariable<Locals, Variable>, "var, var2: local += local var2"},
    {"dec_local_r", decreaseVariable<Locals, Variable>, "var, var2: local -= local var2"},
    {"randomize_local_r", randomizeVariable<Locals, Variable>, "var, var2: local = 0 ... local var2 - 1"},
    {"set_global", setVariable<Globals, Number>, "var, n: global = n"},
    {"inc_global", increaseVariable<Globals, Number>, "var, n: global += n"},
    {"dec_global", decreaseVariable<Globals, Number>, "var, n: global -= n"},
    {"randomize_global", randomizeVariable<Globals, Number>, "var, n: global = 0 ... n - 1"},
    {"set_global_p", setVariable<Globals, Param>, "var: global = event parameter"},
    {"inc_global_p", increaseVariable<Globals, Param>, "var: global += event parameter"},
    {"dec_global_p", decreaseVariable<Globals, Param>, "var: global -= event parameter"},
    {"set_global_r", setVariable<Globals, Variable>, "var, var2: global = global var2"},
    {"inc_global_r", increaseVariable<Globals, Variable>, "var, var2: global += global var2"},
    {"dec_global_r", decreaseVariable<Globals, Variable>, "var, var2: global -= global var2"},
    {"randomize_global_r", randomizeVariable<Globals, Variable>, "var, var2: global = 0 ... global var2 - 1"},
    {"disable_physics", disablePhysics, "let bodies pass"},
    {"enable_physics", enablePhysics, "block bodies"},
    {"take_single_object", takeSingleObject, "item[, count]: take it from the hero"},
    {"take_all_objects", takeAllObjects, "item: take every one of the kind"},
    {"take_selected_object", takeSelectedObject, "take the selected item"},
    {"set_active", setActive, "n: active unless 0"},
    {"swap_active", swapActive, "active to inactive and back"},
    {"set_animation", setAnimation, "name: play on both body parts"},
    {"set_animation_legs", setAnimationLegs, "name: play on the lower body"},
    {"set_animation_torso", setAnimationTorso, "name: play on the upper body"},
    {"set_animation_type", setAnimationType, "loop or single"},
    {"halt_animation", haltAnimation, "stop the model's animation"},
    {"play_animation", playAnimation, "resume it"},
    {"use_item", useItem, "item, target: attack with it"},
    {"set_selected_object", setSelectedObject, "item: select it in the inventory"},
    {"get_subobject", getSubobject, "item[, count]: add parts to it"},
    {"turn", turn, "degrees: rotate the direction counter-clockwise"},
    {"level", level, "make the direction horizontal and stand upright"},
    {"set_acceleration", setAcceleration, "x, y, z: steering of a thousandth of that"},
    {"set_radius", setRadius, "n: bounding radius of n / 1000 units"},
    {"run_cinematic", runCinematic, "cinematic: start it"},
    {"play_sound", playSound, "file[, percent]: play it at the object"},
    {"run_vehicle", runVehicle, "the hero takes the object as a vehicle"},
    {"swap_level", swapLevel, "go to the object's file and spawnpoint"},
    {"play_stream", playStream, "play the music of the object's file"},
    {"intensity", raiseIntensity, "switch to the action music"},
};
} // namespace

std::span<const CmlProcedureRow> cmlProcedures() {
    return kProcedures;
}
