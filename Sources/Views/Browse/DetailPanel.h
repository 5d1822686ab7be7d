#pragma once

#include "Base/FileURL.h"
#include "Core/Reclaim/Reclaim.h"

#include <QWidget>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class QLabel;
class QPushButton;

namespace brimvale {

class DestructiveButton;
class ElidedLabel;
class FSNode;
class ReclaimLabel;
class TextLabel;

/// Details of the selected nodes, with the actions for them. Keeps copies of figures, and no node.
class DetailPanel : public QWidget {
    Q_OBJECT

public:
    explicit DetailPanel(QWidget *parent = nullptr);

    /// Shows one node in full, or several as a sum without counting any twice. Empty for none.
    void showNodes(const std::vector<FSNode *> &nodes);

    /// Tells what became of them since an earlier scan, as a sentence; empty for nothing.
    void showChange(const QString &sentence);

    /// Sets how many of them can be removed, and how much that frees. During a removal nothing can.
    void showRemoval(std::int64_t count, std::int64_t bytes, bool isRemoving);

    /// Why the shown nodes cannot be removed here.
    struct Objection {
        QString reason;
        QString route; ///< the title of a button that leads to where they can; empty for none
    };
    /// Tells why, and disables the removal or puts the route in its place; nothing allows it again.
    void showObjection(const std::optional<Objection> &objection);

    /// Finds out in the background what deleting these items would free, and shows it; with other names that
    /// their files have in `linkPlaces`.
    void showReclaim(std::vector<FileURL> items, LinkPlaces linkPlaces);

    /// What deleting these items frees, if that was found out just now.
    [[nodiscard]] std::optional<Reclaim> recentReclaim() const;

    /// Shows the outcome of an action below the buttons; empty for none.
    void showNotice(const QString &notice);

signals:
    void revealRequested();
    void copyPathRequested();
    void removalRequested();
    void routeRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    enum Figure { allocated, logical, share, files, folders, figureCount };

    [[nodiscard]] QWidget *makeNotes();
    void enableRemoval();
    void showFigures(const std::array<QString, figureCount> &values);
    void drawIcon();

    QLabel *icon_;
    ElidedLabel *name_;
    ElidedLabel *path_;
    std::array<TextLabel *, figureCount> titles_{};
    std::array<TextLabel *, figureCount> values_{};
    TextLabel *explanation_;
    TextLabel *change_;
    ReclaimLabel *reclaim_;
    TextLabel *notice_;
    QPushButton *reveal_;
    QPushButton *copyPath_;
    TextLabel *objection_;
    DestructiveButton *remove_;
    QPushButton *route_;
    bool canRemove_ = false; ///< as far as the model says
    bool hasObjection_ = false;
    QString iconName_;
};

} // namespace brimvale
