#include "Views/Browse/Treemap/TreemapView.h"

#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/AccessibleParts.h"
#include "Views/Components/NodeName.h"

#include <QAccessible>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

const QString &openAction() {
    static const QString name = QStringLiteral("open");
    return name;
}

/// The indices of the tiles that are directly inside a tile or, without one, directly in the map.
std::vector<std::size_t> tilesIn(std::span<const TreemapTile> tiles, std::optional<std::size_t> folder) {
    const std::size_t first = folder ? *folder + 1 : 0;
    const std::size_t end = folder ? first + tiles[*folder].tilesInside : tiles.size();
    std::vector<std::size_t> children;
    for (std::size_t i = first; i < end; i += 1 + tiles[i].tilesInside)
        children.push_back(i);
    return children;
}

int placeIn(const std::vector<std::size_t> &children, std::size_t tile) {
    const auto found = std::find(children.begin(), children.end(), tile);
    return found == children.end() ? -1 : static_cast<int>(found - children.begin());
}

/// A tile, by its place in the layout order. In a detailed map a folder has the tiles inside it.
class AccessibleTile final : public AccessiblePart, public QAccessibleActionInterface {
public:
    using AccessiblePart::AccessiblePart;

    [[nodiscard]] QAccessible::Role role() const override {
        return view().isDetailed() ? QAccessible::TreeItem : QAccessible::ListItem;
    }
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int place) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] std::size_t tileIndex() const { return index(); }
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
    [[nodiscard]] AccessibleParts *map() const {
        return static_cast<AccessibleParts *>(AccessiblePart::parent());
    }
};

QAccessibleInterface *AccessibleTile::parent() const {
    const auto folder =
        isValid() ? TreemapNavigation::around(view().tiles(), index()) : std::optional<std::size_t>();
    return folder ? map()->part(*folder) : AccessiblePart::parent();
}

QAccessibleInterface *AccessibleTile::child(int place) const {
    if (place < 0 || place >= childCount())
        return nullptr;
    return map()->part(tilesIn(view().tiles(), index())[static_cast<std::size_t>(place)]);
}

QAccessibleInterface *AccessibleTile::childAt(int x, int y) const {
    for (int i = 0; i < childCount(); ++i)
        if (child(i)->rect().contains(x, y))
            return child(i);
    return nullptr;
}

int AccessibleTile::childCount() const {
    return isValid() ? static_cast<int>(tilesIn(view().tiles(), index()).size()) : 0;
}

int AccessibleTile::indexOfChild(const QAccessibleInterface *child) const {
    const auto *tile = dynamic_cast<const AccessibleTile *>(child);
    return tile == nullptr || !isValid() ? -1 : placeIn(tilesIn(view().tiles(), index()), tile->index());
}

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
    state.expandable = state.expanded = tile().isOpen();
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

    [[nodiscard]] QAccessible::Role role() const override {
        return view().isDetailed() ? QAccessible::Tree : QAccessible::List;
    }
    [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }

    [[nodiscard]] QAccessibleInterface *child(int place) const override {
        const std::vector<std::size_t> tiles = children();
        const bool isThere = place >= 0 && static_cast<std::size_t>(place) < tiles.size();
        return isThere ? part(tiles[static_cast<std::size_t>(place)]) : nullptr;
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override {
        const auto *tile = dynamic_cast<const AccessibleTile *>(child);
        return tile == nullptr ? -1 : placeIn(children(), tile->tileIndex());
    }

    [[nodiscard]] QAccessibleInterface *focusChild() const override {
        const std::optional<std::size_t> index = view().selectedTile();
        return view().hasFocus() && index ? part(*index) : nullptr;
    }

protected:
    [[nodiscard]] AccessiblePart *makePart(std::size_t index) const override {
        return new AccessibleTile(*widget(), index);
    }

private:
    [[nodiscard]] const TreemapView &view() const { return static_cast<const TreemapView &>(*widget()); }
    [[nodiscard]] std::vector<std::size_t> children() const { return tilesIn(view().tiles(), std::nullopt); }
};

} // namespace

void TreemapView::makeAccessible() {
    makeAccessibleAs<TreemapView, AccessibleTreemap>();
}

/// Announces the selected tile to assistive technology, and its focus if the treemap has the focus.
void TreemapView::announceSelection() {
    const std::optional<std::size_t> index = selectedTile();
    if (!index || !QAccessible::isActive())
        return;
    const auto *map = static_cast<AccessibleTreemap *>(QAccessible::queryAccessibleInterface(this));
    for (const QAccessible::Event type : {QAccessible::Selection, QAccessible::Focus}) {
        if (type == QAccessible::Focus && !hasFocus())
            continue;
        QAccessibleEvent event(map->part(*index), type);
        QAccessible::updateAccessibility(&event);
    }
}

/// Tells assistive technology that there are other tiles.
void TreemapView::announceTiles() {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

} // namespace brimvale
