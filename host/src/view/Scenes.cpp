#include "view/Scenes.h"

#include <AcString.h>
#include <dbents.h>
#include <dbmtext.h>
#include <dbpl.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "db/KeptGroups.h"
#include "db/KeptObjects.h"
#include "db/MTextFormat.h"
#include "db/ObjectExtras.h"
#include "view/AciColors.h"

namespace cadhost::view {

Box Affine::Apply(const Box& box) const {
    Box out;
    if (box.Empty()) return out;
    for (int corner = 0; corner < 4; ++corner) {
        double x, y;
        Apply(corner & 1 ? box.maxX : box.minX, corner & 2 ? box.maxY : box.minY, x, y);
        out.Add(x, y);
    }
    return out;
}

double Affine::Scale() const { return std::max(std::hypot(a, b), std::hypot(c, d)); }

void AddArc(Box& box, const Vertex& a, const Vertex& b) {
    box.Add(a.x, a.y);
    box.Add(b.x, b.y);
    double chord = std::hypot(b.x - a.x, b.y - a.y);
    if (a.bulge == 0 || chord == 0) return;
    // The center lies off the chord's middle, to the left for a positive
    // bulge, by (1/b - b)/4 of the chord.
    double offset = (1 / a.bulge - a.bulge) / 4;
    double cx = (a.x + b.x) / 2 - (b.y - a.y) * offset, cy = (a.y + b.y) / 2 + (b.x - a.x) * offset;
    double radius = std::hypot(a.x - cx, a.y - cy);
    double start = std::atan2(a.y - cy, a.x - cx), sweep = 4 * std::atan(a.bulge);
    constexpr double kTurn = 2 * std::numbers::pi;
    for (int quarter = 0; quarter < 4; ++quarter) {
        double angle = quarter * kTurn / 4;
        // How far along the sweep's direction the axis direction lies.
        double along = sweep > 0 ? std::fmod(angle - start + 2 * kTurn, kTurn) : std::fmod(start - angle + 2 * kTurn, kTurn);
        if (along <= std::fabs(sweep)) box.Add(cx + radius * std::cos(angle), cy + radius * std::sin(angle));
    }
}

namespace {

// Arcs are drawn as edges of at most this angle, fine enough that a circle
// filling the screen looks round.
constexpr double kArcStep = 2 * std::numbers::pi / 72;
constexpr int kMaxNesting = 32;

int ArcEdges(double sweep) { return std::max(2, static_cast<int>(std::ceil(std::fabs(sweep) / kArcStep))); }

// The layer of an entity as drawing sees it: whether it shows, its colour,
// and whether it is layer 0 (whose entities inside a block take the
// reference's layer).
struct LayerLook {
    bool shows = true;
    bool zero = false;
    Rgb color;
};

class SceneMaker {
public:
    SceneMaker(Scene& scene, bool insideBlock) : m_scene(scene), m_insideBlock(insideBlock) {}

    void Add(AcDbEntity& entity);

private:
    LayerLook Look(AcDbObjectId layerId);
    Paint PaintOf(const LayerLook& look) const { return {look.color, m_insideBlock && look.zero}; }
    Outline& Begin(const Paint& paint) {
        Outline& outline = m_scene.outlines.emplace_back();
        outline.first = static_cast<std::uint32_t>(m_scene.points.size());
        outline.paint = paint;
        return outline;
    }
    void Point(Outline& outline, double x, double y, double bulge = 0) {
        m_scene.points.push_back({x, y, bulge});
        ++outline.count;
        outline.box.Add(x, y);
    }
    void End(Outline& outline) {
        if (outline.count == 0) {
            m_scene.outlines.pop_back();
            return;
        }
        // Arcs reach beyond their ends.
        const Vertex* points = &m_scene.points[outline.first];
        for (std::uint32_t i = 0; i < outline.count; ++i) {
            bool last = i + 1 == outline.count;
            if (points[i].bulge != 0 && (!last || outline.closed))
                AddArc(outline.box, points[i], points[last ? 0 : i + 1]);
        }
        m_scene.box.Add(outline.box);
    }
    void AddCurve(const AcDbCurve& curve, const Paint& paint);
    void AddPolyline(const AcDbPolyline& polyline, const Paint& paint);
    void AddSolid(const AcDbSolid& solid, const Paint& paint);
    void AddText(const AcDbText& text, const std::wstring& shown, const Paint& paint);
    void AddMText(const AcDbMText& text, const Paint& paint);
    void AddTable(const AcDbTable& table, const Paint& paint);
    void AddReference(const AcDbBlockReference& reference, const LayerLook& look);
    void AddViewport(const AcDbViewport& viewport, const Paint& paint);
    void AddLabel(Label label);

    Scene& m_scene;
    bool m_insideBlock;
    std::unordered_map<const void*, LayerLook> m_layers;
};

LayerLook SceneMaker::Look(AcDbObjectId layerId) {
    auto found = m_layers.find(layerId.stub());
    if (found != m_layers.end()) return found->second;
    LayerLook look;
    look.color = AciColor(7);
    if (auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(layerId))) {
        look.shows = !layer->isOff() && !layer->isFrozen();
        look.zero = layer->name() == L"0";
        look.color = AciColor(layer->colorIndex());
    }
    m_layers.emplace(layerId.stub(), look);
    return look;
}

void SceneMaker::Add(AcDbEntity& entity) {
    LayerLook look = Look(entity.layerId());
    // A reference on layer 0 inside a block shows as its own reference
    // decides; any other entity on a layer that is off or frozen does not.
    if (!look.shows && !(m_insideBlock && look.zero)) return;
    Paint paint = PaintOf(look);
    if (auto* table = AcDbTable::cast(&entity)) return AddTable(*table, paint);
    if (auto* reference = AcDbBlockReference::cast(&entity)) return AddReference(*reference, look);
    if (auto* polyline = AcDbPolyline::cast(&entity)) return AddPolyline(*polyline, paint);
    if (auto* curve = AcDbCurve::cast(&entity)) return AddCurve(*curve, paint);
    if (auto* solid = AcDbSolid::cast(&entity)) return AddSolid(*solid, paint);
    if (auto* mtext = AcDbMText::cast(&entity)) return AddMText(*mtext, paint);
    if (auto* definition = AcDbAttributeDefinition::cast(&entity)) {
        // Inside a block a definition shows through its references'
        // attributes; standing alone it shows its tag.
        if (m_insideBlock && !definition->isConstant()) return;
        return AddText(*definition, definition->isConstant() ? definition->textStringConst() : definition->tagConst(),
                       paint);
    }
    if (auto* attribute = AcDbAttribute::cast(&entity)) {
        if (!attribute->isInvisible()) AddText(*attribute, attribute->textStringConst(), paint);
        return;
    }
    if (auto* text = AcDbText::cast(&entity)) return AddText(*text, text->textStringConst(), paint);
    if (auto* viewport = AcDbViewport::cast(&entity)) return AddViewport(*viewport, paint);
}

// The sign that arcs of a plane with this normal take in plan: turning
// counterclockwise about the normal is clockwise seen from above when the
// normal points down; 0 for a plane that is not level, whose arcs are drawn
// as edges.
int PlanTurn(const AcGeVector3d& normal) {
    AcGeVector3d n = normal.normal();
    if (std::fabs(n.z - 1) < 1e-12) return 1;
    if (std::fabs(n.z + 1) < 1e-12) return -1;
    return 0;
}

void SceneMaker::AddCurve(const AcDbCurve& curve, const Paint& paint) {
    double start = 0, end = 0;
    if (curve.getStartParam(start) != Acad::eOk || curve.getEndParam(end) != Acad::eOk) return;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    if (auto* circle = AcDbCircle::cast(&curve)) normal = circle->normal();
    else if (auto* arc = AcDbArc::cast(&curve)) normal = arc->normal();
    else if (!AcDbLine::cast(&curve)) return;
    bool round = !AcDbLine::cast(&curve);
    int turn = round ? PlanTurn(normal) : 1;
    Outline& outline = Begin(paint);
    auto at = [&](double param, double bulge) {
        AcGePoint3d p;
        if (curve.getPointAtParam(param, p) == Acad::eOk) Point(outline, p.x, p.y, bulge);
    };
    if (!round) {
        at(start, 0);
        at(end, 0);
    } else if (turn == 0) {
        // Not level: the ellipse it makes in plan, as edges.
        int edges = ArcEdges(end - start);
        for (int i = 0; i <= edges; ++i) at(i == edges ? end : start + (end - start) * i / edges, 0);
    } else if (curve.isClosed()) {
        // A circle: two half circles.
        at(start, turn);
        at(start + std::numbers::pi, turn);
        outline.closed = true;
    } else {
        // An arc of at most a whole turn: halves beyond a half turn, so that
        // a bulge stays within a half circle's.
        double sweep = end - start;
        int parts = sweep > std::numbers::pi ? 2 : 1;
        double bulge = turn * std::tan(sweep / parts / 4);
        for (int i = 0; i < parts; ++i) at(start + sweep * i / parts, bulge);
        at(end, 0);
    }
    End(outline);
}

void SceneMaker::AddPolyline(const AcDbPolyline& polyline, const Paint& paint) {
    unsigned int vertices = polyline.numVerts();
    if (vertices == 0) return;
    unsigned int segments = polyline.closed() && vertices > 1 ? vertices : vertices - 1;
    int turn = PlanTurn(polyline.normal());
    // Vertex s at parameter s; a tilted polyline's arcs as edges.
    auto add = [&](Outline& outline, double param, double bulge) {
        AcGePoint3d p;
        if (polyline.getPointAtParam(param, p) == Acad::eOk) Point(outline, p.x, p.y, bulge);
    };
    auto addSegment = [&](Outline& outline, unsigned int index) {
        double bulge = 0;
        polyline.getBulgeAt(index, bulge);
        if (turn != 0 || bulge == 0) {
            add(outline, index, turn * bulge);
            return;
        }
        int edges = ArcEdges(4 * std::atan(bulge));
        for (int i = 0; i < edges; ++i) add(outline, index + static_cast<double>(i) / edges, 0);
    };
    // One width all along (the polyline's constant width where its
    // vertices give none), or each segment at its own.
    double constant = 0, first = 0, ignored = 0;
    polyline.getConstantWidth(constant);
    polyline.getWidthsAt(0, first, ignored);
    bool uniform = true;
    for (unsigned int s = 0; s < segments && uniform; ++s) {
        double startWidth = 0, endWidth = 0;
        polyline.getWidthsAt(s, startWidth, endWidth);
        uniform = startWidth == first && endWidth == first;
    }
    if (uniform) {
        Outline& outline = Begin(paint);
        outline.width = static_cast<float>(first > 0 ? first : constant);
        outline.closed = polyline.closed() && vertices > 1;
        for (unsigned int s = 0; s < segments; ++s) addSegment(outline, s);
        if (!outline.closed) add(outline, segments, 0);
        End(outline);
        return;
    }
    for (unsigned int s = 0; s < segments; ++s) {
        double startWidth = 0, endWidth = 0;
        polyline.getWidthsAt(s, startWidth, endWidth);
        Outline& outline = Begin(paint);
        outline.width = static_cast<float>((startWidth + endWidth) / 2);
        addSegment(outline, s);
        add(outline, s + 1, 0);
        End(outline);
    }
}

void SceneMaker::AddSolid(const AcDbSolid& solid, const Paint& paint) {
    Outline& outline = Begin(paint);
    // The corners run 1, 2, 4, 3 around the solid.
    for (Adesk::UInt16 corner : {0, 1, 3, 2}) {
        AcGePoint3d p;
        if (solid.getPointAt(corner, p) == Acad::eOk) Point(outline, p.x, p.y);
    }
    outline.closed = outline.filled = true;
    End(outline);
}

void SceneMaker::AddLabel(Label label) {
    if (label.text.empty() || !(label.height > 0)) return;
    // The box the text covers at most, for culling: its lines' count and
    // longest line at the height's width.
    size_t lines = 1, longest = 0, current = 0;
    for (wchar_t c : label.text) {
        if (c == L'\n') {
            ++lines;
            current = 0;
        } else {
            longest = std::max(longest, ++current);
        }
    }
    double reach = label.height * (static_cast<double>(longest) * label.widthFactor + 1.7 * static_cast<double>(lines));
    label.box.Add(label.x - reach, label.y - reach);
    label.box.Add(label.x + reach, label.y + reach);
    m_scene.box.Add(label.box);
    m_scene.labels.push_back(std::move(label));
}

void SceneMaker::AddText(const AcDbText& text, const std::wstring& shown, const Paint& paint) {
    Label label;
    AcGePoint3d at = text.isDefaultAlignment() ? text.position() : text.alignmentPoint();
    label.x = at.x;
    label.y = at.y;
    label.height = text.height();
    label.rotation = text.rotation();
    label.widthFactor = text.widthFactor();
    switch (text.horizontalMode()) {
    case AcDb::kTextCenter:
    case AcDb::kTextMid: label.horizontal = 1; break;
    case AcDb::kTextRight: label.horizontal = 2; break;
    default: label.horizontal = 0;
    }
    label.vertical = text.horizontalMode() == AcDb::kTextMid ? 2 : static_cast<int>(text.verticalMode());
    label.text = shown;
    label.paint = paint;
    AddLabel(std::move(label));
}

void SceneMaker::AddMText(const AcDbMText& text, const Paint& paint) {
    Label label;
    AcGePoint3d at = text.location();
    label.x = at.x;
    label.y = at.y;
    label.height = text.textHeight();
    label.rotation = text.rotation();
    int attachment = static_cast<int>(text.attachment());
    label.horizontal = (attachment - 1) % 3;
    label.vertical = attachment <= 3 ? 3 : attachment <= 6 ? 2 : 1;
    label.text = StripMTextCodes(FromUtf8(text.contentsUtf8()));
    label.paint = paint;
    AddLabel(std::move(label));
}

void SceneMaker::AddTable(const AcDbTable& table, const Paint& paint) {
    int rows = static_cast<int>(table.numRows()), columns = static_cast<int>(table.numColumns());
    if (rows == 0 || columns == 0) return;
    // The table's plane: x along its direction, rows running down from the
    // insertion point.
    AcGeVector3d z = table.normal().normal();
    AcGeVector3d x = table.direction() - z * table.direction().dotProduct(z);
    if (x.isZeroLength()) x = z.perpVector();
    x.normalize();
    AcGeVector3d y = z.crossProduct(x).normal();
    AcGePoint3d origin = table.position();
    auto world = [&](double across, double down, double& wx, double& wy) {
        AcGePoint3d p = origin + x * across - y * down;
        wx = p.x;
        wy = p.y;
    };
    auto edge = [&](double x0, double d0, double x1, double d1) {
        Outline& outline = Begin(paint);
        double wx, wy;
        world(x0, d0, wx, wy);
        Point(outline, wx, wy);
        world(x1, d1, wx, wy);
        Point(outline, wx, wy);
        End(outline);
    };
    double width = table.width(), height = table.height();
    double down = 0;
    edge(0, 0, width, 0);
    for (int r = 0; r < rows; ++r) {
        down += table.rowHeight(r);
        edge(0, down, width, down);
    }
    double across = 0;
    edge(0, 0, 0, height);
    for (int c = 0; c < columns; ++c) {
        across += table.columnWidth(c);
        edge(across, 0, across, height);
    }
    double rowTop = 0;
    for (int r = 0; r < rows; ++r) {
        double columnLeft = 0;
        for (int c = 0; c < columns; ++c) {
            AcString text;
            if (table.textString(r, c, AcDbTable::kIgnoreMtextFormat, text) == Acad::eOk && !text.isEmpty()) {
                Label label;
                world(columnLeft + table.columnWidth(c) / 2, rowTop + table.rowHeight(r) / 2, label.x, label.y);
                label.height = table.rowHeight(r) / 3;
                label.rotation = std::atan2(x.y, x.x);
                label.horizontal = 1;
                label.vertical = 2;
                label.text = text.constPtr();
                label.paint = paint;
                AddLabel(std::move(label));
            }
            columnLeft += table.columnWidth(c);
        }
        rowTop += table.rowHeight(r);
    }
}

void SceneMaker::AddReference(const AcDbBlockReference& reference, const LayerLook& look) {
    if (!look.shows) return;  // a frozen or off reference hides what it holds
    Placement placement;
    placement.block = reference.blockTableRecord();
    placement.transform = Affine::FromMatrix(reference.blockTransform());
    placement.referenceColor = look.color;
    if (!placement.block.isNull() && !placement.block.isErased()) m_scene.placements.push_back(placement);
    Paint paint = PaintOf(look);
    for (AcDbObjectId id : reference.attributeIds()) {
        auto* attribute = AcDbAttribute::cast(DatabaseImpl::Peek(id));
        if (!attribute || id.isErased() || attribute->isInvisible()) continue;
        LayerLook own = Look(attribute->layerId());
        if (!own.shows && !own.zero) continue;
        AddText(*attribute, attribute->textStringConst(), own.zero ? paint : PaintOf(own));
    }
}

void SceneMaker::AddViewport(const AcDbViewport& viewport, const Paint& paint) {
    // Viewport 1 is the sheet itself.
    if (viewport.number() == 1) return;
    AcGePoint3d center = viewport.centerPoint();
    double halfWidth = viewport.width() / 2, halfHeight = viewport.height() / 2;
    Outline& outline = Begin(paint);
    Point(outline, center.x - halfWidth, center.y - halfHeight);
    Point(outline, center.x + halfWidth, center.y - halfHeight);
    Point(outline, center.x + halfWidth, center.y + halfHeight);
    Point(outline, center.x - halfWidth, center.y + halfHeight);
    outline.closed = true;
    Box window = outline.box;
    End(outline);
    if (viewport.status() <= 0 || !(viewport.viewHeight() > 0)) return;  // off: the frame alone
    // A plan view: the view's center (around its target) at the window's center.
    double scale = viewport.height() / viewport.viewHeight();
    AcGePoint3d target = viewport.viewTarget();
    AcGePoint2d viewCenter = viewport.viewCenter();
    Inset inset;
    inset.model = viewport.database() ? viewport.database()->modelSpaceId() : AcDbObjectId();
    inset.window = window;
    inset.borderColor = paint.color;
    inset.modelToSheet = {scale, 0, 0, scale, center.x - scale * (target.x + viewCenter.x),
                          center.y - scale * (target.y + viewCenter.y)};
    m_scene.insets.push_back(inset);
}

}  // namespace

const Scene& Scenes::Of(AcDbObjectId block) {
    auto found = m_scenes.find(block);
    if (found != m_scenes.end()) return *found->second;
    auto scene = std::make_unique<Scene>();
    Scene& made = *scene;
    m_scenes.emplace(block, std::move(scene));
    auto* record = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(block));
    if (!record || block.isErased() || m_making.size() > kMaxNesting) return made;
    m_making.push_back(block);
    bool space = record->isLayout();
    SceneMaker maker(made, !space);
    for (AcDbObjectId id : record->entityIds()) {
        auto* entity = AcDbEntity::cast(DatabaseImpl::Peek(id));
        if (entity && !id.isErased()) maker.Add(*entity);
    }
    // The placed blocks' extents, their own scenes made first; a block that
    // holds itself (which only a broken file makes) gets an empty scene.
    for (Placement& placement : made.placements) {
        bool cycle = std::find(m_making.begin(), m_making.end(), placement.block) != m_making.end();
        if (cycle) continue;
        placement.box = placement.transform.Apply(Of(placement.block).box);
        made.box.Add(placement.box);
    }
    std::erase_if(made.placements, [](const Placement& placement) { return placement.box.Empty(); });
    m_making.pop_back();
    return made;
}

std::vector<Space> SpacesOf(AcDbDatabase& database) {
    std::vector<Space> spaces{{L"Model", database.modelSpaceId()}};
    // The sheets as their layouts name and order them.
    struct Sheet {
        int tab;
        Space space;
    };
    std::vector<Sheet> sheets;
    for (AcDbObjectId id : database.impl().ObjectOrder()) {
        auto* layout = KeptObject::cast(DatabaseImpl::Peek(id));
        if (!layout || id.isErased() || layout->type() != "LAYOUT" || !layout->extras()) continue;
        KeptGroups::Cursor cursor(layout->extras()->kept);
        KeptGroup group;
        bool inLayout = false;
        Sheet sheet{0, {}};
        while (cursor.Next(group)) {
            if (group.code == 100) inLayout = group.value == "AcDbLayout";
            if (!inLayout) continue;
            if (group.code == 1) sheet.space.name = FromUtf8(group.value);
            if (group.code == 71) sheet.tab = std::atoi(std::string(group.value).c_str());
            if (group.code == 330) {
                AcDbHandle handle(FromUtf8(group.value).c_str());
                database.getAcDbObjectId(sheet.space.block, false, handle);
            }
        }
        if (sheet.tab > 0 && !sheet.space.block.isNull()) sheets.push_back(std::move(sheet));
    }
    std::stable_sort(sheets.begin(), sheets.end(), [](const Sheet& a, const Sheet& b) { return a.tab < b.tab; });
    for (Sheet& sheet : sheets) spaces.push_back(std::move(sheet.space));
    if (sheets.empty() && !database.paperSpaceId().isNull()) spaces.push_back({L"Layout1", database.paperSpaceId()});
    return spaces;
}

}  // namespace cadhost::view
