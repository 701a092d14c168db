#pragma once
#include "play/player/eyes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

/// The map that the player makes of what he sees: columns of ground, walls and water, and ways across them.
/// Places as eyes::View gives them.
class cLand {
public:
    cLand();
    void see(const eyes::Spot& spot, uint32_t frame);
    /// There was no getting on: keeps ways from there for a while, longer each time.
    void block(const cVector3& place, uint32_t frame);
    void fear(const cVector3& place);           ///< he died there: never again
    bool isGround(const cVector3& place) const; ///< known, and a foot can be set there from the same height
    bool isWater(const cVector3& place) const;  ///< and nothing to stand on above it
    void bumped(const cVector3& from, const cVector3& to); ///< a jump that did not succeed

    void lookAgain(); ///< something may have opened: edges and blocked ways count anew

    static constexpr uint32_t kNone = ~0u; ///< no such ground
    /// What somebody dares to do.
    enum Daring {
        kWalks,
        kJumps,  ///< up to ledges as well
        kClimbs, ///< over steep rock and along the water too
    };
    /// Ways from here to everywhere.
    void plan(const cVector3& from, uint32_t frame, Daring daring);
    float cost(uint32_t node) const { return node == kNone ? kFar : cost_[node]; }
    uint32_t nodeAt(const cVector3& place, float reach) const; ///< cheapest ground within reach of it
    uint32_t nearestEdge() const;                              ///< of what is known, not yet looked at
    void lookedFrom(const cVector3& place);                    ///< what is not known around it stays so

    cVector3 placeOf(uint32_t node) const; ///< of the hero's middle
    struct Step {
        cVector3 place; ///< of the hero's middle
        bool jump;      ///< from the step before
    };
    std::vector<Step> way(uint32_t to) const; ///< empty when there is none

    size_t reach() const { return reached_.size(); } ///< pieces of ground that can be come to
    static constexpr float kFar = 1e9f;
    static constexpr float kMiddle = 1.25f; ///< of the hero above the ground he stands on

private:
    static constexpr int kSide = 360, kFloors = 4;
    static constexpr float kCell = 0.4f;
    struct Column {
        std::array<float, kFloors> floor{}, lowest{}, highest{};
        std::array<uint32_t, kFloors> blockedUntil{};
        std::array<uint64_t, 4> wall{}; ///< a bit for each quarter of a unit of height
        std::array<uint64_t, 4> thing{};
        uint32_t thingUntil = 0; ///< frame; it may be gone by then
        uint8_t floors = 0, blocked = 0;
        bool water = false, shore = false, looked = false; ///< shore: with water near
        float fearedBelow = -1e9f;
    };
    static int wallBit(float height);
    static int cellOf(float coordinate);
    Column* column(int x, int z);
    const Column* column(int x, int z) const;
    bool isWalled(const Column& column, float floor) const;
    bool isSteep(const Column& column, size_t floor) const;
    float crossing(uint32_t from, int x, int z, int floor, float length) const;
    float risk(int x, int z, float floor) const;
    bool canJump(int x, int z, int dx, int dz, float floor, float to) const;
    bool isEdge(uint32_t node) const;
    void spread();
    void stepOff(uint32_t start);
    void relaxWalks(uint32_t node);
    void relaxJumps(uint32_t node);
    void relax(uint32_t from, uint32_t to, float length, bool jump);

    std::vector<Column> columns_;
    std::vector<float> cost_;
    std::vector<uint32_t> from_;
    std::vector<uint8_t> jumped_;
    std::vector<uint32_t> reached_; ///< in the order of their costs
    std::vector<std::pair<float, uint32_t>> queue_;
    std::vector<std::pair<uint32_t, int>> failedJumps_;
    uint32_t frame_ = 0;
    Daring daring_ = kWalks;
    float waterHeight_ = -1e9f;
};
