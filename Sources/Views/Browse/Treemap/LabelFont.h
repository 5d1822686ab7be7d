#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>
#include <array>

namespace brimvale {

/// A font for thousands of short texts. Texts of ASCII characters are measured by the widths of these, which
/// costs no text layout.
class LabelFont {
public:
    explicit LabelFont(const QFont &font);

    [[nodiscard]] const QFont &font() const { return font_; }
    [[nodiscard]] qreal height() const { return metrics_.height(); }
    [[nodiscard]] qreal ascent() const { return metrics_.ascent(); }

    /// Whether a text has only characters of ASCII that are seen and ellipses: none is higher than the line.
    [[nodiscard]] static bool isPlain(const QString &text);
    /// The width of a text in points, of a plain one without its kerning.
    [[nodiscard]] qreal widthOf(const QString &text) const;
    /// The text, or as much of its start and its end as fits into `room`.
    [[nodiscard]] QString elided(const QString &text, qreal room) const;

private:
    static constexpr char16_t firstPlain = u' ';
    static constexpr char16_t lastPlain = u'~';

    [[nodiscard]] qreal widthOf(QChar character) const;

    QFont font_;
    QFontMetricsF metrics_;
    std::array<qreal, lastPlain - firstPlain + 1> widths_{};
    qreal ellipsis_;
};

} // namespace brimvale
