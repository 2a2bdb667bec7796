#pragma once

#include <QString>

class QTableWidget;

// The design's grid rebuilt on QTableWidget: cell (row, col) of the design, fixed
// rows and columns included, is item(row, col); fixed cells are drawn as headers
// and nothing is editable. Alignment codes are the grid's usual scale: 0 left-top,
// 1 left-centre, 2 left-bottom, 3 centre-top, 4 centre-centre, 5 centre-bottom,
// 6 right-top, 7 right-centre, 8 right-bottom, 9 general (left-centre).
namespace FlexGrid {

// Gives the grid its rows and columns, an item in every cell, fixed cells styled
// as headers, Qt's own headers hidden.
void setLayout(QTableWidget *grid, int rows, int cols, int fixedRows, int fixedCols);

// Alignment of the non-fixed cells of a column.
void setColAlignment(QTableWidget *grid, int col, int code);
// Alignment of the fixed cells of a column.
void setColAlignmentFixed(QTableWidget *grid, int col, int code);

// Cell text; a row or column outside the grid raises RuntimeError, as the grid's
// "invalid row" does.
void setText(QTableWidget *grid, int row, int col, const QString &text);
QString text(const QTableWidget *grid, int row, int col);

// Width of a column given in twips (1/1440 inch), converted at 96 dpi.
void setColWidthTwips(QTableWidget *grid, int col, int twips);

// "Redraw" off and on: painting is suspended, not the content.
void setRedraw(QTableWidget *grid, bool on);
void refresh(QTableWidget *grid);

} // namespace FlexGrid
