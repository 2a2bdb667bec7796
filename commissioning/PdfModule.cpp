#include "commissioning/PdfModule.h"

#include <QDir>

PdfModule::PdfModule(const QString &folder)
    : path_(QDir(folder).filePath(QStringLiteral("norvale-pdf"))) {}

bool PdfModule::load(QString &error) {
    if (loaded())
        return true;
    library_ = std::make_unique<QLibrary>(path_);
    make_ = reinterpret_cast<MakeApplication>(library_->resolve("norvalePdfApplication"));
    paint_ = reinterpret_cast<Paint>(library_->resolve("norvalePdfPaint"));
    if (!make_ || !paint_) {
        error = library_->errorString();
        make_ = nullptr;
        paint_ = nullptr;
        return false;
    }
    return true;
}

QCoreApplication *PdfModule::makeApplication(int &argc, char **argv) const {
    return make_ ? make_(&argc, argv) : nullptr;
}

bool PdfModule::paint(const PdfPage &page, QIODevice &out) const {
    return paint_ && paint_(&page, &out);
}
