#pragma once
#include "models/mesh.h"

#include <string>
#include <vector>

class cBinaryReader;
class cBinaryWriter;
class cModel;

/// The material table of a CPM or octree file, while it is written or read.
class cMaterialList {
public:
    struct Record {
        cColour4 colour;
        int32_t texture = kNoTexture;
        /// Texture file; for two textures the first name, "?", the second name. Empty when there is none.
        std::string name;
        bool twoTextures = false;
    };
    std::vector<Record> records;

    /// Adds a record for every object's material that is not in the list yet.
    void addFrom(const cModel& model);
    /// First record that matches, −1 when none does. A record without texture matches by colour alone.
    int32_t find(const cColour4& colour, int32_t texture, bool twoTextures) const;
    void write(cBinaryWriter& out) const;
    /// False, with the list emptied, when the data is cut short or impossible.
    bool read(cBinaryReader& in);
    /// Loads the named textures through the texture cache; a texture that fails becomes −1.
    void loadTextures();
};

/// A static mesh: objects with one material each. World units, y up.
class cModel {
public:
    /// What an import left out, by reason.
    struct Losses {
        int oddCorners = 0;   ///< faces whose corners are not of the form that is read
        int outOfRange = 0;   ///< faces that name positions or coordinates which their object lacks
        int unknownLines = 0; ///< of a text file
    };
    std::vector<cModelObject> objects;
    Losses losses; ///< of the last load

    /// Replaces the content by a .3ds, .obj or .cpm file. 0 or more, −1 when it cannot be read (the model is
    /// then empty; the reason is in SDL's error text or, for CPM, in the log).
    int load(const std::string& fileName, bool computeNormals);
    int loadWithColour(const std::string& fileName, uint8_t r, uint8_t g, uint8_t b);
    int loadWithTextureFile(const std::string& fileName, const std::string& textureFile);
    int loadWithTexture(const std::string& fileName, int32_t texture);
    /// False when the file cannot be written; the old one is then untouched.
    bool saveCpm(const std::string& fileName) const;

    // The object section of CPM, octree and environment files.
    void writeObjects(cBinaryWriter& out, const cMaterialList& materials) const;
    /// Replaces the content. False, with the model emptied, when the data is damaged.
    bool readObjects(cBinaryReader& in, const cMaterialList& materials);

    void clear() {
        objects.clear();
        losses = {};
    }
    /// Added only when it has a vertex and a face.
    void add(cModelObject object);
    /// Replaces every object's `vectors` by smooth normals, in mode 2 too.
    void computeNormals();
    /// `index` −1 sets all objects.
    void setMaterial(const cColour4& colour, int32_t texture, int index = -1);
    void scale(float factor);
    void scaleToExtent(float size); ///< does nothing for a model without extent
    void moveToCentre();
    /// Second layer for level geometry: takes the texture and coordinates of the matching faces of `second`.
    /// An object for which `second` has none with as many faces logs a row and keeps its single texture.
    void applySecondTexture(const cModel& second);

    float extent() const;    ///< largest absolute coordinate
    cVector3 centre() const; ///< of the bounding box
    int totalFaces() const;
    int totalVertices() const;

private:
    int readByExtension(const std::string& fileName);
    void setTexture(int32_t texture); ///< keeps the colours
};

/// Replaces the model by a CPM file with its textures loaded. 0, or −1 with one error row and the model
/// empty.
int loadCpm(const std::string& fileName, cModel& model);
