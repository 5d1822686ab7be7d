#pragma once

#include "Views/Components/Bar.h"

namespace brimvale {

class Basket;
class Removals;
class TextLabel;

/// Shows at the bottom of the window, on any page, what is in the basket, while something is.
class BasketBar : public Bar {
    Q_OBJECT

public:
    /// Both must outlive the bar.
    BasketBar(Basket &basket, Removals &removals, QWidget *parent = nullptr);

private:
    void showContents();

    Basket &basket_;
    TextLabel *summary_;
};

} // namespace brimvale
