#pragma once

#include <QWidget>

class QHBoxLayout;

namespace brimvale {

class TextLabel;

/// The top of a page: its title, a line below, and the controls at the right.
class PageHeader : public QWidget {
    Q_OBJECT

public:
    explicit PageHeader(const QString &title, QWidget *parent = nullptr);

    /// An empty text hides the line.
    void setSubtitle(const QString &subtitle);
    /// Adds a control at the right end.
    void addControl(QWidget *control);

private:
    TextLabel *subtitle_;
    QHBoxLayout *controls_;
};

} // namespace brimvale
