// Files' groups of tables (ACAD_TABLE). The table is a block reference to
// the anonymous block that draws it; after its own groups come the cells,
// each starting with group 171, whose text is group 1 (after chunks in
// group 2).
#include <dbtable.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {

Use ReadBlockReferencePart(AcDbBlockReference& reference, BlockReferenceRead& read, const Group& g, ObjectReader& in);
void FinishBlockReferencePart(AcDbBlockReference& reference, BlockReferenceRead& read, ObjectReader& in);
void WriteBlockReferencePart(const AcDbBlockReference& reference, ObjectWriter& out);

namespace {

struct TableRead {
    BlockReferenceRead reference;  // the block reference part, before the table's own
    bool pointSeen = false;        // the reference's insertion point
    bool inTablePart = false;      // after the AcDbTable marker (or the first group of that part)
    int placeReached = 0;          // of the places below
    bool hadDirection = false;
    AcGeVector3d direction{0, 0, 0};
    long long rows = 0, columns = 0;
    bool amongCells = false;
    // The cell being read.
    struct Cell {
        bool inValue = false;     // inside its value block (300 CELL_VALUE ... 304 ACVALUE_END)
        bool textBegun = false;   // its text's place is passed
        bool slotCounted = false; // that place was counted before its text came
        bool textTaken = false;   // a part of its text was read
        bool textEnded = false;   // its text's last part (group 1) was read
        std::string text;         // its text's parts as the file wrote them, joined
    } cell;
};

// The writer gives the table's part in this order: its direction, rows,
// columns, then heights, widths and cells. A place a file leaves out is
// counted where a later group shows that it was passed; a group a file gives
// late stands in the place counted for it. Answers whether the place was
// counted before.
enum { kDirectionPlace = 1, kRowsPlace = 2, kColumnsPlace = 3 };
bool PlaceCounted(TableRead& read, ObjectReader& in, int place) {
    int reached = read.placeReached;
    if (reached >= place) return true;
    if (place - 1 > reached) in.Skip(place - 1 - reached);
    read.placeReached = place;
    return false;
}

// The block reference's part ends where the table's begins, and is finished
// there.
void BeginTablePart(AcDbTable& table, TableRead& read, ObjectReader& in) {
    read.inTablePart = true;
    if (!read.pointSeen) in.Skip(1);  // the writer gives the insertion point
    FinishBlockReferencePart(table, read.reference, in);
}

// The block reference's groups; a table has no attributes, so a 66 is kept
// as it stands.
Use ReadReferencePart(AcDbTable& table, TableRead& read, const Group& g, ObjectReader& in) {
    if (g.code == 66) return Use::kKept;
    if (g.code == 10) read.pointSeen = true;
    return ReadBlockReferencePart(table, read.reference, g, in);
}

Use ReadCells(AcDbTable& table, TableRead& read, const Group& g, ObjectReader& in);

Use ReadTable(AcDbTable& table, TableRead& read, const Group& g, ObjectReader& in) {
    if (g.code == 100) {
        if (g.value == "AcDbTable" && !read.inTablePart) {
            BeginTablePart(table, read, in);
            return Use::kKnown;
        }
        if (!read.inTablePart) return ReadReferencePart(table, read, g, in);
        return Use::kKept;
    }
    // A file without markers shows the table's part by the codes of it that
    // the host reads, which a block reference does not have; codes it keeps
    // stay where they stood, on either side of the marker.
    bool tableCode = g.code == 11 || g.code == 21 || g.code == 31 || g.code == 91 || g.code == 92 ||
                     g.code == 141 || g.code == 142 || g.code == 171;
    if (!read.inTablePart && tableCode) {
        BeginTablePart(table, read, in);
        in.PassMarker("AcDbTable");
    }
    if (!read.inTablePart) return ReadReferencePart(table, read, g, in);
    if (!read.amongCells) {
        switch (g.code) {
        case 11:
        case 21:
        case 31: {
            int axis = (g.code - 11) / 10;
            bool late = PlaceCounted(read, in, kDirectionPlace);
            read.direction[static_cast<unsigned>(axis)] = in.Real(g);
            read.hadDirection = true;
            if (!late) return Use::kKnown;
            return axis == 0 ? Use::kCounted : Use::kContinued;
        }
        case 91:
        case 92: {
            bool late = PlaceCounted(read, in, g.code == 91 ? kRowsPlace : kColumnsPlace);
            long long count = in.Integer(g);
            if (count < 0 || count > 100000) in.Fail(g, "a table cannot have " + std::to_string(count) + " rows or columns");
            (g.code == 91 ? read.rows : read.columns) = count;
            return late ? Use::kCounted : Use::kKnown;
        }
        case 141:
            PlaceCounted(read, in, kColumnsPlace);
            table.rowHeights().push_back(in.Real(g));
            return Use::kKnown;
        case 142:
            PlaceCounted(read, in, kColumnsPlace);
            table.columnWidths().push_back(in.Real(g));
            return Use::kKnown;
        case 171: PlaceCounted(read, in, kColumnsPlace); break;  // the first cell
        default: return Use::kKept;
        }
    }
    return ReadCells(table, read, g, in);
}

Use ReadCells(AcDbTable& table, TableRead& read, const Group& g, ObjectReader& in) {
    TableRead::Cell& state = read.cell;
    // Among the cells. Every cell has a place for its text, counted where a
    // cell has none, so that a text given later lands in its own cell.
    if (g.code == 171) {
        if (read.amongCells && !state.textBegun) in.Skip(1);
        read.amongCells = true;
        std::string text = std::move(state.text);  // its room, for the next cell's text
        text.clear();
        state = TableRead::Cell();
        state.text = std::move(text);
        AcDbTable::Cell cell;
        cell.type = static_cast<Adesk::Int16>(in.Integer(g));
        table.cells().push_back(cell);
        return Use::kKnown;
    }
    if (g.code == 300 && g.value == "CELL_VALUE") state.inValue = true;
    if (g.code == 304 && g.value == "ACVALUE_END") {
        state.inValue = false;
        return Use::kKept;
    }
    // A cell's text stands before its style; a cell without one has its
    // place counted there.
    if ((g.code == 7 || g.code == 140 || g.code == 170) && !state.textBegun) {
        in.Skip(1);
        state.textBegun = state.slotCounted = true;
    }
    if (state.inValue) {
        // The cell's value as it was last shown: its text when the cell has
        // no text group of its own.
        if (g.code == 302 && !table.cells().back().hasText) table.cells().back().text = in.Text(g);
        return Use::kKept;
    }
    if (g.code == 2 || g.code == 1) {
        if (state.textEnded) return Use::kKept;  // a second text of the cell
        AcDbTable::Cell& cell = table.cells().back();
        bool first = !state.textTaken;
        state.textBegun = state.textTaken = true;
        state.text.append(g.value);
        if (g.code == 1) {
            cell.text = in.Decode(state.text);
            cell.hasText = true;
            state.textEnded = true;
        }
        if (!first) return Use::kContinued;
        return state.slotCounted ? Use::kCounted : Use::kKnown;  // after the style: its place was counted
    }
    return Use::kKept;
}

void FinishTable(AcDbTable& table, TableRead& read, ObjectReader& in) {
    if (!read.inTablePart) FinishBlockReferencePart(table, read.reference, in);
    if (read.hadDirection && !read.direction.isZeroLength()) table.setDirection(read.direction);
    // A height for every row, a width for every column, no more cells than
    // they make.
    auto rows = static_cast<size_t>(read.rows), columns = static_cast<size_t>(read.columns);
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
     .read = Reads<ReadTable>,
     .finish = Finishes<FinishTable>,
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
