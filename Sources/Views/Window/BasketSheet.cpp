#include "Views/Window/BasketSheet.h"

#include "Core/Model/Basket.h"
#include "Core/Model/Removals.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Removing/SelectionTexts.h"

#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr QSize sizeOfBasket{620, 420};

} // namespace

BasketSheet::BasketSheet(Basket &basket, Removals &removals, QWidget *parent)
    : Sheet("basketSheet", u"Basket"_s, parent), basket_(basket), removals_(removals),
      list_(new EntryList(&ticked_, this)), remove_(new DestructiveButton(this)) {
    remove_->setObjectName(QStringLiteral("removeBasket"));
    QVBoxLayout *layout = makeLayout();
    layout->addWidget(makeHeading("basketTitle", u"Basket"_s));
    layout->addWidget(makeScrollArea(list_, this), 1);
    addButtons(*layout, {remove_, makeCloseButton("closeBasket", u"Close"_s)});
    resize(sizeOfBasket);

    connect(remove_, &QPushButton::clicked, this, &BasketSheet::ask);
    connect(&ticked_, &TickedEntries::changed, this, &BasketSheet::showSelection);
    connect(&removals_, &Removals::changed, this, &BasketSheet::showSelection);
    connect(&basket_, &Basket::changed, this, &BasketSheet::showContents);
    ticked_.setTicked(basket_->entries, true);
    showContents();
}

void BasketSheet::showContents() {
    if (basket_->entries.empty())
        return reject();
    list_->setEntries(basket_->entries);
    ticked_.retain({&basket_->entries});
    showSelection();
}

void BasketSheet::showSelection() {
    remove_->setText(removalTitle(ticked_.count(), ticked_.bytes()));
    remove_->setEnabled(!ticked_.isEmpty() && !removals_.isRemoving());
    list_->viewport()->update();
}

void BasketSheet::ask() {
    std::vector<CleanupEntry> chosen = basket_->entries;
    std::erase_if(chosen, [this](const CleanupEntry &entry) { return !ticked_.contains(entry.url); });
    auto *question = new RemovalSheet({.items = chosen}, this);
    connect(&basket_, &Basket::changed, question, &QDialog::reject); // an item may be gone
    connect(question, &RemovalSheet::confirmed, this,
            [this, chosen](RemovalMode mode, const std::optional<FreePromise> &promise) {
                removals_.removeCleanupEntries(chosen, mode, promise);
                accept();
            });
    question->open();
}

} // namespace brimvale
