#include "core/application.h"

#include "audio/audio_mgr.h"
#include "core/config_mgr.h"
#include "core/frustum.h"
#include "core/log_mgr.h"
#include "game/item_def.h"
#include "game/physics_world.h"
#include "models/model.h"
#include "platform/clock.h"
#include "platform/console_streams.h"
#include "platform/ending_signals.h"
#include "platform/files.h"
#include "platform/gl_api.h"
#include "render/particles.h"
#include "render/renderer.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <algorithm>
#include <cstdlib>

namespace {
/// Who plays a level that was named on the command line: no hero of the player's is written over, and the
/// menu does not offer him.
constexpr const char* kLevelHero = "\xA3"
                                   "Quorvane";
constexpr uint32_t kFrameMs = 16; ///< pace of a run without a screen
constexpr uint32_t kHeldMs = 20;  ///< between looks for the focus

/// The cel ramp: half bright below 5/16, three quarters below 8/16, full above.
constexpr int kRampTexels = 16;
constexpr struct {
    int first;
    uint8_t grey;
} kRampSteps[] = {{0, 128}, {5, 192}, {8, 255}};

/// Weapon models that every start brings up to date.
constexpr struct {
    const char* from;
    const char* to;
} kConversions[] = {{"3ds\\pistoltest.3ds", "s_mdl\\pistol.cpm"}, {"3ds\\grenade.3ds", "s_mdl\\grenade.cpm"}};

/// What is painted over the 3D picture, bottom first.
const std::vector<cRenderer::Overlay> kOverlays = {
    {"conversation",
     [] {
         if (cDialogue::instance().isVisible() && cWorld::instance().levelChangePending <= 0)
             cDialogue::instance().draw();
     }},
    {"world", [] { cWorld::instance().drawOverlays(); }},
    {"console", [] { cInputMgr::instance().console.draw(); }},
    {"menu", [] { cInputMgr::instance().menu.draw(); }},
};

bool g_running = false;

/// When the display is lost the X library leaves the program by exit(). What the player changed is kept;
/// neither SDL nor OpenGL may be called any more.
void endWithoutDisplay() {
    if (!g_running) return;
    g_running = false;
    platform::setGlContext(false);
    const std::string sentence = "The display is gone: Quorvane ends.";
    cLogMgr::instance().error(sentence);
    platform::tellTerminal(sentence);
    cInputMgr::destroy();
    cLogMgr::destroy();
}

/// A player before a black window looks at the terminal, not for a log.
void tellLosses() {
    if (cLogMgr::instance().errorCount() == 0) return;
    platform::tellTerminal("Not everything could be loaded; " + cLogMgr::instance().whereToRead() +
                           " says what.");
}

/// The hero is who listens; there is none between levels.
void placeListener() {
    const cObject* hero = cObjectMgr::instance().hero();
    const cAudioMgr::Listener listener =
        hero ? cAudioMgr::Listener{hero->getPosition(), hero->getDirection(), hero->getUp()}
             : cAudioMgr::Listener();
    cAudioMgr::instance().setListener(hero ? &listener : nullptr);
}

void drawStartBackground() {
    if (!platform::hasGlContext()) return;
    glDisable(GL_TEXTURE_2D);
    glColor4ub(255, 255, 255, 255);
    glBegin(GL_QUADS);
    glVertex3i(-10, -10, -5);
    glVertex3i(10, -10, -5);
    glVertex3i(10, 10, -5);
    glVertex3i(-10, 10, -5);
    glEnd();
}
} // namespace

cApplication::cApplication(RunOptions options) : options_(std::move(options)) {}

cApplication::~cApplication() {
    shutdown();
}

int cApplication::run() {
    if (!start()) return 1;
    while (state_ == STATE_INTRO) introFrame();
    afterIntro();
    while (state_ == STATE_MENU) menuFrame();
    cInputMgr::instance().pump(0, &state_);
    // The time spent in the menu is not the game's.
    tickBase_ = platform::ticks();
    dt_ = 0;
    while (state_ != STATE_QUIT) gameFrame();
    if (platform::isEndingAsked()) platform::tellTerminal("Quorvane ends, as it was asked to.");
    shutdown();
    return 0;
}

/// A game without a window is no reason to stop: it goes on, and whoever started it is told.
void cApplication::tellNoWindow() {
    const std::string reason = SDL_GetError();
    cLogMgr::instance().error("No window could be opened: %s", reason.c_str());
    platform::tellTerminal("Quorvane cannot open a window: " + reason +
                           "\nIt runs on without one; Ctrl+C ends it. Check the display and window.cfg.");
}

bool cApplication::start() {
    started_ = g_running = true;
    platform::catchEndingSignals();
    static const int registered = std::atexit(&endWithoutDisplay);
    static_cast<void>(registered);
    createManagers();
    openWindow();
    if (!cRenderer::instance().hasScreen()) tellNoWindow();
    cRenderer::instance().drawLoadingScreen();
    if (platform::hasGlContext()) {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
    }
    convertModels();
    cItemDefs::instance().loadItemDefs(); // now that the models which items throw are there
    makeRamp();
    if (platform::hasGlContext()) glEnable(GL_CULL_FACE);
    cWorld::instance().attachState(&state_);
    if (!options_.level.empty()) return startLevel();
    cWorld::instance().startIntro();
    state_ = STATE_INTRO;
    dt_ = 0;
    tickBase_ = platform::ticks();
    cAudioMgr::instance().playMusic("sounds\\quorvane");
    tellLosses();
    return true;
}

void cApplication::createManagers() const {
    cLogMgr::instance();
    cRenderer::instance().setFast(options_.fast);
    cFrustum::instance();
    cPhysicsWorld::instance();
    cInputMgr::instance();
    cObjectMgr::instance();
    cWorld::instance();
    cEventMgr::instance();
    cAudioMgr::instance().initialise();
}

void cApplication::openWindow() {
    cConfigMgr& config = cConfigMgr::instance();
    cRenderer& renderer = cRenderer::instance();
    const std::string icon = config.getString("WINDOW_ICON", "window");
    renderer.setCaption(config.getString("WINDOW_TITLE", "window"), icon);
    renderer.setOverlays(kOverlays);
    renderer.addModeListener([] { cWorld::instance().hud.loadHud(); });
    renderer.addModeListener([] { cInputMgr::instance().menu.loadPictures(); });
    const bool fullscreen = config.getInt("FULLSCREEN", "window") != 0;
    const int height = options_.height ? options_.height : config.getInt("WINDOW_HEIGHT", "window");
    const int width = options_.width ? options_.width : config.getInt("WINDOW_WIDTH", "window");
    renderer.setVideoMode(width, height, fullscreen);
}

void cApplication::convertModels() {
    for (const auto& row : kConversions) {
        converted_.push_back(std::make_unique<cModel>());
        // A model that did not load would replace a good file by an empty one. OUR OWN RULE: nor does one
        // without an object.
        if (converted_.back()->load(row.from, true) < 0) {
            cLogMgr::instance().error("Cannot convert %s: %s", row.from, SDL_GetError());
        } else if (converted_.back()->objects.empty()) {
            cLogMgr::instance().error("Cannot convert %s: it holds no object", row.from);
        } else if (!converted_.back()->saveCpm(row.to)) {
            cLogMgr::instance().error("Cannot write %s", row.to);
        }
    }
}

void cApplication::makeRamp() const {
    uint8_t texels[kRampTexels][3];
    for (const auto& step : kRampSteps) {
        for (int i = step.first; i < kRampTexels; ++i) texels[i][0] = texels[i][1] = texels[i][2] = step.grey;
    }
    cWorld::instance().celRamp =
        static_cast<uint32_t>(cRenderer::instance().createTexture1D(texels, kRampTexels));
}

bool cApplication::startLevel() {
    cWorld& world = cWorld::instance();
    world.heroName = kLevelHero;
    world.levelFile = options_.level;
    world.spawnPoint = options_.spawn;
    world.saveGame();
    cRenderer::instance().drawLoadingScreen();
    if (world.loadLevel(options_.level) < 0 && !world.isLevelLoaded()) {
        platform::tellTerminal("The level \"" + options_.level + "\" cannot be loaded; " +
                               cLogMgr::instance().whereToRead() + " says why.");
        return false;
    }
    // Where the pointer was before the game is no movement that turns the view.
    state_ = STATE_LOADING;
    cInputMgr& input = cInputMgr::instance();
    input.pump(0, &state_);
    input.mouseDX = input.mouseDY = 0;
    if (state_ == STATE_LOADING) state_ = STATE_GAME;
    tellLosses();
    return true;
}

void cApplication::introFrame() {
    beforeFrame();
    cRenderer::instance().beginFrame();
    cInputMgr::instance().pump(dt_, &state_);
    cWorld::instance().updateIntro(dt_, &state_);
    cAudioMgr::instance().update();
    cRenderer::instance().present();
    measure();
}

void cApplication::afterIntro() {
    cWorld::instance().resetCinematic();
    if (options_.level.empty() && state_ != STATE_QUIT) {
        state_ = STATE_MENU;
        cInputMgr::instance().openMenu();
    }
    if (platform::hasGlContext()) glDisable(GL_TEXTURE_2D);
}

void cApplication::menuFrame() {
    beforeFrame();
    cRenderer::instance().beginFrame();
    cInputMgr::instance().pump(0, &state_);
    // OUR OWN RULE: in the menu the title begins again when it is over.
    cAudioMgr::instance().repeatMusic();
    cAudioMgr::instance().update();
    drawStartBackground();
    cRenderer::instance().endFrame();
    waitWithoutScreen();
}

void cApplication::gameFrame() {
    cRenderer& renderer = cRenderer::instance();
    cWorld& world = cWorld::instance();
    beforeFrame();
    renderer.beginFrame();
    cFrustum::instance().update();
    placeListener();
    world.update(dt_, &state_);                  // poses first: objects read them
    cObjectMgr::instance().update(dt_, &state_); // controllers post their moves
    cPhysicsWorld::instance().step(dt_, state_); // moves are resolved, touches become events
    cEventMgr::instance().process(dt_, &state_);
    // OUR OWN RULE: where the level's timers stand still, and in a long fight, nothing else plays the music
    // again.
    if (state_ == STATE_MENU || state_ == STATE_INVENTORY || state_ == STATE_DIALOGUE || world.intensity > 0)
        cAudioMgr::instance().repeatMusic();
    cAudioMgr::instance().update();
    world.updateCameraOrCinematic(dt_, &state_);
    cFrustum::instance().update(); // the camera has moved
    world.drawLevel();
    cObjectMgr::instance().draw(world.isPlayerVisible(), world.viewInfo());
    world.drawEnvironment();
    cInputMgr::instance().pump(dt_, &state_);
    renderer.endFrame();
    measure();
}

/// Nothing is presented without a screen, so nothing else would keep the pace.
void cApplication::waitWithoutScreen() {
    if (cRenderer::instance().hasScreen()) return;
    platform::sleepMs(kFrameMs);
    platform::framePresented();
}

void cApplication::measure() {
    waitWithoutScreen();
    const uint64_t now = platform::ticks();
    dt_ = static_cast<uint32_t>(now - tickBase_);
    tickBase_ = now;
}

void cApplication::beforeFrame() {
    waitForFocus();
    if (options_.script) options_.script();
    takePictures();
}

/// Runs whose frames somebody counts go on: by the virtual clock, with a script or for pictures.
bool cApplication::mayBeHeld() const {
    const auto isAwaited = [](const RunOptions::Screenshot& shot) { return !shot.path.empty(); };
    return !platform::isFixedStep() && !options_.script && cRenderer::instance().hasScreen() &&
           std::ranges::none_of(options_.screenshots, isAwaited);
}

/// OUR OWN RULE: while another window has the input focus nothing runs, and the time is not the game's.
void cApplication::waitForFocus() {
    cInputMgr& input = cInputMgr::instance();
    if (input.hasFocus() || !mayBeHeld()) return;
    cAudioMgr::instance().setPaused(true);
    while (!input.hasFocus() && state_ != STATE_QUIT) {
        platform::sleepMs(kHeldMs);
        input.pump(0, &state_);
    }
    cAudioMgr::instance().setPaused(false);
    tickBase_ = platform::ticks();
}

void cApplication::takePictures() {
    // A frame of the intro may present twice: the first one that reaches the number is taken.
    for (RunOptions::Screenshot& shot : options_.screenshots) {
        if (shot.path.empty() || shot.frame > cRenderer::instance().framesPresented()) continue;
        cRenderer::instance().requestScreenshot(shot.path);
        shot.path.clear();
        break;
    }
}

/// Renderer first, log last: later destructors run without GL and without SDL.
void cApplication::shutdown() {
    if (!started_) return;
    started_ = g_running = false;
    destroyManagers();
    cAudioMgr::instance().shutdown();
    cLogMgr::destroy();
    converted_.clear();
}

void cApplication::destroyManagers() {
    cRenderer::destroy();
    cFrustum::destroy();
    destroyGame();
}

void cApplication::destroyGame() {
    cObjectMgr::instance().setForgetListener({});
    cEventMgr::destroy();
    cInputMgr::destroy();
    cObjectMgr::destroyInstance();
    cPhysicsWorld::destroy();
    cConfigMgr::destroy();
    cWorld::destroy();
    cDialogue::destroy();
    cItemDefs::destroy();
    destroyEffects();
}
