#include "commissioning/ReportFormats.h"

#include <QAbstractTextDocumentLayout>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QTextDocument>

// The page of the HTML report laid out by Qt's rich text on A4 pages, each drawn
// with a footer. The layout paginates itself and repeats a table's header rows on
// every page it runs over.
bool ReportFormats::pdf(const CommissioningReport &report, OwnTexts::Language language,
                        QIODevice &out) {
    const OwnTexts texts;
    const QString title = ReportFormats::title(report, texts, language);
    QPdfWriter writer(&out);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    writer.setResolution(300);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Norvale Setup"));

    // Margins of 15 mm, the bottom one holding the footer.
    const qreal mm = writer.resolution() / 25.4;
    const QRectF body(15 * mm, 15 * mm, writer.width() - 30 * mm, writer.height() - 32 * mm);
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&writer); // fonts in points, at 300 dpi
    document.setDocumentMargin(0);
    document.setHtml(ReportFormats::html(report, language));
    document.setPageSize(body.size());

    QFont footerFont = document.defaultFont();
    footerFont.setPointSizeF(7.5);
    const QString footerLeft = title + QStringLiteral("  \u2014  ") +
                               QFileInfo(report.file).fileName() + QStringLiteral("  \u2014  ") +
                               report.when.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    const QRectF footer(body.left(), writer.height() - 13 * mm, body.width(), 5 * mm);

    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        painter.save();
        painter.translate(body.left(), body.top() - page * body.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, page * body.height(), body.width(), body.height());
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        painter.restore();

        painter.setPen(QPen(Qt::darkGray, 0.25 * mm));
        painter.drawLine(footer.topLeft(), footer.topRight());
        painter.setPen(Qt::black);
        painter.setFont(footerFont);
        painter.drawText(footer, Qt::AlignLeft | Qt::AlignBottom, footerLeft);
        painter.drawText(
            footer, Qt::AlignRight | Qt::AlignBottom,
            texts(language, "ReportPage", QString::number(page + 1), QString::number(pages)));
    }
    return painter.end();
}
