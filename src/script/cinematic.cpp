// The cinematic player of cWorld: camera track, hero track and colour filters, counted in frames.

#include "game/player.h"
#include "world/object_mgr.h"
#include "world/world.h"

namespace {
constexpr int32_t kNoMoreKeys = -1; ///< a frame number that never comes

cCinematic::Colour colourOf(const cCmlElement& filter) {
    return {filter.vectors[0].x, filter.vectors[0].y, filter.vectors[0].z, filter.alpha};
}

cCinematic::Colour blend(const cCinematic::Colour& a, const cCinematic::Colour& b, float t) {
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t, a.a + (b.a - a.a) * t};
}

int32_t numberOf(const cCmlElement& track, int32_t key) {
    const cCmlElement* frame = track.childAt(key);
    return frame ? frame->number : 0;
}

/// How far `frame` is on the way between two frame numbers, which documents choose freely.
float fraction(uint32_t frame, int32_t from, int32_t to) {
    const double start = from;
    return static_cast<float>((frame - start) / (to - start));
}

cPlayer* heroController() {
    cObject* hero = cObjectMgr::instance().hero();
    return hero ? static_cast<cPlayer*>(hero->getController()) : nullptr;
}

void startTracks(cCinematic& c) {
    if (c.cameraTrack) {
        c.keyA = 0;
        c.keyB = c.cameraTrack->childCount() > 1 ? 1 : 0;
        c.frameA = 0;
        c.frameB = numberOf(*c.cameraTrack, c.keyB);
    }
    if (c.heroTrack) {
        c.heroKey = 0;
        c.heroKeyFrame = numberOf(*c.heroTrack, 0);
        if (cPlayer* player = heroController()) player->stopScript();
    }
}

void startFilters(cCinematic& c) {
    c.filter = nullptr;
    c.filterFrame = c.fadeFromFrame = 0;
    c.fade = c.fadeFrom = {};
    for (int32_t i = 0; i < c.element->childCount(); ++i) {
        const cCmlElement* filter = c.element->childAt(i);
        if (filter->elementKind != kCmlFilter) continue;
        c.filter = filter;
        c.filterFrame = filter->frame;
        if (filter->frame != 0) return;
        c.fadeFrom = colourOf(*filter);
    }
}

void stepCamera(cCinematic& c, cCamera& camera) {
    const cCmlElement *a = c.cameraTrack->childAt(c.keyA), *b = c.cameraTrack->childAt(c.keyB);
    if (!a || !b) { // a track without keys
        camera.apply();
        return;
    }
    if (c.frameB != c.frameA) {
        const float t = fraction(c.frame, c.frameA, c.frameB);
        camera.applyLookAt(lerp(a->vectors[0], b->vectors[0], t), lerp(a->vectors[1], b->vectors[1], t),
                           lerp(a->vectors[2], b->vectors[2], t).normalized());
    } else {
        camera.applyLookAt(a->vectors[0], a->vectors[1], a->vectors[2]);
    }
    if (static_cast<int64_t>(c.frame) < c.frameB) return;
    c.keyA = c.keyB;
    if (c.keyB + 1 < c.cameraTrack->childCount()) ++c.keyB;
    c.frameA = c.frameB;
    c.frameB = numberOf(*c.cameraTrack, c.keyB);
}

void stepHero(cCinematic& c) {
    if (c.heroKeyFrame != static_cast<int64_t>(c.frame)) return;
    const cCmlElement* key = c.heroTrack->childAt(c.heroKey);
    if (cPlayer* player = heroController(); player && key) player->applyCinematicFrame(*key);
    if (c.heroKey + 1 < c.heroTrack->childCount()) {
        c.heroKeyFrame = numberOf(*c.heroTrack, ++c.heroKey);
    } else {
        c.heroKeyFrame = kNoMoreKeys;
    }
}

const cCmlElement* nextFilter(const cCinematic& c) {
    for (int32_t i = 0; i < c.element->childCount(); ++i) {
        const cCmlElement* filter = c.element->childAt(i);
        if (filter->elementKind == kCmlFilter && filter->frame > static_cast<int32_t>(c.frame)) return filter;
    }
    return nullptr;
}

void stepFade(cCinematic& c) {
    const float t = c.filterFrame == c.fadeFromFrame ? 1 : fraction(c.frame, c.fadeFromFrame, c.filterFrame);
    c.fade = blend(c.fadeFrom, colourOf(*c.filter), t);
    if (c.filterFrame != static_cast<int64_t>(c.frame)) return;
    c.fadeFromFrame = c.filterFrame;
    c.fadeFrom = colourOf(*c.filter);
    c.filter = nextFilter(c);
    if (c.filter) c.filterFrame = c.filter->frame;
}
} // namespace

void cWorld::startCinematic(int32_t position) {
    const cCmlElement* element = document.childAt(position);
    if (!element || element->elementKind != kCmlCinematic) return;
    cCinematic& c = cinematic;
    c.frame = 0;
    c.element = element;
    c.length = element->length;
    c.cameraTrack = element->slots[cCmlElement::kCameraTrack];
    c.heroTrack = element->slots[cCmlElement::kHeroTrack];
    startTracks(c);
    startFilters(c);
    if (!c.playing) c.keptState = STATE_CINEMATIC;
    c.playing = true;
}

void cWorld::updateCinematic(GameState* state) {
    cCinematic& c = cinematic;
    if (*state != STATE_CINEMATIC) {
        c.keptState = *state;
        *state = STATE_CINEMATIC;
    }
    if (!c.element || static_cast<int64_t>(c.frame) >= c.length) {
        endCinematic(state);
        return;
    }
    if (c.cameraTrack) {
        stepCamera(c, camera);
    } else {
        camera.apply();
    }
    if (c.heroTrack) stepHero(c);
    if (c.filter) stepFade(c);
    ++c.frame;
}

void cWorld::endCinematic(GameState* state) {
    *state = cinematic.keptState == STATE_CINEMATIC ? STATE_GAME : cinematic.keptState;
    cinematic = cCinematic();
    camera.apply();
}

/// Our own rule: nothing would ever take away the fade of one that does not come to its end.
void cWorld::giveUpCinematic() {
    if (cinematic.playing) cinematic.fade = {};
    cinematic.playing = false;
}

void cWorld::resetCinematic() {
    cinematic = cCinematic();
}
