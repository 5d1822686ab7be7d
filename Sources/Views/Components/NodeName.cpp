#include "Views/Components/NodeName.h"

#include "Views/Components/Icons.h"

#include <QTextDocument>
#include <algorithm>

namespace brimvale {

namespace {

bool actsUnseen(QChar character) {
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

QString displayedText(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    std::replace_if(text.begin(), text.end(), actsUnseen, QChar(QChar::ReplacementCharacter));
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
