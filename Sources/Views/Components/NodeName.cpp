#include "Views/Components/NodeName.h"

#include "Base/VisibleText.h"
#include "Views/Components/Icons.h"

#include <QTextDocument>

namespace brimvale {

QString displayedText(std::string_view bytes) {
    return QString::fromStdString(visibleText(bytes));
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
