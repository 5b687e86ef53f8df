// The host's model of dynamic blocks: a definition's properties with their
// default values, and each reference's own values.
#pragma once

#include <dbdynblk.h>
#include <dbmain.h>

#include <string>
#include <utility>
#include <vector>

namespace cadhost {

struct DynamicPropertyDefinition {
    std::wstring name;
    std::wstring description;
    AcDbEvalVariant value;  // the default value, which gives the type
    bool show = true;
    bool readOnly = false;
};

struct DynamicBlockData {
    // On a block record: the block is dynamic and has these properties.
    bool definition = false;
    std::vector<DynamicPropertyDefinition> properties;
    // On a block reference: the values that differ from the defaults.
    std::vector<std::pair<std::wstring, AcDbEvalVariant>> values;
};

// The name of the extended data that ties an anonymous copy to its block.
inline constexpr const wchar_t* kBlockRepresentationApp = L"AcDbBlockRepBTag";
// The extension dictionary entry that marks a dynamic block in files.
inline constexpr const wchar_t* kEnhancedBlockEntry = L"ACAD_ENHANCEDBLOCK";
// The extended data that names an anonymous copy after its dynamic block.
inline constexpr const wchar_t* kTrueNameApp = L"AcDbDynamicBlockTrueName";

// Makes a block record dynamic (it may have no property yet), or adds a
// property to it; a second property of the same name is refused.
Acad::ErrorStatus MakeDynamicBlock(AcDbObjectId blockId);
Acad::ErrorStatus AddDynamicProperty(AcDbObjectId blockId, DynamicPropertyDefinition property);
// Ties an anonymous block record to the dynamic block it is a copy of, by
// the extended data the platform writes.
Acad::ErrorStatus TieAnonymousCopy(AcDbObjectId anonymousId, AcDbObjectId dynamicId);
// The dynamic block of a block record: itself when it is dynamic, the
// block its tie names for an anonymous copy, else null.
AcDbObjectId DynamicBlockOf(AcDbObjectId blockId);
bool IsDynamicDefinition(AcDbObjectId blockId);
// The dynamic block that a reference's own representation data names
// (extension dictionary "AcDbBlockRepresentation", entry "AcDbRepData",
// group 340); null when it has none.
AcDbObjectId RepresentedBlock(AcDbObjectId referenceId);
// The definition's properties; null for another block.
const DynamicBlockData* DynamicDataOf(AcDbObjectId blockId);

}  // namespace cadhost
