#include "platform/gui/FlexGrid.h"

#include "platform/RuntimeError.h"

#include <QHeaderView>
#include <QTableWidget>

namespace {

Qt::Alignment alignmentOf(int code) {
    static constexpr Qt::Alignment horizontal[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    static constexpr Qt::Alignment vertical[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    if (code < 0 || code > 8)
        return Qt::AlignLeft | Qt::AlignVCenter;
    return horizontal[code / 3] | vertical[code % 3];
}

bool isFixed(const QTableWidget *grid, int row, int col) {
    return row < grid->property("fixedRows").toInt() || col < grid->property("fixedCols").toInt();
}

QTableWidgetItem *cell(const QTableWidget *grid, int row, int col) {
    if (row < 0 || row >= grid->rowCount())
        throw RuntimeError(30009, QStringLiteral("Invalid Row value"));
    if (col < 0 || col >= grid->columnCount())
        throw RuntimeError(30010, QStringLiteral("Invalid Col value"));
    return grid->item(row, col);
}

void alignColumn(QTableWidget *grid, int col, int code, bool fixedCells) {
    if (col < 0 || col >= grid->columnCount())
        throw RuntimeError(30010, QStringLiteral("Invalid Col value"));
    for (int row = 0; row < grid->rowCount(); ++row) {
        if (isFixed(grid, row, col) == fixedCells)
            grid->item(row, col)->setTextAlignment(alignmentOf(code));
    }
}

} // namespace

namespace FlexGrid {

void setLayout(QTableWidget *grid, int rows, int cols, int fixedRows, int fixedCols) {
    grid->setRowCount(rows);
    grid->setColumnCount(cols);
    grid->setProperty("fixedRows", fixedRows);
    grid->setProperty("fixedCols", fixedCols);
    grid->horizontalHeader()->hide();
    grid->verticalHeader()->hide();
    // Rows as tall as a line of text, as the design's grid draws them.
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 8);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionMode(QAbstractItemView::NoSelection);
    const QBrush headerBrush = grid->palette().button();
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            auto *item = grid->item(row, col);
            if (!item) {
                item = new QTableWidgetItem;
                grid->setItem(row, col, item);
            }
            item->setFlags(Qt::ItemIsEnabled);
            item->setTextAlignment(alignmentOf(9));
            if (row < fixedRows || col < fixedCols) {
                item->setBackground(headerBrush);
                QFont font = item->font();
                font.setBold(true);
                item->setFont(font);
            }
        }
    }
}

void setColAlignment(QTableWidget *grid, int col, int code) {
    alignColumn(grid, col, code, false);
}

void setColAlignmentFixed(QTableWidget *grid, int col, int code) {
    alignColumn(grid, col, code, true);
}

void setText(QTableWidget *grid, int row, int col, const QString &text) {
    QTableWidgetItem *item = cell(grid, row, col);
    if (item->text() != text)
        item->setText(text);
}

QString text(const QTableWidget *grid, int row, int col) {
    return cell(grid, row, col)->text();
}

void setColWidthTwips(QTableWidget *grid, int col, int twips) {
    grid->setColumnWidth(col, twips * 96 / 1440);
}

void setRedraw(QTableWidget *grid, bool on) {
    grid->setUpdatesEnabled(on);
}

void refresh(QTableWidget *grid) {
    grid->viewport()->update();
}

} // namespace FlexGrid
