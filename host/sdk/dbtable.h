// A table: rows and columns of cells below its insertion point, along its
// horizontal direction.
#pragma once

#include <string>
#include <vector>

#include "AcString.h"
#include "dbents.h"

class CADHOST_API AcDbTable : public AcDbBlockReference {
public:
    ACRX_DECLARE_MEMBERS(AcDbTable)
    AcDbTable();
    ~AcDbTable() override;

    // How a cell's text is given: 8 leaves out the formatting codes of
    // multiline text.
    enum { kFormatted = 0, kIgnoreMtextFormat = 8 };

    Adesk::UInt32 numRows() const { return static_cast<Adesk::UInt32>(m_rowHeights.size()); }
    Adesk::UInt32 numColumns() const { return static_cast<Adesk::UInt32>(m_columnWidths.size()); }
    // Empty cells of the given heights and widths.
    Acad::ErrorStatus setSize(int rows, int columns);
    double rowHeight(int row) const;
    double columnWidth(int column) const;
    Acad::ErrorStatus setRowHeight(int row, double height);
    Acad::ErrorStatus setColumnWidth(int column, double width);
    double height() const;
    double width() const;
    AcGeVector3d direction() const { return m_direction; }
    Acad::ErrorStatus setDirection(const AcGeVector3d& direction);

    // The cell's text as a new copy freed with acutDelBuffer; null outside
    // the table.
    ACHAR* textString(int row, int column) const;
    // The cell's text in text; option 8 takes out the formatting codes.
    Acad::ErrorStatus textString(int row, int column, int option, AcString& text) const;
    Acad::ErrorStatus setTextString(int row, int column, const ACHAR* text);

    // Finds the cell under a point seen along a view direction, within the
    // apertures; rows and columns count from 0.
    bool hitTest(const AcGePoint3d& point, const AcGeVector3d& viewVector, double xAperture, double yAperture,
                 int& row, int& column) const;

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

    // The host's own: the cells in row order, as drawing files list them.
    struct Cell {
        std::string text;      // UTF-8 with formatting codes
        bool hasText = false;  // the file gave the cell a text group
        Adesk::Int16 type = 1;
    };
    std::vector<Cell>& cells() { return m_cells; }
    const std::vector<Cell>& cells() const { return m_cells; }
    std::vector<double>& rowHeights() { return m_rowHeights; }
    std::vector<double>& columnWidths() { return m_columnWidths; }

private:
    const Cell* cellAt(int row, int column) const;
    // From the world to the table's plane: x along the direction, y up.
    AcGeMatrix3d toTable() const;

    AcGeVector3d m_direction = AcGeVector3d::kXAxis;
    std::vector<double> m_rowHeights;
    std::vector<double> m_columnWidths;
    std::vector<Cell> m_cells;
};
