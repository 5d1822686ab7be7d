#include "Views/Removing/ActionBar.h"

#include "Catalogs/Words.h"
#include "Core/Removal/RemovalReport.h"
#include "Platform/Host.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/SelectionTexts.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

ActionBar::ActionBar(QWidget *parent)
    : Bar(parent), freesAtMost_(RemovalReport::freesAtMost({{.url = homeFolder().appending("item")}})),
      selection_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      note_(new TextLabel(Type::Size::caption, TextLabel::Tone::warning, this)),
      refusal_(new TextLabel(Type::Size::caption, TextLabel::Tone::warning, this)),
      picker_(new RemovalModePicker(this)), remove_(new DestructiveButton(this)) {
    setObjectName(QStringLiteral("actionBar"));
    selection_->setObjectName(QStringLiteral("selection"));
    note_->setObjectName(QStringLiteral("note"));
    note_->setWordWrap(true);
    note_->hide();
    refusal_->setObjectName(QStringLiteral("refusal"));
    refusal_->setWordWrap(true);
    refusal_->hide();
    remove_->setObjectName(QStringLiteral("remove"));
    connect(remove_, &QPushButton::clicked, this, [this] { emit removalAsked(picker_->mode()); });
    Shortcuts::askForRemovalWith(*remove_);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 12, Metrics::pageMargin, 12);
    layout->setSpacing(12);
    auto *words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(selection_);
    words->addWidget(note_);
    words->addWidget(refusal_);
    layout->addLayout(words, 1);
    layout->addWidget(picker_);
    layout->addWidget(remove_);
    showSelection();
}

void ActionBar::setSelection(std::int64_t count, std::int64_t bytes) {
    if (count != count_ || bytes != bytes_)
        showRefusal({});
    count_ = count;
    bytes_ = bytes;
    showSelection();
}

void ActionBar::setNote(const QString &note) {
    note_->setText(note);
    note_->setHidden(note.isEmpty());
}

void ActionBar::showRefusal(const QString &reason) {
    refusal_->setText(reason);
    refusal_->setHidden(reason.isEmpty());
}

void ActionBar::setBusy(bool isBusy) {
    isBusy_ = isBusy;
    showSelection();
}

void ActionBar::resetMode() {
    picker_->setMode(RemovalMode::trash);
}

void ActionBar::showSelection() {
    const QString selected = selectionText(count_, bytes_);
    const bool isLimit = freesAtMost_ && count_ > 0;
    selection_->setText(isBusy_   ? u"Removing…"_s
                        : isLimit ? selected + text(Words::current().atMost)
                                  : selected);
    picker_->setHidden(isBusy_); // it shows the mode of the next removal already
    remove_->setText(removalTitle(count_, bytes_));
    remove_->setEnabled(count_ > 0 && !isBusy_);
}

} // namespace brimvale
