#pragma once
#include "models/character_model.h"
#include "models/model.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

/// Static models of world objects and items, loaded once a request. Owns them.
class cStaticModelStore {
public:
    /// Null, with a row in the log, when the file cannot be read. With `shadows` its shadow data is prepared.
    cModel* load(const std::string& fileName, bool shadows);
    void release(const cModel* model);
    size_t count() const { return models_.size(); }

private:
    std::unordered_map<const cModel*, std::unique_ptr<cModel>> models_; ///< by their own address
};

/// Character geometry, shared by name (without its directory). Owned by the store and by every pose that uses
/// it.
class cAnimatedModelStore {
public:
    /// Never null: a model that cannot be read is kept empty, with a row in the log. `converting` turns
    /// stored z-up coordinates into y-up.
    std::shared_ptr<cCharacterModel> load(const std::string& directory, const std::string& name,
                                          bool converting, bool shadows);
    /// One user less; the entry goes with the last one.
    void release(std::shared_ptr<const cCharacterModel>& model);
    void clear() { models_.clear(); }
    size_t count() const { return models_.size(); }

private:
    std::map<std::string, std::shared_ptr<cCharacterModel>> models_;
};
