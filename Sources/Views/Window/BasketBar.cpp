#include "Views/Window/BasketBar.h"

#include "Core/Model/Basket.h"
#include "Core/Storage/CleanupEntries.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/SheetOrder.h"
#include "Views/Window/BasketSheet.h"

#include <QHBoxLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace brimvale {

BasketBar::BasketBar(Basket &basket, Removals &removals, QWidget *parent)
    : Bar(parent), basket_(basket), summary_(new TextLabel(Type::Size::body, QFont::Normal, this)) {
    setObjectName(QStringLiteral("basketBar"));
    summary_->setObjectName(QStringLiteral("basketSummary"));
    QPushButton *empty = makeButton("emptyBasket", u"Empty Basket"_s, this);
    QPushButton *review = makeButton("reviewBasket", u"Review…"_s, this);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 8, Metrics::pageMargin, 8);
    layout->setSpacing(12);
    layout->addWidget(summary_);
    layout->addStretch(1);
    layout->addWidget(empty);
    layout->addWidget(review);
    connect(empty, &QPushButton::clicked, &basket_, &Basket::clear);
    connect(review, &QPushButton::clicked, this, [this, &removals] {
        if (!isSheetOpen())
            (new BasketSheet(basket_, removals, window()))->open();
    });
    connect(&basket_, &Basket::changed, this, &BasketBar::showContents);
    showContents();
}

void BasketBar::showContents() {
    const std::vector<CleanupEntry> &entries = basket_->entries;
    summary_->setText(u"Basket: %1, %2"_s.arg(counted(static_cast<std::int64_t>(entries.size()), "item"),
                                              sizeText(CleanupEntries::totalSize(entries))));
    setVisible(!entries.empty());
}

} // namespace brimvale
