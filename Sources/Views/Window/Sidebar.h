#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class QListWidget;

namespace brimvale {

class SidebarFooter;

/// The list of the window's pages, with the footer under it. One row is always the current one, from the
/// first on; choosing another needs a click, or the arrow keys, or the first letters of its title.
class Sidebar : public QWidget {
    Q_OBJECT

public:
    struct Row {
        QString title;
        QString icon;     ///< a name of the icon set
        QColor tint = {}; ///< of a tile behind the icon; none: a bare icon
    };

    explicit Sidebar(QWidget *parent = nullptr);

    /// Appends a row and answers its number.
    int addRow(const Row &row);
    /// Appends a title over the rows to come, which cannot be chosen.
    void addHeading(const QString &title);

    /// The text at the right of a row.
    void setValue(int row, const QString &value);

    void setCurrentRow(int row);
    [[nodiscard]] SidebarFooter &footer() { return *footer_; }

signals:
    void currentRowChanged(int row);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QListWidget *list_;
    SidebarFooter *footer_;
};

} // namespace brimvale
