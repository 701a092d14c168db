#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "core/parse.h"
#include "data/binary_reader.h"
#include "game/physics_world.h"
#include "game/player.h"
#include "platform/files.h"
#include "platform/gl_api.h"
#include "render/shadow_volume.h"
#include "script/cml_lookups.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "ui/input_mgr.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr float kLeastSize = 0.001f;  ///< a smaller "size" leaves a model as it is
constexpr float kLeastRadius = 0.01f; ///< a smaller capsule gives no body
const cCapsule kHeroCapsule({0, 0.35f, 0}, {0, -0.85f, 0}, 0.4f);

/// An object's collision shape, relative to its position.
struct Shape {
    cCapsule capsule;
    float boundingRadius = 0;
};

Shape readShape(const cCmlElement& physics) {
    Shape shape;
    if (const cCmlElement* volume = physics.findChild(kCmlBoundingVolume)) {
        shape.capsule =
            cCapsule(toVector3(volume->getAttribute("start")), toVector3(volume->getAttribute("end")),
                     toFloat(volume->getAttribute("radius")));
    } else {
        shape.boundingRadius = toFloat(physics.getAttribute("radius"));
    }
    return shape;
}

std::unique_ptr<cObject> makeStatic(cWorld& world, const cCmlElement& model, float size) {
    cModel* mesh = world.staticModels.load(model.getAttribute("file"), false);
    if (!mesh) return nullptr;
    mesh->moveToCentre();
    if (size > kLeastSize) mesh->scaleToExtent(size);
    // After the scaling: planes and neighbours are those of the final positions.
    if (world.lightPosition.y > cWorld::kNoLight) shadowVolume::prepare(mesh->objects);
    return std::make_unique<cStaticObject>(mesh, &world.staticModels);
}

std::unique_ptr<cObject> makeAnimated(cWorld& world, const cCmlElement& model) {
    const auto [directory, name] = splitCharacterName(model.getAttribute("file"));
    auto object = std::make_unique<cAnimatedObject>(
        world.animatedModels.load(directory, name, true, world.lightPosition.y > cWorld::kNoLight),
        &world.animatedModels);
    if (model.getAttribute("no_head_shadow").size() >= kShortestText) object->pose().setHeadShadow(false);
    return object;
}

/// Places the object, then gives it its body, so that the body stands where the object does.
void place(cObject& object, const Shape& shape, const cVector3& position, const cVector3& direction,
           const cVector3& up) {
    object.setPosition(position);
    object.setDirection(direction);
    object.setUp(up);
    if (shape.capsule.radius > kLeastRadius) {
        cPhysicsWorld::instance().addBody(cCollisionBody(&object, shape.capsule.moved(position, position)));
    } else {
        object.setBoundingRadius(shape.boundingRadius);
    }
}

void createObject(cWorld& world, cCmlElement& element) {
    const cCmlElement* appearance = element.findChild(kCmlAppearance);
    const cCmlElement* physics = element.findChild(kCmlPhysics);
    const cCmlElement* model = appearance ? appearance->findChild(kCmlModel) : nullptr;
    if (!physics || !model) return;
    const std::string& type = appearance->getAttribute("type");
    std::unique_ptr<cObject> object;
    if (type == "static") {
        object = makeStatic(world, *model, toFloat(physics->getAttribute("size")));
    } else if (type == "animated") {
        object = makeAnimated(world, *model);
    }
    if (!object) return;
    cObject& placed = *object;
    auto controller = std::make_unique<cCmlObject>(&placed);
    cCmlObject& behaviour = *controller;
    placed.setController(std::move(controller));
    behaviour.init(element);
    // What on_set did to the object's place and direction yields to the document's.
    place(placed, readShape(*physics), toVector3(physics->getAttribute("position")),
          toVector3(physics->getAttribute("direction")).normalized(),
          toVector3(physics->getAttribute("up")).normalized());
    cObjectMgr::instance().add(std::move(object));
}

/// A file that cannot be opened leaves the scenery that there is; a damaged one leaves none.
bool readScenery(cWorld& world, const std::string& file) {
    cBinaryReader in(file);
    if (!in.isOpen()) {
        cLogMgr::instance().error("Failed to open scenery file %s", file.c_str());
        return false;
    }
    world.appearanceFile.clear();
    cMaterialList materials;
    if (materials.read(in)) {
        materials.loadTextures();
        if (world.scenery.read(in, materials)) {
            world.appearanceFile = file;
            return true;
        }
    }
    world.scenery.clear();
    cLogMgr::instance().error("Scenery file %s is damaged", file.c_str());
    return false;
}

/// OUR OWN RULE: new effects are at full volume, so the settings reach what the level has loaded, and with it
/// what the hero will be heard by at his first jump.
void applyEffectsVolume() {
    cAudioMgr& audio = cAudioMgr::instance();
    for (const char* name : {"sounds/hopp", "sounds\\landa"})
        if (platform::fileExists(std::string(name) + ".wav")) audio.getSound(name, false, false);
    audio.setEffectsVolume(cInputMgr::instance().getSoundVolume());
}
} // namespace

int cWorld::loadLevel(const std::string& fileName) {
    intensity = intensityRising = 0;
    resetCinematic();
    cinematic.element = nullptr;
    cDialogue::instance().close();
    if (state_ && (*state_ == STATE_DIALOGUE || *state_ == STATE_CINEMATIC)) *state_ = STATE_GAME;
    if (loadDocument(fileName) != 0) return -1;
    loadEnvironment();
    loadFog();
    const int result = loadScenery();
    loadObjects();
    loadMusic();
    applyEffectsVolume();
    return result;
}

/// The old level's objects point into the old document: they go before it does.
int cWorld::loadDocument(const std::string& fileName) {
    cObjectMgr::instance().clear();
    cEventMgr::instance().clear();
    FrameBudget::instance().renew();
    document.clear();
    CmlReport report;
    if (document.load(fileName, cmlLookups(), report) != 0) {
        document.clear();
        return -1;
    }
    levelFile = fileName;
    return 0;
}

void cWorld::loadEnvironment() {
    const cCmlElement* element = document.findChild(kCmlEnvironment);
    if (!element) return;
    const std::string& file = element->getAttribute("file");
    if (file == environmentFile) return;
    if (environment_.load(file)) {
        environmentFile = file;
        lightPosition = environment_.lightPosition();
    } else if (!environment_.isLoaded()) {
        environmentFile.clear();
    }
}

void cWorld::loadFog() {
    const cCmlElement* fog = document.findChild(kCmlFog);
    cVolumetricFog heights;
    if (fog) {
        heights = {true, toFloat(fog->getAttribute("bottom")), toFloat(fog->getAttribute("top"))};
    }
    scenery.setFog(heights);
    if (!platform::hasGlContext()) return;
    if (!fog) {
        glDisable(GL_FOG);
        return;
    }
    float colour[4];
    const char* channels[4] = {"r", "g", "b", "a"};
    for (int i = 0; i < 4; ++i) colour[i] = toFloat(fog->getAttribute(channels[i])) / 256;
    glEnable(GL_FOG);
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogfv(GL_FOG_COLOR, colour);
    glFogf(GL_FOG_START, 0);
    glFogf(GL_FOG_END, 1);
    glFogi(GL_FOG_COORDINATE_SOURCE_EXT, GL_FOG_COORDINATE_EXT);
    if (platform::gl.fogCoordf) platform::gl.fogCoordf(0);
}

int cWorld::loadScenery() {
    const cCmlElement* files = document.findChild(kCmlFiles);
    if (!files) return 0;
    int result = 0;
    const std::string& file = files->getAttribute("appearance");
    if (file == appearanceFile) {
        scenery.compileDisplayLists(); // the level may have another fog
    } else if (!readScenery(*this, file)) {
        result = -1;
    }
    cPhysicsWorld::instance().loadCollision(files->getAttribute("collision"));
    return result;
}

void cWorld::loadObjects() {
    animatedModels.clear();
    loadHero();
    for (int32_t i = 0; i < document.childCount(); ++i) {
        if (document.childAt(i)->elementKind == kCmlObjectElement) createObject(*this, *document.childAt(i));
    }
}

void cWorld::loadHero() {
    const cCmlElement* spawn = document.findChildWith(kCmlPlayer, "spawnpoint", spawnPoint);
    if (!spawn) return;
    const cCmlElement* physics = spawn->findChild(kCmlPhysics);
    const cCmlElement* view = spawn->findChild(kCmlCamera);
    if (!physics || !view) {
        cLogMgr::instance().error("Spawnpoint %s has no position and/or camera data!", spawnPoint.c_str());
        return;
    }
    auto hero = std::make_unique<cAnimatedObject>(
        animatedModels.load(kHeroDirectory, kHeroModel, false, lightPosition.y > kNoLight), &animatedModels);
    hero->setController(std::make_unique<cPlayer>(hero.get()));
    place(*hero, {kHeroCapsule, 0}, toVector3(physics->getAttribute("position")),
          toVector3(physics->getAttribute("direction")).normalized(),
          toVector3(physics->getAttribute("up")).normalized());
    camera.setTarget(hero.get());
    camera.setFirstPerson(true);
    camera.setOffset(toVector3(view->getAttribute("offset")));
    camera.setView({0, 0, 0});
    camera.setStored(toVector3(view->getAttribute("position")));
    camera.place();
    if (view->getAttribute("firstperson") != "1") camera.toggleView();
    cObjectMgr::instance().add(std::move(hero));
}

void cWorld::loadMusic() {
    const cCmlElement* files = document.findChild(kCmlFiles);
    if (files && files->getAttribute("music").size() >= kShortestText) {
        cAudioMgr::instance().playMusic(files->getAttribute("music"));
    }
}
