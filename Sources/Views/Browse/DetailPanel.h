#pragma once

#include <QWidget>
#include <array>
#include <cstdint>
#include <vector>

class QLabel;
class QPushButton;

namespace brimvale {

class DestructiveButton;
class ElidedLabel;
class FSNode;
class TextLabel;

/// What is known of the selected nodes, and what can be done with them. Keeps no node: figures are
/// taken over when they are shown.
class DetailPanel : public QWidget {
    Q_OBJECT

public:
    explicit DetailPanel(QWidget *parent = nullptr);

    /// Shows one node in full, several as a sum that counts nothing twice, none as nothing.
    void showNodes(const std::vector<FSNode *> &nodes);

    /// How many of them can be removed, and how much that frees; nothing can while a removal runs.
    void showRemoval(std::int64_t count, std::int64_t bytes, bool isRemoving);

    /// Says below the actions what became of one; empty for nothing.
    void showNotice(const QString &notice);

signals:
    void revealRequested();
    void copyPathRequested();
    void removalRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    enum Figure { allocated, logical, share, files, folders, figureCount };

    void showFigures(const std::array<QString, figureCount> &values);
    void drawIcon();

    QLabel *icon_;
    ElidedLabel *name_;
    ElidedLabel *path_;
    std::array<TextLabel *, figureCount> titles_{};
    std::array<TextLabel *, figureCount> values_{};
    TextLabel *explanation_;
    TextLabel *notice_;
    QPushButton *reveal_;
    QPushButton *copyPath_;
    DestructiveButton *remove_;
    QString iconName_;
};

} // namespace brimvale
