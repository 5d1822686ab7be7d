#include "Views/Components/AlignedSize.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr qsizetype mostFractionDigits = 2; // three digits after a separator are a group

/// A size in parts: "12" ".35" "GB".
struct SizeParts {
    QString whole;
    QString fraction; ///< with its point
    QString unit;
};

SizeParts partsOf(const QString &size) {
    const qsizetype space = size.lastIndexOf(u' ');
    const QString number = size.left(space);
    qsizetype digits = 0;
    while (digits < number.size() && number[number.size() - 1 - digits].isDigit())
        ++digits;
    const bool hasFraction = digits > 0 && digits <= mostFractionDigits && digits < number.size() - 1;
    const qsizetype point = number.size() - (hasFraction ? digits + 1 : 0);
    return {number.left(point), number.mid(point), size.mid(space + 1)};
}

struct Widths {
    int fraction;
    int unit;
    int gap;
};

Widths widthsIn(const QFontMetrics &metrics) {
    int unit = 0;
    for (const QString &one : {u"KB"_s, u"MB"_s, u"GB"_s, u"TB"_s})
        unit = std::max(unit, metrics.horizontalAdvance(one));
    int digit = 0; // the digits of some fonts differ in width
    for (char16_t one = u'0'; one <= u'9'; ++one)
        digit = std::max(digit, metrics.horizontalAdvance(one));
    const int fraction = metrics.horizontalAdvance(u'.') + static_cast<int>(mostFractionDigits) * digit;
    return {fraction, unit, metrics.horizontalAdvance(u' ')};
}

} // namespace

void drawAlignedSize(QPainter &painter, const QRect &place, const QString &size) {
    constexpr int oneLine = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;
    const SizeParts parts = partsOf(size);
    const Widths widths = widthsIn(painter.fontMetrics());
    const bool isNumber = !parts.whole.isEmpty() && parts.whole.back().isDigit();
    if (!isNumber ||
        painter.fontMetrics().horizontalAdvance(parts.unit) > widths.unit) { // "Zero KB", "0 bytes"
        painter.drawText(place, Qt::AlignRight | oneLine, size);
        return;
    }
    const int unit = place.right() + 1 - widths.unit;
    const int point = unit - widths.gap - widths.fraction;
    const auto at = [&place](int left, int right) {
        return QRect(left, place.top(), right - left, place.height());
    };
    painter.drawText(at(place.left(), point), Qt::AlignRight | oneLine, parts.whole);
    painter.drawText(at(point, unit), Qt::AlignLeft | oneLine, parts.fraction);
    painter.drawText(at(unit, place.right() + 1), Qt::AlignLeft | oneLine, parts.unit);
}

int widestSize(const QFont &font) {
    const QFontMetrics metrics(font);
    const Widths widths = widthsIn(metrics);
    return metrics.horizontalAdvance(u"888"_s) + widths.fraction + widths.gap + widths.unit;
}

} // namespace brimvale
