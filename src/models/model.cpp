#include "models/model.h"

#include "models/normals.h"
#include "render/texture_cache.h"

#include <cmath>
#include <optional>

int cModel::loadWithColour(const std::string& fileName, uint8_t r, uint8_t g, uint8_t b) {
    const int result = load(fileName, true);
    setMaterial({r, g, b, 0}, kNoTexture);
    return result;
}

int cModel::loadWithTextureFile(const std::string& fileName, const std::string& textureFile) {
    const int result = load(fileName, true);
    const int32_t texture = cTextureCache::instance().load(textureFile);
    if (texture >= 0) setTexture(texture);
    return result;
}

int cModel::loadWithTexture(const std::string& fileName, int32_t texture) {
    const int result = load(fileName, true);
    setTexture(texture);
    return result;
}

void cModel::setTexture(int32_t texture) {
    for (cModelObject& o : objects) o.setTexture(texture);
}

void cModel::add(cModelObject object) {
    if (!object.positions.empty() && !object.faces.empty()) objects.push_back(std::move(object));
}

void cModel::computeNormals() {
    for (cModelObject& o : objects) {
        o.vectors = smoothNormals(o.positions, o.faces);
        // With two textures the array held the second coordinates: their indices must not outlive them.
        for (FaceIndices& f : o.faceSecond) {
            for (uint32_t& i : f) i = i < o.vectors.size() ? i : 0;
        }
    }
}

void cModel::setMaterial(const cColour4& colour, int32_t texture, int index) {
    for (int i = 0; i < static_cast<int>(objects.size()); ++i) {
        if (index >= 0 && index != i) continue;
        cModelObject& o = objects[static_cast<size_t>(i)];
        o.colour = colour;
        o.setTexture(texture);
    }
}

void cModel::scale(float factor) {
    for (cModelObject& o : objects) {
        for (cVector3& p : o.positions) p *= factor;
    }
}

void cModel::scaleToExtent(float size) {
    const float e = extent();
    if (e > 0.0f) scale(size / e);
}

void cModel::moveToCentre() {
    const cVector3 c = centre();
    for (cModelObject& o : objects) {
        for (cVector3& p : o.positions) p -= c;
    }
}

float cModel::extent() const {
    float largest = 0;
    for (const cModelObject& o : objects) {
        for (const cVector3& p : o.positions) {
            for (int axis = 0; axis < 3; ++axis) {
                if (std::fabs(p[axis]) > largest) largest = std::fabs(p[axis]);
            }
        }
    }
    return largest;
}

cVector3 cModel::centre() const {
    std::optional<cBox> box;
    for (const cModelObject& o : objects) {
        for (const cVector3& p : o.positions) {
            if (!box) box = cBox{p, p};
            box->add(p);
        }
    }
    return box ? (box->high + box->low) / 2.0f : cVector3();
}

int cModel::totalFaces() const {
    int sum = 0;
    for (const cModelObject& o : objects) sum += o.faceCount();
    return sum;
}

int cModel::totalVertices() const {
    int sum = 0;
    for (const cModelObject& o : objects) sum += o.vertexCount();
    return sum;
}
