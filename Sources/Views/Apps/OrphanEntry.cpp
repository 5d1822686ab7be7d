#include "Views/Apps/OrphanEntry.h"

#include "Base/Bytes.h"
#include "Core/Model/OrphanSearch.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int entryHeight = 48;
constexpr int entryMargin = 14;
constexpr int symbolSize = 22;
constexpr int pictureSpace = 28; ///< of the applications above
constexpr int nameGap = 10;
constexpr int lineMargin = 5;

QString detailOf(const OrphanState &state) {
    if (state.isSearching)
        return u"Searching…"_s;
    if (!state.wasSearched)
        return u"Not searched yet"_s;
    if (state.orphans.empty())
        return u"None found"_s;
    std::int64_t bytes = 0;
    for (const Orphan &orphan : state.orphans)
        bytes = checkedAdd(bytes, orphan.item.size);
    return counted(static_cast<std::int64_t>(state.orphans.size()), "item") + QStringLiteral(" · ") +
           sizeText(bytes);
}

} // namespace

OrphanEntry::OrphanEntry(QWidget *parent) : QAbstractButton(parent) {
    setObjectName(QStringLiteral("orphans"));
    setText(u"Leftovers of removed apps"_s);
    setToolTip(u"Find files of apps that are no longer installed"_s);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void OrphanEntry::showState(const OrphanState &state) {
    detail_ = detailOf(state);
    setAccessibleName(text() + QStringLiteral(", ") + detail_);
    update();
}

QSize OrphanEntry::sizeHint() const {
    return {0, Type::scaled(entryHeight)};
}

void OrphanEntry::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    const bool isActive = isChecked() && hasFocus();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() && !isChecked() ? QPen(theme.accent, 1.5) : QPen(Qt::NoPen));
    painter.setBrush(isActive       ? theme.accent
                     : isChecked()  ? theme.selection
                     : underMouse() ? theme.hover
                                    : QColor(Qt::transparent));
    painter.drawRoundedRect(QRectF(rect()).adjusted(6, 1, -6, -1), 6, 6);
    painter.drawPixmap(entryMargin + (pictureSpace - symbolSize) / 2,
                       rect().center().y() - symbolSize / 2 + 1,
                       Icons::pixmap(QStringLiteral("package-x"), isActive ? theme.onAccent : theme.tint,
                                     symbolSize, devicePixelRatioF()));
    QRect line =
        rect().adjusted(entryMargin + pictureSpace + nameGap, lineMargin, -entryMargin, -height() / 2);
    const auto drawLine = [&](Type::Size size, const QColor &color, const QString &words) {
        painter.setFont(Type::font(size));
        painter.setPen(isActive ? theme.onAccent : color);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(words, Qt::ElideRight, line.width()));
    };
    drawLine(Type::Size::body, theme.text, text());
    line = line.translated(0, line.height()).adjusted(0, 0, 0, -lineMargin);
    drawLine(Type::Size::caption, theme.tertiaryText, detail_);
}

} // namespace brimvale
