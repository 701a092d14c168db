// Pages of the menu and what their entries do.

#include "ui/menu.h"

#include "audio/audio_mgr.h"
#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "ui/settings_screens.h"
#include "world/world.h"

#include <algorithm>
#include <span>

namespace {
constexpr int kWithoutGame = 40; ///< pixels that the main page moves up without its first entry
constexpr int32_t kListTop = 170, kListStep = 18, kListHalfHeight = 8, kListRoom = 250;
constexpr int32_t kRowHalfWidth = 307, kRowHalfHeight = 8;
constexpr int32_t kCreditsHeight = 500;
constexpr int kHeroLimit = 14, kSettingsLimit = 8; ///< of names, plus one
constexpr const char* kCreateNew = "[ Create New ]";

/// Buttons in the order of their pictures; their highlights follow, CANCEL's before OK's.
enum Button : int32_t {
    kReturn,
    kNewGame,
    kLoadGame,
    kSettings,
    kCredits,
    kQuit,
    kAudio,
    kVideo,
    kInput,
    kDefault,
    kOk,
    kCancel,
    kListSettings, ///< SAVE's rectangles hold the picture that says "load"
    kNameSettings, ///< and LOAD's the one that says "save"
};
constexpr const char* kPictureNames[] = {
    "RETURN",    "NEWGAME",    "LOADGAME",    "SETTINGS",    "CREDITS",    "QUIT",    "AUDIO",
    "VIDEO",     "INPUT",      "DEFAULT",     "OK",          "CANCEL",     "SAVE",    "LOAD",
    "HL_RETURN", "HL_NEWGAME", "HL_LOADGAME", "HL_SETTINGS", "HL_CREDITS", "HL_QUIT", "HL_AUDIO",
    "HL_VIDEO",  "HL_INPUT",   "HL_DEFAULT",  "HL_CANCEL",   "HL_OK",      "HL_SAVE", "HL_LOAD"};
constexpr float kImageSide = 1024;

/// Names that the player gave, as many as an entry table holds: the newest.
std::vector<std::string> newest(std::vector<std::string> names, size_t most) {
    std::erase_if(names, [](const std::string& n) { return n.empty() || n[0] == cInputMgr::kReserved; });
    if (names.size() > most) names.erase(names.begin(), names.end() - static_cast<std::ptrdiff_t>(most));
    return names;
}

cInputMgr& input() {
    return cInputMgr::instance();
}

std::string notSaved() {
    return "The settings could not be saved. " + cLogMgr::instance().pageName() + " says why.";
}

/// For the hero too; `sentence` when that is done.
std::string keeping(const std::string& settings, const std::string& sentence) {
    return input().keepChoice(settings) ? sentence : notSaved();
}
} // namespace

struct cMenu::Tables {
    struct Entry {
        int32_t button, y;
        void (cMenu::*activate)();
    };
    static constexpr Entry kMain[] = {
        {kReturn, 260, &cMenu::resume},       {kNewGame, 220, &cMenu::newGame},
        {kLoadGame, 180, &cMenu::chooseHero}, {kSettings, 140, &cMenu::toSettings},
        {kCredits, 100, &cMenu::toCredits},   {kQuit, 60, &cMenu::quit},
    };
    static constexpr Entry kSettingsEntries[] = {
        {kAudio, 260, &cMenu::toAudio},
        {kVideo, 230, &cMenu::toVideo},
        {kInput, 200, &cMenu::toInput},
        {kDefault, 150, &cMenu::loadDefaults},
        {kListSettings, 120, &cMenu::chooseSettings},
        {kNameSettings, 90, &cMenu::askSettingsName},
    };

    static std::span<const Entry> entries(Page page) {
        if (page == kMainPage) return kMain;
        if (page == kSettingsPage) return kSettingsEntries;
        return {};
    }
};

const SettingsScreen* cMenu::settingsScreen(Page page) {
    switch (page) {
    case kInputPage:
        return &inputScreen();
    case kVideoPage:
        return &videoScreen();
    case kAudioPage:
        return &audioScreen();
    default:
        return nullptr;
    }
}

void cMenu::readRectangles() {
    cConfigMgr& config = cConfigMgr::instance();
    for (const char* name : kPictureNames) {
        const auto side = [&](const char* suffix) {
            constexpr int kFarthest = 1 << 14; // whatever the file says, sums stay numbers
            return std::clamp(config.getInt(std::string(name) + suffix, "menu"), -kFarthest, kFarthest);
        };
        const int right = side("_RIGHT"), left = side("_LEFT"), top = side("_TOP"), bottom = side("_BOTTOM");
        pictures_.push_back({static_cast<float>(left) / kImageSide, static_cast<float>(right) / kImageSide,
                             (kImageSide - static_cast<float>(bottom)) / kImageSide,
                             (kImageSide - static_cast<float>(top)) / kImageSide, (right - left) / 2,
                             (bottom - top) / 2});
    }
}

void cMenu::open() {
    if (pictures_.empty()) readRectangles();
    visible_ = true;
    notice_.clear();
    holdUp_ = holdDown_ = holdActivate_ = holdBack_ = holdLeft_ = kHoldFrames;
    input().promptActive = input().promptConfirmed = false;
    input().maxTextLength = cInputMgr::kConsoleLimit;
    showPage(kMainPage);
}

void cMenu::showPage(Page page) {
    page_ = page;
    items_.clear();
    listNames_.clear();
    list_ = false;
    selected_ = 0;
    capture_ = kNoCapture;
    columns_ = kBothViews;
    dragArmed_ = false;
    contentHeight_ = kVisibleHeight;
    if (settingsScreen(page)) {
        showSettingsScreen(page);
    } else if (page == kCreditsPage) {
        contentHeight_ = kCreditsHeight;
    } else {
        showButtons(page);
    }
    scroll_ = contentHeight_ - kVisibleHeight; // the page's top
}

void cMenu::showButtons(Page page) {
    if (page == kSettingsPage) input().editSettings = input().bindings.settings;
    const bool withoutGame = page == kMainPage && !cWorld::instance().isGameLoaded();
    for (const Tables::Entry& entry : Tables::entries(page)) {
        if (withoutGame && entry.button == kReturn) continue;
        const Picture& picture = pictures_[static_cast<size_t>(entry.button)];
        items_.push_back({entry.button, kOriginX, entry.y + (withoutGame ? kWithoutGame : 0),
                          picture.halfWidth, picture.halfHeight});
    }
}

void cMenu::showSettingsScreen(Page page) {
    input().editSettings = input().bindings.settings;
    const SettingsScreen& screen = *settingsScreen(page);
    for (size_t row = 0; row < screen.rowCount(); ++row)
        items_.push_back({kTextRow, kOriginX, screen.rowY(row), kRowHalfWidth, kRowHalfHeight});
    for (const auto& [button, y] : {std::pair{kOk, screen.okY}, {kCancel, screen.cancelY}}) {
        const Picture& picture = pictures_[static_cast<size_t>(button)];
        items_.push_back({button, kOriginX, y, picture.halfWidth, picture.halfHeight});
    }
    contentHeight_ = screen.contentHeight;
}

/// A long list makes the page higher; its top looks as that of a short one.
void cMenu::showList(const std::string& title, std::vector<std::string> names,
                     void (cMenu::*choose)(const std::string& name)) {
    items_.clear();
    selected_ = 0;
    list_ = true;
    title_ = title;
    listNames_ = std::move(names);
    choose_ = choose;
    const auto count = static_cast<int32_t>(listNames_.size());
    contentHeight_ = std::max(kVisibleHeight, kVisibleHeight - kListRoom + 100 + kListStep * count);
    scroll_ = contentHeight_ - kVisibleHeight;
    for (int32_t i = 0; i < count; ++i) {
        const int width = cRenderer::instance().textWidth(0, 1, listNames_[static_cast<size_t>(i)]);
        items_.push_back(
            {kTextRow, kOriginX, scroll_ + kListTop - kListStep * i, width / 2, kListHalfHeight});
    }
}

void cMenu::ask(const std::string& title, int limit, void (cMenu::*answer)(const std::string& text)) {
    title_ = title;
    answer_ = answer;
    input().promptText.clear();
    input().promptConfirmed = false;
    input().promptActive = true;
    input().maxTextLength = limit;
}

void cMenu::activate(Source source) {
    notice_.clear();
    if (selected_ < 0 || selected_ >= static_cast<int32_t>(items_.size())) return;
    const auto at = static_cast<size_t>(selected_);
    if (list_) {
        const std::string name = listNames_[at];
        (this->*choose_)(name);
        return;
    }
    if (items_[at].button == kTextRow) {
        activateRow(source);
    } else if (settingsScreen(page_)) {
        items_[at].button == kOk ? accept() : cancel();
    } else {
        for (const Tables::Entry& entry : Tables::entries(page_)) {
            if (entry.button != items_[at].button) continue;
            (this->*entry.activate)();
            return;
        }
    }
}

void cMenu::goBack() {
    notice_.clear();
    if (list_) {
        showPage(page_ == kSettingsPage ? kSettingsPage : kMainPage);
    } else if (page_ == kMainPage) {
        if (cWorld::instance().isGameLoaded()) close();
    } else if (!settingsScreen(page_)) {
        showPage(kMainPage);
    }
}

void cMenu::resume() {
    close();
}
void cMenu::newGame() {
    ask("Pick a name for the hero:", kHeroLimit, &cMenu::takeHeroName);
}
void cMenu::chooseHero() {
    showList("Load what game:", newest(cWorld::instance().listSavedGames(), kMostItems), &cMenu::takeHero);
}
void cMenu::toSettings() {
    showPage(kSettingsPage);
}
void cMenu::toCredits() {
    showPage(kCreditsPage);
}
void cMenu::quit() {
    pushQuitEvent();
}
void cMenu::toAudio() {
    showPage(kAudioPage);
}
void cMenu::toVideo() {
    showPage(kVideoPage);
}
void cMenu::toInput() {
    showPage(kInputPage);
}
void cMenu::loadDefaults() {
    const bool loaded = input().loadSettings(cInputMgr::kDefault) == 0;
    setNotice(loaded ? keeping(cInputMgr::kDefault, "The default settings are loaded.")
                     : "There are no default settings.");
}
void cMenu::chooseSettings() {
    showList("Load what settings:", newest(input().listSettings(), kMostItems), &cMenu::takeSettings);
}
void cMenu::askSettingsName() {
    ask("Save settings as:", kSettingsLimit, &cMenu::takeSettingsName);
}
void cMenu::accept() {
    const bool kept = input().acceptEdited();
    showPage(kSettingsPage);
    if (!kept) setNotice(notSaved());
}
void cMenu::cancel() {
    showPage(kSettingsPage);
}

void cMenu::takeHeroName(const std::string& name) {
    heroName_ = name;
    page_ = kChooserPage;
    std::vector<std::string> names = newest(input().listSettings(), kMostItems - 1);
    names.push_back(kCreateNew);
    showList("Select settings file to use:", std::move(names), &cMenu::takeStart);
}

void cMenu::takeStart(const std::string& settings) {
    if (static_cast<size_t>(selected_) + 1 == listNames_.size()) {
        ask("Save input settings as:", kSettingsLimit, &cMenu::takeNewSettings);
        return;
    }
    prepareStart();
    input().loadSettings(settings);
    startGame();
}

void cMenu::takeNewSettings(const std::string& name) {
    prepareStart();
    input().saveSettings(name);
    startGame();
}

void cMenu::takeHero(const std::string& name) {
    if (loadGame(name)) return;
    showPage(kMainPage);
    setNotice("There is no saved game of " + name + ".");
}

bool cMenu::loadGame(const std::string& heroName) {
    prepareStart();
    if (cWorld::instance().loadSavedGame(heroName) != 0) return false;
    if (cWorld::instance().isGameLoaded()) leaveForGame();
    return true;
}

void cMenu::takeSettings(const std::string& name) {
    const bool loaded = input().loadSettings(name) == 0;
    showPage(kSettingsPage);
    setNotice(loaded ? keeping(name, "Settings loaded: " + name)
                     : "There are no settings of the name " + name);
}

void cMenu::takeSettingsName(const std::string& name) {
    const bool saved = input().saveSettings(name);
    setNotice(saved ? keeping(name, "Settings saved as " + name) : notSaved());
}

void cMenu::prepareStart() {
    cAudioMgr::instance().stopMusic();
    cRenderer::instance().drawLoadingScreen();
}

void cMenu::startGame() {
    leaveForGame();
    cWorld::instance().startNewGame(heroName_); // opens the menu again when there is no such level
}

/// The resume event follows with the next frame.
void cMenu::leaveForGame() {
    input().returnState = STATE_LOADING;
    close();
    slide_ = 1;
}
