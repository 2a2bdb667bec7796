#pragma once

#include <QLibrary>
#include <QString>
#include <memory>

class QCoreApplication;
class QIODevice;

// What a PDF report shows: the report's page as HTML, laid out on A4 pages, each with
// a footer.
struct PdfPage {
    QString html;
    QString title;
    QString footer;     // on the left of every page's footer
    QString pageNumber; // "Page %1 of %2"
};

// Qt's painting, for PDF reports, lives in a module of its own (norvale-pdf.so beside
// the programs), loaded only when a PDF is asked for: a command line that writes none
// starts without the graphics libraries, which take longer to load than it runs.
class PdfModule {
public:
    explicit PdfModule(const QString &folder);

    bool load(QString &error);
    bool loaded() const { return paint_ != nullptr; }
    // The application object painting needs; made before any other.
    QCoreApplication *makeApplication(int &argc, char **argv) const;
    // False when the module is not loaded or the device cannot be painted on.
    bool paint(const PdfPage &page, QIODevice &out) const;

private:
    using MakeApplication = QCoreApplication *(*)(int *, char **);
    using Paint = bool (*)(const PdfPage *, QIODevice *);

    QString path_;
    // Made when loaded: a library made before the application object trips Qt up.
    std::unique_ptr<QLibrary> library_;
    MakeApplication make_ = nullptr;
    Paint paint_ = nullptr;
};
