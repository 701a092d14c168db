#include "game/weapons.h"

#include "game/projectile.h"
#include "script/cml_object.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"

void launchProjectile(const cItemDef& item, const cVector3& position, const cVector3& velocity) {
    auto object = std::make_unique<cStaticObject>(item.projectileModel, nullptr);
    auto controller = std::make_unique<cProjectile>(object.get());
    controller->launch(item, position, velocity);
    const cVector3 direction = velocity.normalized();
    object->setController(std::move(controller));
    object->setPosition(position);
    object->setDirection(direction);
    object->setUp(flyingUp(direction));
    object->setBoundingRadius(item.radius);
    cObjectMgr::instance().addLater(std::move(object));
}
