#pragma once
#include "core/game_state.h"
#include "models/model.h"
#include "script/cml_object.h"
#include "support/temp_game.h"
#include "ui/input_settings.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <array>
#include <string>

/// The managers of a game without a window, on files of the test's own; everything is gone afterwards. Keys
/// are held by writing into `keys`.
class TestWorld {
public:
    TestWorld();
    ~TestWorld();

    TempGame game;
    GameState state = STATE_GAME;
    std::array<uint8_t, kKeyCount> keys{};

    // Collision geometry built on the spot.
    void setGeometry(const std::vector<cModelObject>& parts) const;
    void setFloor(float y = 0) const; ///< 100 units wide

    // Files.
    void writeCpm(const std::string& name, float size = 1) const; ///< a tetrahedron
    void writeOctree(const std::string& name, const cModelObject& part) const;
    /// Three parts of one triangle and two frames; animations FIRST and SECOND of two frames each.
    void writeCharacter(const std::string& baseName) const;
    void writeEnvironment(const std::string& name, float deathHeight, bool water,
                          const cVector3& light = {0, 30, 0}) const;

    // Levels.
    /// A level with these elements inside its root; in them ' stands for ".
    void writeLevel(const std::string& elements, const std::string& fileName) const;
    int load(const std::string& elements, const std::string& fileName = "level.xml") const;
    /// What `spawnElement` and `objectElement` name: a hero's and a thing's model; the hero starts in the
    /// hut.
    void writeModels() const;
    /// One object update, one physics step, one round of events, of 16 ms.
    void frame();
    static cObject* object(const std::string& name);
    static cCmlObject& script(const std::string& name); ///< of an object that exists
    static int32_t local(const std::string& objectName, const std::string& variable);
};

/// An object element: static model, body behind it, then attributes and elements of the caller's.
std::string objectElement(const std::string& name, const std::string& attributes = "",
                          const std::string& inside = "",
                          const std::string& physics = "position=\"0,0,0\" radius=\"1\"");
/// The place "hut" where the hero starts, with the camera behind him.
std::string spawnElement(const std::string& position = "0,1.3,0", const std::string& direction = "0,0,-1");
/// A rectangle at height y, facing up.
cModelObject floorMesh(float y, float half);
/// A rectangle across x = `x`, facing −x, as high and as wide as `half` each way.
cModelObject wallMesh(float x, float half);
