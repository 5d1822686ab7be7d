#include "Views/Components/NodeName.h"

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

QString displayedName(const FSNode &node) {
    QString name = QString::fromUtf8(node.name);
    std::replace_if(name.begin(), name.end(), actsUnseen, QChar(QChar::ReplacementCharacter));
    return name;
}

} // namespace brimvale
