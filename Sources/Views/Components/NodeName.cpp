#include "Views/Components/NodeName.h"

#include "Base/Text.h"
#include "Views/Components/Icons.h"

#include <QTextDocument>
#include <algorithm>

namespace brimvale {

QString displayedText(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    std::replace_if(
        text.begin(), text.end(), [](QChar character) { return actsUnseen(character.unicode()); },
        QChar(QChar::ReplacementCharacter));
    return text;
}

QString nodeIconName(const FSNode &node) {
    if (node.isNotDescended)
        return node.isCloudProvider ? QStringLiteral("cloud-off") : QStringLiteral("ban");
    if (node.unreadable)
        return QStringLiteral("lock");
    if (node.isAggregate)
        return QStringLiteral("files");
    return Icons::nameFor(node.isDirectory);
}

QString asLabel(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString asToolTip(const QString &text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpacePre) : text;
}

} // namespace brimvale
