#include "Views/Overview/SegmentedBar.h"

#include "Views/Components/AccessibleParts.h"

#include <QAccessible>

namespace brimvale {

namespace {

class AccessibleSegment final : public AccessiblePart {
public:
    using AccessiblePart::AccessiblePart;

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.invisible = widget() == nullptr || !widget()->isVisible();
        state.readOnly = true;
        return state;
    }

protected:
    [[nodiscard]] std::size_t count() const override { return bar().segments().size(); }
    [[nodiscard]] QString name() const override { return bar().segments()[index()].words(); }
    [[nodiscard]] QRect area() const override { return bar().rectOf(index()).toAlignedRect(); }

private:
    [[nodiscard]] const SegmentedBar &bar() const { return static_cast<const SegmentedBar &>(*widget()); }
};

class AccessibleBar final : public AccessibleParts {
public:
    using AccessibleParts::AccessibleParts;

    [[nodiscard]] int childCount() const override {
        return static_cast<int>(static_cast<const SegmentedBar *>(widget())->segments().size());
    }

protected:
    [[nodiscard]] AccessiblePart *makePart(std::size_t index) const override {
        return new AccessibleSegment(*widget(), index);
    }
};

} // namespace

void SegmentedBar::makeAccessible() {
    makeAccessibleAs<SegmentedBar, AccessibleBar>();
}

} // namespace brimvale
