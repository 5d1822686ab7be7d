#pragma once

#include <QStringList>
#include <QWidget>

class QVBoxLayout;

namespace brimvale {

/// Commands that free space in a tool's own way, each with a button that copies it.
class CommandList : public QWidget {
    Q_OBJECT

public:
    explicit CommandList(QWidget *parent = nullptr);

    /// Without any the list is hidden.
    void setCommands(const QStringList &commands);

protected:
    void changeEvent(QEvent *event) override;

private:
    void addRow(const QString &command);
    void drawIcons();

    QStringList commands_;
    QVBoxLayout *rows_;
    QWidget *content_ = nullptr; ///< the rows
};

} // namespace brimvale
