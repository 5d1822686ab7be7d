#pragma once

#include <QPushButton>
#include <cstdint>

namespace brimvale {

/// A button that destroys something, in the colour that says so. Never the default of its window.
class DestructiveButton : public QPushButton {
    Q_OBJECT

public:
    explicit DestructiveButton(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTheme();
};

/// What the button says that asks for a removal: "Remove 3 Items, 4.2 GB…", or "Remove…" for none.
[[nodiscard]] QString removalTitle(std::int64_t count, std::int64_t bytes);

} // namespace brimvale
