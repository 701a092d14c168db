#pragma once
#include "forge/output.h"
#include "forge/shapes.h"

namespace forge {
/// Collects a level's fixed geometry and writes the sources of its two octrees and of the second texture
/// layer.
class Scenery {
public:
    /// Where on the layer's brightness ramp a face lies.
    enum Light {
        kByNormal,  ///< as the light falls on it
        kFromAbove, ///< as if it faced upwards: blades and stalks, which have no front
        kGlowing    ///< at the bright end
    };
    struct Material {
        std::string name;    ///< unique
        std::string texture; ///< path relative to src_mdl
        cColour4 colour{255, 255, 255, 0};
        Light light = kByNormal;
    };
    /// The lower strip of the layer picture holds a dark to bright ramp for everything but the ground.
    struct Layer {
        std::string texture;   ///< path relative to src_mdl
        float worldSize;       ///< the picture shows ±worldSize in x and z, north at the top
        float rampV;           ///< v of the middle of the ramp strip
        cVector3 towardsLight; ///< unit vector
        float darkest;         ///< ramp brightness at its left end; the right end is 1
    };
    enum Use { kSeen = 1, kSolid = 2, kBoth = 3 };

    void add(const Material& material, const Mesh& mesh, Use use = kBoth);
    /// The ground, and what takes its colour from it, has the layer's picture from above instead of the ramp.
    void addGround(const Material& material, const Mesh& mesh, Use use = kBoth);
    /// Height of the ground at (x, z): walls are a little darker where they meet it.
    void setGround(std::function<float(float, float)> height) { height_ = std::move(height); }
    /// Faces inside the box get their ramp brightness times `factor`.
    void darken(const cVector3& low, const cVector3& high, float factor);

    /// src_mdl/NAME.obj, NAME_layer.obj and NAME_collision.obj and their octree lines. `size` is the largest
    /// coordinate; the level's box must be centred on the origin, so that nothing is moved or scaled.
    void write(Output& out, const std::string& name, float size, const Layer& layer) const;

private:
    struct Group {
        Material material;
        Mesh mesh;
        bool ground = false;
    };
    struct Dark {
        cVector3 low, high;
        float factor;
    };
    void addSeen(const Material& material, const Mesh& mesh, bool ground);
    void addSolid(const Mesh& mesh);
    Parts layerParts(const Layer& layer) const;
    float brightness(const cVector3& position, const cVector3& normal, const Layer& layer) const;
    void checkBox(Output& out, const std::string& name, float size) const;

    std::vector<Group> groups_;
    Mesh floors_, walls_;
    std::vector<Dark> dark_;
    std::function<float(float, float)> height_;
};
} // namespace forge
