#include "models/load_obj.h"

#include "data/text_lines.h"
#include "models/model.h"
#include "platform/files.h"
#include "render/texture_cache.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <unordered_map>

namespace {
/// Each is read anew where it is named: without a limit short lines could ask for any amount of reading.
constexpr int kMostLibraries = 256;
/// Words of OBJ that are passed over: comments, groups, smoothing, lines, points.
constexpr const char* kPassedOver[] = {"", "o", "g", "s", "l", "p"};

/// Path up to its last separator with a backslash at its end; empty without a separator.
std::string directoryOf(const std::string& path) {
    const size_t separator = platform::lastSeparator(path);
    return separator == std::string::npos ? std::string() : path.substr(0, separator) + "\\";
}

/// k · 256 cut to eight bits: 1.0 gives 0.
uint8_t colourByte(float k) {
    const float scaled = k * 256.0f;
    return std::fabs(scaled) < 1e9f ? static_cast<uint8_t>(static_cast<int32_t>(scaled)) : uint8_t{0};
}

/// White without a texture unless a library says otherwise.
struct ObjMaterial {
    cColour4 colour;
    std::string map;      ///< texture file, beside the library; empty when there is none
    float su = 1, sv = 1; ///< scale of the texture coordinates
};

class cMaterialLibrary {
public:
    /// Replaces the content; a library that cannot be read has no materials.
    void open(const std::string& path) {
        directory_ = directoryOf(path);
        materials_.clear();
        cTextLines lines;
        lines.open(path);
        ObjMaterial* material = nullptr; // the block being read
        for (std::string line; lines.next(line);) {
            std::string_view rest = line;
            const std::string keyword = takeWord(rest);
            if (keyword == "newmtl") {
                const auto [block, isFirst] = materials_.try_emplace(takeWord(rest));
                material = isFirst ? &block->second : nullptr;
            } else if (material && keyword == "Kd") {
                readColour(std::string(rest), *material);
            } else if (material && keyword == "map_Kd") {
                readMap(rest, *material);
            }
        }
    }

    ObjMaterial find(const std::string& name) const {
        const auto found = name.empty() ? materials_.end() : materials_.find(name);
        return found == materials_.end() ? ObjMaterial{} : found->second;
    }

    int32_t loadTexture(const ObjMaterial& material) const {
        return material.map.empty() ? kNoTexture : cTextureCache::instance().load(directory_ + material.map);
    }

private:
    static void readColour(const std::string& numbers, ObjMaterial& material) {
        float k[3] = {};
        const int read = std::sscanf(numbers.c_str(), "%f %f %f", &k[0], &k[1], &k[2]);
        uint8_t* const channels[] = {&material.colour.r, &material.colour.g, &material.colour.b};
        for (int i = 0; i < read; ++i) *channels[i] = colourByte(k[i]);
    }

    static void readMap(std::string_view rest, ObjMaterial& material) {
        std::string word = takeWord(rest);
        if (word == "-s") {
            std::sscanf(takeWord(rest).c_str(), "%f", &material.su);
            std::sscanf(takeWord(rest).c_str(), "%f", &material.sv);
            takeWord(rest); // depth
            word = takeWord(rest);
        }
        if (!word.empty()) material.map = word;
    }

    std::string directory_;
    std::unordered_map<std::string, ObjMaterial> materials_;
};

/// The next number of a line in its plain decimal form, after blanks and before a blank, `separator` or the
/// end. Null for everything else, which sscanf reads in its own way.
template <typename Number>
const char* plainNumber(const char* at, const char* end, Number& out, char separator = ' ') {
    while (at && at != end && (*at == ' ' || *at == '\t')) ++at;
    if (!at) return nullptr;
    const auto [next, error] = std::from_chars(at, end, out);
    const bool ends = next == end || *next == ' ' || *next == '\t' || *next == separator;
    return error == std::errc() && ends ? next : nullptr;
}

class cObjReader {
public:
    cObjReader(const std::string& path, cModel& model) : directory_(directoryOf(path)), model_(model) {}

    void read(cTextLines& lines) {
        std::string line;
        while (lines.next(line)) {
            std::string_view rest = line;
            switch (line.empty() ? '\0' : line[0]) {
            case 'm':
                if (takeWord(rest) == "mtllib") openLibrary(takeWord(rest));
                break;
            case 'u':
                if (takeWord(rest) == "usemtl") useMaterial(takeWord(rest));
                break;
            case 'v':
                readVertex(line);
                break;
            case 'f':
                readFace(line);
                break;
            default:
                if (line.starts_with('#')) break;
                if (std::ranges::find(kPassedOver, takeWord(rest)) == std::end(kPassedOver))
                    ++model_.losses.unknownLines;
                break;
            }
        }
        complete();
    }

private:
    /// As written in the file: counted from 1 over all objects, 0 where nothing was read.
    struct Face {
        int32_t position[3] = {}, texCoord[3] = {};
        bool isOdd = false; ///< not three corners of the form that is read
    };

    // A line without its name changes nothing.
    void openLibrary(const std::string& name) {
        if (name.empty() || ++librariesOpened_ > kMostLibraries) return;
        library_.open(directory_ + name);
    }
    void useMaterial(const std::string& name) {
        if (!name.empty()) materialName_ = name;
    }

    void readVertex(const std::string& line) {
        if (facesRead_) complete();
        const char *text = line.c_str(), *end = text + line.size();
        if (std::isspace(static_cast<unsigned char>(text[1]))) {
            float x = 0, z = 0, y = 0;
            if (!plainNumber(plainNumber(plainNumber(text + 2, end, x), end, z), end, y)) {
                x = z = y = 0;
                std::sscanf(text + 2, "%f %f %f", &x, &z, &y);
            }
            object_.positions.push_back({x, y, -z});
        } else if (text[1] == 't') {
            TexCoord t;
            if (!plainNumber(plainNumber(text + 2, end, t.u), end, t.v)) {
                t = {};
                std::sscanf(text + 2, " %f %f", &t.u, &t.v);
            }
            object_.texCoords.push_back(t);
        }
    }

    void readFace(const std::string& line) {
        Face f;
        if (!readPlainFace(line, f)) {
            f = {};
            f.isOdd = !readOddFace(line, f);
        }
        faces_.push_back(f);
        facesRead_ = true;
    }
    /// As far as the form goes; false when it ends early.
    bool readOddFace(const std::string& line, Face& f) const {
        int32_t *p = f.position, *t = f.texCoord;
        if (object_.texCoords.empty())
            return std::sscanf(line.c_str() + 1, "%d %d %d", &p[0], &p[1], &p[2]) == 3;
        return std::sscanf(line.c_str() + 1, "%d/%d %d/%d %d/%d", &p[0], &t[0], &p[1], &t[1], &p[2], &t[2]) ==
               6;
    }

    bool readPlainFace(const std::string& line, Face& f) const {
        const char *at = line.c_str() + 1, *end = line.c_str() + line.size();
        for (int k = 0; k < 3 && at; ++k) {
            if (object_.texCoords.empty()) {
                at = plainNumber(at, end, f.position[k]);
            } else {
                at = plainNumber(at, end, f.position[k], '/');
                at = at && at != end && *at == '/' && at[1] != ' ' ? plainNumber(at + 1, end, f.texCoord[k])
                                                                   : nullptr;
            }
        }
        return at != nullptr;
    }

    /// Index into this object's own array; false when it belongs to another object or to none.
    static bool local(int32_t index, int64_t base, size_t count, uint32_t& out) {
        const int64_t i = index - base;
        out = static_cast<uint32_t>(i);
        return i >= 0 && i < static_cast<int64_t>(count);
    }

    void addFaces() {
        const bool textured = !object_.texCoords.empty();
        for (const Face& f : faces_) {
            FaceIndices position{}, texCoord{};
            bool ok = true;
            for (size_t k = 0; k < 3; ++k) {
                ok = ok && local(f.position[k], positionBase_, object_.positions.size(), position[k]);
                if (textured)
                    ok = ok && local(f.texCoord[k], texCoordBase_, object_.texCoords.size(), texCoord[k]);
            }
            if (!ok) {
                ++(f.isOdd ? model_.losses.oddCorners : model_.losses.outOfRange);
                continue;
            }
            object_.faces.push_back(position);
            object_.faceTexCoords.push_back(texCoord);
        }
    }

    /// The material is the one in force now, which a group's own `usemtl` before its vertices may have
    /// changed.
    void complete() {
        addFaces();
        const ObjMaterial material = library_.find(materialName_);
        object_.colour = material.colour;
        object_.setTexture(library_.loadTexture(material));
        for (TexCoord& t : object_.texCoords) {
            t.u *= material.su;
            t.v *= material.sv;
        }
        positionBase_ += object_.vertexCount();
        texCoordBase_ += object_.texCoordCount();
        model_.add(std::move(object_));
        object_ = {};
        faces_.clear();
        materialName_.clear();
        facesRead_ = false;
    }

    std::string directory_;
    cModel& model_;
    cMaterialLibrary library_;
    std::string materialName_;
    cModelObject object_; ///< being read
    std::vector<Face> faces_;
    int64_t positionBase_ = 1, texCoordBase_ = 1;
    bool facesRead_ = false;
    int librariesOpened_ = 0;
};
} // namespace

int loadObj(const std::string& path, cModel& model) {
    cTextLines lines;
    if (!lines.open(path)) return -1;
    cObjReader(path, model).read(lines);
    return 0;
}
