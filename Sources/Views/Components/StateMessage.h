#pragma once

#include <QString>
#include <QWidget>

class QLabel;

namespace brimvale {

class TextLabel;

/// The message of a page in place of an empty list: an icon, a title, and a sentence with the reason or the
/// next step.
class StateMessage : public QWidget {
    Q_OBJECT

public:
    explicit StateMessage(QWidget *parent = nullptr);

    void setMessage(const QString &iconName, const QString &title, const QString &sentence);
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString sentence() const;

    /// As narrow as necessary: the sentence wraps.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitSentence();
    void drawIcon();

    QString iconName_;
    QLabel *icon_;
    TextLabel *title_;
    TextLabel *sentence_;
};

} // namespace brimvale
