#include "world/object.h"

#include "core/spatial_grid.h"

#include <cmath>

namespace {
uint64_t g_nextSerial = 1;
} // namespace

cObject::cObject(VisualKind kind) : visualKind_(kind), serial_(g_nextSerial++) {}
cObject::~cObject() = default;

void cObject::setController(std::unique_ptr<cController> controller) {
    controller_ = std::move(controller);
}
void cObject::drawShadow(const cVector3&) {}
void cObject::draw(const ViewInfo&) {}
void cObject::releaseModel() {}

void cObject::setPosition(const cVector3& position) {
    if (body) {
        const cVector3 offset = position - position_;
        body->shape = static_cast<const cCapsule&>(body->shape).moved(offset, offset);
    }
    position_ = position;
    relocated();
}

void cObject::moveWithoutBody(const cVector3& offset) {
    position_ += offset;
    relocated();
}

void cObject::setDirection(const cVector3& unitDirection) {
    direction_ = unitDirection;
    changed();
}

void cObject::setUp(const cVector3& unitUp) {
    up_ = unitUp;
    changed();
}

void cObject::setBoundingRadius(float radius) {
    boundingRadius_ = radius;
    if (grid_) grid_->move(gridIndex_, position_, boundingRadius_);
}

void cObject::standIn(cSpatialGrid* grid, uint32_t index) {
    grid_ = grid;
    gridIndex_ = index;
}

bool cObject::isQueryable() const {
    return controller_ && controller_->isActive() && visualKind_ >= kPlain && visualKind_ <= kAnimated;
}

void cObject::changed() {
    shadowDirty_ = true;
    cVector3 side = direction_.cross(up_), up = up_;
    // OUR OWN RULE: who faces along his up vector has no side, and his model would be flat. It is shown
    // turned in any way about that direction until direction or up vector change.
    if (side.lengthSq() == 0 && direction_.lengthSq() > 0) {
        side = direction_.cross(std::fabs(direction_.x) < 0.5f ? cVector3(1, 0, 0) : cVector3(0, 0, 1))
                   .normalized();
        up = side.cross(direction_);
    }
    transform_ = cMatrix4::basis(side, up, -direction_, position_);
}

void cObject::relocated() {
    changed();
    if (grid_) grid_->move(gridIndex_, position_, boundingRadius_);
}

void cController::onCollision(const cVector3&) {}

void cCollisionBody::requestMove(const cVector3& d, uint32_t moveFlags, float snapDistance) {
    requestMove(cMove{d, d}, moveFlags, snapDistance);
}

void cCollisionBody::requestMove(const cMove& d, uint32_t moveFlags, float snapDistance) {
    move = d;
    flags = moveFlags;
    snap = snapDistance;
    moving = true;
}

void cCollisionBody::applyMove(const cMove& m) {
    moving = false;
    if (!m.p0.isFinite() || !m.p1.isFinite()) return;
    if (owner) owner->moveWithoutBody(m.p0);
    shape = shape.moved(m.p0, m.p1);
}
