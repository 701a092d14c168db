#include "world/environment.h"

#include "core/log_mgr.h"
#include "data/binary_reader.h"
#include "platform/gl_api.h"
#include "render/mesh_draw.h"

#include <array>
#include <cmath>

namespace {
constexpr uint32_t kWaveEntries = 512;
constexpr float kDrift = 0.00002f; ///< of the second sky's texture, per frame
constexpr double kPi = 3.14159265358979;
/// Table entries from one vertex to its neighbour one unit away, so that waves cross the surface.
constexpr float kPhasePerUnit = 16;
constexpr float kWavePeriod = static_cast<float>(kWaveEntries) / kPhasePerUnit; ///< world units

struct WaveTables {
    std::array<float, kWaveEntries> a, b;
    WaveTables() {
        for (uint32_t i = 0; i < kWaveEntries; ++i) {
            a[i] = static_cast<float>(0.2 * std::cos(i * kPi / 42.666668));
            b[i] = static_cast<float>(0.3 * std::cos(i * kPi / 32));
        }
    }
};
const WaveTables kWaves;

uint32_t phaseAt(float coordinate, uint32_t phase) {
    // Cut to one period first: a coordinate near the largest float would not survive the factor.
    const float offset = std::isfinite(coordinate) ? std::fmod(coordinate, kWavePeriod) * kPhasePerUnit : 0;
    return (static_cast<uint32_t>(static_cast<int32_t>(offset)) + phase) % kWaveEntries;
}
} // namespace

void cEnvironment::clear() {
    *this = cEnvironment();
}

bool cEnvironment::load(const std::string& fileName) {
    cBinaryReader in(fileName);
    if (!in.isOpen()) {
        cLogMgr::instance().error("Failed to open environment file %s", fileName.c_str());
        return false;
    }
    clear();
    loaded_ = read(in);
    if (!loaded_) {
        clear();
        cLogMgr::instance().error("Environment file %s is damaged", fileName.c_str());
    }
    return loaded_;
}

bool cEnvironment::read(cBinaryReader& in) {
    light_ = in.vector3();
    spare_ = in.f32();
    deathHeight_ = in.f32();
    hasWater_ = in.u8() != 0;
    waterScale_ = in.f32();
    waterHeight_ = in.f32();
    interval_ = countdown_ = in.u8();
    cMaterialList materials;
    if (!materials.read(in)) return false;
    materials.loadTextures();
    if (!sky1_.readObjects(in, materials) || !sky2_.readObjects(in, materials)) return false;
    if (!hasWater_) return in.good();
    if (!water_.readObjects(in, materials)) return false;
    for (const cModelObject& object : water_.objects) stillWater_.push_back(object.positions);
    return in.good();
}

void cEnvironment::waveWater() {
    if (countdown_ > 0) {
        --countdown_;
    } else {
        countdown_ = interval_;
        phaseUp_ = (phaseUp_ + 1) % kWaveEntries;
        phaseDown_ = (phaseDown_ + kWaveEntries - 1) % kWaveEntries;
    }
    for (size_t o = 0; o < water_.objects.size(); ++o) {
        for (size_t i = 0; i < stillWater_[o].size(); ++i) {
            const cVector3& still = stillWater_[o][i];
            const float wave = kWaves.a[phaseAt(still.x, phaseUp_)] + kWaves.b[phaseAt(still.z, phaseDown_)];
            water_.objects[o].positions[i].y = still.y + waterHeight_ + waterScale_ * wave;
        }
    }
}

void cEnvironment::draw() {
    if (!loaded_) return;
    meshDraw::draw(sky2_.objects);
    meshDraw::draw(sky1_.objects);
    if (hasWater_) {
        waveWater();
        if (platform::hasGlContext()) {
            glDepthMask(GL_FALSE);
            glEnable(GL_BLEND);
        }
        meshDraw::draw(water_.objects);
        if (platform::hasGlContext()) {
            glDisable(GL_BLEND);
            glDepthMask(GL_TRUE);
        }
    }
    for (cModelObject& object : sky2_.objects) {
        for (TexCoord& coord : object.texCoords) {
            coord.u += kDrift;
            if (coord.u > 64) coord.u -= 64; // a whole number of pictures: floats stay fine-grained
        }
    }
}
