#pragma once

#include <QAccessibleInterface>
#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>
#include <cstddef>
#include <vector>

namespace brimvale {

/// One part of a widget that draws its parts itself, as an item of a list, by its index. Invalid if the
/// widget has fewer parts now, or is destroyed.
class AccessiblePart : public QAccessibleInterface {
public:
    AccessiblePart(QWidget &widget, std::size_t index) : widget_(&widget), index_(index) {}

    [[nodiscard]] bool isValid() const override { return widget_ != nullptr && index_ < count(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString &) override {}
    /// The part's accessible name is `name`.
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    /// In screen coordinates.
    [[nodiscard]] QRect rect() const override;

protected:
    /// The number of parts; called only while the widget exists.
    [[nodiscard]] virtual std::size_t count() const = 0;
    /// The name of the part, and its rectangle in the widget; called only while it is valid.
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual QRect area() const = 0;

    [[nodiscard]] QWidget *widget() const { return widget_; }
    [[nodiscard]] std::size_t index() const { return index_; }

private:
    const QPointer<QWidget> widget_;
    const std::size_t index_;
};

/// The accessibility interface of such a widget: a list of its parts.
class AccessibleParts : public QAccessibleWidget {
public:
    explicit AccessibleParts(QWidget &widget) : QAccessibleWidget(&widget, QAccessible::List) {}
    ~AccessibleParts() override;
    AccessibleParts(const AccessibleParts &) = delete;
    AccessibleParts &operator=(const AccessibleParts &) = delete;

    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;

    /// The part of this index; every part below it is made too.
    [[nodiscard]] QAccessibleInterface *part(std::size_t index) const;

protected:
    [[nodiscard]] virtual AccessiblePart *makePart(std::size_t index) const = 0;

private:
    /// All parts up to the last one requested. Qt owns them until they are deleted here.
    mutable std::vector<QAccessible::Id> parts_;
};

/// Registers `Parts` as the accessibility interface of each `Widget`. Call it before the first interface is
/// requested.
template<class Widget, class Parts>
void makeAccessibleAs() {
    static const auto make = [](const QString &, QObject *object) -> QAccessibleInterface * {
        auto *widget = qobject_cast<Widget *>(object);
        return widget == nullptr ? nullptr : new Parts(*widget);
    };
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(make), true);
}

} // namespace brimvale
