// A level document as the game takes it: objects are made, their scripts run, some frames pass.
#include "core/application.h"
#include "data/binary_reader.h"
#include "game/physics_world.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "render/renderer.h"
#include "script/event_mgr.h"
#include "support.h"
#include "ui/input_mgr.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <cstdlib>

namespace {
std::string text(const cBinaryWriter& out) {
    return {out.bytes().begin(), out.bytes().end()};
}

/// A grey tetrahedron, as a model file and as an octree file.
struct Tetrahedron {
    std::string model, octree;

    Tetrahedron() {
        cModelObject o;
        o.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        o.faces = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
        cModel mesh;
        mesh.add(o);
        cMaterialList materials;
        materials.addFrom(mesh);
        cBinaryWriter modelFile, octreeFile;
        materials.write(modelFile);
        mesh.writeObjects(modelFile, materials);
        model = text(modelFile);
        cOctree tree;
        tree.build(mesh, 10, 2, true);
        materials.write(octreeFile);
        tree.write(octreeFile, materials);
        octree = text(octreeFile);
    }
};

void moveFigures(uint32_t now) {
    for (size_t i = 0; i < cObjectMgr::instance().count(); ++i) {
        cObject* object = cObjectMgr::instance().get(i);
        if (object->getVisualKind() == cObject::kAnimated)
            static_cast<cAnimatedObject*>(object)->advance(now);
    }
}
} // namespace

FUZZ_TARGET(level) {
    static const Tetrahedron kTetrahedron;
    fuzz::putFile("in.xml", fuzz::text(data, size));
    fuzz::putFile("thing.cpm", kTetrahedron.model);
    fuzz::putFile("level.oct", kTetrahedron.octree);
    fuzz::putFile("movement.cfg", "GRAVITY 0.01\nFRICTION 0.5\nSNAP_GROUND 0.06\n");
    setenv("SDL_VIDEODRIVER", "dummy", 1); // the renderer collects texts without a window
    platform::useFixedStep(16);
    cRenderer::instance(); // outlives the run; it seeds the random generator
    platform::seedRandom(1);
    GameState state = STATE_GAME;
    cInputMgr::instance().saveOnExit = false;
    cWorld& world = cWorld::instance();
    world.attachState(&state);
    fuzz::cDigest digest;
    const int result = world.loadLevel("in.xml");
    for (int frame = 0; frame < 3; ++frame) {
        moveFigures(16 * static_cast<uint32_t>(frame));
        cObjectMgr::instance().update(16, &state);
        cPhysicsWorld::instance().step(16, state);
        cEventMgr::instance().process(16, &state);
        world.updateCameraOrCinematic(16, &state);
        cObjectMgr::instance().draw(true, world.viewInfo());
        cRenderer::instance().endFrame();
    }
    for (size_t i = 0; i < cObjectMgr::instance().count(); ++i)
        digest.addValue(cObjectMgr::instance().get(i)->getPosition());
    digest.addValue(cObjectMgr::instance().count()).addValue(state);
    cApplication::destroyGame();
    return result == 0 ? digest.value() : 0;
}
