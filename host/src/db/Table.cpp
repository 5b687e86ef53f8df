#include <dbtable.h>

#include <cmath>
#include <cwchar>

#include "core/Utf8.h"
#include "db/MTextFormat.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbTable, AcDbBlockReference, L"ACAD_TABLE")

AcDbTable::AcDbTable() = default;
AcDbTable::~AcDbTable() = default;

Acad::ErrorStatus AcDbTable::setSize(int rows, int columns) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (rows < 1 || columns < 1) return Acad::eInvalidInput;
    std::vector<Cell> cells(static_cast<size_t>(rows) * static_cast<size_t>(columns));
    int oldColumns = static_cast<int>(numColumns());
    for (int r = 0; r < rows && r < static_cast<int>(numRows()); ++r)
        for (int c = 0; c < columns && c < oldColumns; ++c)
            cells[static_cast<size_t>(r) * columns + c] = m_cells[static_cast<size_t>(r) * oldColumns + c];
    m_cells.swap(cells);
    m_rowHeights.resize(static_cast<size_t>(rows), m_rowHeights.empty() ? 1.0 : m_rowHeights.back());
    m_columnWidths.resize(static_cast<size_t>(columns), m_columnWidths.empty() ? 1.0 : m_columnWidths.back());
    return Acad::eOk;
}

double AcDbTable::rowHeight(int row) const {
    return row >= 0 && row < static_cast<int>(m_rowHeights.size()) ? m_rowHeights[static_cast<size_t>(row)] : 0.0;
}

double AcDbTable::columnWidth(int column) const {
    return column >= 0 && column < static_cast<int>(m_columnWidths.size())
               ? m_columnWidths[static_cast<size_t>(column)]
               : 0.0;
}

Acad::ErrorStatus AcDbTable::setRowHeight(int row, double height) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (row < 0 || row >= static_cast<int>(m_rowHeights.size())) return Acad::eInvalidIndex;
    if (!(height > 0)) return Acad::eInvalidInput;
    m_rowHeights[static_cast<size_t>(row)] = height;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTable::setColumnWidth(int column, double width) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (column < 0 || column >= static_cast<int>(m_columnWidths.size())) return Acad::eInvalidIndex;
    if (!(width > 0)) return Acad::eInvalidInput;
    m_columnWidths[static_cast<size_t>(column)] = width;
    return Acad::eOk;
}

double AcDbTable::height() const {
    double total = 0;
    for (double h : m_rowHeights) total += h;
    return total;
}

double AcDbTable::width() const {
    double total = 0;
    for (double w : m_columnWidths) total += w;
    return total;
}

Acad::ErrorStatus AcDbTable::setDirection(const AcGeVector3d& direction) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (direction.isZeroLength()) return Acad::eInvalidInput;
    m_direction = direction;
    return Acad::eOk;
}

const AcDbTable::Cell* AcDbTable::cellAt(int row, int column) const {
    if (row < 0 || column < 0 || row >= static_cast<int>(numRows()) || column >= static_cast<int>(numColumns()))
        return nullptr;
    size_t index = static_cast<size_t>(row) * numColumns() + static_cast<size_t>(column);
    return index < m_cells.size() ? &m_cells[index] : nullptr;
}

ACHAR* AcDbTable::textString(int row, int column) const {
    const Cell* cell = cellAt(row, column);
    if (!cell) return nullptr;
    std::wstring text = cadhost::FromUtf8(cell->text);
    auto* copy = new ACHAR[text.size() + 1];
    std::wmemcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

Acad::ErrorStatus AcDbTable::textString(int row, int column, int option, AcString& text) const {
    const Cell* cell = cellAt(row, column);
    if (!cell) return Acad::eInvalidIndex;
    std::wstring value = cadhost::FromUtf8(cell->text);
    text = (option & kIgnoreMtextFormat) ? cadhost::StripMTextCodes(value) : value;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbTable::setTextString(int row, int column, const ACHAR* text) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!text) return Acad::eInvalidInput;
    if (!cellAt(row, column)) return Acad::eInvalidIndex;
    Cell& cell = m_cells[static_cast<size_t>(row) * numColumns() + static_cast<size_t>(column)];
    cell.text = cadhost::ToUtf8(text);
    cell.hasText = true;
    return Acad::eOk;
}

AcGeMatrix3d AcDbTable::toTable() const {
    AcGeVector3d zAxis = normal().normal();
    // The direction laid into the table's plane.
    AcGeVector3d xAxis = m_direction - zAxis * m_direction.dotProduct(zAxis);
    if (xAxis.isZeroLength()) xAxis = zAxis.perpVector();
    xAxis.normalize();
    AcGeVector3d yAxis = zAxis.crossProduct(xAxis).normal();
    return AcGeMatrix3d().setCoordSystem(position(), xAxis, yAxis, zAxis).inverse();
}

bool AcDbTable::hitTest(const AcGePoint3d& point, const AcGeVector3d& viewVector, double xAperture,
                        double yAperture, int& row, int& column) const {
    if (numRows() == 0 || numColumns() == 0) return false;
    // Carry the point along the view onto the table's plane; a view that
    // runs along the plane projects straight onto it.
    AcGeVector3d zAxis = normal().normal();
    AcGeVector3d along = viewVector.isZeroLength() ? zAxis : viewVector;
    double facing = along.dotProduct(zAxis);
    if (std::fabs(facing) < 1e-12) {
        along = zAxis;
        facing = 1;
    }
    double t = (position() - point).dotProduct(zAxis) / facing;
    AcGePoint3d onPlane = point + along * t;
    AcGePoint3d local = toTable() * onPlane;
    double x = local.x, down = -local.y;  // rows run downward from the insertion point
    xAperture = std::fabs(xAperture);
    yAperture = std::fabs(yAperture);
    if (x < -xAperture || x > width() + xAperture || down < -yAperture || down > height() + yAperture) return false;
    int c = 0;
    double edge = 0;
    for (; c < static_cast<int>(numColumns()) - 1; ++c) {
        edge += m_columnWidths[static_cast<size_t>(c)];
        if (x < edge) break;
    }
    int r = 0;
    edge = 0;
    for (; r < static_cast<int>(numRows()) - 1; ++r) {
        edge += m_rowHeights[static_cast<size_t>(r)];
        if (down < edge) break;
    }
    row = r;
    column = c;
    return true;
}

void AcDbTable::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    if (numRows() == 0 || numColumns() == 0) return;
    AcGeMatrix3d toWorld = transform * toTable().inverse();
    for (int corner = 0; corner < 4; ++corner) {
        double x = (corner & 1) ? width() : 0, y = (corner & 2) ? -height() : 0;
        extents.addPoint(toWorld * AcGePoint3d(x, y, 0));
    }
}
