#include "script/targets.h"

#include "platform/random.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "world/object_mgr.h"

namespace {
float randomComponent() {
    return static_cast<float>(platform::randomNumber() % 1000 - 500) / 500.0f;
}
} // namespace

bool targetPosition(const cCmlObject& self, int32_t code, cVector3& out) {
    const cObject* object = nullptr;
    if (code == kWordPlayer) {
        object = cObjectMgr::instance().hero();
    } else if (code == kWordTarget) {
        object = self.getTarget();
    } else if (code == kWordOrigin) {
        out = self.getOrigin();
        return true;
    } else if (const cController* found = cObjectMgr::instance().findCmlObject(code)) {
        object = found->getOwner();
    }
    if (object) out = object->getPosition();
    return object != nullptr;
}

cVector3 randomDirection() {
    const float x = randomComponent(), y = randomComponent(), z = randomComponent();
    return {x, y, z};
}

bool targetDirection(const cCmlObject& self, int32_t code, cVector3& out) {
    const cVector3& mine = self.getOwner()->getPosition();
    const auto towards = [&](int32_t position, float sign) {
        cVector3 there;
        if (!targetPosition(self, position, there)) return false;
        out = (there - mine) * sign;
        return true;
    };
    switch (code) {
    case kWordInvertTarget:
        return towards(kWordTarget, -1);
    case kWordInvertPlayer:
        return towards(kWordPlayer, -1);
    case kWordInvertOrigin:
        return towards(kWordOrigin, -1);
    case kWordRandom:
        out = randomDirection();
        return true;
    case kWordInverted:
        out = -self.getOwner()->getDirection();
        return true;
    default:
        return towards(code, 1);
    }
}
