#pragma once

#include <QPushButton>
#include <vector>

namespace brimvale {

/// A button with an icon and a text that shows only the icon while it is folded. The text is its tool tip
/// then, and always its accessible name.
class FoldingButton : public QPushButton {
    Q_OBJECT

public:
    explicit FoldingButton(const QString &text = {}, QWidget *parent = nullptr);

    void setFolded(bool isFolded);
    [[nodiscard]] bool isFolded() const { return isFolded_; }
    /// How much wider the button is with its text.
    [[nodiscard]] int widthOfText() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton *option) const override;
    bool event(QEvent *event) override;

private:
    bool isFolded_ = false;
};

/// Folds as many of `buttons` as are needed for all of `row`, which has a layout, to have room; the first one
/// first.
void foldToFit(QWidget &row, std::vector<FoldingButton *> buttons);

} // namespace brimvale
