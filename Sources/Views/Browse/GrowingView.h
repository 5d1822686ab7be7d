#pragma once

#include "Views/Browse/Outline/OutlineModel.h"

#include <QElapsedTimer>
#include <QWidget>
#include <memory>
#include <optional>
#include <string>

namespace brimvale {

class ElidedLabel;
class OutlineView;
class ScanSession;
class TextLabel;
class TreemapView;

/// The page Browse while a scan runs: the entries of its root with the figures counted so far, and their
/// treemap. After the scan was stopped, it stays with a note that it is incomplete. Nothing can be removed
/// here.
class GrowingView : public QWidget {
    Q_OBJECT

public:
    /// `scan` must outlive the view.
    explicit GrowingView(const ScanSession &scan, QWidget *parent = nullptr);

    /// Whether anything was counted yet.
    [[nodiscard]] bool hasRows() const;
    /// The name of the selected entry.
    [[nodiscard]] std::optional<std::string> selection() const;

signals:
    /// There are rows now, or none any more.
    void filled();

private:
    QWidget *makeRows();
    QWidget *makeMap();
    void follow();
    void showRows();
    void addRows();
    void showFigures();
    void showWords();
    void showSelection();
    void select(const std::string &name);
    void showMenu(const QPoint &place);

    const ScanSession &scan_;
    std::shared_ptr<FSNode> tree_; ///< made of the rows; null without any
    OutlineModel model_;
    OutlineView *outline_;
    TreemapView *treemap_;
    TextLabel *words_;
    ElidedLabel *chosen_;
    QElapsedTimer sinceOrdered_;
};

} // namespace brimvale
