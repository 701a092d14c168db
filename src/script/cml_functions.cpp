#include "game/physics_world.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "script/targets.h"
#include "world/world.h"

namespace {
using Self = cCmlObject&;
using Args = const int32_t*;

// --- The target's place in the hierarchy

enum class Depth { type, race, classIndex };

bool sameKind(const cController& a, const cController& b, Depth depth) {
    return a.getTypeIndex() == b.getTypeIndex() &&
           (depth < Depth::race || a.getRaceIndex() == b.getRaceIndex()) &&
           (depth < Depth::classIndex || a.getClassIndex() == b.getClassIndex());
}

int16_t indexOf(const cController& c, Depth depth) {
    return depth == Depth::type   ? c.getTypeIndex()
           : depth == Depth::race ? c.getRaceIndex()
                                  : c.getClassIndex();
}

/// An unknown index reads as 65535.
template <Depth depth> bool targetKind(Self self, int, Args args) {
    const cController* other = self.getTarget() ? self.getTarget()->getController() : nullptr;
    if (!other) return false;
    if (args[0] == kWordEqual) return sameKind(*other, self, depth);
    if (args[0] == kWordNotEqual) return !sameKind(*other, self, depth);
    return static_cast<uint16_t>(indexOf(*other, depth)) == args[0];
}

// --- Variables

int32_t local(Self self, int32_t index) {
    return self.getLocal(index);
}
int32_t global(Self, int32_t index) {
    return cWorld::instance().globals.getGlobal(index);
}
int32_t number(Self, Args args) {
    return args[1];
}
int32_t param(Self self, Args) {
    return self.getParam();
}
int32_t secondLocal(Self self, Args args) {
    return local(self, args[1]);
}
int32_t secondGlobal(Self self, Args args) {
    return global(self, args[1]);
}

using Variable = int32_t (*)(Self, int32_t);
using Value = int32_t (*)(Self, Args);
template <Variable variable, Value value> bool equals(Self self, int, Args a) {
    return variable(self, a[0]) == value(self, a);
}
template <Variable variable, Value value> bool moreThan(Self self, int, Args a) {
    return variable(self, a[0]) > value(self, a);
}
template <Variable variable, Value value> bool lessThan(Self self, int, Args a) {
    return variable(self, a[0]) < value(self, a);
}

// --- The world

bool isActive(Self self, int, Args) {
    return self.isActive();
}

/// The functions know the player, the target and the origin; every other code is an object's name.
bool distanceTo(Self self, int32_t code, float& out) {
    cVector3 position;
    if (!targetPosition(self, code, position)) return false;
    out = (position - self.getOwner()->getPosition()).length();
    return true;
}

bool distanceLessThan(Self self, int, Args args) {
    float d;
    return distanceTo(self, args[0], d) && d < static_cast<float>(static_cast<uint32_t>(args[1]));
}

bool distanceMoreThan(Self self, int, Args args) {
    float d;
    return distanceTo(self, args[0], d) && d > static_cast<float>(static_cast<uint32_t>(args[1]));
}

bool inFov(Self self, int, Args args) {
    cVector3 there;
    if (!targetPosition(self, args[0], there)) return false;
    const cVector3& here = self.getOwner()->getPosition();
    const float cosine = self.getOwner()->getDirection().dot((there - here).normalized());
    return cosine > self.getElement()->fov && cPhysicsWorld::instance().octree().trace(here, there) >= 1;
}

// --- The inventory

bool objectOwned(Self, int, Args args) {
    return cWorld::instance().inventory.has(args[0]);
}
bool objectEquipped(Self, int, Args args) {
    return cWorld::instance().inventory.isSelected(args[0]);
}
bool objectHasMoreThan(Self, int, Args args) {
    return cWorld::instance().inventory.countOf(args[0]) > args[1];
}
bool objectHasLessThan(Self, int, Args args) {
    return cWorld::instance().inventory.countOf(args[0]) < args[1];
}

constexpr CmlFunctionRow kFunctions[] = {
    {"target_type", targetKind<Depth::type>,
     "value, equal or not_equal: the target's type, against a number or this object's own"},
    {"target_race", targetKind<Depth::race>, "the same for the race"},
    {"target_class", targetKind<Depth::classIndex>, "the same for the class"},
    {"local_equals", equals<local, number>, "var, n: local = n"},
    {"local_more_than", moreThan<local, number>, "var, n: local > n"},
    {"local_less_than", lessThan<local, number>, "var, n: local < n"},
    {"local_equals_p", equals<local, param>, "var: local = event parameter"},
    {"local_more_than_p", moreThan<local, param>, "var: local > event parameter"},
    {"local_less_than_p", lessThan<local, param>, "var: local < event parameter"},
    {"local_equals_r", equals<local, secondLocal>, "var, var2: local = local var2"},
    {"local_more_than_r", moreThan<local, secondLocal>, "var, var2: local > local var2"},
    {"local_less_than_r", lessThan<local, secondLocal>, "var, var2: local < local var2"},
    {"global_equals", equals<global, number>, "var, n: global = n"},
    {"global_more_than", moreThan<global, number>, "var, n: global > n"},
    {"global_less_than", lessThan<global, number>, "var, n: global < n"},
    {"global_equals_p", equals<global, param>, "var: global = event parameter"},
    {"global_more_than_p", moreThan<global, param>, "var: global > event parameter"},
    {"global_less_than_p", lessThan<global, param>, "var: global < event parameter"},
    {"global_equals_r", equals<global, secondGlobal>, "var, var2: global = global var2"},
    {"global_more_than_r", moreThan<global, secondGlobal>, "var, var2: global > global var2"},
    {"global_less_than_r", lessThan<global, secondGlobal>, "var, var2: global < global var2"},
    {"object_owned", objectOwned, "item: the hero has it"},
    {"object_equipped", objectEquipped, "item: it is the selected one"},
    {"active", isActive, "this object is active"},
    {"object_has_more_than", objectHasMoreThan, "item, n"},
    {"object_has_less_than", objectHasLessThan, "item, n"},
    {"distance_less_than", distanceLessThan, "target, d: nearer than d units"},
    {"distance_more_than", distanceMoreThan, "target, d: farther than d units"},
    {"in_fov", inFov, "target: in sight and within the object's fov"},
};
} // namespace

std::span<const CmlFunctionRow> cmlFunctions() {
    return kFunctions;
}
