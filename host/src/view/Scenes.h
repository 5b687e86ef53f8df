// The scenes of a drawing's blocks, made as the view first needs each and
// kept until the drawing changes.
#pragma once

#include <dbmain.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "view/Scene.h"

namespace cadhost::view {

// A tab of the drawing view: model space or a layout's sheet.
struct Space {
    std::wstring name;  // "Model", or the layout's name
    AcDbObjectId block;
};

// Model space first, then the sheets in the order of their layouts' tabs.
std::vector<Space> SpacesOf(AcDbDatabase& database);

class Scenes {
public:
    explicit Scenes(AcDbDatabase& database) : m_database(database) {}
    Scenes(const Scenes&) = delete;
    Scenes& operator=(const Scenes&) = delete;

    // The scene of a block (a space or a block definition); an id that
    // names no block has an empty scene.
    const Scene& Of(AcDbObjectId block);
    // Forgets every scene: the drawing changed.
    void Forget() { m_scenes.clear(); }

private:
    struct IdHash {
        size_t operator()(AcDbObjectId id) const { return std::hash<const void*>()(id.stub()); }
    };
    AcDbDatabase& m_database;
    std::unordered_map<AcDbObjectId, std::unique_ptr<Scene>, IdHash> m_scenes;
    std::vector<AcDbObjectId> m_making;  // blocks whose scene is being made
};

}  // namespace cadhost::view
