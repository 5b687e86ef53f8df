// Files' groups of tables (ACAD_TABLE). The table is a block reference to
// the anonymous block that draws it; after its own groups come the cells,
// each starting with group 171, whose text is group 1 (after chunks in
// group 2).
#include <dbtable.h>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {

Use ReadBlockReferencePart(AcDbBlockReference& reference, const Group& g, ObjectReader& in);
void FinishBlockReferencePart(AcDbBlockReference& reference, ObjectReader& in);
void WriteBlockReferencePart(const AcDbBlockReference& reference, ObjectWriter& out);

namespace {

// state: 1 in the AcDbTable part, 2 among the cells, 4 inside a cell's
// value block (300 CELL_VALUE ... 304 ACVALUE_END), 8 the cell's text
// begun. scratch[3..5] the direction.
constexpr int kTablePart = 1, kCells = 2, kInValue = 4, kTextBegun = 8, kSlotCounted = 16, kTextTaken = 32,
              kTextEnded = 64, kPointSeen = 128;

// The writer gives the table's part in this order: its direction, rows,
// columns, then heights, widths and cells. A place a file leaves out is
// counted where a later group shows that it was passed; a group a file gives
// late stands in the place counted for it. Answers whether the place was
// counted before.
enum { kDirectionPlace = 1, kRowsPlace = 2, kColumnsPlace = 3 };
bool PlaceCounted(ObjectReader& in, int place) {
    int reached = static_cast<int>(in.scratch[6]);
    if (reached >= place) return true;
    if (place - 1 > reached) in.Skip(place - 1 - reached);
    in.scratch[6] = place;
    return false;
}

// The block reference's part ends where the table's begins, and is finished
// there, before the table's groups take the reader's scratch values.
void BeginTablePart(AcDbTable& table, ObjectReader& in) {
    in.state |= kTablePart;
    if (!(in.state & kPointSeen)) in.Skip(1);  // the writer gives the insertion point
    FinishBlockReferencePart(table, in);
}

// The block reference's groups; a table has no attributes, and the state
// is the table's, so a 66 is kept as it stands.
Use ReadReferencePart(AcDbTable& table, const Group& g, ObjectReader& in) {
    if (g.code == 66) return Use::kKept;
    if (g.code == 10) in.state |= kPointSeen;
    return ReadBlockReferencePart(table, g, in);
}

Use ReadTable(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& table = static_cast<AcDbTable&>(object);
    if (g.code == 100) {
        if (g.value == "AcDbTable" && !(in.state & kTablePart)) {
            BeginTablePart(table, in);
            return Use::kKnown;
        }
        if (!(in.state & kTablePart)) return ReadReferencePart(table, g, in);
        return Use::kKept;
    }
    // A file without markers shows the table's part by the codes of it that
    // the host reads, which a block reference does not have; codes it keeps
    // stay where they stood, on either side of the marker.
    bool tableCode = g.code == 11 || g.code == 21 || g.code == 31 || g.code == 91 || g.code == 92 ||
                     g.code == 141 || g.code == 142 || g.code == 171;
    if (!(in.state & kTablePart) && tableCode) {
        BeginTablePart(table, in);
        in.PassMarker("AcDbTable");
    }
    if (!(in.state & kTablePart)) return ReadReferencePart(table, g, in);
    if (!(in.state & kCells)) {
        switch (g.code) {
        case 11:
        case 21:
        case 31: {
            int axis = (g.code - 11) / 10;
            bool late = PlaceCounted(in, kDirectionPlace);
            in.scratch[3 + axis] = in.Real(g);
            in.scratch[7] = 1;
            if (!late) return Use::kKnown;
            return axis == 0 ? Use::kCounted : Use::kContinued;
        }
        case 91:
        case 92: {
            bool late = PlaceCounted(in, g.code == 91 ? kRowsPlace : kColumnsPlace);
            long long count = in.Integer(g);
            if (count < 0 || count > 100000) in.Fail(g, "a table cannot have " + std::to_string(count) + " rows or columns");
            (g.code == 91 ? in.scratch[0] : in.scratch[1]) = static_cast<double>(count);
            return late ? Use::kCounted : Use::kKnown;
        }
        case 141:
            PlaceCounted(in, kColumnsPlace);
            table.rowHeights().push_back(in.Real(g));
            return Use::kKnown;
        case 142:
            PlaceCounted(in, kColumnsPlace);
            table.columnWidths().push_back(in.Real(g));
            return Use::kKnown;
        case 171: PlaceCounted(in, kColumnsPlace); break;  // the first cell
        default: return Use::kKept;
        }
    }
    // Among the cells. Every cell has a place for its text, counted where a
    // cell has none, so that a text given later lands in its own cell.
    if (g.code == 171) {
        if ((in.state & kCells) && !(in.state & kTextBegun)) in.Skip(1);
        in.state = (in.state | kCells) & ~(kInValue | kTextBegun | kSlotCounted | kTextTaken | kTextEnded);
        AcDbTable::Cell cell;
        cell.type = static_cast<Adesk::Int16>(in.Integer(g));
        table.cells().push_back(cell);
        in.text[0].clear();
        return Use::kKnown;
    }
    if (g.code == 300 && g.value == "CELL_VALUE") in.state |= kInValue;
    if (g.code == 304 && g.value == "ACVALUE_END") {
        in.state &= ~kInValue;
        return Use::kKept;
    }
    // A cell's text stands before its style; a cell without one has its
    // place counted there.
    if ((g.code == 7 || g.code == 140 || g.code == 170) && !(in.state & kTextBegun)) {
        in.Skip(1);
        in.state |= kTextBegun | kSlotCounted;
    }
    if (in.state & kInValue) {
        // The cell's value as it was last shown: its text when the cell has
        // no text group of its own.
        if (g.code == 302 && !table.cells().back().hasText) table.cells().back().text = in.Text(g);
        return Use::kKept;
    }
    if (g.code == 2 || g.code == 1) {
        if (in.state & kTextEnded) return Use::kKept;  // a second text of the cell
        AcDbTable::Cell& cell = table.cells().back();
        bool first = !(in.state & kTextTaken);
        in.state |= kTextBegun | kTextTaken;
        in.text[0].append(g.value);
        if (g.code == 1) {
            cell.text = in.Decode(in.text[0]);
            cell.hasText = true;
            in.state |= kTextEnded;
        }
        if (!first) return Use::kContinued;
        return (in.state & kSlotCounted) ? Use::kCounted : Use::kKnown;  // after the style: its place was counted
    }
    return Use::kKept;
}

void FinishTable(AcDbObject& object, ObjectReader& in) {
    auto& table = static_cast<AcDbTable&>(object);
    if (!(in.state & kTablePart)) FinishBlockReferencePart(table, in);
    if (in.scratch[7] != 0) {
        AcGeVector3d direction(in.scratch[3], in.scratch[4], in.scratch[5]);
        if (!direction.isZeroLength()) table.setDirection(direction);
    }
    // A height for every row, a width for every column, no more cells than
    // they make.
    auto rows = static_cast<size_t>(in.scratch[0]), columns = static_cast<size_t>(in.scratch[1]);
    Group none;
    if (rows != table.rowHeights().size())
        in.Fail(none, "a table of " + std::to_string(rows) + " rows lists " +
                          std::to_string(table.rowHeights().size()) + " row heights");
    if (columns != table.columnWidths().size())
        in.Fail(none, "a table of " + std::to_string(columns) + " columns lists " +
                          std::to_string(table.columnWidths().size()) + " column widths");
    if (table.cells().size() > rows * columns) {
        in.Fail(none, "a table of " + std::to_string(rows) + " rows and " + std::to_string(columns) +
                          " columns lists " + std::to_string(table.cells().size()) + " cells");
    }
}

void WriteTable(const AcDbObject& object, ObjectWriter& out) {
    auto& table = static_cast<const AcDbTable&>(object);
    WriteBlockReferencePart(table, out);
    out.Marker("AcDbTable");
    out.Vector(11, table.direction());
    out.Integer(91, table.numRows());
    out.Integer(92, table.numColumns());
    for (Adesk::UInt32 r = 0; r < table.numRows(); ++r) out.Real(141, table.rowHeight(static_cast<int>(r)));
    for (Adesk::UInt32 c = 0; c < table.numColumns(); ++c) out.Real(142, table.columnWidth(static_cast<int>(c)));
    for (const AcDbTable::Cell& cell : table.cells()) {
        out.Integer(171, cell.type);
        if (cell.hasText) out.LongText(2, 1, cell.text);
        else out.Skip(1);
    }
}

constexpr ClassIo kTableClasses[] = {
    {.dxfName = "ACAD_TABLE",
     .rxClass = AcDbTable::desc,
     .create = [] { return static_cast<AcDbObject*>(new AcDbTable); },
     .read = ReadTable,
     .finish = FinishTable,
     .write = WriteTable,
     .cppName = "AcDbTable",
     .appName = "ObjectDBX Classes",
     .proxyFlags = 1025,
     .isEntity = true,
     .markers = "AcDbBlockReference|AcDbTable"},
};

}  // namespace

std::span<const ClassIo> TableClasses() { return kTableClasses; }

}  // namespace cadhost::dxf
