#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <vector>

namespace brimvale {

/// One part of a segmented bar.
struct BarSegment {
    QString name;
    std::int64_t bytes = 0;
    QColor color;

    /// The name with the size.
    [[nodiscard]] QString words() const;

    friend bool operator==(const BarSegment &, const BarSegment &) = default;
};

/// A thick rounded bar of coloured segments, each as wide as its share of the whole; the rest is empty. The
/// segment under the pointer shows its name.
class SegmentedBar : public QWidget {
    Q_OBJECT

public:
    explicit SegmentedBar(QWidget *parent = nullptr);

    /// Empty segments are left out. If the segments add up to more than `whole`, they share the bar.
    void setSegments(std::vector<BarSegment> segments, std::int64_t whole);
    [[nodiscard]] const std::vector<BarSegment> &segments() const { return segments_; }
    /// The rectangle of a segment.
    [[nodiscard]] QRectF rectOf(std::size_t segment) const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    /// Presents the segments to assistive technology as the items of a list.
    static void makeAccessible();

    std::vector<BarSegment> segments_;
    std::int64_t whole_ = 0;
};

} // namespace brimvale
