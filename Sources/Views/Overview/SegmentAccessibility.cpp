#include "Views/Overview/SegmentAccessibility.h"

#include "Views/Overview/SegmentedBar.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <QWindow>
#include <algorithm>
#include <cstddef>
#include <vector>

namespace brimvale {

namespace {

/// The segment in one place of the bar, whatever it shows at the moment. Invalid where there are fewer, and
/// once the bar is gone.
class AccessibleSegment final : public QAccessibleInterface {
public:
    AccessibleSegment(SegmentedBar &bar, std::size_t index) : bar_(&bar), index_(index) {}

    [[nodiscard]] bool isValid() const override {
        return bar_ != nullptr && index_ < bar_->segments().size();
    }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override {
        return bar_ == nullptr ? nullptr : bar_->window()->windowHandle();
    }
    [[nodiscard]] QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(bar_);
    }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString &) override {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? bar_->segments()[index_].words() : QString();
    }
    [[nodiscard]] QRect rect() const override {
        if (!isValid())
            return {};
        const QRect area = bar_->rectOf(index_).toAlignedRect();
        return {bar_->mapToGlobal(area.topLeft()), area.size()};
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.invisible = bar_ == nullptr || !bar_->isVisible();
        state.readOnly = true;
        return state;
    }

private:
    const QPointer<SegmentedBar> bar_;
    const std::size_t index_;
};

class AccessibleBar final : public QAccessibleWidget {
public:
    explicit AccessibleBar(SegmentedBar &bar) : QAccessibleWidget(&bar, QAccessible::List) {}

    ~AccessibleBar() override {
        for (const QAccessible::Id segment : segments_)
            QAccessible::deleteAccessibleInterface(segment);
    }

    [[nodiscard]] int childCount() const override { return static_cast<int>(bar().segments().size()); }

    [[nodiscard]] QAccessibleInterface *child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto place = static_cast<std::size_t>(index);
        while (segments_.size() <= place)
            segments_.push_back(
                QAccessible::registerAccessibleInterface(new AccessibleSegment(bar(), segments_.size())));
        return QAccessible::accessibleInterface(segments_[place]);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override {
        const auto found = std::find_if(segments_.begin(), segments_.end(), [&](QAccessible::Id segment) {
            return QAccessible::accessibleInterface(segment) == child;
        });
        const auto index = static_cast<int>(found - segments_.begin());
        return index < childCount() && found != segments_.end() ? index : -1;
    }

private:
    [[nodiscard]] SegmentedBar &bar() const { return *static_cast<SegmentedBar *>(widget()); }

    /// Those that have been asked for, up to the last one. Qt owns them until they are deleted here.
    mutable std::vector<QAccessible::Id> segments_;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    auto *bar = qobject_cast<SegmentedBar *>(object);
    return bar == nullptr ? nullptr : new AccessibleBar(*bar);
}

} // namespace

void SegmentAccessibility::install() {
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    Q_UNUSED(isInstalled)
}

} // namespace brimvale
