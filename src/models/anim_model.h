#pragma once
#include "core/matrix4.h"
#include "models/mesh.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

class cBinaryReader;

/// A row of animation.cfg. Frames count from 0 in the part that holds the row.
struct cAnimation {
    std::string name; ///< at most 259 characters
    int32_t firstFrame = 0;
    int32_t endFrame = 0;   ///< first frame after the animation
    int32_t loopFrames = 0; ///< stored, not used by playback
    int32_t fps = 0;
};

/// A named attachment frame: where another part hangs, in one frame of this part.
struct cTag {
    std::array<char, 64> name{}; ///< kept byte for byte
    cVector3 origin;
    std::array<cVector3, 3> axis{cVector3{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

    std::string_view text() const;
};
constexpr int32_t kTagBytes = 112; ///< of one tag in a file

/// One vertex-animated part of a character: meshes, tags for every frame and the animation table. Empty, then
/// filled once by a reader.
class cAnimModel {
public:
    static constexpr int kNothing = -1; ///< in `attachments`

    struct MeshTexture {
        std::string meshName, texturePath; ///< at most 255 characters each
    };

    std::vector<cAnimMesh> meshes;
    std::vector<cAnimation> animations;
    std::string currentMesh;               ///< name of the last mesh read
    std::vector<MeshTexture> meshTextures; ///< one a mesh as read; a skin leaves a single one
    std::vector<int> attachments;          ///< number of the part that hangs on each tag
    std::vector<cTag> tags;                ///< frame-major, tagCount each
    int32_t tagCount = 0;                  ///< of one frame
    int32_t tagBlockSize = 0;              ///< bytes of tags in the source file
    int32_t frameCount = 0;

    cAnimModel() = default;
    virtual ~cAnimModel() = default;
    cAnimModel(const cAnimModel&) = default;
    cAnimModel& operator=(const cAnimModel&) = default;
    cAnimModel(cAnimModel&&) = default; // frames are large: a reader hands them over
    cAnimModel& operator=(cAnimModel&&) = default;

    void setTexture(int32_t texture); ///< of every mesh; negative leaves them untextured
    void scale(float factor);         ///< positions and tag origins of all frames
    /// First tag of frame 0 with this name, ignoring case; −1 when there is none.
    int32_t findTag(std::string_view name) const;
    /// Index of the animation, −1 when there is none; names ignore case.
    int32_t findAnimation(std::string_view name) const;
    int32_t findAnimation(int32_t nameCode) const;
    /// Tags of all frames, as MD3 and CFF files store them; nothing hangs on them yet. False when they cannot
    /// all come.
    bool readTags(cBinaryReader& in, int32_t frames, int32_t tagsPerFrame);
    /// Tag `index` between two frames: origins linearly, axes spherically. Frames are held inside the part's.
    cMatrix4 tagTransform(int32_t index, int32_t frameA, int32_t frameB, float t) const;
};

/// Writes one frame's worth of positions and normals (unit length) between two frames, 0 ≤ t ≤ 1. Frames are
/// held inside the mesh's; missing frame normals give zeros. Returns the number of vertices; the arrays grow
/// as needed.
size_t poseMesh(const cAnimMesh& mesh, int32_t frameA, int32_t frameB, float t,
                std::vector<cVector3>& positions, std::vector<cVector3>& normals);
/// One frame as it is.
size_t poseMesh(const cAnimMesh& mesh, int32_t frame, std::vector<cVector3>& positions,
                std::vector<cVector3>& normals);

/// Gives every mesh the texture that the skin file names for the part's current mesh, read from `directory`.
/// False with SDL's error text when the file cannot be opened.
bool loadSkin(cAnimModel& part, const std::string& directory, const std::string& skinFile);
/// Reads a shader file, whose lines change nothing. False with SDL's error text when it cannot be opened.
bool loadShader(cAnimModel& part, const std::string& directory, const std::string& shaderFile);
