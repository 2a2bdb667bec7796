// The module that paints PDF reports, loaded by PdfModule when one is asked for.
#include "commissioning/PdfModule.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTextDocument>

// A command line without a display paints offscreen, unless told otherwise.
extern "C" Q_DECL_EXPORT QCoreApplication *norvalePdfApplication(int *argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return new QGuiApplication(*argc, argv);
}

// The page laid out by Qt's rich text on A4 pages, each drawn with a footer. The
// layout paginates itself and repeats a table's header rows on every page it runs over.
extern "C" Q_DECL_EXPORT bool norvalePdfPaint(const PdfPage *page, QIODevice *out) {
    // Fonts and painting need the graphics half of Qt; without it drawing would abort.
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return false;
    QPdfWriter writer(out);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    writer.setResolution(300);
    writer.setTitle(page->title);
    writer.setCreator(QStringLiteral("Norvale Setup"));

    // Margins of 15 mm, the bottom one holding the footer.
    const qreal mm = writer.resolution() / 25.4;
    const QRectF body(15 * mm, 15 * mm, writer.width() - 30 * mm, writer.height() - 32 * mm);
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&writer); // fonts in points, at 300 dpi
    document.setDocumentMargin(0);
    document.setHtml(page->html);
    document.setPageSize(body.size());

    QFont footerFont = document.defaultFont();
    footerFont.setPointSizeF(7.5);
    const QRectF footer(body.left(), writer.height() - 13 * mm, body.width(), 5 * mm);

    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    const int pages = document.pageCount();
    for (int number = 0; number < pages; ++number) {
        if (number > 0)
            writer.newPage();
        painter.save();
        painter.translate(body.left(), body.top() - number * body.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, number * body.height(), body.width(), body.height());
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        painter.restore();

        painter.setPen(QPen(Qt::darkGray, 0.25 * mm));
        painter.drawLine(footer.topLeft(), footer.topRight());
        painter.setPen(Qt::black);
        painter.setFont(footerFont);
        painter.drawText(footer, Qt::AlignLeft | Qt::AlignBottom, page->footer);
        painter.drawText(footer, Qt::AlignRight | Qt::AlignBottom,
                         page->pageNumber.arg(number + 1).arg(pages));
    }
    return painter.end();
}
