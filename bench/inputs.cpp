#include "inputs.h"

#include <array>
#include <cmath>
#include <random>

namespace inputs {
namespace {
constexpr const char* kModels[] = {"barrel", "crate", "pot", "lantern", "pine"};

void replaceAll(std::string& text, const std::string& mark, const std::string& by) {
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + by.size())) {
        text.replace(at, mark.size(), by);
    }
}

/// Number @N, model @M.
constexpr const char* kObject =
    R"xml( <object name="thing_@N" type="Thing" race="Furniture" class="Container" default_action="watch" fov="60">
  <appearance type="static"> <model file="s_mdl\@M.cpm" /> </appearance>
  <physics size="0.6" position="@N.5,2.6,-3.4" direction="0,0,-1" up="0,1,0" gravity="0">
   <boundingvolume start="0,0.11,0" end="0,-0.11,0" radius="0.49" solid="1" />
  </physics>
  <!-- turns on the spot and greets whoever comes near -->
  <action name="watch" on_set="set_speed(0);set_local(count_@N,0);set_animation_type(loop);set_timer(2400)">
   <reaction type="timer" do="turn(45);inc_local(count_@N,1);set_timer(3200)" />
   <reaction type="distance_falls_below" point="player" distance="4" do="set_action(greet)" />
  </action>
  <action name="greet" on_set="set_direction(player);set_speed(0);set_animation(BOTH_GREET);play_animation()">
   <requirement test="local_equals(count_@N,3);global_equals(door_open,1)" do="set_global(door_open,0)" />
   <reaction type="context" do="run_dialogue(talk_@N)" />
   <reaction type="distance_exceeds" point="player" distance="7" do="set_action(watch)" />
  </action>
  <dialogue name="talk_@N">Good morning. The pier is down the path, past the old mill, and the boat leaves
when the lantern burns. ^9set_global(door_open,1) Mind the third step. ^7</dialogue>
 </object>
)xml";

void addBlock(forge::Mesh& mesh, float x, float z) {
    const float y = groundHeight(x, z) - 0.5f;
    mesh.append(forge::box({x, y, z}, {x + 1.4f, y + 2, z + 1.4f}, 0.5f, forge::kWalls | forge::kTop));
}
} // namespace

std::string levelXml(size_t bytes) {
    std::string text = "<level name=\"Landfall\">\n";
    for (int i = 0; text.size() < bytes; ++i) {
        std::string object = kObject;
        replaceAll(object, "@N", std::to_string(i));
        replaceAll(object, "@M", kModels[static_cast<size_t>(i) % std::size(kModels)]);
        text += object;
    }
    return text + "</level>\n";
}

float groundHeight(float x, float z) {
    return 1.5f * std::sin(x * 0.11f) * std::cos(z * 0.13f) + 0.3f * std::sin(x * 0.7f + z * 0.4f);
}

cModel level(int cellsX, int cellsZ) {
    const float x0 = -0.5f * static_cast<float>(cellsX), z0 = -0.5f * static_cast<float>(cellsZ);
    forge::Mesh mesh = forge::terrain(x0, z0, 1, cellsX, cellsZ, &groundHeight, 1);
    for (float z = z0 + 3; z < -z0 - 4; z += 8) {
        for (float x = x0 + 3; x < -x0 - 4; x += 8) addBlock(mesh, x, z);
    }
    cModelObject object;
    object.positions = std::move(mesh.positions);
    object.faces = std::move(mesh.faces);
    object.faceTexCoords = object.faces;
    object.texCoords = std::move(mesh.texCoords);
    cModel model;
    model.add(std::move(object));
    return model;
}

cModelObject surface(int faces) {
    const int edge = static_cast<int>(std::sqrt(static_cast<float>(faces) / 2));
    const forge::Mesh mesh = forge::faceted(forge::terrain(0, 0, 1, edge, edge, &groundHeight, 1));
    cModelObject object;
    object.positions = mesh.positions;
    object.texCoords = mesh.texCoords;
    object.faces = object.faceTexCoords = mesh.faces;
    return object;
}

forge::Parts parts(int faces, int facesPerPart) {
    forge::Parts all;
    const int count = (faces + facesPerPart - 1) / facesPerPart;
    const int edge = static_cast<int>(std::sqrt(static_cast<float>(faces / count) / 2));
    for (int i = 0; i < count; ++i) {
        const auto x = static_cast<float>(i * edge);
        all.push_back(
            {"m" + std::to_string(i), "", {}, forge::terrain(x, 0, 1, edge, edge, &groundHeight, 1)});
    }
    return all;
}

platform::Bytes runLengthTga(int width, int height) {
    std::mt19937 random(1);
    cBinaryWriter out;
    const uint8_t head[12] = {0, 0, 10};
    out.raw(head, sizeof head);
    out.u16(static_cast<uint16_t>(width));
    out.u16(static_cast<uint16_t>(height));
    out.u8(32);
    out.u8(8);
    constexpr std::array<int, 4> kLengths = {128, 128, 24, 6}; // pixels of a packet
    for (int left = width * height, i = 0; left > 0; ++i) {
        const int n = std::min(left, kLengths[static_cast<size_t>(i) % kLengths.size()]);
        const bool run = i % 3 != 2;
        out.u8(static_cast<uint8_t>((run ? 128 : 0) + n - 1));
        for (int k = run ? 1 : n; k > 0; --k) out.u32(static_cast<uint32_t>(random()));
        left -= n;
    }
    return out.bytes();
}

platform::Bytes inventoryRecord(int64_t count, uint32_t kinds, uint32_t firstKind) {
    cBinaryWriter record;
    record.i32(static_cast<int32_t>(count));
    uint32_t sum = 0; // of the record's check
    for (uint32_t i = 0; i < static_cast<uint32_t>(count); ++i) {
        const uint32_t id = firstKind + i % kinds;
        record.u32(id);
        record.u32(1);
        sum += id * i + i / 2;
    }
    record.u32(sum);
    return record.bytes();
}

forge::CharacterPart character(int triangles, int frames) {
    constexpr int kSegments = 25;
    const int rings = triangles / (2 * kSegments);
    forge::CharacterPart part;
    part.meshName = "body";
    for (int f = 0; f < frames; ++f) {
        std::vector<cVector3> path;
        for (int r = 0; r <= rings; ++r) {
            const float y = 1.8f * static_cast<float>(r) / static_cast<float>(rings);
            path.emplace_back(0.2f * y * std::sin(static_cast<float>(f) * 0.1f), y, 0.0f);
        }
        const forge::Mesh tube = forge::tube(path, std::vector<float>(path.size(), 0.3f), kSegments, false);
        part.frames.push_back(tube.positions);
        part.texCoords = tube.texCoords;
        part.faces = tube.faces;
        part.tags.push_back({forge::Tag{"tag_torso", path.back()}, forge::Tag{"tag_head", path.front()}});
    }
    part.animations = {{"BOTH_IDLE", 0, frames, 20}};
    return part;
}
} // namespace inputs
