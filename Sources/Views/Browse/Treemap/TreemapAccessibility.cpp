#include "Views/Browse/Treemap/TreemapView.h"

#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/AccessibleParts.h"
#include "Views/Components/NodeName.h"

#include <QAccessible>
#include <QStringList>
#include <cmath>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

const QString &openAction() {
    static const QString name = QStringLiteral("open");
    return name;
}

/// A tile in layout order.
class AccessibleTile final : public AccessiblePart, public QAccessibleActionInterface {
public:
    using AccessiblePart::AccessiblePart;

    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    [[nodiscard]] QString localizedActionName(const QString &name) const override;
    void doAction(const QString &name) override;
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }

protected:
    [[nodiscard]] std::size_t count() const override { return view().tiles().size(); }
    [[nodiscard]] QString name() const override;
    [[nodiscard]] QRect area() const override { return view().tileArea(index()); }

private:
    [[nodiscard]] TreemapView &view() const { return static_cast<TreemapView &>(*widget()); }
    [[nodiscard]] const TreemapTile &tile() const { return view().tiles()[index()]; }
};

QString AccessibleTile::name() const {
    return u"%1, %2, %3 percent"_s.arg(displayedName(*tile().node),
                                       QString::fromStdString(TreemapStyle::sizeText(*tile().node)),
                                       QString::number(std::lround(tile().fraction * 100)));
}

QAccessible::State AccessibleTile::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    state.invisible = !view().isVisible();
    state.disabled = !view().isEnabled();
    state.selectable = state.focusable = true;
    state.selected = view().selectedTile() == index();
    state.focused = state.selected && view().hasFocus();
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
        return u"Select"_s;
    return name == openAction() ? u"Open"_s : QAccessibleActionInterface::localizedActionName(name);
}

void AccessibleTile::doAction(const QString &name) {
    if (!isValid())
        return;
    if (name == pressAction())
        view().selectTile(index());
    else if (name == showMenuAction())
        view().requestMenu(index(), rect().center());
    else if (name == openAction())
        view().openTile(index());
}

class AccessibleTreemap final : public AccessibleParts {
public:
    using AccessibleParts::AccessibleParts;

    [[nodiscard]] int childCount() const override { return static_cast<int>(view().tiles().size()); }

    [[nodiscard]] QAccessibleInterface *focusChild() const override {
        const std::optional<std::size_t> index = view().selectedTile();
        return view().hasFocus() && index ? child(static_cast<int>(*index)) : nullptr;
    }

protected:
    [[nodiscard]] AccessiblePart *makePart(std::size_t index) const override {
        return new AccessibleTile(*widget(), index);
    }

private:
    [[nodiscard]] const TreemapView &view() const { return static_cast<const TreemapView &>(*widget()); }
};

} // namespace

void TreemapView::makeAccessible() {
    makeAccessibleAs<TreemapView, AccessibleTreemap>();
}

} // namespace brimvale
