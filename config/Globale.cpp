#include "config/Globale.h"

#include "platform/LanguageTable.h"
#include "platform/Numeric.h"

QString Texts::operator()(int frenchId) const {
    return table_.text(add16(g_.LanguageBase, qint16(frenchId)));
}
