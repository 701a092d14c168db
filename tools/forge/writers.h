#pragma once
#include "data/binary_reader.h"
#include "forge/shapes.h"

#include <string>
#include <vector>

namespace forge {
/// Material list and objects of a static model, as .cpm, sky and water hold them.
void writeMaterials(cBinaryWriter& out, const Parts& parts);
/// `firstMaterial` is the index of the first part's material: a file may hold several models over one list.
void writeObjects(cBinaryWriter& out, const Parts& parts, int firstMaterial, bool withNormals);
platform::Bytes cpmFile(const Parts& parts);
/// Positions become Z-up with north ahead; plain colours, no maps.
platform::Bytes threeDsFile(const Parts& parts);
struct ObjFiles {
    std::string obj, mtl;
};
/// `mtlName` is the library's file name beside the OBJ.
ObjFiles objFiles(const Parts& parts, const std::string& mtlName);

struct Tag {
    std::string name;
    cVector3 origin = {};
    cVector3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
};
struct AnimationRow {
    std::string name;
    int first, count, fps;
};
/// One body part of a character: every frame's positions, normals and tags in y-up coordinates, facing −z.
struct CharacterPart {
    std::string meshName, texture;
    std::vector<TexCoord> texCoords;
    std::vector<FaceIndices> faces;            ///< counter-clockwise; the file gets them clockwise
    std::vector<std::vector<cVector3>> frames; ///< positions
    std::vector<std::vector<Tag>> tags;        ///< by frame
    std::vector<AnimationRow> animations;
};
/// A y-up point that faces −z in the imported form.
inline cVector3 toImported(const cVector3& p) {
    return {-p.z, -p.x, p.y};
}
/// Every frame's tags, as MD3 and CFF files hold them.
void writeTags(cBinaryWriter& out, const CharacterPart& part, bool zUp);
/// `zUp` stores positions and tag origins in the imported form (−z, −x, y) that other characters are read
/// from; normals and axes stay as they are.
platform::Bytes cffFile(const CharacterPart& part, bool zUp);

struct Environment {
    cVector3 light;
    float deathHeight = 0;
    bool hasWater = false;
    float waterScale = 0, waterHeight = 0;
    uint8_t waterInterval = 10;
    Parts sky1, sky2, water; ///< sky 2 is drawn first and drifts
};
platform::Bytes environmentFile(const Environment& environment);
} // namespace forge
