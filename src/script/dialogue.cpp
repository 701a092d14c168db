#include "script/dialogue.h"

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "script/cml_object.h"
#include "script/event_mgr.h"

#include <algorithm>
#include <memory>

namespace {
constexpr int kOpeningStep = 20; ///< pixels a frame
constexpr int kFrame = 12;       ///< between outer and inner box
constexpr int kTextLeft = 8, kTextTop = 34;
constexpr int kHintFoot = 6; ///< below the sixth reply
constexpr float kHintScale = 0.7f;

std::unique_ptr<cDialogue> g_instance;

void drawBox(int left, int bottom, int right, int top) {
    drawRectangle(static_cast<float>(left), static_cast<float>(bottom), static_cast<float>(right),
                  static_cast<float>(top));
}
} // namespace

cDialogue& cDialogue::instance() {
    if (!g_instance)
        g_instance = std::make_unique<cDialogue>(static_cast<int>(cRenderer::instance().getWidth()));
    return *g_instance;
}

void cDialogue::destroy() {
    g_instance.reset();
}

cDialogue::cDialogue(int screenWidth)
    : margin_(cConfigMgr::instance().getInt("X_POSITION", "messages")),
      top_(cConfigMgr::instance().getInt("Y_POSITION", "messages")),
      height_(cConfigMgr::instance().getInt("HEIGHT", "messages")) {
    const int64_t width = screenWidth;
    const int64_t half = std::clamp<int64_t>((width - 2 * static_cast<int64_t>(margin_)) / 2, 0, width);
    halfWidth_ = static_cast<int32_t>(half - half % kOpeningStep);
    quarterWidth_ = halfWidth_ / 2;
}

void cDialogue::start(const cCmlElement& element, cCmlObject& speaker) {
    ++session_;
    element_ = &element;
    speaker_ = &speaker;
    text_ = &element.text;
    pageStart_ = nextPage_ = 0;
    choice_ = 0;
    choosing_ = false;
    active_ = true;
}

void cDialogue::close() {
    ++session_;
    text_ = nullptr;
    pageStart_ = nextPage_ = 0;
    active_ = choosing_ = false;
    element_ = nullptr;
    speaker_ = nullptr;
}

void cDialogue::end() {
    cCmlObject* speaker = speaker_;
    close();
    cEventMgr::instance().post(cEvent::kDialogueEnded, speaker);
}

void cDialogue::fail(const char* message) {
    cLogMgr::instance().error("%s", message);
    end();
}

void cDialogue::forget(const cObject* object) {
    if (!speaker_ || speaker_->getOwner() != object) return;
    close();
    // Nobody to name: the speaker is being deleted.
    cEventMgr::instance().post(cEvent::kDialogueEnded, nullptr);
}

void cDialogue::advance(uint32_t, GameState* state) {
    if (!text_) {
        *state = STATE_GAME;
        return;
    }
    if (!choosing_) {
        pageStart_ = nextPage_;
        if (pageStart_ < text_->size()) return;
        close();
        *state = STATE_GAME;
        return;
    }
    // The menu wraps the choice only when it is drawn next.
    const int32_t reply = (choice_ % replyCount_ + replyCount_) % replyCount_;
    const std::string label{'^', '6', replyTargets_[static_cast<size_t>(reply)]};
    const size_t at = text_->find(label, kRepliesFrom);
    choosing_ = false;
    if (at != std::string::npos) {
        pageStart_ = nextPage_ = at + label.size();
        return;
    }
    close();
    *state = STATE_GAME;
    cLogMgr::instance().error("Could not find target point. Check all ^8 tags in Dialogue data.");
}

cDialogue::Box cDialogue::stepBox() {
    bool animating = false;
    if (!text_) {
        active_ = false;
        animating = true;
    }
    const int32_t open = halfWidth_ + quarterWidth_;
    if (active_ && openWidth_ < open) {
        openWidth_ += kOpeningStep;
        animating = true;
    } else if (!active_ && openWidth_ > 0) {
        openWidth_ -= kOpeningStep;
        animating = true;
    }
    openWidth_ = std::clamp(openWidth_, 0, open);
    if (!animating) return {halfWidth_, halfWidth_ - kFrame, false};
    return {std::min(openWidth_, halfWidth_), openWidth_ - quarterWidth_ - kFrame, true};
}

void cDialogue::draw() {
    const Box box = stepBox();
    cRenderer& renderer = cRenderer::instance();
    const std::vector<PlacedWord> words = box.animating ? std::vector<PlacedWord>() : layOutPage();
    if (!platform::hasGlContext()) return;
    const int centre = static_cast<int>(renderer.getWidth()) / 2, bottom = top_ - height_;
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    renderer.setProjection(true);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_FOG);
    glEnable(GL_BLEND);
    glColor4ub(0, 0, 0, 128);
    drawBox(centre - box.outer, bottom, centre + box.outer, top_);
    if (box.inner > 0) drawBox(centre - box.inner, bottom + kFrame, centre + box.inner, top_ - kFrame);
    for (const PlacedWord& word : words) {
        glColor4ub(word.colour.r, word.colour.g, word.colour.b, 255);
        renderer.print(centre - box.inner + kTextLeft + word.x, top_ - kTextTop - word.y, 1, 0, "%s",
                       word.text.c_str());
    }
    if (choosing_ && !box.animating && !hint_.empty()) {
        // To the right: the panel with the health covers the left corner.
        const int right = centre + box.inner - kTextLeft - renderer.textWidth(0, kHintScale, hint_);
        glColor4ub(255, 255, 192, 224);
        renderer.print(right, bottom + kFrame + kHintFoot, kHintScale, 0, "%s", hint_.c_str());
    }
    renderer.setProjection(false);
    glPopAttrib();
}
