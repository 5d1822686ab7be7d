#pragma once

#include "Core/Scan/FSNode.h"

#include <QWidget>
#include <vector>

class QHBoxLayout;
class QToolButton;

namespace brimvale {

/// The path from the scan root to the focused folder; a click on a folder focuses it. If there is not enough
/// room, the outer folders except the root are behind "…".
class Breadcrumb : public QWidget {
    Q_OBJECT

public:
    explicit Breadcrumb(QWidget *parent = nullptr);

    /// Shows the path to `folder`; nothing for null. Drops all pointers to folders shown before.
    void setFolder(FSNode *folder);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void chosen(brimvale::FSNode *folder);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void rebuild();
    [[nodiscard]] std::size_t firstThatFits() const;
    QToolButton *addFolder(FSNode &folder, bool isFocused);
    void addHidden(std::size_t end);
    void addChevron();

    QHBoxLayout *layout_;
    std::vector<FSNode *> way_;
};

} // namespace brimvale
