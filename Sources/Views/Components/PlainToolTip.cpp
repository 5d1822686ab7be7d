#include "Views/Components/PlainToolTip.h"

#include <QTextDocument>

namespace brimvale {

QString plainToolTip(const QString &text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpacePre) : text;
}

} // namespace brimvale
