#pragma once

#include <QAbstractButton>

namespace brimvale {

struct OrphanState;

/// The row below the list of applications that shows the leftovers of those that are gone, with their number
/// and size once they are known. It stays chosen when it is pressed again.
class OrphanEntry : public QAbstractButton {
    Q_OBJECT

public:
    explicit OrphanEntry(QWidget *parent = nullptr);

    void showState(const OrphanState &state);
    /// What is known of them, as its second line.
    [[nodiscard]] QString detail() const { return detail_; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void nextCheckState() override { setChecked(true); }
    void paintEvent(QPaintEvent *event) override;

private:
    QString detail_;
};

} // namespace brimvale
