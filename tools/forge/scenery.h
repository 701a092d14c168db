#pragma once
#include "forge/output.h"
#include "forge/shapes.h"

namespace forge {
/// Collects a level's fixed geometry and writes the sources of its two octrees and of the second texture
/// layer.
class Scenery {
public:
    struct Material {
        std::string name;    ///< unique
        std::string texture; ///< path relative to src_mdl
        cColour4 colour{255, 255, 255, 0};
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
    /// The ground takes the layer's picture from above instead of the ramp.
    void addGround(const Material& material, const Mesh& mesh);
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
    Parts layerParts(const Layer& layer) const;
    float brightness(const cVector3& position, const cVector3& normal, const Layer& layer) const;
    void checkBox(Output& out, const std::string& name, float size) const;

    std::vector<Group> groups_;
    Mesh floors_, walls_;
    std::vector<Dark> dark_;
};
} // namespace forge
