#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class QListWidget;

namespace brimvale {

class SidebarFooter;

/// The list of the window's pages, with the footer below. One row is always current, initially the first. A
/// click, the arrow keys or the first letters of a title choose another.
class Sidebar : public QWidget {
    Q_OBJECT

public:
    struct Row {
        QString title;
        QString icon;     ///< a name of the icon set
        QColor tint = {}; ///< of a tile behind the icon; invalid: no tile
    };

    explicit Sidebar(QWidget *parent = nullptr);

    /// Appends a row and returns its number.
    int addRow(const Row &row);
    /// Appends a heading for the rows after it. It cannot be chosen.
    void addHeading(const QString &title);

    /// Sets the text at the right of a row.
    void setValue(int row, const QString &value);

    /// Leaves a row out or shows it again.
    void setRowHidden(int row, bool isHidden);

    /// Puts a widget between the rows and the footer.
    void addNote(QWidget *note);

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
