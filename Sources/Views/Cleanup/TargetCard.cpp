#include "Views/Cleanup/TargetCard.h"

#include "Core/Storage/CleanupEntries.h"
#include "Views/Cleanup/CommandList.h"
#include "Views/Components/DisclosureButton.h"
#include "Views/Components/IconLabel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/RiskBadge.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/EntryList.h"
#include "Views/Entries/TickedEntries.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

QString whyEmpty(const CleanupTarget &target) {
    if (!target.scanned)
        return u"Not measured yet. Press Measure to start. Measuring never changes your files."_s;
    if (target.hasUnreadableRoot)
        return EntryList::unreadableText();
    return u"There is nothing to remove here."_s;
}

} // namespace

TargetCard::TargetCard(const CleanupTarget &target, TickedEntries &ticked, QWidget *parent)
    : Card(parent), target_(target), ticked_(ticked), disclosure_(new DisclosureButton(this)),
      all_(new TickBox(this)), total_(new TextLabel(Type::Size::heading, QFont::DemiBold, this)),
      body_(new QWidget(this)), entries_(new EntryList(&ticked, body_)),
      state_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, body_)),
      commands_(new CommandList(body_)) {
    setObjectName(QStringLiteral("target:") + text(target.id));
    state_->setObjectName(QStringLiteral("targetState"));
    state_->setWordWrap(true);
    state_->setContentsMargins(16, 4, 16, 8);
    entries_->setAccessibleName(text(target.title));
    auto *inBody = new QVBoxLayout(body_);
    inBody->setContentsMargins(1, 0, 1, 8);
    inBody->setSpacing(0);
    inBody->addWidget(commands_);
    inBody->addWidget(state_);
    inBody->addWidget(entries_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    head_ = makeHead();
    layout->addWidget(head_);
    layout->addWidget(body_);

    connect(&ticked_, &TickedEntries::changed, this, &TargetCard::showTicks);
    connect(all_, &TickBox::asked, this, [this](bool tick) { ticked_.setTicked(target_.entries, tick); });
    connect(entries_, &EntryList::browseAsked, this, &TargetCard::browseAsked);
    if (target.id != "trash")
        entries_->offerBasket();
    connect(entries_, &EntryList::basketAsked, this, &TargetCard::basketAsked);
    connect(disclosure_, &QToolButton::toggled, body_, &QWidget::setVisible);
    body_->hide();
    showEntries();
}

QWidget *TargetCard::makeHead() {
    disclosure_->setObjectName(QStringLiteral("disclosure"));
    disclosure_->setAccessibleName(u"Show what is in %1"_s.arg(text(target_.title)));
    all_->setObjectName(QStringLiteral("tickAll"));
    all_->setAccessibleName(u"All of %1"_s.arg(text(target_.title)));
    total_->setObjectName(QStringLiteral("total"));

    auto *title = new TextLabel(Type::Size::heading, QFont::DemiBold, this);
    title->setObjectName(QStringLiteral("targetTitle"));
    title->setText(text(target_.title));
    title->setHeading();
    auto *detail = new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this);
    detail->setObjectName(QStringLiteral("targetDetail"));
    detail->setText(text(target_.detail));
    detail->setWordWrap(true);
    auto *firstLine = new QHBoxLayout;
    firstLine->setSpacing(8);
    if (!target_.symbol.empty())
        firstLine->addWidget(new IconLabel(text(target_.symbol), IconLabel::Tone::quiet, this));
    firstLine->addWidget(title);
    firstLine->addWidget(new RiskBadge(target_.risk, this));
    firstLine->addStretch(1);
    auto *words = new QVBoxLayout;
    words->setSpacing(3);
    words->addLayout(firstLine);
    words->addWidget(detail);

    auto *head = new QWidget(this);
    auto *layout = new QHBoxLayout(head);
    layout->setContentsMargins(Metrics::tickBoxLine - tickBoxMargin, 12, 16, 12);
    layout->setSpacing(8);
    layout->addWidget(all_);
    layout->addWidget(disclosure_);
    layout->addLayout(words, 1);
    layout->addWidget(total_);
    return head;
}

void TargetCard::setTarget(const CleanupTarget &target) {
    if (target == target_) {
        entries_->setEntries(target.entries); // which may have other notes
        return;
    }
    target_ = target;
    showEntries();
}

void TargetCard::setOpen(bool isOpen) {
    disclosure_->setChecked(isOpen);
}

bool TargetCard::isOpen() const {
    return disclosure_->isChecked();
}

void TargetCard::showEntries() {
    entries_->setEntries(target_.entries);
    entries_->setHidden(target_.entries.empty());
    state_->setHidden(!target_.entries.empty());
    if (target_.entries.empty())
        state_->setText(whyEmpty(target_));
    total_->setText(target_.scanned ? sizeText(CleanupEntries::totalSize(target_.entries))
                                    : QStringLiteral("—"));
    showCommands();
    showTicks();
}

/// The commands for all of the target, and those of its entries, each once.
void TargetCard::showCommands() {
    QStringList commands;
    for (const std::string &command : target_.commands)
        commands.append(displayedText(command));
    for (const CleanupEntry &entry : target_.entries)
        if (entry.notes && !entry.notes->command.empty())
            commands.append(displayedText(entry.notes->command));
    commands.removeDuplicates();
    commands_->setCommands(commands);
}

void TargetCard::showTicks() {
    all_->setState(ticked_.stateOf(target_.entries));
    all_->setEnabled(ticked_.canTickAny(target_.entries));
}

void TargetCard::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // In the list, Return is for an entry.
    if (isReturn && (disclosure_->hasFocus() || all_->hasFocus()))
        disclosure_->toggle();
    else
        Card::keyPressEvent(event);
}

/// A click anywhere on the header expands or collapses the card.
void TargetCard::mouseReleaseEvent(QMouseEvent *event) {
    Card::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && head_->geometry().contains(event->pos()))
        disclosure_->toggle();
}

} // namespace brimvale
