// The hero's body in the shipped levels: thousands of jumps and walks by chance, which nothing may hold. A
// short sample in every run; all of them with QUORVANE_ALL_WALKS in the environment (ctest -L long).

#include "walks/lone_hero.h"

#include "core/parse.h"
#include "world/world.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {
int howMany(int sample, int all) {
    return std::getenv("QUORVANE_ALL_WALKS") ? all : sample;
}

class Levels : public ::testing::TestWithParam<size_t> {
protected:
    const LoneHero::Level& level = LoneHero::kLevels[GetParam()];
    LoneHero hero{level};
    TestRandom& random = hero.random;
};
constexpr const char* kNames[] = {"Landfall", "Deepwood", "Summit"};
INSTANTIATE_TEST_SUITE_P(Walks, Levels, ::testing::Values(0u, 1u, 2u),
                         [](const auto& i) { return kNames[i.param]; });

/// In one direction or another, jumping once; an exact one that no hand finds does not count.
bool getsAway(LoneHero& hero) {
    constexpr int kDirections = 24;
    const cVector3 from = hero.place();
    bool away = false;
    for (int direction = 0; direction < kDirections && !away; ++direction) {
        if (!hero.put(from)) return true; // against a wall, as measured: nothing is told of it
        hero.face(360.0f / kDirections * (static_cast<float>(direction) + hero.random.number(0.2f, 0.8f)));
        hero.hold(CMD_FORWARD, true);
        for (int i = 0; i < 90 && !away; ++i) {
            hero.hold(CMD_JUMP, i == 30);
            hero.frame();
            const cVector3 way = hero.place() - from;
            away = std::hypot(way.x, way.z) >= 1 || hero.isDead();
        }
        hero.releaseAll();
    }
    return away;
}

bool isBeyond(const LoneHero& hero, float reach) {
    return std::max(std::fabs(hero.place().x), std::fabs(hero.place().z)) > reach;
}
} // namespace

TEST(Walks, NobodyHangsUnderTheEaves) {
    LoneHero hero(LoneHero::kLevels[0]);
    TestRandom& random = hero.random;
    int hanging = 0, jumps = howMany(1000, 20000);
    for (int i = 0; i < jumps; ++i) {
        bool free = false;
        while (!free) {
            const float along = random.number(-6.5f, 6.5f), out = random.number(4.5f, 6.5f);
            const float side = random.index(2) ? 1.0f : -1.0f;
            const bool gable = random.index(2);
            free = hero.stand({gable ? side * out : along, 3.8f, gable ? along : side * out});
        }
        const std::string from = hero.describe();
        hero.face(random.number(0, 360));
        hero.hold(CMD_FORWARD, random.index(8) != 0);
        hero.hold(CMD_RUN, random.index(3) == 0);
        for (int k = random.index(14); k > 0; --k) hero.frame();
        hero.hold(CMD_JUMP, true);
        hero.frame();
        hero.hold(CMD_JUMP, false);
        for (int k = 0; k < 170 && !hero.hangs(); ++k) hero.frame();
        if (hero.hangs() && ++hanging <= 5) ADD_FAILURE() << "from " << from << " to " << hero.describe();
        hero.releaseAll();
    }
    EXPECT_EQ(hanging, 0) << "of " << jumps;
}

// The bell shuts its gate behind whoever rings it, and the bars around it hold, from both sides.
TEST(Walks, NobodyPassesTheGateOfTheBell) {
    LoneHero hero(LoneHero::kLevels[0]);
    TestRandom& random = hero.random;
    const auto isAtTheBell = [&] {
        const cVector3 p = hero.place();
        return p.y > 5.2f && p.z < 7.7f && std::fabs(p.x - 9.5f) < 1.4f;
    };
    for (const bool inside : {true, false}) {
        int passed = 0;
        bool starts = true;
        for (int i = howMany(20000, 200000); i > 0; --i) {
            while (starts) starts = !hero.stand({random.number(8.7f, 10.3f), 6.2f, inside ? 7.0f : 9.5f});
            if (i % 20 == 0) {
                hero.face(inside ? random.number(0, 360) : random.number(-60, 60));
                hero.hold(CMD_FORWARD, true);
                hero.hold(CMD_RUN, random.index(4) == 0);
            }
            hero.hold(CMD_JUMP, random.index(12) == 0);
            hero.frame();
            passed += isAtTheBell() != inside;
            starts = isAtTheBell() != inside || hero.place().y < 3.5f || i % 400 == 0; // or off the ramp
        }
        EXPECT_EQ(passed, 0) << (inside ? "out" : "in");
        hero.releaseAll();
    }
}

TEST_P(Levels, NobodyHangsAnywhere) {
    constexpr int kWalk = 400; ///< frames until he starts from another place
    const int frames = howMany(60000, 1000000);
    int hanging = 0, jumps = 0;
    for (int i = 0; i < frames; ++i) {
        if (i % kWalk == 0 || hero.isDead() || hero.hangs()) hero.standAgain();
        if (i % 20 == 0) {
            hero.face(random.number(0, 360));
            hero.hold(CMD_FORWARD, random.index(6) != 0);
            hero.hold(CMD_RUN, random.index(4) == 0);
        }
        const bool jump = random.index(12) == 0;
        jumps += jump && !hero.airborne();
        hero.hold(CMD_JUMP, jump);
        hero.frame();
        if (hero.hangs() && ++hanging <= 5) ADD_FAILURE() << hero.describe();
    }
    EXPECT_EQ(hanging, 0) << "in " << frames << " frames with " << jumps << " jumps";
    EXPECT_GT(jumps, frames / 100);
    EXPECT_GT(hero.places().size(), 700u) << "he has been everywhere";
}

TEST_P(Levels, NobodyLeavesAndNothingHolds) {
    constexpr float kRim = 0.6f; ///< of the level's half width
    int left = 0, held = 0;
    for (int walk = howMany(300, 6000); walk > 0; --walk) {
        hero.standAgain();
        const bool jumps = random.index(2) != 0, outwards = random.index(3) != 0;
        hero.hold(CMD_FORWARD, true);
        for (int i = 0; i < 500 && !hero.isDead(); ++i) {
            if (i % 40 == 0) {
                const cVector3 p = hero.place();
                const float out = std::atan2(p.x, -p.z) * 57.29578f;
                hero.face(outwards ? out + random.number(-70, 70) : random.number(0, 360));
            }
            hero.hold(CMD_JUMP, jumps && random.index(10) == 0);
            hero.frame();
            if (!isBeyond(hero, level.reach - kRim)) continue;
            // Into the sea he may jump, where he drowns; there is nothing to stand on.
            const cVector3 p = hero.place();
            const bool sides = std::fabs(p.x) > std::fabs(p.z);
            const bool sea = sides ? level.seaSides : p.z < 0 ? level.seaNorth : level.seaSouth;
            if (sea && hero.airborne()) continue;
            if (++left <= 5) ADD_FAILURE() << "leaves at " << hero.describe();
            break;
        }
        hero.releaseAll();
        if (hero.isDead()) continue;
        const std::string end = hero.describe();
        if (!getsAway(hero) && ++held <= 5) ADD_FAILURE() << "held at " << end;
    }
    EXPECT_EQ(left, 0);
    EXPECT_EQ(held, 0);

    // From wherever anybody has stood he gets away.
    const std::vector<cVector3> places = hero.places();
    const size_t step = static_cast<size_t>(howMany(7, 1));
    for (size_t k = 0; k < places.size(); k += step)
        if (hero.put(places[k]) && !getsAway(hero)) ADD_FAILURE() << "held at " << hero.describe();
}

TEST_P(Levels, WhoStandsIsStill) {
    for (int k = howMany(200, 3000); k > 0; --k) {
        hero.standAgain();
        hero.face(random.number(0, 360));
        hero.hold(CMD_FORWARD, true);
        for (int i = 0; i < 40; ++i) {
            hero.hold(CMD_JUMP, i == 5);
            hero.frame();
        }
        hero.releaseAll();
        for (int i = 0; i < 250; ++i) hero.frame();
        if (hero.isDead()) continue;
        const cVector3 here = hero.place();
        float jitter = 0;
        for (int i = 0; i < 60; ++i) {
            hero.frame();
            jitter = std::max(jitter, (hero.place() - here).length());
        }
        EXPECT_LT(jitter, 0.002f) << hero.describe();
        EXPECT_FALSE(hero.airborne()) << hero.describe();
    }
}

namespace {
struct Way {
    size_t level;
    float above; ///< a height over its ground and under every roof
    std::vector<std::pair<float, float>> places;
};
std::vector<std::pair<float, float>> roundTheMountain() {
    std::vector<std::pair<float, float>> places{{0, 30}, {0, 26}};
    for (float part = 0.04f; part < 0.99f; part += 0.04f) {
        const float r = 26 - 14.5f * part, a = 6.28318531f * part;
        places.emplace_back(r * std::sin(a), r * std::cos(a));
    }
    places.insert(places.end(), {{0, 11.5f}, {0, 3}});
    return places;
}
const std::vector<Way> kWays = {{0, 4, {{0, -2}, {0, -8}, {7, -6}, {7.3f, 0}, {16, 0}}},
                                {0, 9, {{0, -8}, {-6, -10}, {-14.5f, -10}}},
                                {0, 4, {{7, -2}, {6, 10}, {4.9f, 13.2f}, {4.9f, 15.1f}, {0, 21}, {0, 28}}},
                                {0, 4, {{6, 10}, {9.5f, 17}}},
                                {0, 4, {{-6, -9}, {-9, 3}}},
                                {1, 4, {{0, 30}, {-2.5f, 21}, {3, 12}, {0, 4}, {0, -26}, {0, -35}}},
                                {1, 4, {{0, 4}, {8, 1}, {15, 2.5f}}},
                                {1, 4, {{0.5f, 5}, {-8, 8}, {-14.5f, 6.5f}}},
                                {2, 17.5f, roundTheMountain()}};
/// Who comes at him, and the gate that is paid for.
constexpr const char* kInTheWay[] = {"boar_path",   "toll_gate",    "raider_bend",
                                     "raider_arch", "raider_ledge", "boar_slope"};

/// Runs straight from place to place, beside the middle by `aside`.
void runAlong(LoneHero& hero, const Way& way, float aside) {
    for (size_t k = 1; k < way.places.size(); ++k) {
        const auto [x0, z0] = way.places[k - 1];
        const auto [x1, z1] = way.places[k];
        const float length = std::hypot(x1 - x0, z1 - z0);
        const float ox = aside * (z1 - z0) / length, oz = -aside * (x1 - x0) / length;
        constexpr float kStep = 0.1045f; ///< of a run, a frame
        int frames = static_cast<int>(1.7f * (length + 2) / kStep);
        hero.hold(CMD_FORWARD, true);
        while (std::hypot(x1 + ox - hero.place().x, z1 + oz - hero.place().z) > 0.8f && --frames > 0) {
            hero.faceTo(x1 + ox, z1 + oz);
            hero.frame();
        }
        EXPECT_GT(frames, 0) << "stopped at " << hero.describe() << " on the way to " << x1 << ", " << z1
                             << ", aside " << aside;
        hero.releaseAll();
        if (frames <= 0) return;
    }
}
} // namespace

TEST_P(Levels, MainPathsAreRunStraight) {
    for (const char* name : kInTheWay) hero.takeAway(name);
    for (const Way& way : kWays) {
        if (way.level != GetParam()) continue;
        for (const float aside : {-0.4f, 0.0f, 0.4f}) {
            Way there = way;
            for (int back = 0; back < 2; ++back) {
                const auto [x, z] = there.places[0];
                ASSERT_TRUE(hero.stand({x + 0.01f, way.above, z})) << x << ", " << z;
                runAlong(hero, there, aside);
                std::reverse(there.places.begin(), there.places.end());
            }
        }
    }
}

namespace {
/// A round thing higher than anybody climbs: a lantern, a sign, a trunk.
struct Post {
    cVector3 at; ///< y 0
    float radius;
};
std::vector<Post> posts() {
    std::vector<Post> found;
    for (const auto& object : cWorld::instance().document.children)
        for (const auto& physics : object->children)
            for (const auto& volume : physics->children) {
                const float radius = toFloat(volume->getAttribute("radius")),
                            high = toVector3(volume->getAttribute("start")).y -
                                   toVector3(volume->getAttribute("end")).y + 2 * radius;
                if (object->getAttribute("type") != "Thing" || volume->getAttribute("solid") != "0" ||
                    radius > 0.4f || high < 1.5f)
                    continue;
                const cVector3 at = toVector3(physics->getAttribute("position"));
                found.push_back({{at.x, 0, at.z}, radius});
            }
    return found;
}
/// The stretch of a main path that comes nearest to the place.
cSegment nearestStretch(size_t level, const cVector3& at, float& above) {
    cSegment nearest({999, 0, 999}, {999, 0, 998});
    const auto away = [&](const cSegment& s) { return (closestPointOnSegment(s, at) - at).length(); };
    for (const Way& way : kWays)
        for (size_t k = 1; way.level == level && k < way.places.size(); ++k) {
            const auto [x0, z0] = way.places[k - 1];
            const auto [x1, z1] = way.places[k];
            const cSegment stretch({x0, 0, z0}, {x1, 0, z1});
            if (away(stretch) >= away(nearest)) continue;
            nearest = stretch;
            above = way.above;
        }
    return nearest;
}
} // namespace

// The physics holds some of those who meet a round post at one of its corners. Where it did not reach over
// his head, its upper edge held nearly all.
TEST_P(Levels, MostSlideOffThePostsBesideThePaths) {
    int met = 0, held = 0;
    for (const Post& post : posts()) {
        float above = 0;
        const cSegment path = nearestStretch(GetParam(), post.at, above);
        if ((closestPointOnSegment(path, post.at) - post.at).length() > 4) continue;
        for (int i = howMany(40, 400); i > 0; --i) {
            const float wide = post.radius + 0.4f, aside = random.number(-wide, wide);
            const cVector3 along = path.dir * (random.index(2) ? 1.0f : -1.0f), right(-along.z, 0, along.x);
            const auto stands = [&](float far, float beside) {
                const cVector3 p = post.at + along * far + right * beside;
                return hero.stand({p.x, above, p.z});
            };
            // Only where nothing else is in his way.
            if (!stands(0, wide + 0.3f) || !stands(0, -wide - 0.3f) || !stands(wide, aside) ||
                !stands(-wide - 0.8f, aside))
                continue;
            hero.faceTo(hero.place().x + along.x, hero.place().z + along.z);
            hero.hold(CMD_FORWARD, true);
            bool past = false;
            for (int f = 0; f < 80 && !past; ++f) {
                hero.frame();
                past = (hero.place() - post.at).dot(along) > 0;
            }
            hero.releaseAll();
            ++met;
            held += !past;
        }
    }
    EXPECT_GE(met, 40);
    EXPECT_LT(5 * held, 2 * met) << held << " of " << met;
}
