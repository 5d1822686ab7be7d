#include "Views/TreemapAccessibility.h"

#include "Core/TreemapStyle.h"
#include "Views/Components/NodeName.h"
#include "Views/TreemapView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QPointer>
#include <QStringList>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace brimvale {

namespace {

QString translated(const char *text) {
    return QCoreApplication::translate("TreemapAccessibility", text);
}

const QString &openAction() {
    static const QString name = QStringLiteral("open");
    return name;
}

/// The tile in one place of the layout order, whatever it shows at the moment. Invalid where there are fewer
/// tiles, and once the treemap is gone.
class AccessibleTile final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleTile(TreemapView &view, std::size_t index) : view_(&view), index_(index) {}

    [[nodiscard]] bool isValid() const override { return view_ != nullptr && index_ < view_->tiles().size(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override {
        return view_ == nullptr ? nullptr : view_->window()->windowHandle();
    }
    [[nodiscard]] QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(view_);
    }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString &) override {}
    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    [[nodiscard]] QString localizedActionName(const QString &name) const override;
    void doAction(const QString &name) override;
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }

private:
    [[nodiscard]] const TreemapTile &tile() const { return view_->tiles()[index_]; }

    const QPointer<TreemapView> view_;
    const std::size_t index_;
};

QString AccessibleTile::text(QAccessible::Text kind) const {
    if (kind != QAccessible::Name || !isValid())
        return {};
    return translated("%1, %2, %3 percent")
        .arg(displayedName(*tile().node), QString::fromStdString(TreemapStyle::sizeText(*tile().node)),
             QString::number(std::lround(tile().fraction * 100)));
}

QRect AccessibleTile::rect() const {
    if (!isValid())
        return {};
    const QRect area = view_->tileArea(index_);
    return {view_->mapToGlobal(area.topLeft()), area.size()};
}

QAccessible::State AccessibleTile::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    state.invisible = !view_->isVisible();
    state.disabled = !view_->isEnabled();
    state.selectable = state.focusable = true;
    state.selected = view_->selectedTile() == index_;
    state.focused = state.selected && view_->hasFocus();
    return state;
}

QStringList AccessibleTile::actionNames() const {
    if (!isValid())
        return {};
    QStringList names{pressAction(), showMenuAction()};
    if (tile().node->isDirectory)
        names.append(openAction());
    return names;
}

QString AccessibleTile::localizedActionName(const QString &name) const {
    if (name == pressAction())
        return translated("Select");
    return name == openAction() ? translated("Open") : QAccessibleActionInterface::localizedActionName(name);
}

void AccessibleTile::doAction(const QString &name) {
    if (!isValid())
        return;
    if (name == pressAction())
        view_->selectTile(index_);
    else if (name == showMenuAction())
        view_->requestMenu(index_, rect().center());
    else if (name == openAction())
        view_->openTile(index_);
}

class AccessibleTreemap final : public QAccessibleWidget {
public:
    explicit AccessibleTreemap(TreemapView &view) : QAccessibleWidget(&view, QAccessible::List) {}

    ~AccessibleTreemap() override {
        for (const QAccessible::Id tile : tiles_)
            QAccessible::deleteAccessibleInterface(tile);
    }

    [[nodiscard]] int childCount() const override { return static_cast<int>(view().tiles().size()); }

    [[nodiscard]] QAccessibleInterface *child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto place = static_cast<std::size_t>(index);
        while (tiles_.size() <= place)
            tiles_.push_back(
                QAccessible::registerAccessibleInterface(new AccessibleTile(view(), tiles_.size())));
        return QAccessible::accessibleInterface(tiles_[place]);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override {
        const auto found = std::find_if(tiles_.begin(), tiles_.end(), [&](QAccessible::Id tile) {
            return QAccessible::accessibleInterface(tile) == child;
        });
        const auto index = static_cast<int>(found - tiles_.begin());
        return index < childCount() && found != tiles_.end() ? index : -1;
    }

    [[nodiscard]] QAccessibleInterface *focusChild() const override {
        const std::optional<std::size_t> index = view().selectedTile();
        return view().hasFocus() && index ? child(static_cast<int>(*index)) : nullptr;
    }

private:
    [[nodiscard]] TreemapView &view() const { return *static_cast<TreemapView *>(widget()); }

    /// Those that have been asked for, up to the last one. Qt owns them until they are deleted here.
    mutable std::vector<QAccessible::Id> tiles_;
};

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    auto *view = qobject_cast<TreemapView *>(object);
    return view == nullptr ? nullptr : new AccessibleTreemap(*view);
}

} // namespace

void TreemapAccessibility::install() {
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    Q_UNUSED(isInstalled)
}

} // namespace brimvale
