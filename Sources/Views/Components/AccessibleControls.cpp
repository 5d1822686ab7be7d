#include "Views/Components/AccessibleControls.h"

#include "Views/Components/CapacityBar.h"
#include "Views/Components/DisclosureButton.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/TickBox.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <utility>

namespace brimvale {

namespace {

template<class Control>
class AccessibleControl : public QAccessibleWidget {
public:
    AccessibleControl(Control &control, QAccessible::Role role) : QAccessibleWidget(&control, role) {}

protected:
    [[nodiscard]] Control &control() const { return static_cast<Control &>(*widget()); }
};

/// A control that a screen reader can press, by an action with the name that fits it.
template<class Button>
class AccessibleButton : public AccessibleControl<Button> {
public:
    AccessibleButton(Button &button, QAccessible::Role role, QString action)
        : AccessibleControl<Button>(button, role), action_(std::move(action)) {}

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = AccessibleControl<Button>::actionNames();
        if (this->control().isEnabled())
            names.prepend(action_);
        return names;
    }
    void doAction(const QString &name) override {
        if (name == action_)
            this->control().click();
        else
            AccessibleControl<Button>::doAction(name);
    }

private:
    QString action_;
};

class AccessibleTickBox final : public AccessibleButton<TickBox> {
public:
    explicit AccessibleTickBox(TickBox &box)
        : AccessibleButton(box, QAccessible::CheckBox, QAccessibleActionInterface::toggleAction()) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleButton::state();
        state.checkable = true;
        state.checked = control().state() == Qt::Checked;
        state.checkStateMixed = control().state() == Qt::PartiallyChecked;
        return state;
    }
};

class AccessibleDisclosure final : public AccessibleButton<DisclosureButton> {
public:
    explicit AccessibleDisclosure(DisclosureButton &button)
        : AccessibleButton(button, QAccessible::Button, QAccessibleActionInterface::pressAction()) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleButton::state();
        state.expandable = true;
        state.expanded = control().isChecked();
        state.collapsed = !control().isChecked();
        return state;
    }
};

class AccessibleLevel final : public AccessibleControl<CapacityBar>, public QAccessibleValueInterface {
public:
    explicit AccessibleLevel(CapacityBar &bar) : AccessibleControl(bar, QAccessible::ProgressBar) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = true;
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : AccessibleControl::interface_cast(type);
    }
    [[nodiscard]] QVariant currentValue() const override { return qRound(control().usedShare() * 100); }
    void setCurrentValue(const QVariant &) override {}
    [[nodiscard]] QVariant maximumValue() const override { return 100; }
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
};

class AccessibleLabel final : public AccessibleControl<TextLabel> {
public:
    explicit AccessibleLabel(TextLabel &label) : AccessibleControl(label, QAccessible::StaticText) {}

    [[nodiscard]] QAccessible::Role role() const override {
        return control().isHeading() ? QAccessible::Heading : QAccessible::StaticText;
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = true;
        state.invisible = state.invisible || control().isOnlySeen();
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (control().isOnlySeen())
            return {};
        const QString text = AccessibleControl::text(kind);
        return kind == QAccessible::Name && text.isEmpty() ? control().text() : text;
    }
};

/// Qt names a combo box by its value only, on systems where it expects a label beside it.
class AccessibleComboBox final : public AccessibleControl<QComboBox> {
public:
    explicit AccessibleComboBox(QComboBox &box) : AccessibleControl(box, QAccessible::ComboBox) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value || kind == QAccessible::Description)
            return control().currentIndex() < 0 ? control().placeholderText() : control().currentText();
        return AccessibleControl::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleControl::state();
        state.expandable = true;
        state.hasPopup = true;
        state.expanded = control().view()->isVisible();
        return state;
    }
    [[nodiscard]] int childCount() const override { return 1; }
    [[nodiscard]] QAccessibleInterface *child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(control().view()) : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override {
        return child != nullptr && child->object() == control().view() ? 0 : -1;
    }
    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = AccessibleControl::actionNames();
        if (control().isEnabled())
            names.prepend(QAccessibleActionInterface::showMenuAction());
        return names;
    }
    void doAction(const QString &name) override {
        if (name != QAccessibleActionInterface::showMenuAction())
            return AccessibleControl::doAction(name);
        if (control().view()->isVisible())
            control().hidePopup();
        else
            control().showPopup();
    }
};

/// Qt asks for every class of an object, its own first.
QAccessibleInterface *accessibleControl(const QString &, QObject *object) {
    if (auto *box = qobject_cast<TickBox *>(object))
        return new AccessibleTickBox(*box);
    if (auto *button = qobject_cast<DisclosureButton *>(object))
        return new AccessibleDisclosure(*button);
    if (auto *bar = qobject_cast<CapacityBar *>(object))
        return new AccessibleLevel(*bar);
    if (auto *label = qobject_cast<TextLabel *>(object))
        return new AccessibleLabel(*label);
    if (auto *box = qobject_cast<QComboBox *>(object); box != nullptr && !box->isEditable())
        return new AccessibleComboBox(*box);
    return nullptr;
}

} // namespace

void makeControlsAccessible() {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(accessibleControl), true);
}

} // namespace brimvale
