// The drawing view's scenes and pictures: what a space draws, what layers
// hide, where blocks land, and the view's pan and zoom.
#include <dbents.h>
#include <dbobjptr.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <cmath>

#include "support/TestHost.h"
#include "view/AciColors.h"
#include "view/Drawing.h"

namespace {

using cadhost::view::AciColor;
using cadhost::view::Rgb;

class DrawingViewTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddLayer(const wchar_t* name, short color, bool off = false, bool frozen = false) {
        AcDbSymbolTablePointer<AcDbLayerTable> table(db(), AcDb::kForWrite);
        auto* layer = new AcDbLayerTableRecord;
        layer->setName(name);
        layer->setColorIndex(color);
        layer->setIsOff(off);
        layer->setIsFrozen(frozen);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, layer), Acad::eOk);
        layer->close();
        return id;
    }

    AcDbObjectId AddBlock(const wchar_t* name) {
        AcDbSymbolTablePointer<AcDbBlockTable> table(db(), AcDb::kForWrite);
        auto* record = new AcDbBlockTableRecord;
        record->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        record->close();
        return id;
    }

    AcDbObjectId Append(AcDbObjectId blockId, AcDbEntity* entity, AcDbObjectId layer = {}) {
        if (!layer.isNull()) entity->setLayer(layer);
        AcDbBlockTableRecord* record = nullptr;
        EXPECT_EQ(acdbOpenObject(record, blockId, AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(record->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        record->close();
        return id;
    }

    AcDbObjectId Model() { return db()->modelSpaceId(); }

    // The space drawn into a picture showing box exactly (one pixel per
    // unit, the box's corner at the picture's lower left).
    cadhost::view::Raster Picture(cadhost::view::Scenes& scenes, int width, int height) {
        cadhost::view::ViewTransform view;
        view.width = width;
        view.height = height;
        view.centerX = width / 2.0;
        view.centerY = height / 2.0;
        view.scale = 1;
        cadhost::view::Raster raster(width, height);
        std::vector<cadhost::view::ShownLabel> labels;
        cadhost::view::DrawSpace(scenes, Model(), view, raster, labels);
        return raster;
    }
    // The pixel showing drawing point (x, y) in such a picture.
    static Rgb At(const cadhost::view::Raster& raster, double x, double y) {
        return raster.At(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(raster.height() - y)));
    }
};

TEST_F(DrawingViewTest, LayersThatAreOffOrFrozenHideWhatIsOnThem) {
    AcDbObjectId shown = AddLayer(L"SHOWN", 1);
    AcDbObjectId off = AddLayer(L"OFF", 2, true);
    AcDbObjectId frozen = AddLayer(L"FROZEN", 3, false, true);
    Append(Model(), new AcDbLine(AcGePoint3d(10, 10, 0), AcGePoint3d(90, 10, 0)), shown);
    Append(Model(), new AcDbLine(AcGePoint3d(10, 30, 0), AcGePoint3d(90, 30, 0)), off);
    Append(Model(), new AcDbLine(AcGePoint3d(10, 50, 0), AcGePoint3d(90, 50, 0)), frozen);
    cadhost::view::Scenes scenes(*db());
    const cadhost::view::Scene& scene = scenes.Of(Model());
    ASSERT_EQ(scene.outlines.size(), 1u);
    EXPECT_EQ(scene.outlines[0].paint.color, AciColor(1));
    cadhost::view::Raster picture = Picture(scenes, 100, 100);
    EXPECT_EQ(At(picture, 50, 10), AciColor(1));
    EXPECT_EQ(At(picture, 50, 30), cadhost::view::kBackground);
    EXPECT_EQ(At(picture, 50, 50), cadhost::view::kBackground);
}

TEST_F(DrawingViewTest, BlocksLandWhereTheirReferencesPlaceThemAndLayerZeroTakesTheReferencesColor) {
    AcDbObjectId green = AddLayer(L"GREEN", 3);
    AcDbObjectId red = AddLayer(L"RED", 1);
    AcDbObjectId frozen = AddLayer(L"FROZEN", 5, false, true);
    AcDbObjectId block = AddBlock(L"MARK");
    AcDbObjectId zero;
    {
        AcDbSymbolTablePointer<AcDbLayerTable> layers(db(), AcDb::kForRead);
        layers->getAt(L"0", zero);
    }
    Append(block, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)), zero);
    Append(block, new AcDbLine(AcGePoint3d(0, 5, 0), AcGePoint3d(10, 5, 0)), red);
    // Twice the size at (20, 40), turned a quarter: the block's x runs up.
    auto* reference = new AcDbBlockReference(AcGePoint3d(20, 40, 0), block);
    reference->setScaleFactors(AcGeScale3d(2, 2, 2));
    reference->setRotation(std::atan(1.0) * 2);
    Append(Model(), reference, green);
    Append(Model(), new AcDbBlockReference(AcGePoint3d(60, 60, 0), block), frozen);

    cadhost::view::Scenes scenes(*db());
    const cadhost::view::Scene& scene = scenes.Of(Model());
    ASSERT_EQ(scene.placements.size(), 1u);
    EXPECT_NEAR(scene.box.minX, 10, 1e-9);  // the red line: block y 5, twice, turned to -x
    EXPECT_NEAR(scene.box.maxY, 60, 1e-9);
    cadhost::view::Raster picture = Picture(scenes, 100, 100);
    // The layer-0 line along x = 20 in green, the red one along x = 10.
    EXPECT_EQ(At(picture, 20, 50), AciColor(3));
    EXPECT_EQ(At(picture, 10, 50), AciColor(1));
    EXPECT_EQ(At(picture, 30, 40), cadhost::view::kBackground);  // where it would be unturned
    EXPECT_EQ(At(picture, 65, 60), cadhost::view::kBackground);  // the frozen reference
}

TEST_F(DrawingViewTest, ArcsOfPolylinesAndCirclesFollowTheirCurve) {
    auto* polyline = new AcDbPolyline;
    // A half circle of radius 20 around (50, 50), from (30, 50) over the top
    // to (70, 50): bulge -1 turns clockwise.
    polyline->addVertexAt(0, AcGePoint2d(30, 50), -1);
    polyline->addVertexAt(1, AcGePoint2d(70, 50));
    Append(Model(), polyline);
    Append(Model(), new AcDbCircle(AcGePoint3d(50, 20, 0), AcGeVector3d::kZAxis, 10));
    cadhost::view::Scenes scenes(*db());
    cadhost::view::Raster picture = Picture(scenes, 100, 100);
    Rgb white = AciColor(7);
    EXPECT_EQ(At(picture, 50, 70), white);  // the arc's top
    EXPECT_EQ(At(picture, 50, 30), white);  // the circle's top
    EXPECT_EQ(At(picture, 40, 20), white);  // its left
    EXPECT_EQ(At(picture, 50, 20), cadhost::view::kBackground);  // its center
    EXPECT_EQ(At(picture, 50, 40), cadhost::view::kBackground);  // below the arc's chord side
    // Arcs stay arcs in the scene, and their boxes reach their tops.
    const cadhost::view::Scene& scene = scenes.Of(Model());
    ASSERT_EQ(scene.outlines.size(), 2u);
    const cadhost::view::Outline& arc = scene.outlines[0];
    ASSERT_EQ(arc.count, 2u);
    EXPECT_EQ(scene.points[arc.first].bulge, -1);
    EXPECT_NEAR(arc.box.maxY, 70, 1e-9);
    EXPECT_NEAR(arc.box.minY, 50, 1e-9);
    const cadhost::view::Outline& circle = scene.outlines[1];
    EXPECT_TRUE(circle.closed);
    EXPECT_NEAR(circle.box.minX, 40, 1e-9);
    EXPECT_NEAR(circle.box.maxX, 60, 1e-9);
    EXPECT_NEAR(circle.box.minY, 10, 1e-9);
    EXPECT_NEAR(circle.box.maxY, 30, 1e-9);
}

TEST(ArcBoxTest, AnArcsBoxHoldsTheAxisPointsItPassesAndNoOthers) {
    struct Case {
        cadhost::view::Vertex a, b;
        double minX, minY, maxX, maxY;
    };
    double quarter = std::tan(std::atan(1.0) * 2 / 4);  // a quarter turn's bulge
    for (Case c : {Case{{1, 0, 1}, {-1, 0, 0}, -1, 0, 1, 1},          // the upper half, counterclockwise
                   Case{{1, 0, -1}, {-1, 0, 0}, -1, -1, 1, 0},        // the lower half, clockwise
                   Case{{1, 0, quarter}, {0, 1, 0}, 0, 0, 1, 1},      // a quarter: only its ends
                   Case{{0, 1, quarter}, {-1, 0, 0}, -1, 0, 0, 1},
                   Case{{2, 2, 0}, {3, 5, 0}, 2, 2, 3, 5}}) {         // straight
        cadhost::view::Box box;
        cadhost::view::AddArc(box, c.a, c.b);
        EXPECT_NEAR(box.minX, c.minX, 1e-9);
        EXPECT_NEAR(box.minY, c.minY, 1e-9);
        EXPECT_NEAR(box.maxX, c.maxX, 1e-9);
        EXPECT_NEAR(box.maxY, c.maxY, 1e-9);
    }
}

TEST_F(DrawingViewTest, WidePolylinesAndSolidsAreFilled) {
    auto* polyline = new AcDbPolyline;
    polyline->addVertexAt(0, AcGePoint2d(10, 50));
    polyline->addVertexAt(1, AcGePoint2d(90, 50));
    polyline->setConstantWidth(8);
    Append(Model(), polyline);
    auto* solid = new AcDbSolid(AcGePoint3d(10, 10, 0), AcGePoint3d(30, 10, 0), AcGePoint3d(10, 30, 0),
                                AcGePoint3d(30, 30, 0));
    Append(Model(), solid);
    cadhost::view::Scenes scenes(*db());
    cadhost::view::Raster picture = Picture(scenes, 100, 100);
    Rgb white = AciColor(7);
    EXPECT_EQ(At(picture, 50, 53), white);
    EXPECT_EQ(At(picture, 50, 47), white);
    EXPECT_EQ(At(picture, 50, 56), cadhost::view::kBackground);
    EXPECT_EQ(At(picture, 20, 20), white);  // inside the solid, corners 1, 2, 4, 3 around
    EXPECT_EQ(At(picture, 35, 20), cadhost::view::kBackground);
}

TEST_F(DrawingViewTest, ABlockThatHoldsItselfDrawsOnce) {
    AcDbObjectId block = AddBlock(L"LOOP");
    Append(block, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)));
    Append(block, new AcDbBlockReference(AcGePoint3d(0, 10, 0), block));
    Append(Model(), new AcDbBlockReference(AcGePoint3d(10, 10, 0), block));
    cadhost::view::Scenes scenes(*db());
    const cadhost::view::Scene& scene = scenes.Of(Model());
    EXPECT_EQ(scene.placements.size(), 1u);
    EXPECT_TRUE(scenes.Of(block).placements.empty());
    cadhost::view::Raster picture = Picture(scenes, 40, 40);
    EXPECT_EQ(At(picture, 15, 10), AciColor(7));
    EXPECT_EQ(At(picture, 15, 20), cadhost::view::kBackground);
}

TEST(ViewTransformTest, ZoomKeepsThePointUnderThePointerAndPanFollowsIt) {
    cadhost::view::ViewTransform view;
    view.width = 800;
    view.height = 600;
    cadhost::view::Box box;
    box.Add(-100, -50);
    box.Add(300, 250);
    view.ZoomTo(box);
    // The whole box shows, with a margin.
    cadhost::view::Box visible = view.Visible();
    EXPECT_LT(visible.minX, -100);
    EXPECT_GT(visible.maxX, 300);
    EXPECT_LT(visible.minY, -50);
    EXPECT_GT(visible.maxY, 250);
    struct Case {
        double sx, sy, factor;
    };
    for (Case c : {Case{100, 80, 2.0}, Case{799, 0, 0.25}, Case{400, 300, 1.25}}) {
        double before[2], after[2];
        view.ToDrawing(c.sx, c.sy, before[0], before[1]);
        view.ZoomAbout(c.sx, c.sy, c.factor);
        view.ToDrawing(c.sx, c.sy, after[0], after[1]);
        EXPECT_NEAR(before[0], after[0], 1e-9);
        EXPECT_NEAR(before[1], after[1], 1e-9);
        // ToScreen takes the point back to the pointer.
        double x, y;
        view.ToScreen().Apply(after[0], after[1], x, y);
        EXPECT_NEAR(x, c.sx, 1e-6);
        EXPECT_NEAR(y, c.sy, 1e-6);
    }
    double x0, y0, x1, y1;
    view.ToDrawing(200, 200, x0, y0);
    view.Pan(30, -20);  // the drawing moves right and up with the pointer
    view.ToDrawing(230, 180, x1, y1);
    EXPECT_NEAR(x0, x1, 1e-9);
    EXPECT_NEAR(y0, y1, 1e-9);
}

TEST(RasterTest, LinesAndFillsStayInsideTheirClipWhateverTheCoordinates) {
    cadhost::view::Raster raster(20, 20);
    raster.Clear({0, 0, 0});
    Rgb ink{255, 255, 255};
    cadhost::view::Clip clip{5, 5, 15, 15};
    // A long line seen from close by, and lines that are no lines.
    raster.Line(-1e7, 10, 1e7, 10, ink, clip);
    raster.Line(0, 0, std::nan(""), 3, ink, clip);
    raster.Line(0, 0, HUGE_VAL, 3, ink, clip);
    std::vector<AcGePoint2d> square{{2, 2}, {18, 2}, {18, 18}, {2, 18}};
    raster.Fill(square, ink, {0, 0, 4, 4});
    int inked = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            if (raster.At(x, y) == ink) {
                ++inked;
                bool inLine = y == 10 && x >= 5 && x < 15;
                bool inFill = x >= 2 && x < 4 && y >= 2 && y < 4;
                EXPECT_TRUE(inLine || inFill) << x << "," << y;
            }
    EXPECT_EQ(inked, 10 + 4);
}

TEST(AciColorTest, IndexColorsAreThePalettes) {
    struct Case {
        int index;
        Rgb rgb;
    };
    // Values as the palette publishes them.
    for (Case c : {Case{1, {255, 0, 0}}, Case{5, {0, 0, 255}}, Case{7, {255, 255, 255}}, Case{8, {128, 128, 128}},
                   Case{10, {255, 0, 0}}, Case{11, {255, 127, 127}}, Case{12, {165, 0, 0}}, Case{13, {165, 82, 82}},
                   Case{20, {255, 63, 0}}, Case{21, {255, 159, 127}}, Case{30, {255, 127, 0}},
                   Case{130, {0, 255, 255}}, Case{131, {127, 255, 255}}, Case{250, {51, 51, 51}},
                   Case{255, {255, 255, 255}}, Case{-3, {0, 255, 0}}, Case{256, {255, 255, 255}}})
        EXPECT_EQ(AciColor(c.index), c.rgb) << c.index;
}

}  // namespace
