#include "Views/Browse/Treemap/LabelFont.h"

#include <algorithm>
#include <cstddef>

namespace brimvale {

namespace {

constexpr QChar ellipsis(u'…');

} // namespace

LabelFont::LabelFont(const QFont &font)
    : font_(font), metrics_(font), ellipsis_(metrics_.horizontalAdvance(ellipsis)) {
    for (char16_t character = firstPlain; character <= lastPlain; ++character)
        widths_.at(character - firstPlain) = metrics_.horizontalAdvance(QChar(character));
}

bool LabelFont::isPlain(const QString &text) {
    return std::all_of(text.begin(), text.end(), [](QChar one) {
        return (one.unicode() >= firstPlain && one.unicode() <= lastPlain) || one == ellipsis;
    });
}

qreal LabelFont::widthOf(QChar character) const {
    if (character == ellipsis)
        return ellipsis_;
    return widths_[static_cast<std::size_t>(character.unicode() - firstPlain)];
}

qreal LabelFont::widthOf(const QString &text) const {
    if (!isPlain(text))
        return metrics_.horizontalAdvance(text);
    qreal width = 0;
    for (const QChar character : text)
        width += widthOf(character);
    return width;
}

QString LabelFont::elided(const QString &text, qreal room) const {
    if (!isPlain(text))
        return metrics_.elidedText(text, Qt::ElideMiddle, room);
    if (widthOf(text) <= room)
        return text;
    // One character from the start and one from the end, by turns.
    qsizetype head = 0, tail = text.size();
    for (qreal width = ellipsis_; head < tail;) {
        const bool isHead = head <= text.size() - tail;
        width += widthOf(text[isHead ? head : tail - 1]);
        if (width > room)
            break;
        if (isHead)
            ++head;
        else
            --tail;
    }
    return text.left(head) + ellipsis + text.mid(tail);
}

} // namespace brimvale
